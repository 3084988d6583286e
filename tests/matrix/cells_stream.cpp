#include "tests/matrix/groups.h"

#include <algorithm>
#include <array>

namespace {

/// In the block after the next two.
constexpr std::int64_t soon = 300000;

std::vector<Senseless> senselessInStream(std::vector<Senseless> more)
{
    using enum Fault;
    more.push_back(
        {{ReplyLate, ReplyShort, ReplyLong, ReplyDoubled, ReplyCorrupt, ReplyMissing, LeftOver, NotReady},
         "what comes is the stream"});
    more.push_back({{HeldElsewhere}, "the device is open already"});
    more.push_back({{ListFails}, noList});
    return more;
}

/// A recording that runs ends with the device.
std::vector<Entry> streamEntries(std::uint32_t recording, const char *page)
{
    using enum Fault;
    using enum State;
    return {
        cell(None, Sampling, Nothing, 0),
        cell(StatusFailsOnce, Sampling, Nothing, 0),
        cell(StatusFails, Disconnected, lost | recording, 1, "", page),
        cell(ReadFailsOnce, Sampling, StreamReadFailed, 0),
        cell(ReadFails, Silent, StreamReadFailed | Interrupted, 5),
        cell(ReadLoses, Silent, StreamReadFailed | Interrupted, 5),
        cell(WriteFailsOnce, Silent, Interrupted, 5),
        cell(WriteFails, Silent, Interrupted, 5),
        cell(WriteCut, Silent, Interrupted, 5),
        cell(Stall, Silent, Interrupted, 5),
        cell(BlockLost, Silent, Interrupted, 5),
        cell(BlockDoubled, Sampling, Surplus, 0),
        cell(BlockTorn, Silent, Interrupted, 5),
        cell(OddPieces, Sampling, Nothing, 0),
        cell(Unplug, Disconnected, lost | recording, 0, "", page),
        cell(Replug, Disconnected, lost | recording, 0, "", page),
        cell(UnplugBesideOther, Disconnected, lost | recording, 0, "", page),
        cell(MessageBox, Sampling, Nothing, 0, exitQuestion),
        cell(FileDialog, Sampling, Nothing, 0, noPath),
        cell(EngineeringDialog, Sampling, Nothing, 0),
    };
}

/// The same behind a box that stands there.
std::vector<Entry> behindBox(const char *text, std::vector<Entry> entries)
{
    std::erase_if(entries, [](const Entry &entry) { return isDialog(entry.fault); });
    for (Entry &entry : entries)
        entry.expected.boxes = text;
    return entries;
}

/// What differs from streaming, or may.
std::vector<Entry> essentialOfStream(std::vector<Entry> entries)
{
    using enum Fault;
    constexpr std::array left{ReadFails, ReadLoses, WriteFailsOnce, WriteFails,
                              WriteCut,  BlockLost, BlockTorn};
    std::erase_if(entries,
                  [&](const Entry &entry) { return std::ranges::find(left, entry.fault) != left.end(); });
    return entries;
}

Senseless asInStreaming()
{
    using enum Fault;
    return {{ReadFails, ReadLoses, WriteFailsOnce, WriteFails, WriteCut, BlockLost, BlockTorn},
            "the stream falls silent as in the row of streaming, and by the stall here"};
}

} // namespace

Group streamGroup()
{
    using enum Fault;
    return {"Streaming: pictures come in; the fault meets the middle of a frame",
            {{.name = "streaming", .act = Act::Watch, .imageBytes = soon}},
            streamEntries(Nothing, ""),
            senselessInStream({{{DiskFull, DiskReadOnly, DiskGone}, noRecording}})};
}

Group calibrationGroup()
{
    using enum Fault;
    return {"Calibration: a reference is captured while the fault meets the stream",
            {{.name = "calibrate", .act = Act::Calibrate, .imageBytes = soon}},
            essentialOfStream(streamEntries(Nothing, "")),
            senselessInStream({{{DiskFull, DiskReadOnly, DiskGone}, noRecording}, asInStreaming()})};
}

Group recordingGroup()
{
    using enum Fault;
    using enum State;
    std::vector<Entry> entries = essentialOfStream(streamEntries(RecordingCut, "Save Stop"));
    constexpr const char *none = "Save Success, 3 of 3 frames stored, 3 files failed";
    entries.push_back(cell(DiskFull, Sampling, FileCut | RecordingEnded, 0, "", none));
    entries.push_back(cell(DiskReadOnly, Sampling, FileNotOpened | RecordingEnded, 0, "", none));
    entries.push_back(cell(DiskGone, Sampling, FileNotOpened | RecordingEnded, 0, "", none));
    return {"Recording: 500 pictures are being stored while the fault meets the stream, or 3 on a bad disk",
            {{.name = "record", .act = Act::Record, .imageBytes = soon}},
            entries,
            senselessInStream({asInStreaming()})};
}

Group refusedDisconnectGroup()
{
    using enum Fault;
    return {"Disconnect while it samples: refused; the fault meets the stream while the box stands there",
            {{.name = "disconnect while sampling", .act = Act::DisconnectSampling, .imageBytes = soon}},
            behindBox("Device is running,Please stop sample first",
                      essentialOfStream(streamEntries(Nothing, ""))),
            senselessInStream({{{DiskFull, DiskReadOnly, DiskGone}, noRecording},
                               asInStreaming(),
                               {{MessageBox, FileDialog, EngineeringDialog}, noPress}})};
}
