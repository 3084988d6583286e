#pragma once

#include "tests/ftdi/bridge/usbbed.h"

/// Descriptors as sysfs has them: that of the device, and behind it those of its one configuration.
[[nodiscard]] inline std::vector<std::uint8_t> descriptorsOf(const UsbBed::Identity &identity)
{
    const auto low = [](std::uint16_t value) {
        return static_cast<std::uint8_t>(value & 0xFFU);
    };
    const auto high = [](std::uint16_t value) {
        return static_cast<std::uint8_t>(value >> 8U);
    };
    const std::uint16_t id = identity.productId;
    const std::uint16_t size = identity.packetSize;
    const std::uint8_t release = id == 0x6014 ? 0x09 : 0x10;
    return {
        18, 1, 0x00, 0x02, 0,         0,          0,   64,  0x03, 0x04, low(id), high(id), 0x00, release,
        1,  2, 3,    1,    9,         2,          32,  0,   1,    1,    0,       0x80,     250, // configuration
        9,  4, 0,    0,    2,         255,        255, 255, 2,                                  // interface
        7,  5, 0x81, 2,    low(size), high(size), 0,                                            //
        7,  5, 0x02, 2,    low(size), high(size), 0};
}

[[nodiscard]] inline std::vector<std::uint8_t> descriptorsOfHub()
{
    return {18, 1, 0x00, 0x02, 9, 0, 1,  64, 0x6B, 0x1D, 0x02, 0x00, 0x10, 0x05,
            3,  2, 1,    1,    9, 2, 25, 0,  1,    1,    0,    0xE0, 0, //
            9,  4, 0,    0,    1, 9, 0,  0,  0,                         //
            7,  5, 0x81, 3,    4, 0, 12};
}
