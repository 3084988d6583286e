#pragma once

#include "ftdi/usbport.h"

/// Why a bridge was not opened, told apart, with what helps.
namespace ftdi {

[[nodiscard]] Refusal unusableUsb();
[[nodiscard]] Refusal notPluggedIn(const std::string &serialNumber);
/// `node`: the bridge's file below /dev.
[[nodiscard]] Refusal notPermitted(const std::string &node);
/// Names the programs that have the node open, as far as this user may see them.
[[nodiscard]] Refusal heldElsewhere(const std::string &node);
[[nodiscard]] Refusal chipIsSilent();

} // namespace ftdi
