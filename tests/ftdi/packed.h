#pragma once

#include "tests/ftdi/numbered.h"

#include <algorithm>
#include <span>

inline constexpr std::size_t packetSize = 512;

/// A transfer as the bridge makes it: two status bytes before every 510 bytes.
inline std::vector<std::uint8_t> packed(std::span<const std::uint8_t> payload)
{
    std::vector<std::uint8_t> transfer;
    do {
        const auto part = payload.first(std::min(payload.size(), packetSize - 2));
        payload = payload.subspan(part.size());
        transfer.insert(transfer.end(), {0x32, 0x60});
        transfer.insert(transfer.end(), part.begin(), part.end());
    } while (!payload.empty());
    return transfer;
}
