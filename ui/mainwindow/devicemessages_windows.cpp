#include "ui/mainwindow/devicemessages.h"

#include "d2xx/families.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>

#include <qt_windows.h>
// After the header that it needs.
#include <dbt.h>

#include <utility>

namespace {

/// Every USB device has an interface of this class (GUID_DEVINTERFACE_USB_DEVICE).
constexpr GUID usbDevices{0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

/// Name of the interface of a device: \\?\USB#VID_0403&PID_6014#<serial number>#{<class>}.
bool isBridge(const DEV_BROADCAST_DEVICEINTERFACE_W &device)
{
    const QString vendor =
        QStringLiteral("VID_%1&").arg(QString::number(d2xx::vendor, 16), 4, QLatin1Char('0'));
    return QString::fromWCharArray(device.dbcc_name).contains(vendor, Qt::CaseInsensitive);
}

} // namespace

DeviceMessages::DeviceMessages(QWidget &window) : QObject(&window), m_window(window)
{
    window.installEventFilter(this);
    registerWindow();
}

DeviceMessages::~DeviceMessages()
{
    unregisterWindow();
}

bool DeviceMessages::concern(const void *message) const
{
    const auto &received = *static_cast<const MSG *>(message);
    const WId own = m_window.internalWinId();
    if (received.hwnd != nullptr && own != 0 && received.hwnd != reinterpret_cast<HWND>(own))
        return false;
    const auto *device = reinterpret_cast<const DEV_BROADCAST_HDR *>(received.lParam);
    if (device == nullptr || device->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE)
        return true;
    return isBridge(*reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W *>(device));
}

bool DeviceMessages::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_window && event->type() == QEvent::WinIdChange)
        registerWindow();
    return QObject::eventFilter(watched, event);
}

void DeviceMessages::registerWindow()
{
    unregisterWindow();
    const WId own = m_window.internalWinId();
    // Other platforms of the toolkit have numbers of their own.
    if (own == 0 || QGuiApplication::platformName() != QStringLiteral("windows"))
        return;
    DEV_BROADCAST_DEVICEINTERFACE_W wanted{};
    wanted.dbcc_size = sizeof wanted;
    wanted.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    wanted.dbcc_classguid = usbDevices;
    m_registration =
        RegisterDeviceNotificationW(reinterpret_cast<HWND>(own), &wanted, DEVICE_NOTIFY_WINDOW_HANDLE);
}

void DeviceMessages::unregisterWindow()
{
    if (m_registration != nullptr)
        UnregisterDeviceNotification(std::exchange(m_registration, nullptr));
}
