#include "tests/matrix/groups.h"

namespace {

constexpr const char *noPattern = "test failed";
constexpr const char *noStart = "Play failed";

} // namespace

Group patternGroup()
{
    using enum Fault;
    using enum State;
    return {"Test pattern: play with a test image chosen; the fault meets the choice of the pattern",
            {{.name = "test pattern", .act = Act::PlayPattern, .command = 0x03C0, .waitMs = 5000}},
            {
                cell(None, Sampling, Nothing, 0),
                cell(StatusFailsOnce, Sampling, Nothing, 0),
                cell(StatusFails, Disconnected, lostWaiting, 5, noPattern),
                cell(ReadFailsOnce, Idle, ReadFailed, 0, noPattern),
                cell(ReadFails, Idle, ReadFailed, 0, noPattern),
                cell(ReadLoses, Idle, ReadFailed, 0, noPattern),
                cell(WriteFailsOnce, Idle, TimedOut, 5, noPattern),
                cell(WriteFails, Idle, TimedOut, 5, noPattern),
                cell(WriteCut, Idle, TimedOut, 5, noPattern),
                cell(ReplyLate, Idle, TimedOut, 5, noPattern),
                cell(ReplyShort, Idle, TimedOut, 5, noPattern),
                cell(ReplyLong, Sampling, TimedOut, 5),
                cell(ReplyDoubled, Sampling, TimedOut, 5),
                cell(ReplyCorrupt, Idle, Nothing, 0, noPattern),
                cell(ReplyMissing, Idle, TimedOut, 5, noPattern),
                cell(LeftOver, Idle, Nothing, 0, noPattern),
                cell(Unplug, Disconnected, lostWaiting, 5, noPattern),
                cell(Replug, Disconnected, lostWaiting, 5, noPattern),
                cell(UnplugBesideOther, Disconnected, lostWaiting, 5, noPattern),
            },
            senselessForButtons({{{NotReady}, "only a readiness query is answered so"},
                                 {{HeldElsewhere}, "the device is open already"}})};
}

Group readinessGroup()
{
    using enum Fault;
    using enum State;
    return {"Readiness: play; the fault meets the first readiness query",
            {{.name = "readiness", .act = Act::Play, .command = 0x03AA, .waitMs = 5000}},
            {
                cell(None, Sampling, Nothing, 0),
                cell(StatusFailsOnce, Sampling, Nothing, 0),
                cell(StatusFails, Disconnected, lostWaiting, 5),
                cell(ReadFailsOnce, Sampling, ReadFailed, 1),
                cell(ReadFails, Idle, ReadFailed, 3, waitCancelled),
                cell(ReadLoses, Sampling, ReadFailed, 1),
                cell(WriteFailsOnce, Sampling, TimedOut, 6, waitShown),
                cell(WriteFails, Idle, TimedOut, 6, waitCancelled),
                cell(WriteCut, Sampling, TimedOut, 6, waitShown),
                cell(ReplyLate, Sampling, TimedOut, 6, waitShown),
                cell(ReplyShort, Sampling, TimedOut, 6, waitShown),
                cell(ReplyLong, Sampling, TimedOut, 5),
                cell(ReplyDoubled, Sampling, TimedOut, 5),
                cell(ReplyCorrupt, Sampling, Nothing, 1),
                cell(ReplyMissing, Sampling, TimedOut, 6, waitShown),
                cell(LeftOver, Sampling, Nothing, 1),
                cell(NotReady, Sampling, Nothing, 3, waitShown),
                cell(Unplug, Disconnected, lostWaiting, 5),
                cell(Replug, Disconnected, lostWaiting, 5),
                cell(UnplugBesideOther, Disconnected, lostWaiting, 5),
            },
            senselessForButtons({{{HeldElsewhere}, "the device is open already"}})};
}

Group startGroup()
{
    using enum Fault;
    using enum State;
    return {"Start: play; the fault meets the start command",
            {{.name = "start", .act = Act::Play, .command = 0x03A0, .waitMs = 5000}},
            {
                cell(None, Sampling, Nothing, 0),
                cell(StatusFailsOnce, Sampling, Nothing, 0),
                cell(StatusFails, Disconnected, lostWaiting, 5, noStart),
                cell(ReadFailsOnce, Idle, ReadFailed, 0, noStart),
                cell(ReadFails, Idle, ReadFailed, 0, noStart),
                cell(ReadLoses, Idle, ReadFailed, 0, noStart),
                cell(WriteFailsOnce, Idle, TimedOut, 5, noStart),
                cell(WriteFails, Idle, TimedOut, 5, noStart),
                cell(WriteCut, Idle, TimedOut, 5, noStart),
                cell(ReplyLate, Idle, TimedOut, 5, noStart),
                cell(ReplyShort, Idle, TimedOut, 5, noStart),
                cell(ReplyLong, Sampling, TimedOut, 5),
                cell(ReplyDoubled, Sampling, TimedOut, 5),
                cell(ReplyCorrupt, Idle, Nothing, 0, noStart),
                cell(ReplyMissing, Idle, TimedOut, 5, noStart),
                cell(LeftOver, Idle, Nothing, 0, noStart),
                cell(Unplug, Disconnected, lostWaiting, 5, noStart),
                cell(Replug, Disconnected, lostWaiting, 5, noStart),
                cell(UnplugBesideOther, Disconnected, lostWaiting, 5, noStart),
            },
            senselessForButtons({{{NotReady}, "only a readiness query is answered so"},
                                 {{HeldElsewhere}, "the device is open already"}})};
}
