#pragma once

#include "d2xx/calls.h"

#ifdef _WIN32
#define QV1K_D2XX_EXPORT __declspec(dllexport)
#else
#define QV1K_D2XX_EXPORT __attribute__((visibility("default")))
#endif

// What a provider exports: only providers include this. A definition whose type differs does not compile.
extern "C" {

QV1K_D2XX_EXPORT d2xx::CreateDeviceInfoList FT_CreateDeviceInfoList;
QV1K_D2XX_EXPORT d2xx::GetDeviceInfoList FT_GetDeviceInfoList;
QV1K_D2XX_EXPORT d2xx::OpenEx FT_OpenEx;
QV1K_D2XX_EXPORT d2xx::Close FT_Close;
QV1K_D2XX_EXPORT d2xx::ResetDevice FT_ResetDevice;
QV1K_D2XX_EXPORT d2xx::SetBitMode FT_SetBitMode;
QV1K_D2XX_EXPORT d2xx::SetLatencyTimer FT_SetLatencyTimer;
QV1K_D2XX_EXPORT d2xx::SetUsbParameters FT_SetUSBParameters;
QV1K_D2XX_EXPORT d2xx::SetFlowControl FT_SetFlowControl;
QV1K_D2XX_EXPORT d2xx::Purge FT_Purge;
QV1K_D2XX_EXPORT d2xx::SetTimeouts FT_SetTimeouts;
QV1K_D2XX_EXPORT d2xx::GetStatus FT_GetStatus;
QV1K_D2XX_EXPORT d2xx::Read FT_Read;
QV1K_D2XX_EXPORT d2xx::Write FT_Write;

/// Optional: a provider that reports plugging and unplugging itself defines it.
QV1K_D2XX_EXPORT d2xx::SetDeviceEventCallback QV1K_SetDeviceEventCallback;
/// Optional: a provider that says in words what went wrong defines it.
QV1K_D2XX_EXPORT d2xx::TellProblem QV1K_TellProblem;
/// Optional: a provider that hears from the bridge that bytes were lost defines it.
QV1K_D2XX_EXPORT d2xx::CountLosses QV1K_CountLosses;
/// Optional: a provider that lists whatever bridge there is defines it.
QV1K_D2XX_EXPORT d2xx::ListsAllBridges QV1K_ListsAllBridges;
/// Optional: a provider that simulates defines it.
QV1K_D2XX_EXPORT d2xx::IsSimulated QV1K_IsSimulated;
}
