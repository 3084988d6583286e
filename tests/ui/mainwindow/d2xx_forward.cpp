// A driver library as the program loads it, by file name, whose calls go to a table that a test sets.

#include "device/d2xx.h"

using namespace ftdi;

namespace {

Functions table;
void (*deviceEvent)(void *context, int arrived) = nullptr;
void *deviceEventContext = nullptr;

} // namespace

extern "C" {

Q_DECL_EXPORT void Forward_use(const Functions *functions)
{
    table = *functions;
}

/// A detector was plugged in (1) or pulled out (0).
Q_DECL_EXPORT void Forward_deviceEvent(int arrived)
{
    if (deviceEvent != nullptr)
        deviceEvent(deviceEventContext, arrived);
}

Q_DECL_EXPORT void QV1K_SetDeviceEventCallback(void (*callback)(void *context, int arrived), void *context)
{
    deviceEvent = callback;
    deviceEventContext = context;
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_CreateDeviceInfoList(DWORD *count)
{
    return table.createDeviceInfoList(count);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_GetDeviceInfoList(DeviceRecord *records, DWORD *count)
{
    return table.getDeviceInfoList(records, count);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_OpenEx(void *key, DWORD flags, FT_HANDLE *handle)
{
    return table.openEx(key, flags, handle);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_Close(FT_HANDLE handle)
{
    return table.close(handle);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_ResetDevice(FT_HANDLE handle)
{
    return table.resetDevice(handle);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_SetBitMode(FT_HANDLE handle, UCHAR mask, UCHAR mode)
{
    return table.setBitMode(handle, mask, mode);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_SetLatencyTimer(FT_HANDLE handle, UCHAR milliseconds)
{
    return table.setLatencyTimer(handle, milliseconds);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_SetUSBParameters(FT_HANDLE handle, DWORD inSize, DWORD outSize)
{
    return table.setUsbParameters(handle, inSize, outSize);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_SetFlowControl(FT_HANDLE handle, USHORT flow, UCHAR xOn, UCHAR xOff)
{
    return table.setFlowControl(handle, flow, xOn, xOff);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_Purge(FT_HANDLE handle, DWORD mask)
{
    return table.purge(handle, mask);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_SetTimeouts(FT_HANDLE handle, DWORD readMs, DWORD writeMs)
{
    return table.setTimeouts(handle, readMs, writeMs);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_GetStatus(FT_HANDLE handle, DWORD *rxBytes, DWORD *txBytes,
                                                    DWORD *events)
{
    return table.getStatus(handle, rxBytes, txBytes, events);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_Read(FT_HANDLE handle, void *buffer, DWORD length, DWORD *bytesRead)
{
    return table.read(handle, buffer, length, bytesRead);
}

Q_DECL_EXPORT FT_STATUS QV1K_D2XX_CALL FT_Write(FT_HANDLE handle, void *buffer, DWORD length,
                                                DWORD *bytesWritten)
{
    return table.write(handle, buffer, length, bytesWritten);
}

} // extern "C"
