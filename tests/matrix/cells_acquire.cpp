#include "tests/matrix/groups.h"

#include <algorithm>

namespace {

constexpr std::uint32_t complete = Halted | DeviceClosed | RecordingEnded;
constexpr const char *unplugged = "qv1k-acquire: the detector was unplugged";
constexpr const char *patternMissed = "qv1k-acquire: time-out: the detector did not confirm the test pattern";
constexpr const char *notStarted = "qv1k-acquire: time-out: the detector did not confirm the start";
constexpr const char *noFrame = "qv1k-acquire: time-out: no frame for 7 s, 1 of 3 received";
constexpr const char *lostFrame = "qv1k-acquire: the detector was unplugged, 1 of 3 received";

/// In the second frame.
constexpr std::int64_t inSecondFrame = 5000000;

Row acquire(const char *name, std::uint16_t command, int waitMs)
{
    return {.name = name,
            .act = Act::Acquire,
            .command = command,
            .waitMs = waitMs,
            .arguments = {"--timeout", "8"}};
}

/// Every column that the entries leave out.
std::vector<Senseless> restOf(const std::vector<Entry> &entries, const char *why)
{
    std::vector<Fault> rest;
    for (const Column &column : allColumns()) {
        const bool isTold =
            std::ranges::any_of(entries, [&](const Entry &entry) { return entry.fault == column.fault; });
        if (!isTold)
            rest.push_back(column.fault);
    }
    return {{rest, why}};
}

Group groupOf(const char *title, const Row &row, const std::vector<Entry> &entries)
{
    return {title,
            {row},
            entries,
            restOf(entries,
                   "the same conversation as in the window, where it is tested, or it makes no sense there "
                   "either; there are no dialogs")};
}

} // namespace

Group acquireOpenGroup()
{
    using enum Fault;
    using enum State;
    return groupOf(
        "Without a window: qv1k-acquire finds and opens the detector", acquire("acquire opens", 0, 0),
        {
            cell(None, Succeeded, complete, 0),
            cell(HeldElsewhere, Failed, OpenFailed, 0,
                 "qv1k-acquire: the detector QV1K cannot be opened; another program may hold it"),
            cell(ListFails, Failed, Nothing, 0, "qv1k-acquire: no detector found"),
            cell(DiskReadOnly, Failed, Nothing, 0, "qv1k-acquire: the folder out is not writable: ..."),
            cell(DiskGone, Failed, Nothing, 0, "qv1k-acquire: the folder out cannot be created"),
        });
}

Group acquirePatternGroup()
{
    using enum Fault;
    using enum State;
    Row row = acquire("acquire chooses a test pattern", 0x03C0, 5000);
    row.arguments.insert(row.arguments.end(), {"--test-pattern", "1"});
    return groupOf("qv1k-acquire chooses a test pattern", row,
                   {
                       cell(None, Succeeded, complete, 0),
                       cell(StatusFailsOnce, Succeeded, complete, 0),
                       cell(StatusFails, Failed, TimedOut | lost, 5, unplugged),
                       cell(ReadFailsOnce, Failed, ReadFailed | DeviceClosed, 0, patternMissed),
                       cell(WriteFailsOnce, Failed, TimedOut | DeviceClosed, 5, patternMissed),
                       cell(ReplyLong, Succeeded, TimedOut | complete, 5),
                       cell(ReplyCorrupt, Failed, DeviceClosed, 0, patternMissed),
                       cell(ReplyMissing, Failed, TimedOut | DeviceClosed, 5, patternMissed),
                       cell(LeftOver, Failed, DeviceClosed, 0, patternMissed),
                       cell(Unplug, Failed, TimedOut | lost, 5, unplugged),
                   });
}

Group acquireReadinessGroup()
{
    using enum Fault;
    using enum State;
    return groupOf("qv1k-acquire asks for readiness", acquire("acquire asks for readiness", 0x03AA, 5000),
                   {
                       cell(StatusFailsOnce, Succeeded, complete, 0),
                       cell(StatusFails, Failed, TimedOut | lost, 5, unplugged),
                       cell(ReadFailsOnce, Succeeded, ReadFailed | complete, 1),
                       cell(WriteFailsOnce, Succeeded, TimedOut | complete, 6),
                       cell(ReplyLate, Succeeded, TimedOut | complete, 6),
                       cell(ReplyCorrupt, Succeeded, complete, 1),
                       cell(LeftOver, Succeeded, complete, 1),
                       cell(NotReady, Succeeded, complete, 3),
                       cell(Unplug, Failed, TimedOut | lost, 5, unplugged),
                   });
}

Group acquireStartGroup()
{
    using enum Fault;
    using enum State;
    return groupOf("qv1k-acquire starts the detector", acquire("acquire starts", 0x03A0, 5000),
                   {
                       cell(StatusFails, Failed, TimedOut | lost, 5, unplugged),
                       cell(ReadFailsOnce, Failed, ReadFailed | DeviceClosed, 1, notStarted),
                       cell(WriteFailsOnce, Failed, TimedOut | DeviceClosed, 6, notStarted),
                       cell(ReplyCorrupt, Failed, DeviceClosed, 1, notStarted),
                       cell(LeftOver, Failed, DeviceClosed, 1, notStarted),
                       cell(Unplug, Failed, TimedOut | lost, 5, unplugged),
                   });
}

Group acquireStreamGroup()
{
    using enum Fault;
    using enum State;
    constexpr std::uint32_t silent = Interrupted | RecordingCut | Halted | DeviceClosed;
    return groupOf("qv1k-acquire receives frames; the fault meets the second of three",
                   {.name = "acquire receives",
                    .act = Act::Acquire,
                    .imageBytes = inSecondFrame,
                    .arguments = {"--timeout", "7"}},
                   {
                       cell(StatusFailsOnce, Succeeded, complete, 0),
                       cell(StatusFails, Failed, lost | RecordingCut, 1, lostFrame),
                       cell(ReadFailsOnce, Succeeded, StreamReadFailed | complete, 0),
                       cell(WriteFailsOnce, Failed, silent, 8, noFrame),
                       cell(Stall, Failed, silent, 8, noFrame),
                       cell(BlockDoubled, Succeeded, Surplus | complete, 0),
                       cell(OddPieces, Succeeded, complete, 0),
                       cell(Unplug, Failed, lost | RecordingCut, 1, lostFrame),
                       cell(Replug, Failed, lost | RecordingCut, 1, lostFrame),
                       cell(UnplugBesideOther, Failed, lost | RecordingCut, 1, lostFrame),
                   });
}

Group acquireStopGroup()
{
    using enum Fault;
    using enum State;
    constexpr std::uint32_t unconfirmed = TimedOut | DeviceClosed | RecordingEnded;
    return groupOf("qv1k-acquire halts the detector: all frames are stored by then",
                   acquire("acquire halts", 0x03A1, 3500),
                   {
                       cell(StatusFails, Succeeded, unconfirmed | Lost, 4),
                       cell(ReadFailsOnce, Succeeded, ReadFailed | DeviceClosed | RecordingEnded, 0),
                       cell(WriteFailsOnce, Succeeded, unconfirmed, 4),
                       cell(ReplyMissing, Succeeded, unconfirmed, 4),
                       cell(Unplug, Succeeded, unconfirmed | Lost, 4),
                   });
}

Group acquireDiskGroup()
{
    using enum Fault;
    using enum State;
    constexpr const char *none = "qv1k-acquire: 3 files could not be written; the log tells which";
    return groupOf("qv1k-acquire records on a disk that goes bad as the detector is started",
                   acquire("acquire records", 0x03A0, 0),
                   {
                       cell(DiskFull, Failed, FileCut | complete, 0, none),
                       cell(DiskReadOnly, Failed, FileNotOpened | complete, 0, none),
                       cell(DiskGone, Failed, FileNotOpened | complete, 0, none),
                   });
}
