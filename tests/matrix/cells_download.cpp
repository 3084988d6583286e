#include "tests/matrix/groups.h"

namespace {

constexpr const char *refused = "set time sequence fail";
constexpr const char *taken = "set success";

} // namespace

Group downloadGroup()
{
    using enum Fault;
    using enum State;
    return {"Download: set on the page of the settings; the fault meets the first of three packets",
            {{.name = "download", .act = Act::Download, .command = 0x0110, .waitMs = 2000}},
            {
                cell(None, Idle, Nothing, 0, taken),
                cell(StatusFailsOnce, Idle, Nothing, 0, taken),
                cell(StatusFails, Disconnected, TimedOut | Lost | DeviceClosed, 2, refused),
                cell(ReadFailsOnce, Idle, ReadFailed, 0, refused),
                cell(ReadFails, Idle, ReadFailed, 0, refused),
                cell(ReadLoses, Idle, ReadFailed, 0, refused),
                cell(WriteFailsOnce, Idle, TimedOut, 2, refused),
                cell(WriteFails, Idle, TimedOut, 2, refused),
                cell(WriteCut, Idle, TimedOut, 2, refused),
                cell(ReplyLate, Idle, TimedOut, 2, refused),
                cell(ReplyShort, Idle, TimedOut, 2, taken),
                cell(ReplyLong, Idle, TimedOut, 2, taken),
                cell(ReplyDoubled, Idle, TimedOut, 2, taken),
                cell(ReplyCorrupt, Idle, Nothing, 0, refused),
                cell(ReplyMissing, Idle, TimedOut, 2, refused),
                cell(LeftOver, Idle, Nothing, 0, refused),
                cell(Unplug, Disconnected, TimedOut | Lost | DeviceClosed, 2, refused),
                cell(Replug, Disconnected, TimedOut | Lost | DeviceClosed, 2, refused),
                cell(UnplugBesideOther, Disconnected, TimedOut | Lost | DeviceClosed, 2, refused),
            },
            senselessForButtons({{{NotReady}, "only a readiness query is answered so"},
                                 {{HeldElsewhere}, "the device is open already"}})};
}
