#pragma once

#include "d2xx/types.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <stop_token>

namespace ftdi {

using d2xx::Status;

/// Received bytes on their way from the reader thread to the program: a ring buffer that never loses one.
/// All members may be called from any thread.
class ReceiveQueue
{
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Memory is used as it is filled.
    explicit ReceiveQueue(std::size_t capacity);

    /// Appends all bytes and waits for room as long as there is none. Gives up, and drops the rest, when it
    /// is told to stop or the queue was ended.
    void append(std::span<const std::uint8_t> bytes, const std::stop_token &stop);

    /// Fills `out`; waits for what is missing until the deadline. `taken` is how much there was, in every
    /// case. Not Ok only when the queue was ended. Of two callers at once each gets some of what arrives.
    Status take(std::span<std::uint8_t> out, Deadline deadline, std::size_t &taken);

    [[nodiscard]] std::size_t size() const;
    void clear();

    /// Lets everyone who waits, now or later, return this status. InvalidHandle is for good.
    void end(Status why);
    /// Ok as long as it was not ended.
    [[nodiscard]] Status status() const;

private:
    void put(std::span<const std::uint8_t> bytes);
    std::size_t get(std::span<std::uint8_t> out);

    const std::size_t m_capacity;
    const std::unique_ptr<std::uint8_t[]> m_ring;
    mutable std::mutex m_mutex; // guards what follows
    std::condition_variable m_bytesArrived;
    std::condition_variable_any m_roomMade;
    std::size_t m_first = 0;
    std::size_t m_size = 0;
    Status m_status = Status::Ok;
};

} // namespace ftdi
