#include "device/shortrest.h"

#include <qt_windows.h>
// After the header that it needs.
#include <timeapi.h>

// Missing in older headers.
#ifndef CREATE_WAITABLE_TIMER_HIGH_RESOLUTION
#define CREATE_WAITABLE_TIMER_HIGH_RESOLUTION 0x00000002
#endif

namespace {

constexpr LONGLONG millisecond = 10'000; ///< in the timers' unit of 100 ns
constexpr UINT clockPeriodMs = 1;

} // namespace

struct ShortRest::System
{
    System()
        : timer(CreateWaitableTimerExW(nullptr, nullptr, CREATE_WAITABLE_TIMER_HIGH_RESOLUTION,
                                       SYNCHRONIZE | TIMER_MODIFY_STATE))
    {
        if (timer == nullptr)
            raisedClock = timeBeginPeriod(clockPeriodMs) == TIMERR_NOERROR;
    }
    ~System()
    {
        if (timer != nullptr)
            CloseHandle(timer);
        if (raisedClock)
            timeEndPeriod(clockPeriodMs);
    }
    Q_DISABLE_COPY_MOVE(System)

    HANDLE timer;
    bool raisedClock = false;
};

ShortRest::ShortRest() : m_system(std::make_unique<System>()) {}

ShortRest::~ShortRest() = default;

void ShortRest::oneMillisecond()
{
    LARGE_INTEGER due;
    due.QuadPart = -millisecond; // from now
    if (m_system->timer != nullptr && SetWaitableTimer(m_system->timer, &due, 0, nullptr, nullptr, FALSE) &&
        WaitForSingleObject(m_system->timer, INFINITE) == WAIT_OBJECT_0)
        return;
    Sleep(1);
}
