#pragma once

#include <cstdint>

namespace d2xx {

/// Status codes of the D2XX interface.
enum class Status : std::uint32_t {
    Ok = 0,
    InvalidHandle = 1,
    DeviceNotFound = 2,
    DeviceNotOpened = 3, ///< held by another program, or no permission
    IoError = 4,
    InvalidParameter = 6,
    OtherError = 18
};

/// An open device. A number that never comes again: an old one is recognised and never looked into.
using Handle = std::uintptr_t;

/// One attached device as the interface lays it out.
struct DeviceRecord
{
    std::uint32_t flags; ///< bit 0: open here, bit 1: high speed
    std::uint32_t type;
    std::uint32_t id; ///< vendor in the upper half, product in the lower
    std::uint32_t locationId;
    char serialNumber[16]; ///< NUL-terminated
    char description[64];  ///< NUL-terminated
    Handle handle;         ///< 0 when it is not open here
};
static_assert(sizeof(void *) != 8 || sizeof(DeviceRecord) == 104);

} // namespace d2xx
