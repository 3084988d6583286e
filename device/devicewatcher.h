#pragma once

#include "device/d2xx.h"

#include <QObject>

#include <memory>

/// Tells when a detector is plugged in or unplugged: through the driver library when it reports that itself,
/// otherwise through the operating system (udev on Linux, the kernel where udev does not run; on Windows the
/// window's native event filter sees the messages, and this object stays silent).
///
/// Lives on the GUI thread; both signals are emitted there.
class DeviceWatcher : public QObject
{
    Q_OBJECT

public:
    explicit DeviceWatcher(std::shared_ptr<D2xx> driver, QObject *parent = nullptr);
    ~DeviceWatcher() override;

Q_SIGNALS:
    void arrived();
    void removed();

private:
    void watchSystem();

    std::shared_ptr<D2xx> m_driver;
    struct System;
    std::unique_ptr<System> m_system;
};
