#pragma once

#include <cstdint>

/// The calls of the D2XX interface as this library exports them. Their meaning is that of the interface; what
/// they do here is told in ftdi/registry.h and ftdi/opendevice.h. Where the system has no usable USB, or
/// memory is short, they return FT_OTHER_ERROR.
extern "C" {

std::uint32_t FT_CreateDeviceInfoList(std::uint32_t *count);
std::uint32_t FT_GetDeviceInfoList(void *records, std::uint32_t *count);
std::uint32_t FT_OpenEx(void *key, std::uint32_t flags, void **handle);
std::uint32_t FT_Close(void *handle);
std::uint32_t FT_ResetDevice(void *handle);
std::uint32_t FT_SetBitMode(void *handle, std::uint8_t mask, std::uint8_t mode);
std::uint32_t FT_SetLatencyTimer(void *handle, std::uint8_t milliseconds);
std::uint32_t FT_SetUSBParameters(void *handle, std::uint32_t inSize, std::uint32_t outSize);
std::uint32_t FT_SetFlowControl(void *handle, std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff);
std::uint32_t FT_Purge(void *handle, std::uint32_t mask);
std::uint32_t FT_SetTimeouts(void *handle, std::uint32_t readMs, std::uint32_t writeMs);
std::uint32_t FT_GetStatus(void *handle, std::uint32_t *rxBytes, std::uint32_t *txBytes,
                           std::uint32_t *events);
std::uint32_t FT_Read(void *handle, void *buffer, std::uint32_t length, std::uint32_t *bytesRead);
std::uint32_t FT_Write(void *handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten);
}
