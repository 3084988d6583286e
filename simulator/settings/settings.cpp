#include "simulator/settings/settings.h"

#include "simulator/geometry.h"
#include "simulator/settings/settingsreader.h"

#include <QFileInfo>

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

/// Those of the detectors there are that are named as unplugged.
QStringList unplugged(SettingsReader &reader, const QStringList &known)
{
    QStringList result;
    for (const QString &entry : reader.list(QStringLiteral("Unplugged"), {})) {
        const QString number = entry.trimmed();
        if (known.contains(number))
            result.append(number);
        else if (!number.isEmpty())
            reader.complain(QStringLiteral("Unplugged"), number, QStringLiteral("choose of SerialNumbers"));
    }
    return result;
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

} // namespace

Settings readSettings(const QString &path)
{
    SettingsReader reader(path);
    Settings settings;
    settings.serialNumbers = serialNumbers(reader, settings.serialNumbers);
    settings.attached = reader.boolean(QStringLiteral("Attached"), settings.attached);
    settings.unplugged = unplugged(reader, settings.serialNumbers);
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
