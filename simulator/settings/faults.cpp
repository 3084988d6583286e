#include "simulator/settings/faults.h"

#include "simulator/geometry.h"
#include "simulator/settings/settingsreader.h"

#include <limits>

namespace simulator {

namespace {

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

} // namespace

Faults readFaults(SettingsReader &reader)
{
    constexpr int many = std::numeric_limits<int>::max();
    Faults faults;
    readReplyFaults(reader, faults);
    faults.notReadyQueries = reader.integer(QStringLiteral("Faults/NotReadyQueries"), 0, 0, many);
    faults.failOpens = reader.integer(QStringLiteral("Faults/FailOpens"), 0, 0, many);
    faults.openStatus = static_cast<quint32>(
        reader.integer(QStringLiteral("Faults/OpenStatus"), static_cast<int>(faults.openStatus), 1, 255));
    faults.failReads = reader.integer(QStringLiteral("Faults/FailReads"), 0, 0, many);
    faults.failWrites = reader.integer(QStringLiteral("Faults/FailWrites"), 0, 0, many);
    faults.stallAfterBytes = reader.optional(QStringLiteral("Faults/StallAfterBytes"));
    faults.unplugAtByte = reader.optional(QStringLiteral("Faults/UnplugAtByte"));
    faults.tornBlock = reader.optional(QStringLiteral("Faults/TornBlockAt"));
    faults.tornBytes =
        reader.integer(QStringLiteral("Faults/TornBlockBytes"), faults.tornBytes, 1, int{blockBytes});
    faults.doubledBlock = reader.optional(QStringLiteral("Faults/DoubledBlockAt"));
    return faults;
}

} // namespace simulator
