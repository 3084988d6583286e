#include "tests/soak/faultchoice.h"

#include <QByteArrayList>

#include <array>

namespace {

/// A fault with its numbers; `#` stands for a number from `lowest` to `highest`.
struct Fault
{
    const char *lines;
    int lowest;
    int highest;
};

/// What would hang for longer than an operator waits is shorter here: it is the order of things that is
/// looked for.
constexpr std::array knownFaults{
    Fault{"ReplyFaultCount=2\nReplyDelayMs=#\n", 50, 2500},
    Fault{"ReplyFaultCount=#\nMissingReply=true\n", 1, 3},
    Fault{"ReplyFaultCount=2\nShortReply=#\n", 1, 6},
    Fault{"ReplyFaultCount=2\nLongReply=#\n", 1, 600},
    Fault{"ReplyFaultCount=#\nCorruptReply=true\n", 1, 3},
    Fault{"ReplyFaultCommand=03A0\nReplyFaultCount=#\nMissingReply=true\n", 1, 2},
    Fault{"NotReadyQueries=#\n", 1, 4},
    Fault{"FailOpens=#\n", 1, 3},
    Fault{"FailOpens=1\nOpenStatus=#\n", 1, 18},
    Fault{"FailCalls=ResetDevice,SetBitMode,Purge\nFailCallsCount=#\n", 1, 6},
    Fault{"FailCalls=Close\nFailCallsCount=#\n", 1, 1}, // a second try is all that is made
    Fault{"HangCalls=Close\nHangCallsCount=1\nHangMs=#\n", 10, 3000},
    Fault{"HangCalls=OpenEx\nHangCallsCount=1\nHangMs=#\n", 10, 1500},
    Fault{"HangCalls=GetStatus\nHangCallsCount=1\nHangMs=#\n", 10, 3000},
    Fault{"HangCalls=Read\nHangCallsCount=1\nHangMs=#\n", 10, 3000},
    Fault{"HangCalls=Write\nHangCallsCount=2\nHangMs=#\n", 10, 1500},
    Fault{"ClaimedDevices=#\n", 0, 100000},
    Fault{"ClaimedWaiting=#\n", 1, 1000000},
    Fault{"ClaimedRead=#\n", 1, 100000},
    Fault{"FailStatus=#\n", -1, 2000},
    Fault{"FailReads=#\n", -1, 50},
    Fault{"FailReads=#\nFailReadsConsume=true\n", 1, 5},
    Fault{"FailWrites=#\n", 1, 4},
    Fault{"ShortReads=50\nShortReadBytes=#\n", 1, 100000},
    Fault{"ShortWrites=1\nShortWriteBytes=#\n", 1, 5},
    Fault{"StallAfterBytes=#\n", 1, 50000000},
    Fault{"UnplugAtByte=#\n", 1, 50000000},
    Fault{"UnplugAtByte=#\nReplugAfterMs=5\n", 1, 50000000},
    Fault{"KeepsStreaming=true\nUnplugAtByte=#\nReplugAfterMs=300\n", 1, 20000000},
    Fault{"UnplugAtByte=2000000\nRemovalMessage=late\nRemovalDelayMs=#\n", 10, 2000},
    Fault{"UnplugAtByte=2000000\nRemovalMessage=early\nRemovalDelayMs=#\n", 10, 2000},
    Fault{"UnplugAtByte=#\nRemovalMessage=never\n", 1, 20000000},
    Fault{"TornBlockAt=#\n", 0, 200},
    Fault{"DoubledBlockAt=#\n", 0, 200},
    Fault{"FaultsFromByte=#\nFailStatus=-1\n", 1, 20000000},
    Fault{"FaultsFromByte=#\nFailReads=-1\n", 1, 20000000},
    Fault{"FaultsFromByte=#\nFailWrites=1\n", 1, 20000000},
};

QByteArray generalLines(Chance &chance)
{
    QByteArrayList lines{"Pacing=none", "BatteryLevel=" + QByteArray::number(chance.between(0, 100))};
    if (chance.oneIn(3))
        lines << "SerialNumbers=QV1K,SPARE";
    if (chance.oneIn(8))
        lines << "Unplugged=QV1K";
    if (chance.oneIn(12))
        lines << "Attached=false";
    if (chance.oneIn(4))
        lines << "Scene=dark";
    if (chance.oneIn(6))
        lines << "Pacing=timing";
    return lines.join('\n') + '\n';
}

} // namespace

FaultChoice FaultChoice::random(Chance &chance)
{
    FaultChoice choice;
    if (chance.oneIn(3)) {
        choice.settings = "[General]\nPacing=none\n";
        return choice;
    }
    choice.settings = "[General]\n" + generalLines(chance) + "[Faults]\n";
    choice.faults = chance.between(1, 2);
    for (int i = 0; i < choice.faults; ++i) {
        const Fault &fault = chance.of(knownFaults);
        const int number = chance.between(fault.lowest, fault.highest);
        choice.settings += QByteArray(fault.lines).replace("#", QByteArray::number(number));
    }
    return choice;
}
