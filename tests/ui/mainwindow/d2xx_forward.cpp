// A driver library as the program loads it, by file name, whose calls go to a table that a test sets.

#include "d2xx/exports.h"
#include "tests/support/providercalls.h"

namespace {

d2xx::DeviceEventCallback deviceEvent = nullptr;
void *deviceEventContext = nullptr;

} // namespace

d2xx::Functions &providerCalls()
{
    static d2xx::Functions table;
    return table;
}

extern "C" {

QV1K_D2XX_EXPORT void Forward_use(const d2xx::Functions *functions)
{
    providerCalls() = *functions;
}

/// A detector was plugged in (1) or pulled out (0).
QV1K_D2XX_EXPORT void Forward_deviceEvent(int arrived)
{
    if (deviceEvent != nullptr)
        deviceEvent(deviceEventContext, arrived);
}

} // extern "C"

void QV1K_SetDeviceEventCallback(d2xx::DeviceEventCallback callback, void *context)
{
    deviceEvent = callback;
    deviceEventContext = context;
}

d2xx::Status QV1K_TellProblem(d2xx::Handle handle, char *text, std::uint32_t size)
{
    return providerCalls().tellProblem(handle, text, size);
}

d2xx::Status QV1K_CountLosses(d2xx::Handle handle, std::uint32_t *count)
{
    return providerCalls().countLosses(handle, count);
}

int QV1K_ListsAllBridges()
{
    return 1;
}
