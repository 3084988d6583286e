#pragma once

#include <QString>
#include <QtGlobal>

#include <memory>

/// Called in place of the system's bringing to the disk, on the thread that asks for it; false when that
/// fails, by SystemFailure::DeviceFault. The test defines it.
[[nodiscard]] bool bringToDisk(const QString &path);

/// While it lives bringToDisk() is called.
class FlushingReplaced
{
public:
    FlushingReplaced();
    ~FlushingReplaced();
    Q_DISABLE_COPY_MOVE(FlushingReplaced)

private:
    struct Means;
    std::unique_ptr<Means> m_means;
};
