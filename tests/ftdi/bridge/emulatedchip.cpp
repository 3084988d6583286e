#include "tests/ftdi/bridge/emulatedchip.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::uint8_t modemStatus = 0x32;
constexpr std::uint8_t lineStatus = 0x60;
constexpr std::size_t statusSize = 2;
constexpr std::uint8_t dropTaken = 1; ///< of Reset: what the host sent; 2 is what the host has not read

enum Request : std::uint8_t {
    Reset = 0x00,
    ModemControl = 0x01,
    FlowControl = 0x02,
    BaudRate = 0x03,
    LineFormat = 0x04,
    SetLatency = 0x09,
    SetBitMode = 0x0B
};

} // namespace

bool EmulatedChip::control(const Setup &setup, Time now)
{
    const std::uint8_t low = setup[2];
    const std::uint8_t high = setup[3];
    switch (setup[1]) {
    case Reset:
        if (low != dropTaken) // 0, everything: the mode stays all the same
            m_lines->purge(now);
        return true;
    case SetLatency:
        m_latency = simulator::Milliseconds(low);
        m_lines->setLatency(m_latency);
        return true;
    case SetBitMode:
        setBitMode(high);
        return true;
    case ModemControl:
    case FlowControl:
    case BaudRate:
    case LineFormat:
        return true;
    default:
        return false;
    }
}

void EmulatedChip::setBitMode(std::uint8_t mode)
{
    m_bitMode = mode;
    m_bitModes.push_back(mode);
    m_lines->setSynchronous(mode == synchronousFifo);
}

EmulatedChip::Bytes EmulatedChip::fill(std::size_t length, Time now)
{
    std::size_t left = m_lines->available(now);
    if (left == 0 && now < m_lastFill + m_latency)
        return {};
    Bytes transfer(length);
    std::size_t filled = 0;
    bool isFull = true;
    while (isFull && length - filled >= m_packetSize) {
        const std::size_t payload = std::min(left, m_packetSize - statusSize);
        transfer[filled] = modemStatus;
        transfer[filled + 1] = static_cast<std::uint8_t>(lineStatus | std::exchange(m_errors, 0));
        m_lines->take(std::span(transfer).subspan(filled + statusSize, payload), now);
        filled += statusSize + payload;
        left -= payload;
        isFull = payload == m_packetSize - statusSize;
    }
    transfer.resize(filled);
    m_lastFill = now;
    return transfer;
}

EmulatedChip::Time EmulatedChip::nextFill(Time now) const
{
    return std::min<Time>(m_lastFill + m_latency, m_lines->nextArrival(now).value_or(Time::max()));
}
