#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// The two bytes with which the bridge begins each packet: they tell how its lines are.
namespace ftdi {

/// Takes them out of a transfer, in place. The packet size is not 0.
std::span<std::uint8_t> withoutStatusBytes(std::span<std::uint8_t> transfer, std::size_t packetSize);

/// How many packets of a transfer say that bytes before them were lost or damaged.
std::uint32_t lossesIn(std::span<const std::uint8_t> transfer, std::size_t packetSize);

} // namespace ftdi
