#include "tests/matrix/groups.h"

namespace {

Row command(const char *name, const char *button, std::uint16_t code)
{
    return {.name = name, .act = Act::Command, .command = code, .waitMs = 2000, .button = button};
}

} // namespace

Group commandGroup()
{
    using enum Fault;
    using enum State;
    return {"Engineering commands: sent by the dialog, which judges no reply and shows no message",
            {
                command("set adc", "pushButton_set_adc", 0x0101),
                command("set mode", "pushButton_set_mode", 0x0100),
                command("set voltages", "pushButton_set_voltage", 0x0102),
                command("set timing", "pushButton_set_time", 0x0110),
                command("send eeprom", "pushButton_send_eep", 0x01EE),
                command("write eeprom", "pushButton_write_eep", 0x03E0),
                command("read eeprom", "pushButton_read_eep", 0x03E1),
                command("initialise eeprom", "pushButton_init_eep", 0x03EF),
            },
            {
                cell(StatusFailsOnce, Idle, Nothing, 0),
                cell(StatusFails, Disconnected, TimedOut | Lost | DeviceClosed, 2),
                cell(ReadFailsOnce, Idle, ReadFailed, 0),
                cell(ReadFails, Idle, ReadFailed, 0),
                cell(ReadLoses, Idle, ReadFailed, 0),
                cell(WriteFailsOnce, Idle, TimedOut, 2),
                cell(WriteFails, Idle, TimedOut, 2),
                cell(WriteCut, Idle, TimedOut, 2),
                cell(ReplyLate, Idle, TimedOut, 2),
                cell(ReplyShort, Idle, TimedOut, 2),
                cell(ReplyLong, Idle, TimedOut, 2),
                cell(ReplyDoubled, Idle, TimedOut, 2),
                cell(ReplyCorrupt, Idle, Nothing, 0),
                cell(ReplyMissing, Idle, TimedOut, 2),
            }};
}
