#pragma once

#include "simulator/clock.h"

#include <cstdint>
#include <optional>
#include <span>

/// What hangs on a bridge's data lines. Not thread-safe; time is handed in.
class Lines
{
public:
    using Time = simulator::Nanoseconds;

    Lines() = default;
    Lines(const Lines &) = delete;
    Lines &operator=(const Lines &) = delete;
    virtual ~Lines() = default;

    /// Bytes that the chip can send now.
    [[nodiscard]] virtual std::size_t available(Time now) const = 0;
    /// Takes the first of them: `out` is no longer than what is available.
    virtual void take(std::span<std::uint8_t> out, Time now) = 0;
    /// When there will be more; none when nothing is on its way.
    [[nodiscard]] virtual std::optional<Time> nextArrival(Time now) const = 0;
    /// What the host wrote.
    virtual void write(std::span<const std::uint8_t> bytes, Time now) = 0;

    virtual void setSynchronous(bool isSynchronous) = 0;
    virtual void setLatency(simulator::Milliseconds latency) = 0;
    /// Drops what has left the lines and was not sent.
    virtual void purge(Time now) = 0;
    /// The bridge has no power any more.
    virtual void lost() = 0;
};
