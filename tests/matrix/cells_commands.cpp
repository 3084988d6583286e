#include "tests/matrix/groups.h"

#include <algorithm>
#include <array>

namespace {

Row command(const char *name, const char *button, std::uint16_t code)
{
    return {.name = name, .act = Act::Command, .command = code, .waitMs = 2000, .button = button};
}

Row readback(const char *name, const char *button, std::uint16_t code)
{
    return {.name = name, .act = Act::Command, .command = code, .waitMs = 5000, .button = button};
}

/// What every row of the dialog has in common. Where the program waits, one row of each kind stands for the
/// others, which are the same code.
std::vector<Senseless> senselessForDialog(std::vector<Senseless> more = {})
{
    using enum Fault;
    more.push_back({{NotReady}, "only a readiness query is answered so"});
    more.push_back({{HeldElsewhere}, "the device is open already"});
    more.push_back({{Stall, BlockLost, BlockDoubled, BlockTorn, OddPieces}, noStream});
    more.push_back({{DiskFull, DiskReadOnly, DiskGone}, noRecording});
    more.push_back({{ListFails}, noList});
    more.push_back(
        {{MessageBox, FileDialog}, "the engineering dialog is modal: none of them can open beside it"});
    more.push_back({{EngineeringDialog}, "it is open in every cell of these rows"});
    return more;
}

Senseless sameAs(const char *why)
{
    using enum Fault;
    return {{ReadFails, WriteFailsOnce, WriteFails, WriteCut, ReplyLate, ReplyShort, ReplyLong, ReplyDoubled,
             Replug, UnplugBesideOther, StatusFails},
            why};
}

std::vector<Entry> allOf(int seconds, const Entry &leftOver)
{
    using enum Fault;
    using enum State;
    return {
        cell(None, Idle, Nothing, 0),
        cell(StatusFailsOnce, Idle, Nothing, 0),
        cell(StatusFails, Disconnected, lostWaiting, seconds),
        cell(ReadFailsOnce, Idle, ReadFailed, 0),
        cell(ReadFails, Idle, ReadFailed, 0),
        cell(ReadLoses, Idle, ReadFailed, 0),
        cell(WriteFailsOnce, Idle, TimedOut, seconds),
        cell(WriteFails, Idle, TimedOut, seconds),
        cell(WriteCut, Idle, TimedOut, seconds),
        cell(ReplyLate, Idle, TimedOut, seconds),
        cell(ReplyShort, Idle, TimedOut, seconds),
        cell(ReplyLong, Idle, TimedOut, seconds),
        cell(ReplyDoubled, Idle, TimedOut, seconds),
        cell(ReplyCorrupt, Idle, Nothing, 0),
        cell(ReplyMissing, Idle, TimedOut, seconds),
        leftOver,
        cell(Unplug, Disconnected, lostWaiting, seconds),
        cell(Replug, Disconnected, lostWaiting, seconds),
        cell(UnplugBesideOther, Disconnected, lostWaiting, seconds),
    };
}

std::vector<Entry> someOf(int seconds, const Entry &leftOver)
{
    using enum Fault;
    using enum State;
    return {
        cell(None, Idle, Nothing, 0),
        cell(StatusFailsOnce, Idle, Nothing, 0),
        cell(ReadFailsOnce, Idle, ReadFailed, 0),
        cell(ReadLoses, Idle, ReadFailed, 0),
        cell(ReplyCorrupt, Idle, Nothing, 0),
        cell(ReplyMissing, Idle, TimedOut, seconds),
        leftOver,
        cell(Unplug, Disconnected, lostWaiting, seconds),
    };
}

constexpr std::array alike{Fault::WriteFails, Fault::WriteCut, Fault::Replug, Fault::UnplugBesideOther};

std::vector<Entry> essentialOf(std::vector<Entry> entries)
{
    std::erase_if(entries,
                  [](const Entry &entry) { return std::ranges::find(alike, entry.fault) != alike.end(); });
    return entries;
}

Senseless asInCommand()
{
    return {{alike.begin(), alike.end()}, "as in the row of set adc"};
}

constexpr int commandSeconds = 2;
constexpr int readbackSeconds = 5;

/// Six bytes in front of six: the first six are taken.
const Entry leftOverEcho = cell(Fault::LeftOver, State::Idle, Nothing, 0);
/// Six bytes in front of another number: they never add up.
const Entry leftOverData = cell(Fault::LeftOver, State::Idle, TimedOut, readbackSeconds);

} // namespace

Group commandGroup()
{
    return {"Engineering command: sent by the dialog, which judges no reply and shows no message",
            {command("set adc", "pushButton_set_adc", 0x0101)},
            allOf(commandSeconds, leftOverEcho),
            senselessForDialog()};
}

Group otherCommandsGroup()
{
    return {"The other engineering commands",
            {
                command("set mode", "pushButton_set_mode", 0x0100),
                command("set voltages", "pushButton_set_voltage", 0x0102),
                command("set timing", "pushButton_set_time", 0x0110),
                command("send eeprom", "pushButton_send_eep", 0x01EE),
                command("write eeprom", "pushButton_write_eep", 0x03E0),
                command("read eeprom", "pushButton_read_eep", 0x03E1),
                command("initialise eeprom", "pushButton_init_eep", 0x03EF),
            },
            someOf(commandSeconds, leftOverEcho),
            senselessForDialog({sameAs("the wait is that of set adc, where it is tested")})};
}

Group readbackGroup()
{
    return {"Read-back: asked for in the engineering dialog, which shows what fits and no message",
            {readback("version", "pushButton_ver_readback", 0x02FA)},
            essentialOf(allOf(readbackSeconds, leftOverData)),
            senselessForDialog({asInCommand()})};
}

Group otherReadbacksGroup()
{
    return {"The other read-backs",
            {
                readback("parameters", "pushButton_parm_readback", 0x0200),
                readback("eeprom words", "pushButton_eep_readback", 0x02EE),
            },
            someOf(readbackSeconds, leftOverData),
            senselessForDialog({sameAs("the wait is that of the version, where it is tested")})};
}
