#pragma once

#include <QtGlobal>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace simulator {

using Nanoseconds = std::chrono::nanoseconds;
using Milliseconds = std::chrono::milliseconds;

/// The time that the virtual detector lives in. Monotonic, from an origin of its own. Any thread.
class Clock
{
public:
    Clock() = default;
    virtual ~Clock() = default;
    Q_DISABLE_COPY_MOVE(Clock)

    [[nodiscard]] virtual Nanoseconds now() const = 0;

    /// Lets go of `lock` until `wake` is notified or `deadline` has come, and holds it again on return. May
    /// return early.
    virtual void wait(std::unique_lock<std::mutex> &lock, std::condition_variable &wake,
                      Nanoseconds deadline) = 0;
};

/// The machine's own monotonic clock.
class SteadyClock final : public Clock
{
public:
    [[nodiscard]] Nanoseconds now() const override;
    void wait(std::unique_lock<std::mutex> &lock, std::condition_variable &wake,
              Nanoseconds deadline) override;
};

} // namespace simulator
