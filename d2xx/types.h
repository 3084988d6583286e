#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The D2XX interface of the USB-to-FIFO bridge, written here from its public description: what the program
/// and the libraries that provide it have in common. Widths are those of the interface on every platform.
namespace d2xx {

/// What a call returns. A library may return numbers that have no name here.
enum class Status : std::uint32_t {
    Ok = 0,
    InvalidHandle = 1,
    DeviceNotFound = 2,
    DeviceNotOpened = 3, ///< held by another program, or no permission
    IoError = 4,
    InvalidParameter = 6,
    OtherError = 18
};

/// An open device. Only the library that gave it looks at what it means.
using Handle = void *;

/// One attached device, as getDeviceInfoList() fills it in: 104 bytes.
struct DeviceRecord
{
    std::uint32_t flags; ///< flagOpened, flagHighSpeed
    std::uint32_t type;
    std::uint32_t id; ///< see recordId() in d2xx/families.h
    std::uint32_t locationId;
    char serialNumber[16]; ///< NUL-terminated
    char description[64];  ///< NUL-terminated
    Handle handle;         ///< null when it is not open
};
static_assert(sizeof(DeviceRecord) == 104);

inline constexpr std::uint32_t flagOpened = 1;    ///< open in this process
inline constexpr std::uint32_t flagHighSpeed = 2; ///< on a high-speed USB

/// Writes a text field of a record: cut where it does not fit, the rest filled with NUL.
template <std::size_t size>
constexpr void setText(char (&field)[size], std::string_view text)
{
    const std::string_view fitting = text.substr(0, size - 1);
    std::fill(std::copy(fitting.begin(), fitting.end(), field), field + size, '\0');
}

/// Reads a text field of a record, also one that is not terminated.
template <std::size_t size>
[[nodiscard]] constexpr std::string_view textOf(const char (&field)[size])
{
    return {field, static_cast<std::size_t>(std::find(field, field + size, '\0') - field)};
}

} // namespace d2xx
