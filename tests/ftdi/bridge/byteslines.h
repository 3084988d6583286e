#pragma once

#include "tests/ftdi/bridge/lines.h"

#include <algorithm>
#include <deque>
#include <vector>

/// Lines that send what the test puts on them, and keep what is written to them.
class BytesLines : public Lines
{
public:
    using Bytes = std::vector<std::uint8_t>;

    void put(std::span<const std::uint8_t> bytes)
    {
        m_waiting.insert(m_waiting.end(), bytes.begin(), bytes.end());
    }
    [[nodiscard]] const Bytes &written() const { return m_written; }

    [[nodiscard]] std::size_t available(Time /*now*/) const override { return m_waiting.size(); }
    void take(std::span<std::uint8_t> out, Time /*now*/) override
    {
        const auto end = m_waiting.begin() + static_cast<std::ptrdiff_t>(out.size());
        std::copy(m_waiting.begin(), end, out.begin());
        m_waiting.erase(m_waiting.begin(), end);
    }
    [[nodiscard]] std::optional<Time> nextArrival(Time /*now*/) const override { return std::nullopt; }
    void write(std::span<const std::uint8_t> bytes, Time /*now*/) override
    {
        m_written.insert(m_written.end(), bytes.begin(), bytes.end());
    }
    void setSynchronous(bool /*isSynchronous*/) override {}
    void setLatency(simulator::Milliseconds /*latency*/) override {}
    void purge(Time /*now*/) override { m_waiting.clear(); }
    void lost() override { m_waiting.clear(); }

private:
    std::deque<std::uint8_t> m_waiting;
    Bytes m_written;
};
