#pragma once

#include "tests/ftdi/bridge/lines.h"

#include <array>
#include <memory>
#include <vector>

/// The bridge's chip as the USB sees it: control requests, and packets that begin with two status bytes.
/// Not thread-safe; time is handed in.
class EmulatedChip
{
public:
    using Time = Lines::Time;
    using Bytes = std::vector<std::uint8_t>;
    using Setup = std::array<std::uint8_t, 8>;

    static constexpr std::size_t highSpeedPacket = 512;
    static constexpr std::size_t fullSpeedPacket = 64;
    static constexpr std::uint8_t synchronousFifo = 0x40;
    static constexpr std::uint8_t overrun = 0x02; ///< in the second status byte

    explicit EmulatedChip(std::unique_ptr<Lines> lines) : m_lines(std::move(lines)) {}

    /// A request to the chip; true when it knows it.
    bool control(const Setup &setup, Time now);
    /// What goes into a transfer of that length: some data now, or the status alone when the latency time is
    /// over; nothing before.
    [[nodiscard]] Bytes fill(std::size_t length, Time now);
    /// When fill() may have something where it has nothing now.
    [[nodiscard]] Time nextFill(Time now) const;

    [[nodiscard]] Lines &lines() { return *m_lines; }
    [[nodiscard]] std::uint8_t bitMode() const { return m_bitMode; }
    /// Every mode that was set since the chip got its power.
    [[nodiscard]] const Bytes &bitModes() const { return m_bitModes; }
    void setPacketSize(std::size_t size) { m_packetSize = size; }
    /// Bits of the second status byte of the packet that is sent next.
    void noteErrors(std::uint8_t bits) { m_errors = bits; }

private:
    void setBitMode(std::uint8_t mode);

    std::unique_ptr<Lines> m_lines;
    std::size_t m_packetSize = highSpeedPacket;
    std::uint8_t m_bitMode = 0;
    Bytes m_bitModes;
    std::uint8_t m_errors = 0;
    simulator::Milliseconds m_latency{16};
    Time m_lastFill{0};
};
