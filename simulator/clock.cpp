#include "simulator/clock.h"

namespace simulator {

Nanoseconds SteadyClock::now() const
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

void SteadyClock::wait(std::unique_lock<std::mutex> &lock, std::condition_variable &wake,
                       Nanoseconds deadline)
{
    using TimePoint = std::chrono::time_point<std::chrono::steady_clock, Nanoseconds>;
    wake.wait_until(lock, TimePoint(deadline));
}

} // namespace simulator
