#include "simulator/settings/faults.h"

#include "simulator/geometry.h"
#include "simulator/settings/settingsreader.h"

#include <limits>

namespace simulator {

namespace {

constexpr int many = std::numeric_limits<int>::max();
constexpr int longestMs = 3600000;

/// How often a fault happens.
int times(SettingsReader &reader, const QString &key, int fallback = 0)
{
    return reader.integer(key, fallback, forEver, many);
}

/// A count of 32 bits; what is more is as much as there can be.
quint32 claim(std::optional<qint64> given)
{
    return static_cast<quint32>(qMin<qint64>(given.value_or(0), std::numeric_limits<quint32>::max()));
}

QMap<QString, Call> setUpCalls()
{
    return {{QStringLiteral("Close"), Call::Close},
            {QStringLiteral("ResetDevice"), Call::ResetDevice},
            {QStringLiteral("SetBitMode"), Call::SetBitMode},
            {QStringLiteral("SetLatencyTimer"), Call::SetLatencyTimer},
            {QStringLiteral("SetUSBParameters"), Call::SetUsbParameters},
            {QStringLiteral("SetFlowControl"), Call::SetFlowControl},
            {QStringLiteral("Purge"), Call::Purge},
            {QStringLiteral("SetTimeouts"), Call::SetTimeouts}};
}

QMap<QString, Call> allCalls()
{
    QMap<QString, Call> calls = setUpCalls();
    calls.insert({{QStringLiteral("OpenEx"), Call::Open},
                  {QStringLiteral("GetStatus"), Call::GetStatus},
                  {QStringLiteral("Read"), Call::Read},
                  {QStringLiteral("Write"), Call::Write}});
    return calls;
}

void readCallFaults(SettingsReader &reader, Faults &faults)
{
    faults.failingCalls = reader.choices(QStringLiteral("Faults/FailCalls"), setUpCalls());
    faults.failCalls = times(reader, QStringLiteral("Faults/FailCallsCount"), faults.failCalls);
    faults.hangingCalls = reader.choices(QStringLiteral("Faults/HangCalls"), allCalls());
    faults.hangCalls = times(reader, QStringLiteral("Faults/HangCallsCount"), faults.hangCalls);
    faults.hangTime = Milliseconds(reader.integer(QStringLiteral("Faults/HangMs"),
                                                  static_cast<int>(faults.hangTime.count()), 0, longestMs));
    if (const auto devices = reader.optional(QStringLiteral("Faults/ClaimedDevices")))
        faults.claimedDevices = claim(devices);
    faults.claimedWaiting = claim(reader.optional(QStringLiteral("Faults/ClaimedWaiting")));
    faults.claimedRead = claim(reader.optional(QStringLiteral("Faults/ClaimedRead")));
}

void readReplyFaults(SettingsReader &reader, Faults &faults)
{
    faults.replyCommand = reader.command(QStringLiteral("Faults/ReplyFaultCommand"));
    faults.repliesLeft = times(reader, QStringLiteral("Faults/ReplyFaultCount"), faults.repliesLeft);
    faults.replyDelay = Milliseconds(reader.integer(QStringLiteral("Faults/ReplyDelayMs"), 0, 0, longestMs));
    faults.replyBytesCut = reader.integer(QStringLiteral("Faults/ShortReply"), 0, 0, 256);
    faults.replyBytesAdded = reader.integer(QStringLiteral("Faults/LongReply"), 0, 0, 65536);
    faults.corruptReply = reader.boolean(QStringLiteral("Faults/CorruptReply"), false);
    faults.missingReply = reader.boolean(QStringLiteral("Faults/MissingReply"), false);
}

void readTransferFaults(SettingsReader &reader, Faults &faults)
{
    faults.fromByte = reader.optional(QStringLiteral("Faults/FaultsFromByte"));
    faults.failStatus = times(reader, QStringLiteral("Faults/FailStatus"));
    faults.failReads = times(reader, QStringLiteral("Faults/FailReads"));
    faults.failedReadsTake = reader.boolean(QStringLiteral("Faults/FailReadsConsume"), false);
    faults.failWrites = times(reader, QStringLiteral("Faults/FailWrites"));
    faults.shortReads = times(reader, QStringLiteral("Faults/ShortReads"));
    faults.shortReadBytes = static_cast<quint32>(reader.integer(
        QStringLiteral("Faults/ShortReadBytes"), static_cast<int>(faults.shortReadBytes), 0, many));
    faults.shortWrites = times(reader, QStringLiteral("Faults/ShortWrites"));
    faults.shortWriteBytes = static_cast<quint32>(reader.integer(
        QStringLiteral("Faults/ShortWriteBytes"), static_cast<int>(faults.shortWriteBytes), 0, many));
}

void readCableFaults(SettingsReader &reader, Faults &faults)
{
    faults.unplugAtByte = reader.optional(QStringLiteral("Faults/UnplugAtByte"));
    if (const auto after = reader.optional(QStringLiteral("Faults/ReplugAfterMs")))
        faults.replugAfter = Milliseconds(qMin<qint64>(*after, longestMs));
    faults.removalMessage = reader.choice(QStringLiteral("Faults/RemovalMessage"), faults.removalMessage,
                                          {{QStringLiteral("prompt"), RemovalMessage::Prompt},
                                           {QStringLiteral("late"), RemovalMessage::Late},
                                           {QStringLiteral("early"), RemovalMessage::Early},
                                           {QStringLiteral("never"), RemovalMessage::Never}});
    faults.removalDelay =
        Milliseconds(reader.integer(QStringLiteral("Faults/RemovalDelayMs"),
                                    static_cast<int>(faults.removalDelay.count()), 0, longestMs));
    faults.keepsStreaming = reader.boolean(QStringLiteral("Faults/KeepsStreaming"), false);
}

} // namespace

Faults readFaults(SettingsReader &reader)
{
    Faults faults;
    readReplyFaults(reader, faults);
    readCallFaults(reader, faults);
    readTransferFaults(reader, faults);
    readCableFaults(reader, faults);
    faults.notReadyQueries = times(reader, QStringLiteral("Faults/NotReadyQueries"));
    faults.failOpens = times(reader, QStringLiteral("Faults/FailOpens"));
    faults.openStatus = static_cast<quint32>(
        reader.integer(QStringLiteral("Faults/OpenStatus"), static_cast<int>(faults.openStatus), 1, 255));
    faults.stallAfterBytes = reader.optional(QStringLiteral("Faults/StallAfterBytes"));
    faults.tornBlock = reader.optional(QStringLiteral("Faults/TornBlockAt"));
    faults.tornBytes =
        reader.integer(QStringLiteral("Faults/TornBlockBytes"), faults.tornBytes, 1, int{blockBytes});
    faults.doubledBlock = reader.optional(QStringLiteral("Faults/DoubledBlockAt"));
    return faults;
}

} // namespace simulator
