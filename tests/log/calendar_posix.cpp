#include "tests/log/calendar.h"

#include <atomic>

#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

std::atomic<int> daysAhead = 0;

} // namespace

// Stands in for the call of the system's library.
extern "C" int gettimeofday(timeval *now, void *) noexcept
{
    timespec time = {};
    syscall(SYS_clock_gettime, CLOCK_REALTIME, &time);
    now->tv_sec = time.tv_sec + daysAhead * 86400L;
    now->tv_usec = time.tv_nsec / 1000;
    return 0;
}

void turnCalendar(int days)
{
    daysAhead = days;
}
