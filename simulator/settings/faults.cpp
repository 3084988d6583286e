#include "simulator/settings/faults.h"

#include "simulator/geometry.h"
#include "simulator/settings/settingsreader.h"

#include <limits>

namespace simulator {

namespace {

constexpr int many = std::numeric_limits<int>::max();

/// How often a fault happens.
int times(SettingsReader &reader, const QString &key)
{
    return reader.integer(key, 0, forEver, many);
}

void readReplyFaults(SettingsReader &reader, Faults &faults)
{
    faults.replyCommand = reader.command(QStringLiteral("Faults/ReplyFaultCommand"));
    if (const auto count = reader.optional(QStringLiteral("Faults/ReplyFaultCount")); count.value_or(0) > 0)
        faults.repliesLeft = static_cast<int>(qMin<qint64>(*count, std::numeric_limits<int>::max()));
    faults.replyDelay = Milliseconds(reader.integer(QStringLiteral("Faults/ReplyDelayMs"), 0, 0, 3600000));
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

} // namespace

Faults readFaults(SettingsReader &reader)
{
    Faults faults;
    readReplyFaults(reader, faults);
    readTransferFaults(reader, faults);
    faults.notReadyQueries = times(reader, QStringLiteral("Faults/NotReadyQueries"));
    faults.failOpens = times(reader, QStringLiteral("Faults/FailOpens"));
    faults.openStatus = static_cast<quint32>(
        reader.integer(QStringLiteral("Faults/OpenStatus"), static_cast<int>(faults.openStatus), 1, 255));
    faults.stallAfterBytes = reader.optional(QStringLiteral("Faults/StallAfterBytes"));
    faults.unplugAtByte = reader.optional(QStringLiteral("Faults/UnplugAtByte"));
    faults.tornBlock = reader.optional(QStringLiteral("Faults/TornBlockAt"));
    faults.tornBytes =
        reader.integer(QStringLiteral("Faults/TornBlockBytes"), faults.tornBytes, 1, int{blockBytes});
    faults.doubledBlock = reader.optional(QStringLiteral("Faults/DoubledBlockAt"));
    return faults;
}

} // namespace simulator
