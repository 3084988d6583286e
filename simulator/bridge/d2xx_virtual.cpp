#include "simulator/bridge/d2xx_virtual.h"

#include "simulator/bridge/bridge.h"

using simulator::Bridge;
using simulator::DeviceRecord;
using simulator::Handle;
using simulator::Status;

namespace {

/// Made at the first call; the settings file is looked for in the working directory.
Bridge &bridge()
{
    static simulator::SteadyClock clock;
    static Bridge instance(clock);
    return instance;
}

quint32 code(Status status)
{
    return static_cast<quint32>(status);
}

Handle number(void *handle)
{
    return reinterpret_cast<Handle>(handle);
}

} // namespace

quint32 FT_CreateDeviceInfoList(quint32 *count)
{
    return code(bridge().createDeviceInfoList(count));
}

quint32 FT_GetDeviceInfoList(void *records, quint32 *count)
{
    return code(bridge().getDeviceInfoList(static_cast<DeviceRecord *>(records), count));
}

quint32 FT_OpenEx(void *key, quint32 flags, void **handle)
{
    Handle opened = 0;
    const quint32 status = bridge().openEx(key, flags, handle != nullptr ? &opened : nullptr);
    if (opened != 0)
        *handle = reinterpret_cast<void *>(opened); // NOLINT(performance-no-int-to-ptr): a mere token
    return status;
}

quint32 FT_Close(void *handle)
{
    return code(bridge().close(number(handle)));
}

quint32 FT_ResetDevice(void *handle)
{
    return code(bridge().resetDevice(number(handle)));
}

quint32 FT_SetBitMode(void *handle, quint8 mask, quint8 mode)
{
    return code(bridge().setBitMode(number(handle), mask, mode));
}

quint32 FT_SetLatencyTimer(void *handle, quint8 milliseconds)
{
    return code(bridge().setLatencyTimer(number(handle), milliseconds));
}

quint32 FT_SetUSBParameters(void *handle, quint32 inSize, quint32 outSize)
{
    return code(bridge().setUsbParameters(number(handle), inSize, outSize));
}

quint32 FT_SetFlowControl(void *handle, quint16 flow, quint8 xOn, quint8 xOff)
{
    return code(bridge().setFlowControl(number(handle), flow, xOn, xOff));
}

quint32 FT_Purge(void *handle, quint32 mask)
{
    return code(bridge().purge(number(handle), mask));
}

quint32 FT_SetTimeouts(void *handle, quint32 readMs, quint32 writeMs)
{
    return code(bridge().setTimeouts(number(handle), readMs, writeMs));
}

quint32 FT_GetStatus(void *handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events)
{
    return code(bridge().getStatus(number(handle), rxBytes, txBytes, events));
}

quint32 FT_Read(void *handle, void *buffer, quint32 length, quint32 *bytesRead)
{
    return code(bridge().read(number(handle), buffer, length, bytesRead));
}

quint32 FT_Write(void *handle, void *buffer, quint32 length, quint32 *bytesWritten)
{
    return code(bridge().write(number(handle), buffer, length, bytesWritten));
}

void QV1K_SetDeviceEventCallback(void (*callback)(void *context, int arrived), void *context)
{
    bridge().setDeviceEventCallback(callback, context);
}
