#pragma once

#include <QtGlobal>

/// The calls of the D2XX interface as the virtual detector exports them. Their meaning is that of the
/// interface; what they do here is told in simulator/bridge.h. On 64-bit Windows there is one calling
/// convention only, so none is named.
extern "C" {

Q_DECL_EXPORT quint32 FT_CreateDeviceInfoList(quint32 *count);
Q_DECL_EXPORT quint32 FT_GetDeviceInfoList(void *records, quint32 *count);
Q_DECL_EXPORT quint32 FT_OpenEx(void *key, quint32 flags, void **handle);
Q_DECL_EXPORT quint32 FT_Close(void *handle);
Q_DECL_EXPORT quint32 FT_ResetDevice(void *handle);
Q_DECL_EXPORT quint32 FT_SetBitMode(void *handle, quint8 mask, quint8 mode);
Q_DECL_EXPORT quint32 FT_SetLatencyTimer(void *handle, quint8 milliseconds);
Q_DECL_EXPORT quint32 FT_SetUSBParameters(void *handle, quint32 inSize, quint32 outSize);
Q_DECL_EXPORT quint32 FT_SetFlowControl(void *handle, quint16 flow, quint8 xOn, quint8 xOff);
Q_DECL_EXPORT quint32 FT_Purge(void *handle, quint32 mask);
Q_DECL_EXPORT quint32 FT_SetTimeouts(void *handle, quint32 readMs, quint32 writeMs);
Q_DECL_EXPORT quint32 FT_GetStatus(void *handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events);
Q_DECL_EXPORT quint32 FT_Read(void *handle, void *buffer, quint32 length, quint32 *bytesRead);
Q_DECL_EXPORT quint32 FT_Write(void *handle, void *buffer, quint32 length, quint32 *bytesWritten);

/// Has `callback` told from a thread of the library when a detector is plugged in (`arrived` 1) or unplugged
/// (0). With a null callback, and before the library is unloaded, the thread is ended; once that call
/// returned, the old callback is not called any more.
Q_DECL_EXPORT void QV1K_SetDeviceEventCallback(void (*callback)(void *context, int arrived), void *context);
}
