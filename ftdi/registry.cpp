#include "ftdi/registry.h"

#include "d2xx/arguments.h"

#include <algorithm>

namespace ftdi {

Status Registry::createDeviceInfoList(std::uint32_t *count)
{
    if (count == nullptr)
        return Status::InvalidParameter;
    const std::lock_guard busLock(m_busMutex);
    const auto bridges = m_bus->list();
    if (!bridges)
        return Status::OtherError;

    const std::lock_guard lock(m_mutex);
    m_records.clear();
    for (const BridgeInfo &info : *bridges)
        m_records.push_back(recordOf(info));
    *count = static_cast<std::uint32_t>(m_records.size());
    return Status::Ok;
}

DeviceRecord Registry::recordOf(const BridgeInfo &info)
{
    DeviceRecord record{};
    record.handle = handleOf(info.serialNumber);
    record.flags =
        (info.isHighSpeed ? d2xx::flagHighSpeed : 0) | (record.handle != nullptr ? d2xx::flagOpened : 0);
    record.type = info.type;
    record.id = info.id;
    record.locationId = info.locationId;
    d2xx::setText(record.serialNumber, info.serialNumber);
    d2xx::setText(record.description, info.description);
    return record;
}

Status Registry::getDeviceInfoList(DeviceRecord *records, std::uint32_t *count)
{
    if (records == nullptr || count == nullptr)
        return Status::InvalidParameter;
    const std::lock_guard lock(m_mutex);
    std::copy(m_records.begin(), m_records.end(), records);
    *count = static_cast<std::uint32_t>(m_records.size());
    return Status::Ok;
}

/// The handle under which a bridge is open; null when it is not, or was unplugged since.
Handle Registry::handleOf(const std::string &serialNumber)
{
    const auto found = std::find_if(m_connections.begin(), m_connections.end(), [&](const auto &entry) {
        const Connection &connection = entry.second;
        return connection.serialNumber == serialNumber && connection.device->status() == Status::Ok;
    });
    return found != m_connections.end() ? found->first : nullptr;
}

Status Registry::open(const void *serialNumber, std::uint32_t flags, Handle *handle)
{
    if (serialNumber == nullptr || handle == nullptr || flags != d2xx::openBySerialNumber)
        return Status::InvalidParameter;
    const std::lock_guard busLock(m_busMutex);
    Refusal refusal = openOnBus(static_cast<const char *>(serialNumber), handle);
    const std::lock_guard lock(m_mutex);
    m_refusal = std::move(refusal.reason);
    return refusal.status;
}

Refusal Registry::openOnBus(const std::string &number, Handle *handle)
{
    {
        const std::lock_guard lock(m_mutex);
        if (handleOf(number) != nullptr)
            return {Status::DeviceNotOpened, "The bridge is open in this program already."};
    }
    std::unique_ptr<UsbPort> port;
    if (Refusal refusal = m_bus->open(number, port); refusal.status != Status::Ok)
        return refusal;
    auto device = std::make_shared<OpenDevice>(std::move(port));

    const std::lock_guard lock(m_mutex);
    *handle = m_handles.next();
    m_connections[*handle] = {number, std::move(device)};
    return {};
}

std::string Registry::problem(Handle handle)
{
    if (handle != nullptr) {
        const std::shared_ptr<OpenDevice> device = find(handle);
        return device ? device->ending() : std::string();
    }
    const std::lock_guard lock(m_mutex);
    return m_refusal;
}

Status Registry::close(Handle handle)
{
    std::shared_ptr<OpenDevice> device;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_connections.find(handle);
        if (found == m_connections.end())
            return Status::InvalidHandle;
        device = std::move(found->second.device);
        m_connections.erase(found);
    }
    device->close();
    return Status::Ok;
}

std::shared_ptr<OpenDevice> Registry::find(Handle handle)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_connections.find(handle);
    return found != m_connections.end() ? found->second.device : nullptr;
}

} // namespace ftdi
