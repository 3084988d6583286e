#pragma once

#include <cstdint>
#include <numeric>
#include <vector>

/// Bytes that count upwards.
inline std::vector<std::uint8_t> numbered(std::size_t count, std::uint8_t first = 0)
{
    std::vector<std::uint8_t> bytes(count);
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}
