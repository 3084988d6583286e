#include "simulator/settings/settings.h"

#include "simulator/geometry.h"
#include "simulator/settings/settingsreader.h"

#include <QFileInfo>

#include <limits>

namespace simulator {

namespace {

constexpr int maxSerialNumberLength = 15;

QStringList serialNumbers(SettingsReader &reader, const QStringList &fallback)
{
    QStringList result;
    for (const QString &entry : reader.list(QStringLiteral("SerialNumbers"), fallback)) {
        const QString number = entry.trimmed();
        if (number.isEmpty() || number.toUtf8().size() > maxSerialNumberLength || result.contains(number))
            reader.complain(QStringLiteral("SerialNumbers"), entry,
                            QStringLiteral("serial numbers are 1 to 15 bytes long and all different"));
        else
            result.append(number);
    }
    return result.isEmpty() ? fallback : result;
}

void checkReplay(SettingsReader &reader, Settings &settings)
{
    if (settings.scene != Scene::Replay || QFileInfo(settings.replayFile).size() >= frameBytes)
        return;
    reader.complain(
        QStringLiteral("ReplayFile"), settings.replayFile,
        QStringLiteral("no file with a whole frame of %1 bytes; the phantom is shown").arg(frameBytes));
    settings.scene = Scene::Phantom;
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

Faults readFaults(SettingsReader &reader)
{
    constexpr int many = std::numeric_limits<int>::max();
    Faults faults;
    readReplyFaults(reader, faults);
    faults.notReadyQueries = reader.integer(QStringLiteral("Faults/NotReadyQueries"), 0, 0, many);
    faults.failOpens = reader.integer(QStringLiteral("Faults/FailOpens"), 0, 0, many);
    faults.openStatus = static_cast<quint32>(reader.integer(QStringLiteral("Faults/OpenStatus"), 3, 1, 255));
    faults.failReads = reader.integer(QStringLiteral("Faults/FailReads"), 0, 0, many);
    faults.failWrites = reader.integer(QStringLiteral("Faults/FailWrites"), 0, 0, many);
    faults.stallAfterBytes = reader.optional(QStringLiteral("Faults/StallAfterBytes"));
    faults.unplugAtByte = reader.optional(QStringLiteral("Faults/UnplugAtByte"));
    faults.tornBlock = reader.optional(QStringLiteral("Faults/TornBlockAt"));
    faults.tornBytes = reader.integer(QStringLiteral("Faults/TornBlockBytes"), 512, 1, int{blockBytes});
    faults.doubledBlock = reader.optional(QStringLiteral("Faults/DoubledBlockAt"));
    return faults;
}

} // namespace

Settings readSettings(const QString &path)
{
    SettingsReader reader(path);
    Settings settings;
    settings.serialNumbers = serialNumbers(reader, settings.serialNumbers);
    settings.attached = reader.boolean(QStringLiteral("Attached"), settings.attached);
    settings.batteryLevel = reader.integer(QStringLiteral("BatteryLevel"), settings.batteryLevel, 0, 100);
    settings.scene = reader.choice(QStringLiteral("Scene"), settings.scene,
                                   {{QStringLiteral("dark"), Scene::Dark},
                                    {QStringLiteral("flat"), Scene::Flat},
                                    {QStringLiteral("chart"), Scene::Chart},
                                    {QStringLiteral("phantom"), Scene::Phantom},
                                    {QStringLiteral("replay"), Scene::Replay}});
    settings.light = reader.number(QStringLiteral("Light"), settings.light, 0.0, 1.0);
    settings.pacing =
        reader.choice(QStringLiteral("Pacing"), settings.pacing,
                      {{QStringLiteral("timing"), Pacing::Timing}, {QStringLiteral("none"), Pacing::None}});
    if (const auto seed = reader.optional(QStringLiteral("Seed")))
        settings.seed = static_cast<quint64>(*seed);
    settings.replayFile = reader.text(QStringLiteral("ReplayFile"));
    checkReplay(reader, settings);
    settings.faults = readFaults(reader);
    reader.complainAboutUnknownKeys();
    return settings;
}

std::optional<Settings> SettingsFile::changed(Nanoseconds now)
{
    return now < m_nextCheck ? std::nullopt : changedNow(now);
}

std::optional<Settings> SettingsFile::changedNow(Nanoseconds now)
{
    m_nextCheck = now + checkInterval;
    const QFileInfo file(m_path);
    const State state{file.absoluteFilePath(), file.lastModified(), file.exists() ? file.size() : -1};
    if (m_state == state)
        return std::nullopt;
    m_state = state;
    return readSettings(state.path);
}

} // namespace simulator
