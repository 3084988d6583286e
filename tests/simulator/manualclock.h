#pragma once

#include "simulator/clock.h"

#include <atomic>

/// A clock that stands still until it is told otherwise. Whoever waits on it is at its deadline at once.
class ManualClock final : public simulator::Clock
{
public:
    [[nodiscard]] simulator::Nanoseconds now() const override { return m_now.load(); }
    void wait(std::unique_lock<std::mutex> &, std::condition_variable &,
              simulator::Nanoseconds deadline) override
    {
        if (deadline > m_now.load())
            m_now = deadline;
    }

    void advance(simulator::Nanoseconds by) { m_now = m_now.load() + by; }

private:
    std::atomic<simulator::Nanoseconds> m_now{std::chrono::seconds(1000)};
};
