#include "device/devicewatcher.h"

#include <QSocketNotifier>

#ifdef QV1K_HAVE_UDEV
#include <libudev.h>
#include <unistd.h>
#endif

namespace {

/// Called by the driver library on a thread of its own.
void reportEvent(void *context, int arrived)
{
    auto *watcher = static_cast<DeviceWatcher *>(context);
    QMetaObject::invokeMethod(watcher, arrived != 0 ? &DeviceWatcher::arrived : &DeviceWatcher::removed,
                              Qt::QueuedConnection);
}

#ifdef QV1K_HAVE_UDEV
/// The detector's USB bridge, by its vendor number 0403. The property stands in removals too.
bool isBridge(udev_device *device)
{
    const char *product = device != nullptr ? udev_device_get_property_value(device, "PRODUCT") : nullptr;
    return product != nullptr && qstrncmp(product, "403/", 4) == 0;
}
#endif

} // namespace

#ifdef QV1K_HAVE_UDEV
struct DeviceWatcher::System
{
    struct Release
    {
        void operator()(udev *library) const { udev_unref(library); }
        void operator()(udev_monitor *source) const { udev_monitor_unref(source); }
        void operator()(udev_device *device) const { udev_device_unref(device); }
    };

    std::unique_ptr<udev, Release> context;
    std::unique_ptr<udev_monitor, Release> monitor;
    std::unique_ptr<QSocketNotifier> notifier;
};
#else
struct DeviceWatcher::System
{
};
#endif

DeviceWatcher::DeviceWatcher(std::shared_ptr<D2xx> driver, QObject *parent)
    : QObject(parent), m_driver(std::move(driver))
{
    if (const auto setCallback = m_driver->functions().setDeviceEventCallback)
        setCallback(&reportEvent, this);
    else
        watchSystem();
}

DeviceWatcher::~DeviceWatcher()
{
    if (const auto setCallback = m_driver->functions().setDeviceEventCallback)
        setCallback(nullptr, nullptr);
}

void DeviceWatcher::watchSystem()
{
#ifdef QV1K_HAVE_UDEV
    auto system = std::make_unique<System>();
    system->context.reset(udev_new());
    if (!system->context)
        return;
    // Where udev's service does not run (a container, say), the kernel's own events tell the same.
    const char *source = access("/run/udev/control", F_OK) == 0 ? "udev" : "kernel";
    system->monitor.reset(udev_monitor_new_from_netlink(system->context.get(), source));
    udev_monitor *monitor = system->monitor.get();
    if (monitor == nullptr ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor, "usb", "usb_device") < 0 ||
        udev_monitor_enable_receiving(monitor) < 0)
        return;

    system->notifier = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(monitor), QSocketNotifier::Read);
    connect(system->notifier.get(), &QSocketNotifier::activated, this, [this, monitor] {
        const std::unique_ptr<udev_device, System::Release> device(udev_monitor_receive_device(monitor));
        if (!isBridge(device.get()))
            return;
        const char *action = udev_device_get_action(device.get());
        if (qstrcmp(action, "add") == 0)
            Q_EMIT arrived();
        else if (qstrcmp(action, "remove") == 0)
            Q_EMIT removed();
    });
    m_system = std::move(system);
#endif
}
