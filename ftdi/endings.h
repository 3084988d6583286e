#pragma once

namespace ftdi {

/// Why an open bridge is gone, in words for the user.
inline constexpr const char *unplugged = "The bridge was unplugged.";
inline constexpr const char *takesNothing =
    "The bridge does not take what is sent to it, however often that is tried. Try another cable or another "
    "USB port.";

} // namespace ftdi
