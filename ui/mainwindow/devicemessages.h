#pragma once

#include <QObject>

class QWidget;

/// The device messages of Windows (WM_DEVICECHANGE) for one window. The system broadcasts arrivals and
/// removals for ports and volumes only: a bridge whose driver makes no port of it is heard by windows that
/// have registered for USB devices, as this does, whenever the window gets a new system handle. GUI thread.
class DeviceMessages : public QObject
{
public:
    explicit DeviceMessages(QWidget &window);
    ~DeviceMessages() override;
    Q_DISABLE_COPY_MOVE(DeviceMessages)

    /// Whether a device message that this thread got (`message` points to a MSG) is for the window and can be
    /// about a detector: a broadcast that says nothing more may be, a USB device of another maker is not. A
    /// broadcast comes to every window of the program, and one of them is enough.
    [[nodiscard]] bool concern(const void *message) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void registerWindow();
    void unregisterWindow();

    QWidget &m_window;
    void *m_registration = nullptr; ///< HDEVNOTIFY
};
