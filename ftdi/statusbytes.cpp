#include "ftdi/statusbytes.h"

#include <algorithm>

namespace ftdi {

namespace {

constexpr std::size_t statusSize = 2;
/// Of the second byte: overrun, parity, framing, and an error anywhere in the chip's buffer.
constexpr std::uint8_t errorBits = 0x02 | 0x04 | 0x08 | 0x80;

/// Calls `visit` with each packet of a transfer. A packet size may be anything but 0.
template <typename Byte, typename Visit>
void forEachPacket(std::span<Byte> transfer, std::size_t packetSize, Visit visit)
{
    for (auto rest = transfer; !rest.empty();) {
        const auto packet = rest.first(std::min(packetSize, rest.size()));
        visit(packet);
        rest = rest.subspan(packet.size());
    }
}

} // namespace

std::span<std::uint8_t> withoutStatusBytes(std::span<std::uint8_t> transfer, std::size_t packetSize)
{
    auto end = transfer.begin();
    forEachPacket(transfer, packetSize, [&end](std::span<std::uint8_t> packet) {
        if (packet.size() > statusSize)
            end = std::copy(packet.begin() + statusSize, packet.end(), end);
    });
    return {transfer.begin(), end};
}

std::uint32_t lossesIn(std::span<const std::uint8_t> transfer, std::size_t packetSize)
{
    std::uint32_t losses = 0;
    forEachPacket(transfer, packetSize, [&losses](std::span<const std::uint8_t> packet) {
        if (packet.size() >= statusSize && (packet[1] & errorBits) != 0)
            ++losses;
    });
    return losses;
}

} // namespace ftdi
