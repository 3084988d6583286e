#include "tests/matrix/groups.h"

namespace {

/// What plays no part in what is plugged and pulled.
std::vector<Senseless> senselessForCables(std::vector<Senseless> more)
{
    using enum Fault;
    more.push_back({{ReplyLate, ReplyShort, ReplyLong, ReplyDoubled, ReplyCorrupt, ReplyMissing, LeftOver,
                     NotReady, WriteFailsOnce, WriteFails, WriteCut},
                    noExchange});
    more.push_back(
        {{ReadFailsOnce, ReadFails, ReadLoses, Stall, BlockLost, BlockDoubled, BlockTorn, OddPieces},
         "what it does to the stream is told there, and the cable adds nothing"});
    more.push_back(
        {{DiskFull, DiskReadOnly, DiskGone}, "what is pulled ends a recording as in its own rows"});
    more.push_back({{HeldElsewhere}, "nothing is opened"});
    return more;
}

} // namespace

Group pullGroup()
{
    using enum Fault;
    using enum State;
    return {"Pulling the detector's cable, while nothing runs and while it samples",
            {{.name = "pull while idle", .act = Act::PullIdle},
             {.name = "pull while sampling", .act = Act::PullSampling}},
            {
                cell(Unplug, Disconnected, lost, 0),
                cell(Replug, Disconnected, lost, 0),
                cell(UnplugBesideOther, Disconnected, lost, 0),
                cell(MessageBox, Disconnected, lost, 0, exitQuestion),
                cell(FileDialog, Disconnected, lost, 0, noPath),
                cell(EngineeringDialog, Disconnected, lost, 0),
            },
            senselessForCables(
                {{{None}, "the cable is the fault: see unplug"},
                 {{StatusFailsOnce, StatusFails, ListFails}, "of what is gone nothing else can fail"}})};
}

Group plugGroup()
{
    using enum Fault;
    using enum State;
    return {"Plugging something in: the list of ports is made anew",
            {
                {.name = "plug in while idle", .act = Act::PlugIn},
            },
            {
                cell(None, Idle, Nothing, 0),
                cell(ListFails, Idle, Nothing, 0),
                cell(MessageBox, Idle, Nothing, 0, exitQuestion),
                cell(FileDialog, Idle, Nothing, 0, noPath),
                cell(EngineeringDialog, Idle, Nothing, 0),
            },
            senselessForCables({{{StatusFailsOnce, StatusFails}, noExchange},
                                {{Unplug, Replug, UnplugBesideOther}, "they are rows of their own"}})};
}

Group plugSamplingGroup()
{
    using enum Fault;
    using enum State;
    return {"Plugging something in or pulling something else while it samples: the pictures go on",
            {
                {.name = "plug in while sampling", .act = Act::PlugInSampling},
                {.name = "pull another while sampling", .act = Act::RemoveOtherSampling},
            },
            {
                cell(None, Sampling, Nothing, 0),
                cell(ListFails, Sampling, Nothing, 0),
                cell(MessageBox, Sampling, Nothing, 0, exitQuestion),
                cell(FileDialog, Sampling, Nothing, 0, noPath),
                cell(EngineeringDialog, Sampling, Nothing, 0),
            },
            senselessForCables(
                {{{StatusFailsOnce, StatusFails}, "the stream's own looks would meet it: see streaming"},
                 {{Unplug, Replug, UnplugBesideOther}, "they are rows of their own"}})};
}

Group removeOtherGroup()
{
    using enum Fault;
    using enum State;
    return {"Pulling something else while nothing runs: a removal is told, and the detector stays",
            {{.name = "pull another while idle", .act = Act::RemoveOther}},
            {
                cell(None, Idle, Nothing, 0),
                cell(StatusFailsOnce, Disconnected, lost, 0),
                cell(StatusFails, Disconnected, lost, 0),
                cell(ListFails, Idle, Nothing, 0),
                cell(MessageBox, Idle, Nothing, 0, exitQuestion),
                cell(FileDialog, Idle, Nothing, 0, noPath),
                cell(EngineeringDialog, Idle, Nothing, 0),
            },
            senselessForCables({{{Unplug, Replug, UnplugBesideOther}, "they are rows of their own"}})};
}

Group disconnectGroup()
{
    using enum Fault;
    using enum State;
    return {"Disconnect: by the button, while nothing runs",
            {{.name = "disconnect", .act = Act::Disconnect}},
            {
                cell(None, Disconnected, DeviceClosed, 0),
                cell(Unplug, Disconnected, DeviceClosed, 0),
                cell(Replug, Disconnected, DeviceClosed, 0),
                cell(UnplugBesideOther, Disconnected, DeviceClosed, 0),
            },
            senselessForCables({{{StatusFailsOnce, StatusFails}, noExchange},
                                {{ListFails}, noList},
                                {{MessageBox, FileDialog, EngineeringDialog}, noPress}})};
}

Group leaveGroup()
{
    using enum Fault;
    using enum State;
    std::vector<Entry> entries;
    for (const Fault fault : {None, WriteFailsOnce, WriteFails, WriteCut, Unplug, Replug, UnplugBesideOther})
        entries.push_back(cell(fault, Closed, DeviceClosed, 2, exitQuestion));
    for (Entry &entry :
         entries) // the cable is pulled by the halt, and the receive thread may be about to read
        if (entry.fault == Unplug || entry.fault == Replug || entry.fault == UnplugBesideOther)
            entry.expected.perhaps = StreamReadFailed;
    return {"Leaving: the window's close button while it samples, and yes; the fault meets the halt",
            {{.name = "leave", .act = Act::Leave, .command = 0x03A1}},
            entries,
            {{{StatusFailsOnce, StatusFails, ReadFailsOnce, ReadFails, ReadLoses, ReplyLate, ReplyShort,
               ReplyLong, ReplyDoubled, ReplyCorrupt, ReplyMissing, LeftOver},
              "nobody looks for the echo"},
             {{NotReady}, noExchange},
             {{Stall, BlockLost, BlockDoubled, BlockTorn, OddPieces}, "it waits for no block"},
             {{HeldElsewhere}, "the device is open already"},
             {{ListFails}, noList},
             {{DiskFull, DiskReadOnly, DiskGone}, noRecording},
             {{MessageBox, FileDialog, EngineeringDialog}, noPress}}};
}
