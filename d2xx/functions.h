#pragma once

#include "d2xx/calls.h"

namespace d2xx {

/// A library's calls, resolved by name. All are set, but for the optional ones, or the table is of no use.
struct Functions
{
    CreateDeviceInfoList *createDeviceInfoList = nullptr;
    GetDeviceInfoList *getDeviceInfoList = nullptr;
    OpenEx *openEx = nullptr;
    Close *close = nullptr;
    ResetDevice *resetDevice = nullptr;
    SetBitMode *setBitMode = nullptr;
    SetLatencyTimer *setLatencyTimer = nullptr;
    SetUsbParameters *setUsbParameters = nullptr;
    SetFlowControl *setFlowControl = nullptr;
    Purge *purge = nullptr;
    SetTimeouts *setTimeouts = nullptr;
    GetStatus *getStatus = nullptr;
    Read *read = nullptr;
    Write *write = nullptr;

    SetDeviceEventCallback *setDeviceEventCallback = nullptr; ///< optional
    TellProblem *tellProblem = nullptr;                       ///< optional
    CountLosses *countLosses = nullptr;                       ///< optional
    ListsAllBridges *listsAllBridges = nullptr;               ///< optional: set where the library lists them
    IsSimulated *isSimulated = nullptr;                       ///< optional: set where the library simulates

    /// Calls `visit(name, pointer)` with each of the fourteen exported names and its place in the table.
    template <typename Visit>
    void forEachCall(Visit visit)
    {
        visit("FT_CreateDeviceInfoList", createDeviceInfoList);
        visit("FT_GetDeviceInfoList", getDeviceInfoList);
        visit("FT_OpenEx", openEx);
        visit("FT_Close", close);
        visit("FT_ResetDevice", resetDevice);
        visit("FT_SetBitMode", setBitMode);
        visit("FT_SetLatencyTimer", setLatencyTimer);
        visit("FT_SetUSBParameters", setUsbParameters);
        visit("FT_SetFlowControl", setFlowControl);
        visit("FT_Purge", purge);
        visit("FT_SetTimeouts", setTimeouts);
        visit("FT_GetStatus", getStatus);
        visit("FT_Read", read);
        visit("FT_Write", write);
    }

    /// The same with the calls that a library may lack.
    template <typename Visit>
    void forEachOptionalCall(Visit visit)
    {
        visit("QV1K_SetDeviceEventCallback", setDeviceEventCallback);
        visit("QV1K_TellProblem", tellProblem);
        visit("QV1K_CountLosses", countLosses);
        visit("QV1K_ListsAllBridges", listsAllBridges);
        visit("QV1K_IsSimulated", isSimulated);
    }
};

} // namespace d2xx
