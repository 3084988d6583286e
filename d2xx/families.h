#pragma once

#include <cstdint>

namespace d2xx {

/// A family of bridges.
struct Family
{
    std::uint16_t product; ///< its id on the USB
    std::uint32_t type;    ///< DeviceRecord::type
    int channels;
};

inline constexpr std::uint16_t vendor = 0x0403;
inline constexpr Family family2232H{0x6010, 6, 2};
inline constexpr Family family4232H{0x6011, 7, 4};
inline constexpr Family family232H{0x6014, 8, 1};
inline constexpr Family familyX{0x6015, 9, 1};

/// DeviceRecord::id: vendor in the upper half, product in the lower.
[[nodiscard]] constexpr std::uint32_t recordId(const Family &family)
{
    return std::uint32_t{vendor} << 16U | family.product;
}

} // namespace d2xx
