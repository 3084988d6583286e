#include "simulator/bridge/bridge.h"

namespace simulator {

void Bridge::catchUp(Nanoseconds now)
{
    if (auto settings = m_settingsFile.changed(now))
        apply(std::move(*settings));
    moveCables(now);
}

void Bridge::apply(Settings settings)
{
    m_settings = std::move(settings);
    QStringList present;
    for (const QString &serialNumber : std::as_const(m_settings.serialNumbers)) {
        if (m_settings.attached && !m_settings.unplugged.contains(serialNumber))
            present.append(serialNumber);
    }
    for (const auto &[serialNumber, device] : m_devices) {
        device->plugAt.reset();
        if (present.contains(serialNumber))
            device->pullAt.reset();
        else if (device->isAttached && !device->pullAt)
            unplug(*device);
    }
    for (const QString &serialNumber : std::as_const(present))
        attach(serialNumber);
    for (const QString &serialNumber : std::as_const(m_settings.unplugged)) {
        Device &device = deviceOf(serialNumber);
        if (!device.isAttached)
            scheduleReplug(device);
    }
}

Bridge::Device &Bridge::deviceOf(const QString &serialNumber)
{
    auto &device = m_devices[serialNumber];
    if (!device) {
        const QString eepromPath = m_folder + QStringLiteral("/virtual-detector-eeprom.ini");
        device = std::make_unique<Device>(serialNumber, eepromPath, m_settings);
    }
    return *device;
}

Bridge::Device *Bridge::attachedDevice(const QString &serialNumber)
{
    const auto found = m_devices.find(serialNumber);
    return found != m_devices.end() && found->second->isAttached ? found->second.get() : nullptr;
}

void Bridge::attach(const QString &serialNumber)
{
    Device &device = deviceOf(serialNumber);
    device.plugAt.reset();
    if (!std::exchange(device.isAttached, true))
        m_events.post(true);
}

void Bridge::unplug(Device &device)
{
    const Faults &faults = m_settings.faults;
    const Nanoseconds later = m_clock.now() + faults.removalDelay;
    if (faults.removalMessage == RemovalMessage::Early) {
        m_events.post(false);
        device.pullAt = later;
        return;
    }
    detach(device);
    if (faults.removalMessage == RemovalMessage::Late)
        m_removalsToTell.push_back(later);
    else if (faults.removalMessage == RemovalMessage::Prompt)
        m_events.post(false);
}

void Bridge::detach(Device &device)
{
    device.isAttached = false;
    device.pullAt.reset();
    device.firmware.sendQueue().purge(m_clock.now()); // what is in the bridge has no power any more
    device.firmware.hostLost();
    if (const auto open = m_connections.find(device.handle); open != m_connections.end())
        open->second.isLost = true;
    device.handle = nullptr;
    scheduleReplug(device);
    m_wake.notify_all();
}

void Bridge::scheduleReplug(Device &device)
{
    const bool comesBack = m_settings.attached && m_settings.serialNumbers.contains(device.serialNumber);
    if (comesBack && m_settings.faults.replugAfter)
        device.plugAt = m_clock.now() + *m_settings.faults.replugAfter;
    else
        device.plugAt.reset();
}

void Bridge::moveCables(Nanoseconds now)
{
    for (const auto &[serialNumber, device] : m_devices) {
        if (device->pullAt && *device->pullAt <= now)
            detach(*device);
        if (device->plugAt && *device->plugAt <= now)
            attach(serialNumber);
    }
    const auto told = std::erase_if(m_removalsToTell, [now](Nanoseconds due) { return due <= now; });
    for (std::size_t i = 0; i < told; ++i)
        m_events.post(false);
}

} // namespace simulator
