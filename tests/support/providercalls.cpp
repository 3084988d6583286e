#include "tests/support/providercalls.h"

#include "d2xx/exports.h"

using namespace d2xx;

Status FT_CreateDeviceInfoList(std::uint32_t *count)
{
    return providerCalls().createDeviceInfoList(count);
}

Status FT_GetDeviceInfoList(DeviceRecord *records, std::uint32_t *count)
{
    return providerCalls().getDeviceInfoList(records, count);
}

Status FT_OpenEx(void *key, std::uint32_t flags, Handle *handle)
{
    return providerCalls().openEx(key, flags, handle);
}

Status FT_Close(Handle handle)
{
    return providerCalls().close(handle);
}

Status FT_ResetDevice(Handle handle)
{
    return providerCalls().resetDevice(handle);
}

Status FT_SetBitMode(Handle handle, std::uint8_t mask, std::uint8_t mode)
{
    return providerCalls().setBitMode(handle, mask, mode);
}

Status FT_SetLatencyTimer(Handle handle, std::uint8_t milliseconds)
{
    return providerCalls().setLatencyTimer(handle, milliseconds);
}

Status FT_SetUSBParameters(Handle handle, std::uint32_t inSize, std::uint32_t outSize)
{
    return providerCalls().setUsbParameters(handle, inSize, outSize);
}

Status FT_SetFlowControl(Handle handle, std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    return providerCalls().setFlowControl(handle, flow, xOn, xOff);
}

Status FT_Purge(Handle handle, std::uint32_t mask)
{
    return providerCalls().purge(handle, mask);
}

Status FT_SetTimeouts(Handle handle, std::uint32_t readMs, std::uint32_t writeMs)
{
    return providerCalls().setTimeouts(handle, readMs, writeMs);
}

Status FT_GetStatus(Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes, std::uint32_t *events)
{
    return providerCalls().getStatus(handle, rxBytes, txBytes, events);
}

Status FT_Read(Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesRead)
{
    return providerCalls().read(handle, buffer, length, bytesRead);
}

Status FT_Write(Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten)
{
    return providerCalls().write(handle, buffer, length, bytesWritten);
}
