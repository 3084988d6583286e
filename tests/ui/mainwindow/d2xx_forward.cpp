// A driver library as the program loads it, by file name, whose calls go to a table that a test sets.

#include "d2xx/exports.h"
#include "d2xx/functions.h"

using namespace d2xx;

namespace {

Functions table;
DeviceEventCallback deviceEvent = nullptr;
void *deviceEventContext = nullptr;

} // namespace

extern "C" {

QV1K_D2XX_EXPORT void Forward_use(const Functions *functions)
{
    table = *functions;
}

/// A detector was plugged in (1) or pulled out (0).
QV1K_D2XX_EXPORT void Forward_deviceEvent(int arrived)
{
    if (deviceEvent != nullptr)
        deviceEvent(deviceEventContext, arrived);
}

} // extern "C"

void QV1K_SetDeviceEventCallback(DeviceEventCallback callback, void *context)
{
    deviceEvent = callback;
    deviceEventContext = context;
}

Status FT_CreateDeviceInfoList(std::uint32_t *count)
{
    return table.createDeviceInfoList(count);
}

Status FT_GetDeviceInfoList(DeviceRecord *records, std::uint32_t *count)
{
    return table.getDeviceInfoList(records, count);
}

Status FT_OpenEx(void *key, std::uint32_t flags, Handle *handle)
{
    return table.openEx(key, flags, handle);
}

Status FT_Close(Handle handle)
{
    return table.close(handle);
}

Status FT_ResetDevice(Handle handle)
{
    return table.resetDevice(handle);
}

Status FT_SetBitMode(Handle handle, std::uint8_t mask, std::uint8_t mode)
{
    return table.setBitMode(handle, mask, mode);
}

Status FT_SetLatencyTimer(Handle handle, std::uint8_t milliseconds)
{
    return table.setLatencyTimer(handle, milliseconds);
}

Status FT_SetUSBParameters(Handle handle, std::uint32_t inSize, std::uint32_t outSize)
{
    return table.setUsbParameters(handle, inSize, outSize);
}

Status FT_SetFlowControl(Handle handle, std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    return table.setFlowControl(handle, flow, xOn, xOff);
}

Status FT_Purge(Handle handle, std::uint32_t mask)
{
    return table.purge(handle, mask);
}

Status FT_SetTimeouts(Handle handle, std::uint32_t readMs, std::uint32_t writeMs)
{
    return table.setTimeouts(handle, readMs, writeMs);
}

Status FT_GetStatus(Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes, std::uint32_t *events)
{
    return table.getStatus(handle, rxBytes, txBytes, events);
}

Status FT_Read(Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesRead)
{
    return table.read(handle, buffer, length, bytesRead);
}

Status FT_Write(Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten)
{
    return table.write(handle, buffer, length, bytesWritten);
}
