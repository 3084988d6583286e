#include "tests/matrix/groups.h"

Group stopGroup()
{
    using enum Fault;
    using enum State;
    return {"Stop: play pressed while it samples; the fault meets the halt",
            {{.name = "stop", .act = Act::Stop, .command = 0x03A1, .waitMs = 3500}},
            {
                cell(None, Idle, Halted, 0),
                cell(StatusFailsOnce, Idle, Halted, 0),
                cell(StatusFails, Disconnected, lostWaiting, 4),
                cell(ReadFailsOnce, Idle, ReadFailed, 0),
                cell(ReadFails, Idle, ReadFailed, 0),
                cell(ReadLoses, Idle, ReadFailed, 0),
                cell(WriteFailsOnce, Idle, TimedOut, 4),
                cell(WriteFails, Idle, TimedOut, 4),
                cell(WriteCut, Idle, TimedOut, 4),
                cell(ReplyLate, Idle, TimedOut, 4),
                cell(ReplyShort, Idle, TimedOut, 4),
                cell(ReplyLong, Idle, TimedOut | Halted, 4),
                cell(ReplyDoubled, Idle, TimedOut | Halted, 4),
                cell(ReplyCorrupt, Idle, Nothing, 0),
                cell(ReplyMissing, Idle, TimedOut, 4),
                cell(Unplug, Disconnected, Lost | DeviceClosed, 0),
                cell(Replug, Disconnected, Lost | DeviceClosed, 0),
                cell(UnplugBesideOther, Disconnected, Lost | DeviceClosed, 0),
                cell(MessageBox, Idle, Halted, 0, "Are you sure you want to exit？"),
                cell(FileDialog, Idle, Halted, 0, "Please select a valid path"),
                cell(EngineeringDialog, Idle, Halted, 0),
            },
            {{{NotReady}, "only a readiness query is answered so"},
             {{HeldElsewhere}, "the device is open already"},
             {{LeftOver}, "in front of the echo is the stream"},
             {{Stall, BlockLost, BlockDoubled, BlockTorn, OddPieces},
              "they stand with the stream, which is stopped after them"},
             {{DiskFull, DiskReadOnly, DiskGone}, noRecording},
             {{ListFails}, noList}}};
}
