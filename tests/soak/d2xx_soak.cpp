// The virtual detector in a driver library that counts what goes through it, and now and then lets the other
// threads go first, so that the program's threads meet in ever new ways.

#include "d2xx/exports.h"
#include "tests/soak/soakcounts.h"
#include "tests/support/providercalls.h"
#include "tests/support/virtualcalls.h"

#include <random>
#include <thread>

using namespace d2xx;

namespace {

constexpr unsigned int oneCallIn = 64; ///< is delayed
constexpr unsigned int mostYields = 3000;

d2xx::Functions callsWithEvents()
{
    Functions calls = callsOfVirtualDetector(QStringLiteral(QV1K_VIRTUAL_LIBRARY));
    QLibrary library(QStringLiteral(QV1K_VIRTUAL_LIBRARY));
    calls.setDeviceEventCallback =
        reinterpret_cast<SetDeviceEventCallback *>(library.resolve("QV1K_SetDeviceEventCallback"));
    return calls;
}

const Functions &detector()
{
    static const Functions calls = callsWithEvents();
    return calls;
}

SoakCounts counts;

void delay()
{
    thread_local std::minstd_rand random(std::random_device{}());
    if (random() % oneCallIn != 0)
        return;
    for (auto left = random() % mostYields; left > 0; --left)
        std::this_thread::yield();
}

Status counted(Status status)
{
    if (status != Status::Ok)
        ++counts.failed;
    return status;
}

Status QV1K_D2XX_CALL openAndCount(void *key, std::uint32_t flags, Handle *handle)
{
    const Status status = counted(detector().openEx(key, flags, handle));
    if (status == Status::Ok)
        ++counts.opened;
    return status;
}

Status QV1K_D2XX_CALL lookAndCount(Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes,
                                   std::uint32_t *events)
{
    delay();
    return counted(detector().getStatus(handle, rxBytes, txBytes, events));
}

Status QV1K_D2XX_CALL readAndCount(Handle handle, void *buffer, std::uint32_t length,
                                   std::uint32_t *bytesRead)
{
    delay();
    const Status status = counted(detector().read(handle, buffer, length, bytesRead));
    if (status == Status::Ok)
        counts.bytesRead += std::min(length, *bytesRead);
    return status;
}

Status QV1K_D2XX_CALL writeAndCount(Handle handle, void *buffer, std::uint32_t length,
                                    std::uint32_t *bytesWritten)
{
    delay();
    ++counts.writes;
    return counted(detector().write(handle, buffer, length, bytesWritten));
}

Functions countingCalls()
{
    Functions calls = detector();
    calls.openEx = &openAndCount;
    calls.getStatus = &lookAndCount;
    calls.read = &readAndCount;
    calls.write = &writeAndCount;
    return calls;
}

} // namespace

d2xx::Functions &providerCalls()
{
    static Functions calls = countingCalls();
    return calls;
}

extern "C" {

QV1K_D2XX_EXPORT const SoakCounts *Soak_counts()
{
    return &counts;
}
}

void QV1K_SetDeviceEventCallback(DeviceEventCallback callback, void *context)
{
    detector().setDeviceEventCallback(callback, context);
}
