#include "ftdi/d2xx_ftdi.h"

#include "ftdi/libftdibus.h"
#include "ftdi/registry.h"

using d2xx::DeviceRecord;
using d2xx::Handle;
using d2xx::OpenDevice;
using d2xx::Registry;
using d2xx::Status;

namespace {

Registry &registry()
{
    static Registry instance(std::make_unique<d2xx::LibFtdiBus>());
    return instance;
}

/// No exception crosses the C interface.
template <typename Call>
std::uint32_t guarded(Call call)
{
    try {
        return static_cast<std::uint32_t>(call());
    } catch (...) {
        return static_cast<std::uint32_t>(Status::OtherError);
    }
}

template <typename Call>
std::uint32_t onOpen(void *handle, Call call)
{
    return guarded([&] { return registry().onOpen(reinterpret_cast<Handle>(handle), call); });
}

} // namespace

std::uint32_t FT_CreateDeviceInfoList(std::uint32_t *count)
{
    return guarded([=] { return registry().createDeviceInfoList(count); });
}

std::uint32_t FT_GetDeviceInfoList(void *records, std::uint32_t *count)
{
    return guarded([=] { return registry().getDeviceInfoList(static_cast<DeviceRecord *>(records), count); });
}

std::uint32_t FT_OpenEx(void *key, std::uint32_t flags, void **handle)
{
    Handle opened = 0;
    const std::uint32_t status =
        guarded([&] { return registry().open(key, flags, handle != nullptr ? &opened : nullptr); });
    if (opened != 0)
        *handle = reinterpret_cast<void *>(opened); // NOLINT(performance-no-int-to-ptr): a mere token
    return status;
}

std::uint32_t FT_Close(void *handle)
{
    return guarded([=] { return registry().close(reinterpret_cast<Handle>(handle)); });
}

std::uint32_t FT_ResetDevice(void *handle)
{
    return onOpen(handle, [](OpenDevice &device) { return device.reset(); });
}

std::uint32_t FT_SetBitMode(void *handle, std::uint8_t mask, std::uint8_t mode)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setBitMode(mask, mode); });
}

std::uint32_t FT_SetLatencyTimer(void *handle, std::uint8_t milliseconds)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setLatencyTimer(milliseconds); });
}

std::uint32_t FT_SetUSBParameters(void *handle, std::uint32_t inSize, std::uint32_t outSize)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setTransferSizes(inSize, outSize); });
}

std::uint32_t FT_SetFlowControl(void *handle, std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setFlowControl(flow, xOn, xOff); });
}

std::uint32_t FT_Purge(void *handle, std::uint32_t mask)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.purge(mask); });
}

std::uint32_t FT_SetTimeouts(void *handle, std::uint32_t readMs, std::uint32_t writeMs)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setTimeouts(readMs, writeMs); });
}

std::uint32_t FT_GetStatus(void *handle, std::uint32_t *rxBytes, std::uint32_t *txBytes,
                           std::uint32_t *events)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.queued(rxBytes, txBytes, events); });
}

std::uint32_t FT_Read(void *handle, void *buffer, std::uint32_t length, std::uint32_t *bytesRead)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.read(buffer, length, bytesRead); });
}

std::uint32_t FT_Write(void *handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.write(buffer, length, bytesWritten); });
}
