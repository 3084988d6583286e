#pragma once

#include "d2xx/types.h"

// The calls are made by the platform's standard convention. On 64-bit systems there is but one, and
// naming it costs nothing.
#ifdef _WIN32
#define QV1K_D2XX_CALL __stdcall
#else
#define QV1K_D2XX_CALL
#endif

/// The fourteen calls, as function types: the program resolves pointers to them, a provider declares its
/// exports by them (see d2xx/exports.h), so that the two cannot differ.
///
/// Every call may come from any thread. On a handle that is not open it returns InvalidHandle; on one whose
/// cable was pulled, IoError until it is closed; with a null pointer, or an argument that d2xx/arguments.h
/// does not know, InvalidParameter.
namespace d2xx {

/// Makes the list of the attached devices that getDeviceInfoList() tells.
using CreateDeviceInfoList = Status QV1K_D2XX_CALL(std::uint32_t *count);
/// `records` has room for as many as were counted.
using GetDeviceInfoList = Status QV1K_D2XX_CALL(DeviceRecord *records, std::uint32_t *count);
/// `flags`: what `key` is, openBySerialNumber.
using OpenEx = Status QV1K_D2XX_CALL(void *key, std::uint32_t flags, Handle *handle);
using Close = Status QV1K_D2XX_CALL(Handle handle);
/// Drops what was not read.
using ResetDevice = Status QV1K_D2XX_CALL(Handle handle);
using SetBitMode = Status QV1K_D2XX_CALL(Handle handle, std::uint8_t mask, std::uint8_t mode);
using SetLatencyTimer = Status QV1K_D2XX_CALL(Handle handle, std::uint8_t milliseconds);
using SetUsbParameters = Status QV1K_D2XX_CALL(Handle handle, std::uint32_t inSize, std::uint32_t outSize);
using SetFlowControl = Status QV1K_D2XX_CALL(Handle handle, std::uint16_t flow, std::uint8_t xOn,
                                             std::uint8_t xOff);
using Purge = Status QV1K_D2XX_CALL(Handle handle, std::uint32_t mask);
/// 0 waits without limit.
using SetTimeouts = Status QV1K_D2XX_CALL(Handle handle, std::uint32_t readMs, std::uint32_t writeMs);
/// Bytes that wait to be read and to be sent. Does not wait.
using GetStatus = Status QV1K_D2XX_CALL(Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes,
                                        std::uint32_t *events);
/// Waits until `length` bytes have arrived, for the read time-out at most; tells how many there were.
using Read = Status QV1K_D2XX_CALL(Handle handle, void *buffer, std::uint32_t length,
                                   std::uint32_t *bytesRead);
/// Waits until all is sent, for the write time-out at most; tells how much was.
using Write = Status QV1K_D2XX_CALL(Handle handle, void *buffer, std::uint32_t length,
                                    std::uint32_t *bytesWritten);

/// Plugging (`arrived` 1) and unplugging (0), told on a thread of the library.
using DeviceEventCallback = void (*)(void *context, int arrived);
/// Not of the interface; a provider of this project may export it. A null callback ends the reports; once the
/// call returned, the callback before is not called any more.
using SetDeviceEventCallback = void(DeviceEventCallback callback, void *context);

/// Not of the interface; a provider that simulates a detector exports it. That it is there is enough, it is
/// never called: what such a provider delivers is not measured.
using IsSimulated = int();

/// Not of the interface; a provider of this project may export it. Writes in words, NUL-terminated UTF-8 of
/// one line cut to `size`, why an open device is gone, or with a null handle why the last openEx() failed.
/// An empty text when there is nothing to tell. A provider may know that a device is gone before getStatus()
/// fails.
using TellProblem = Status(Handle handle, char *text, std::uint32_t size);

/// Not of the interface; a provider of this project may export it. That it is exported is what counts, and it
/// is never called: its list holds every bridge of the maker, whatever is behind it, so that somebody has to
/// tell the detectors from the others.
using ListsAllBridges = int();

/// Not of the interface; a provider of this project may export it: how often the bridge said, since it was
/// opened, that it had lost bytes. Does not wait.
using CountLosses = Status(Handle handle, std::uint32_t *count);

} // namespace d2xx
