#pragma once

#include "tests/ftdi/bridge/lines.h"

#include <algorithm>

/// Lines that send a stream of that many bytes as fast as the chip takes them: a byte tells its place modulo
/// 251, which divides no packet and no transfer. Each byte that is written is answered with the next one.
class StreamLines : public Lines
{
public:
    explicit StreamLines(std::uint64_t length) : m_left(length) {}

    [[nodiscard]] static std::uint8_t byteAt(std::uint64_t place)
    {
        return static_cast<std::uint8_t>(place % 251);
    }

    [[nodiscard]] std::size_t available(Time /*now*/) const override
    {
        return static_cast<std::size_t>(std::min<std::uint64_t>(m_left, 65536));
    }
    void take(std::span<std::uint8_t> out, Time /*now*/) override
    {
        std::uint8_t next = byteAt(m_place);
        for (std::uint8_t &byte : out) {
            byte = next;
            next = next == 250 ? std::uint8_t{0} : static_cast<std::uint8_t>(next + 1);
        }
        m_place += out.size();
        m_left -= out.size();
    }
    [[nodiscard]] std::optional<Time> nextArrival(Time /*now*/) const override { return std::nullopt; }
    void write(std::span<const std::uint8_t> bytes, Time /*now*/) override { m_left += bytes.size(); }
    void setSynchronous(bool /*isSynchronous*/) override {}
    void setLatency(simulator::Milliseconds /*latency*/) override {}
    void purge(Time /*now*/) override {}
    void lost() override { m_left = 0; }

private:
    std::uint64_t m_place = 0;
    std::uint64_t m_left;
};
