#pragma once

#include "tests/matrix/fault.h"

#include <cstdint>

/// A fault and the moment from which on it happens.
struct Arming
{
    Fault fault = Fault::None;
    /// Class and code of the command that is being written then; 0 for none.
    std::uint16_t command = 0;
    /// So many image bytes have arrived since it was armed; 0 for none. With neither it happens at once.
    std::int64_t imageBytes = 0;
    /// How long a late reply is held back.
    int lateMs = 0;
};

/// What the faulty library exports beside the calls of a driver library. The environment arms it when it is
/// loaded: QV1K_MATRIX_FAULT names the column, QV1K_MATRIX_COMMAND (hexadecimal), QV1K_MATRIX_IMAGE_BYTES and
/// QV1K_MATRIX_LATE_MS the moment.
namespace FaultyLibrary {

using Arm = void(const Arming *arming);
/// Ends the fault: what was held back arrives, what was pulled is plugged in.
using Heal = void();
/// How often the fault has happened since it was armed.
using Happened = int();
/// Tells the program that something was plugged in (1) or pulled out (0), without any such thing.
using Report = void(int arrived);

} // namespace FaultyLibrary
