#pragma once

#include "d2xx/handlesource.h"
#include "ftdi/opendevice.h"

#include <map>
#include <mutex>

namespace ftdi {

using d2xx::DeviceRecord;
using d2xx::Handle;

/// The bridges of this computer and those that are open here, by handle. All members may be called from any
/// thread; a call on a handle that is not open returns InvalidHandle.
class Registry
{
public:
    explicit Registry(std::unique_ptr<UsbBus> bus) : m_bus(std::move(bus)) {}

    /// Makes the list of the bridges that are plugged in, which getDeviceInfoList() tells.
    Status createDeviceInfoList(std::uint32_t *count);
    /// `records` has room for as many as createDeviceInfoList() counted.
    Status getDeviceInfoList(DeviceRecord *records, std::uint32_t *count);

    /// Only by serial number (`flags` 1). DeviceNotOpened when it is open already, here or elsewhere.
    Status open(const void *serialNumber, std::uint32_t flags, Handle *handle);
    Status close(Handle handle);
    /// In words why an open bridge is gone; without a handle, why the last one was not opened. Empty when
    /// there is nothing to tell.
    [[nodiscard]] std::string problem(Handle handle);

    /// `call(OpenDevice &)` on the open bridge; it outlives the call even when it is closed meanwhile.
    template <typename Call>
    Status onOpen(Handle handle, Call call)
    {
        const std::shared_ptr<OpenDevice> device = find(handle);
        return device ? call(*device) : Status::InvalidHandle;
    }

private:
    struct Connection
    {
        std::string serialNumber;
        std::shared_ptr<OpenDevice> device;
    };

    Refusal openOnBus(const std::string &number, Handle *handle);
    [[nodiscard]] std::shared_ptr<OpenDevice> find(Handle handle);
    [[nodiscard]] Handle handleOf(const std::string &serialNumber);
    [[nodiscard]] DeviceRecord recordOf(const BridgeInfo &info);

    std::mutex m_busMutex; // looking for bridges and opening them takes a while
    const std::unique_ptr<UsbBus> m_bus;

    std::mutex m_mutex; // guards what follows; taken after the other
    std::map<Handle, Connection> m_connections;
    std::vector<DeviceRecord> m_records;
    std::string m_refusal; ///< of the last opening
    d2xx::HandleSource m_handles{0x46540000};
};

} // namespace ftdi
