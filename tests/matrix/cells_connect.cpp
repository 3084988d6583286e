#include "tests/matrix/groups.h"

Group connectGroup()
{
    using enum Fault;
    using enum State;
    return {"Connect: the fault meets the query of the charge, or the opening where that is told",
            {{.name = "connect", .act = Act::Connect, .command = 0x0210, .waitMs = 500}},
            {
                cell(None, Idle, Nothing, 0),
                cell(StatusFailsOnce, Idle, Nothing, 0),
                cell(StatusFails, Disconnected, lostWaiting, 1),
                cell(ReadFailsOnce, Idle, ReadFailed, 0),
                cell(ReadFails, Idle, ReadFailed, 0),
                cell(ReadLoses, Idle, ReadFailed, 0),
                cell(WriteFailsOnce, Idle, TimedOut, 1),
                cell(WriteFails, Idle, TimedOut, 1),
                cell(WriteCut, Idle, TimedOut, 1),
                cell(ReplyLate, Idle, TimedOut, 1),
                cell(ReplyShort, Idle, TimedOut, 1),
                cell(ReplyLong, Idle, TimedOut, 1),
                cell(ReplyDoubled, Idle, TimedOut, 1),
                cell(ReplyCorrupt, Idle, Nothing, 0),
                cell(ReplyMissing, Idle, TimedOut, 1),
                cell(LeftOver, Idle, Nothing, 0),
                cell(Unplug, Disconnected, lostWaiting, 1),
                cell(Replug, Disconnected, lostWaiting, 1),
                cell(UnplugBesideOther, Disconnected, lostWaiting, 1),
                cell(HeldElsewhere, Disconnected, OpenFailed, 0, "Device connect failed"),
            },
            senselessForButtons({{{NotReady}, "only a readiness query is answered so"}})};
}

Group batteryGroup()
{
    using enum Fault;
    using enum State;
    return {"Charge: the timer asks for it, every 2 minutes while nothing runs",
            {{.name = "charge", .act = Act::Battery, .command = 0x0210, .waitMs = 500}},
            {
                cell(None, Idle, Nothing, 0),
                cell(StatusFailsOnce, Idle, Nothing, 0),
                cell(StatusFails, Disconnected, lostWaiting, 1),
                cell(ReadFailsOnce, Idle, ReadFailed, 0),
                cell(ReadFails, Idle, ReadFailed, 0),
                cell(ReadLoses, Idle, ReadFailed, 0),
                cell(WriteFailsOnce, Idle, TimedOut, 1),
                cell(WriteFails, Idle, TimedOut, 1),
                cell(WriteCut, Idle, TimedOut, 1),
                cell(ReplyLate, Idle, TimedOut, 1),
                cell(ReplyShort, Idle, TimedOut, 1),
                cell(ReplyLong, Idle, TimedOut, 1),
                cell(ReplyDoubled, Idle, TimedOut, 1),
                cell(ReplyCorrupt, Idle, Nothing, 0),
                cell(ReplyMissing, Idle, TimedOut, 1),
                cell(LeftOver, Idle, Nothing, 0),
                cell(Unplug, Disconnected, lostWaiting, 1),
                cell(Replug, Disconnected, lostWaiting, 1),
                cell(UnplugBesideOther, Disconnected, lostWaiting, 1),
                cell(MessageBox, Idle, Nothing, 0, "Are you sure you want to exit？"),
                cell(FileDialog, Idle, Nothing, 0, "Please select a valid path"),
                cell(EngineeringDialog, Idle, Nothing, 0),
            },
            {{{NotReady}, "only a readiness query is answered so"},
             {{HeldElsewhere}, "the device is open already"},
             {{Stall, BlockLost, BlockDoubled, BlockTorn, OddPieces}, noStream},
             {{DiskFull, DiskReadOnly, DiskGone}, noRecording},
             {{ListFails}, noList}}};
}
