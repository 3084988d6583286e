#pragma once

#include <span>
#include <string_view>

/// What goes wrong: the columns of the matrix.
enum class Fault {
    None,
    StatusFailsOnce,
    StatusFails,
    ReadFailsOnce,
    ReadFails,
    ReadLoses,
    WriteFailsOnce,
    WriteFails,
    WriteCut,
    ReplyLate,
    ReplyShort,
    ReplyLong,
    ReplyDoubled,
    ReplyCorrupt,
    ReplyMissing,
    LeftOver,
    NotReady,
    Stall,
    BlockLost,
    BlockDoubled,
    BlockTorn,
    OddPieces,
    Unplug,
    Replug,
    UnplugBesideOther,
    HeldElsewhere,
    ListFails,
    DiskFull,
    DiskReadOnly,
    DiskGone,
    MessageBox,
    FileDialog,
    EngineeringDialog
};

struct Column
{
    Fault fault;
    const char *name;
    const char *meaning;
};

/// Every column, in the order of the document.
[[nodiscard]] std::span<const Column> allColumns();

[[nodiscard]] const Column &columnOf(Fault fault);

/// None when no column has that name.
[[nodiscard]] Fault faultNamed(std::string_view name);

/// A box or dialog that stands open.
[[nodiscard]] constexpr bool isDialog(Fault fault)
{
    return fault == Fault::MessageBox || fault == Fault::FileDialog || fault == Fault::EngineeringDialog;
}

/// What goes wrong between the program and the detector.
[[nodiscard]] constexpr bool isOfTheWire(Fault fault)
{
    return fault > Fault::None && fault < Fault::DiskFull;
}

[[nodiscard]] constexpr bool isOfTheDisk(Fault fault)
{
    return fault == Fault::DiskFull || fault == Fault::DiskReadOnly || fault == Fault::DiskGone;
}
