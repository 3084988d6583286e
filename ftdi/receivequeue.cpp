#include "ftdi/receivequeue.h"

#include <algorithm>

namespace ftdi {

ReceiveQueue::ReceiveQueue(std::size_t capacity)
    : m_capacity(capacity), m_ring(std::make_unique_for_overwrite<std::uint8_t[]>(capacity))
{
}

std::span<const std::uint8_t> ReceiveQueue::append(std::span<const std::uint8_t> bytes,
                                                   std::chrono::milliseconds patience,
                                                   const std::stop_token &stop)
{
    std::unique_lock lock(m_mutex);
    const auto mayGoOn = [this] {
        return m_size < m_capacity || m_hasEnded;
    };
    while (!bytes.empty() && m_roomMade.wait_for(lock, stop, patience, mayGoOn) && !m_hasEnded) {
        const auto fitting = bytes.first(std::min(bytes.size(), m_capacity - m_size));
        put(fitting);
        bytes = bytes.subspan(fitting.size());
        m_bytesArrived.notify_all();
    }
    return bytes;
}

Status ReceiveQueue::take(std::span<std::uint8_t> out, Deadline deadline, std::size_t &taken)
{
    taken = 0;
    std::unique_lock lock(m_mutex);
    const auto mayGoOn = [this] {
        return m_size > 0 || m_hasEnded;
    };
    while (m_status != Status::InvalidHandle) {
        taken += get(out.subspan(taken));
        if (m_hasEnded && m_size == 0 && taken == 0)
            break;
        if (taken == out.size() || m_hasEnded || !m_bytesArrived.wait_until(lock, deadline, mayGoOn))
            return Status::Ok;
    }
    return m_status;
}

void ReceiveQueue::put(std::span<const std::uint8_t> bytes)
{
    // An empty ring is filled from its beginning again: a reader that keeps up touches little memory.
    if (m_size == 0)
        m_first = 0;
    const std::size_t begin = (m_first + m_size) % m_capacity;
    const std::size_t upToEnd = std::min(bytes.size(), m_capacity - begin);
    std::copy_n(bytes.begin(), upToEnd, &m_ring[begin]);
    std::copy(bytes.begin() + static_cast<std::ptrdiff_t>(upToEnd), bytes.end(), m_ring.get());
    m_size += bytes.size();
}

std::size_t ReceiveQueue::get(std::span<std::uint8_t> out)
{
    const std::size_t length = std::min(out.size(), m_size);
    if (length == 0)
        return 0;
    const std::size_t upToEnd = std::min(length, m_capacity - m_first);
    std::copy_n(&m_ring[m_first], upToEnd, out.begin());
    std::copy_n(m_ring.get(), length - upToEnd, out.begin() + static_cast<std::ptrdiff_t>(upToEnd));
    m_first = (m_first + length) % m_capacity;
    m_size -= length;
    m_roomMade.notify_all();
    return length;
}

Status ReceiveQueue::waiting(std::size_t &bytes) const
{
    const std::lock_guard lock(m_mutex);
    bytes = m_size;
    return m_size > 0 || !m_hasEnded ? Status::Ok : m_status;
}

void ReceiveQueue::clear()
{
    const std::lock_guard lock(m_mutex);
    m_size = 0;
    m_roomMade.notify_all();
}

void ReceiveQueue::end(Status why)
{
    const std::lock_guard lock(m_mutex);
    m_hasEnded = true;
    if (m_status != Status::InvalidHandle)
        m_status = why;
    if (m_status == Status::InvalidHandle)
        m_size = 0;
    m_bytesArrived.notify_all();
    m_roomMade.notify_all();
}

void ReceiveQueue::announceEnd(Status why)
{
    const std::lock_guard lock(m_mutex);
    if (m_status == Status::Ok)
        m_status = why;
}

bool ReceiveQueue::hasEnded() const
{
    const std::lock_guard lock(m_mutex);
    return m_hasEnded;
}

Status ReceiveQueue::status() const
{
    const std::lock_guard lock(m_mutex);
    return m_status;
}

} // namespace ftdi
