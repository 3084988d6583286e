#include "simulator/bridge/bridge.h"

#include <algorithm>
#include <array>

namespace simulator {

namespace {

constexpr quint32 openBySerialNumber = 1;
constexpr quint32 flagOpened = 1;
constexpr quint32 flagHighSpeed = 2;
constexpr quint32 type232H = 8;
constexpr quint32 vendorAndProduct = 0x04036014;
constexpr quint8 allLines = 0xFF;
constexpr quint8 synchronousFifo = 0x40;
constexpr quint32 purgeReceived = 1;
constexpr quint32 purgeSent = 2;

template <std::size_t size>
void copyText(char (&target)[size], const QByteArray &text)
{
    std::fill_n(target, size, '\0');
    std::copy_n(text.constData(), std::min<qsizetype>(text.size(), qsizetype{size} - 1), target);
}

template <typename Value, std::size_t count>
bool isOneOf(Value value, const std::array<Value, count> &known)
{
    return std::find(known.begin(), known.end(), value) != known.end();
}

} // namespace

Bridge::Bridge(Clock &clock, const QString &folder)
    : m_clock(clock), m_folder(folder), m_settingsFile(folder + QStringLiteral("/virtual-detector.ini")),
      m_events([this] {
          const std::lock_guard lock(m_mutex);
          if (auto settings = m_settingsFile.changedNow(m_clock.now()))
              apply(std::move(*settings));
      })
{
    const std::lock_guard lock(m_mutex);
    checkSettings(m_clock.now());
}

void Bridge::setDeviceEventCallback(DeviceEvents::Callback callback, void *context)
{
    { // what happened before is no news
        const std::lock_guard lock(m_mutex);
        checkSettings(m_clock.now());
    }
    m_events.setCallback(callback, context);
}

void Bridge::checkSettings(Nanoseconds now)
{
    if (auto settings = m_settingsFile.changed(now))
        apply(std::move(*settings));
}

void Bridge::apply(Settings settings)
{
    m_settings = std::move(settings);
    const QStringList present = m_settings.attached ? m_settings.serialNumbers : QStringList();
    for (const auto &[serialNumber, device] : m_devices) {
        if (device->isAttached && !present.contains(serialNumber))
            detach(*device);
    }
    for (const QString &serialNumber : present)
        attach(serialNumber);
}

void Bridge::attach(const QString &serialNumber)
{
    auto &device = m_devices[serialNumber];
    if (!device) {
        const QString eepromPath = m_folder + QStringLiteral("/virtual-detector-eeprom.ini");
        device = std::make_unique<Device>(serialNumber, eepromPath, m_settings);
    }
    if (!std::exchange(device->isAttached, true))
        m_events.post(true);
}

void Bridge::detach(Device &device)
{
    device.isAttached = false;
    device.firmware.hostLost();
    if (const auto open = m_connections.find(device.handle); open != m_connections.end())
        open->second.isLost = true;
    device.handle = 0;
    m_wake.notify_all();
    m_events.post(false);
}

Bridge::Device *Bridge::attachedDevice(const QString &serialNumber)
{
    const auto found = m_devices.find(serialNumber);
    return found != m_devices.end() && found->second->isAttached ? found->second.get() : nullptr;
}

Status Bridge::createDeviceInfoList(quint32 *count)
{
    if (count == nullptr)
        return Status::InvalidParameter;
    const std::lock_guard lock(m_mutex);
    checkSettings(m_clock.now());
    m_records.clear();
    for (const QString &serialNumber : std::as_const(m_settings.serialNumbers)) {
        const Device *device = attachedDevice(serialNumber);
        if (device == nullptr)
            continue;
        DeviceRecord record{};
        record.flags = flagHighSpeed | (device->handle != 0 ? flagOpened : 0);
        record.type = type232H;
        record.id = vendorAndProduct;
        record.locationId = static_cast<quint32>(m_records.size() + 1);
        record.handle = device->handle;
        copyText(record.serialNumber, serialNumber.toUtf8());
        copyText(record.description, QByteArrayLiteral("QV1K virtual detector"));
        m_records.push_back(record);
    }
    *count = static_cast<quint32>(m_records.size());
    return Status::Ok;
}

Status Bridge::getDeviceInfoList(DeviceRecord *records, quint32 *count)
{
    if (records == nullptr || count == nullptr)
        return Status::InvalidParameter;
    const std::lock_guard lock(m_mutex);
    std::copy(m_records.begin(), m_records.end(), records);
    *count = static_cast<quint32>(m_records.size());
    return Status::Ok;
}

quint32 Bridge::openEx(const void *serialNumber, quint32 flags, Handle *handle)
{
    if (serialNumber == nullptr || handle == nullptr || flags != openBySerialNumber)
        return static_cast<quint32>(Status::InvalidParameter);
    const std::lock_guard lock(m_mutex);
    checkSettings(m_clock.now());
    if (m_settings.faults.failOpens > 0) {
        --m_settings.faults.failOpens;
        return m_settings.faults.openStatus;
    }
    Device *device = attachedDevice(QString::fromUtf8(static_cast<const char *>(serialNumber)));
    if (device == nullptr)
        return static_cast<quint32>(Status::DeviceNotFound);
    if (device->handle != 0)
        return static_cast<quint32>(Status::DeviceNotOpened);
    device->handle = ++m_lastHandle;
    m_connections[device->handle] = {device};
    *handle = device->handle;
    return static_cast<quint32>(Status::Ok);
}

Status Bridge::close(Handle handle)
{
    const std::lock_guard lock(m_mutex);
    checkSettings(m_clock.now());
    const auto found = m_connections.find(handle);
    if (found == m_connections.end())
        return Status::InvalidHandle;
    if (!found->second.isLost) {
        Device &device = *found->second.device;
        device.firmware.hostLost();
        device.handle = 0;
    }
    m_connections.erase(found);
    m_wake.notify_all();
    return Status::Ok;
}

Status Bridge::find(Handle handle, Nanoseconds now, Connection *&connection)
{
    checkSettings(now);
    const auto found = m_connections.find(handle);
    if (found == m_connections.end())
        return Status::InvalidHandle;
    connection = &found->second;
    return connection->isLost ? Status::IoError : Status::Ok;
}

Status Bridge::resetDevice(Handle handle)
{
    return purge(handle, purgeReceived | purgeSent);
}

Status Bridge::setBitMode(Handle handle, quint8 mask, quint8 mode)
{
    return onOpen(handle, [=](Connection &connection, Nanoseconds) {
        constexpr std::array<quint8, 8> modes{0x00, 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, synchronousFifo};
        if (!isOneOf(mode, modes))
            return Status::InvalidParameter;
        connection.device->firmware.setSynchronous(mask == allLines && mode == synchronousFifo);
        return Status::Ok;
    });
}

Status Bridge::setLatencyTimer(Handle handle, quint8 milliseconds)
{
    return onOpen(handle, [=](Connection &connection, Nanoseconds) {
        constexpr quint8 shortest = 2;
        if (milliseconds < shortest)
            return Status::InvalidParameter;
        connection.device->firmware.sendQueue().setLatency(Milliseconds(milliseconds));
        return Status::Ok;
    });
}

Status Bridge::setUsbParameters(Handle handle, quint32 inSize, quint32 outSize)
{
    return onOpen(handle, [=](Connection &, Nanoseconds) {
        const auto fits = [](quint32 size) {
            return size >= 64 && size <= 65536 && size % 64 == 0;
        };
        return fits(inSize) && fits(outSize) ? Status::Ok : Status::InvalidParameter;
    });
}

Status Bridge::setFlowControl(Handle handle, quint16 flow, quint8 /*xOn*/, quint8 /*xOff*/)
{
    return onOpen(handle, [=](Connection &, Nanoseconds) {
        constexpr std::array<quint16, 4> flows{0x0000, 0x0100, 0x0200, 0x0400};
        return isOneOf(flow, flows) ? Status::Ok : Status::InvalidParameter;
    });
}

Status Bridge::purge(Handle handle, quint32 mask)
{
    return onOpen(handle, [=](Connection &connection, Nanoseconds now) {
        if (mask == 0 || mask > (purgeReceived | purgeSent))
            return Status::InvalidParameter;
        if ((mask & purgeReceived) != 0)
            connection.device->firmware.sendQueue().purge(now);
        return Status::Ok;
    });
}

Status Bridge::setTimeouts(Handle handle, quint32 readMs, quint32 /*writeMs*/)
{
    return onOpen(handle, [=](Connection &connection, Nanoseconds) {
        connection.readTimeout = Milliseconds(readMs);
        return Status::Ok;
    });
}

Status Bridge::getStatus(Handle handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events)
{
    return onOpen(handle, [=](Connection &connection, Nanoseconds now) {
        if (rxBytes == nullptr || txBytes == nullptr || events == nullptr)
            return Status::InvalidParameter;
        *rxBytes = static_cast<quint32>(connection.device->firmware.sendQueue().available(now));
        *txBytes = 0;
        *events = 0;
        return Status::Ok;
    });
}

} // namespace simulator
