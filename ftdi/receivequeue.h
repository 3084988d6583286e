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

    /// Appends what there is room for, and waits for room for so long when there is none or until it is told
    /// to stop. Returns what did not fit; an ended queue takes nothing.
    std::span<const std::uint8_t> append(std::span<const std::uint8_t> bytes,
                                         std::chrono::milliseconds patience, const std::stop_token &stop);

    /// Fills `out`; waits for what is missing until the deadline. `taken` is how much there was, in every
    /// case. Not Ok only when the queue was ended and there was nothing. Of two callers at once each gets
    /// some of what arrives.
    Status take(std::span<std::uint8_t> out, Deadline deadline, std::size_t &taken);

    /// How many bytes can be taken. Not Ok when there are none and no more come.
    Status waiting(std::size_t &bytes) const;
    void clear();

    /// Nothing more comes: everyone who waits, now or later, gets what there is and then this status.
    /// InvalidHandle is for good, and drops what there is.
    void end(Status why);
    /// The end is near: the status says so at once, and what is still appended can be taken before end().
    void announceEnd(Status why);
    [[nodiscard]] bool hasEnded() const;
    /// Ok as long as no end was announced.
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
    bool m_hasEnded = false;
};

} // namespace ftdi
