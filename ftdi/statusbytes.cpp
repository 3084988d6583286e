#include "ftdi/statusbytes.h"

#include <algorithm>

namespace ftdi {

namespace {

constexpr std::size_t statusSize = 2;
/// Of the second byte: overrun, parity, framing, and an error anywhere in the chip's buffer.
constexpr std::uint8_t errorBits = 0x02 | 0x04 | 0x08 | 0x80;

} // namespace

std::span<std::uint8_t> withoutStatusBytes(std::span<std::uint8_t> transfer, std::size_t packetSize)
{
    std::size_t kept = 0;
    for (std::size_t packet = 0; packet < transfer.size(); packet += packetSize) {
        const auto bytes = transfer.subspan(packet, std::min(packetSize, transfer.size() - packet));
        if (bytes.size() <= statusSize)
            continue;
        std::copy(bytes.begin() + statusSize, bytes.end(),
                  transfer.begin() + static_cast<std::ptrdiff_t>(kept));
        kept += bytes.size() - statusSize;
    }
    return transfer.first(kept);
}

std::uint32_t lossesIn(std::span<const std::uint8_t> transfer, std::size_t packetSize)
{
    std::uint32_t losses = 0;
    for (std::size_t packet = 0; packet + 1 < transfer.size(); packet += packetSize) {
        if ((transfer[packet + 1] & errorBits) != 0)
            ++losses;
    }
    return losses;
}

} // namespace ftdi
