#include "d2xx/exports.h"
#include "d2xx/guard.h"
#include "ftdi/libftdibus.h"
#include "ftdi/registry.h"

// The exported calls. Their meaning is that of the interface; what they do here is told in ftdi/registry.h
// and ftdi/opendevice.h. Where the system has no usable USB they return OtherError.

using d2xx::guarded;
using d2xx::Handle;
using d2xx::Status;
using ftdi::OpenDevice;

namespace {

ftdi::Registry &registry()
{
    static ftdi::Registry instance(std::make_unique<ftdi::LibFtdiBus>());
    return instance;
}

template <typename Call>
Status onOpen(Handle handle, Call call)
{
    return guarded([&] { return registry().onOpen(handle, call); });
}

} // namespace

Status FT_CreateDeviceInfoList(std::uint32_t *count)
{
    return guarded([=] { return registry().createDeviceInfoList(count); });
}

Status FT_GetDeviceInfoList(d2xx::DeviceRecord *records, std::uint32_t *count)
{
    return guarded([=] { return registry().getDeviceInfoList(records, count); });
}

Status FT_OpenEx(void *key, std::uint32_t flags, Handle *handle)
{
    return guarded([=] { return registry().open(key, flags, handle); });
}

Status FT_Close(Handle handle)
{
    return guarded([=] { return registry().close(handle); });
}

Status FT_ResetDevice(Handle handle)
{
    return onOpen(handle, [](OpenDevice &device) { return device.reset(); });
}

Status FT_SetBitMode(Handle handle, std::uint8_t mask, std::uint8_t mode)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setBitMode(mask, mode); });
}

Status FT_SetLatencyTimer(Handle handle, std::uint8_t milliseconds)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setLatencyTimer(milliseconds); });
}

Status FT_SetUSBParameters(Handle handle, std::uint32_t inSize, std::uint32_t outSize)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setTransferSizes(inSize, outSize); });
}

Status FT_SetFlowControl(Handle handle, std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setFlowControl(flow, xOn, xOff); });
}

Status FT_Purge(Handle handle, std::uint32_t mask)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.purge(mask); });
}

Status FT_SetTimeouts(Handle handle, std::uint32_t readMs, std::uint32_t writeMs)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.setTimeouts(readMs, writeMs); });
}

Status FT_GetStatus(Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes, std::uint32_t *events)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.queued(rxBytes, txBytes, events); });
}

Status FT_Read(Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesRead)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.read(buffer, length, bytesRead); });
}

Status FT_Write(Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.write(buffer, length, bytesWritten); });
}

Status QV1K_TellProblem(Handle handle, char *text, std::uint32_t size)
{
    return guarded([=] {
        if (text == nullptr || size == 0)
            return Status::InvalidParameter;
        const std::string problem = registry().problem(handle);
        text[problem.copy(text, size - 1)] = '\0';
        return Status::Ok;
    });
}

Status QV1K_CountLosses(Handle handle, std::uint32_t *count)
{
    return onOpen(handle, [=](OpenDevice &device) { return device.losses(count); });
}

int QV1K_ListsAllBridges()
{
    return 1;
}
