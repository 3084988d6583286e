#include "d2xx/exports.h"
#include "d2xx/guard.h"
#include "simulator/bridge/bridge.h"

// The exported calls. Their meaning is that of the interface; what they do here is told in
// simulator/bridge/bridge.h.

using d2xx::guarded;
using d2xx::Handle;
using d2xx::Status;

namespace {

/// Made at the first call; the settings file is looked for in the working directory. Never torn down: when a
/// library of Windows is, the process' other threads have ended wherever they stood, with a lock in their
/// hands perhaps, and to wait for one of them would take for ever.
simulator::Bridge &bridge()
{
    static simulator::SteadyClock clock;
    static auto *const instance = new simulator::Bridge(clock);
    return *instance;
}

} // namespace

Status FT_CreateDeviceInfoList(std::uint32_t *count)
{
    return guarded([=] { return bridge().createDeviceInfoList(count); });
}

Status FT_GetDeviceInfoList(d2xx::DeviceRecord *records, std::uint32_t *count)
{
    return guarded([=] { return bridge().getDeviceInfoList(records, count); });
}

Status FT_OpenEx(void *key, std::uint32_t flags, Handle *handle)
{
    return guarded([=] { return bridge().openEx(key, flags, handle); });
}

Status FT_Close(Handle handle)
{
    return guarded([=] { return bridge().close(handle); });
}

Status FT_ResetDevice(Handle handle)
{
    return guarded([=] { return bridge().resetDevice(handle); });
}

Status FT_SetBitMode(Handle handle, std::uint8_t mask, std::uint8_t mode)
{
    return guarded([=] { return bridge().setBitMode(handle, mask, mode); });
}

Status FT_SetLatencyTimer(Handle handle, std::uint8_t milliseconds)
{
    return guarded([=] { return bridge().setLatencyTimer(handle, milliseconds); });
}

Status FT_SetUSBParameters(Handle handle, std::uint32_t inSize, std::uint32_t outSize)
{
    return guarded([=] { return bridge().setUsbParameters(handle, inSize, outSize); });
}

Status FT_SetFlowControl(Handle handle, std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    return guarded([=] { return bridge().setFlowControl(handle, flow, xOn, xOff); });
}

Status FT_Purge(Handle handle, std::uint32_t mask)
{
    return guarded([=] { return bridge().purge(handle, mask); });
}

Status FT_SetTimeouts(Handle handle, std::uint32_t readMs, std::uint32_t writeMs)
{
    return guarded([=] { return bridge().setTimeouts(handle, readMs, writeMs); });
}

Status FT_GetStatus(Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes, std::uint32_t *events)
{
    return guarded([=] { return bridge().getStatus(handle, rxBytes, txBytes, events); });
}

Status FT_Read(Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesRead)
{
    return guarded([=] { return bridge().read(handle, buffer, length, bytesRead); });
}

Status FT_Write(Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten)
{
    return guarded([=] { return bridge().write(handle, buffer, length, bytesWritten); });
}

int QV1K_IsSimulated()
{
    return 1;
}

/// Before the library is unloaded a null callback ends its thread.
void QV1K_SetDeviceEventCallback(d2xx::DeviceEventCallback callback, void *context)
{
    (void)guarded([=] {
        bridge().setDeviceEventCallback(callback, context);
        return Status::Ok;
    });
}
