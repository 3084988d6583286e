#include "tests/matrix/fault.h"

#include <algorithm>
#include <array>

namespace {

constexpr auto columns = std::to_array<Column>({
    {Fault::None, "no fault", "nothing goes wrong: what the others are held against"},
    {Fault::StatusFailsOnce, "status fails once", "one look at the waiting bytes (FT_GetStatus) fails"},
    {Fault::StatusFails, "status fails for ever", "every look fails, though the device is listed"},
    {Fault::ReadFailsOnce, "read fails once", "one read fails; what waits stays"},
    {Fault::ReadFails, "read fails for ever", "every read fails"},
    {Fault::ReadLoses, "read fails and consumes", "one read fails, and what waited is lost"},
    {Fault::WriteFailsOnce, "write fails once", "one write fails; the detector gets nothing of it"},
    {Fault::WriteFails, "write fails for ever", "every write fails"},
    {Fault::WriteCut, "write is cut", "the first 3 bytes of one write reach the detector"},
    {Fault::ReplyLate, "reply late", "it comes when it is waited for no more"},
    {Fault::ReplyShort, "reply short", "its last byte is missing"},
    {Fault::ReplyLong, "reply long", "one byte 00 follows it"},
    {Fault::ReplyDoubled, "reply doubled", "it comes twice in a row"},
    {Fault::ReplyCorrupt, "reply corrupt", "every byte is inverted"},
    {Fault::ReplyMissing, "reply missing", "the command is carried out, and nothing comes back"},
    {Fault::LeftOver, "left over from before", "the echo of an earlier halt waits in front of the reply"},
    {Fault::NotReady, "not ready for long", "three readiness queries are answered with not ready"},
    {Fault::Stall, "stall in mid-block", "the stream ends in the middle of a block"},
    {Fault::BlockLost, "lost block", "one block does not arrive"},
    {Fault::BlockDoubled, "doubled block", "one block arrives twice in a row"},
    {Fault::BlockTorn, "torn block", "512 bytes are missing at the end of a block"},
    {Fault::OddPieces, "oddly cut blocks", "from then on no look finds more than 997 bytes"},
    {Fault::Unplug, "unplug", "the cable is pulled, and that is told"},
    {Fault::Replug, "replug", "the cable is pulled and back at once; the old handle stays dead"},
    {Fault::UnplugBesideOther, "unplug beside another", "the cable is pulled while another bridge stays"},
    {Fault::HeldElsewhere, "held elsewhere", "another program has the device open"},
    {Fault::ListFails, "list fails", "the list of what is attached cannot be had"},
    {Fault::DiskFull, "disk full", "nothing more fits on the disk"},
    {Fault::DiskReadOnly, "disk read-only", "the folder of the recording takes nothing"},
    {Fault::DiskGone, "disk gone", "the folder of the recording is gone"},
    {Fault::MessageBox, "message box open", "it happens while a message box stands there"},
    {Fault::FileDialog, "file dialog open", "it happens while the folder is being chosen"},
    {Fault::EngineeringDialog, "engineering dialog open", "it happens while the engineering dialog is open"},
});

} // namespace

std::span<const Column> allColumns()
{
    return columns;
}

const Column &columnOf(Fault fault)
{
    return columns.at(static_cast<std::size_t>(fault));
}

Fault faultNamed(std::string_view name)
{
    const auto *const found =
        std::ranges::find_if(columns, [&](const Column &column) { return name == column.name; });
    return found == columns.end() ? Fault::None : found->fault;
}
