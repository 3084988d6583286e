#pragma once

#include "simulator/clock.h"
#include "simulator/scenes/scene.h"
#include "simulator/settings/faults.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace simulator {

/// When a frame is due: as the downloaded timing says, or as soon as it is asked for.
enum class Pacing { Timing, None };

/// What `virtual-detector.ini` tells.
struct Settings
{
    QStringList serialNumbers{QStringLiteral("QV1K")};
    bool attached = true;
    QStringList unplugged; ///< serial numbers whose cables are not plugged in all the same
    int batteryLevel = 87; ///< percent
    Scene scene = Scene::Phantom;
    double light = 1.0; ///< 0 to 1
    Pacing pacing = Pacing::Timing;
    quint64 seed = 1;
    QString replayFile;
    Faults faults;
};

/// Reads the file; without one everything has its default. A value that makes no sense and a key that does
/// not exist each leave a line on the debug output; such a value has its default.
[[nodiscard]] Settings readSettings(const QString &path);

/// Notices when the settings file was written. Not thread-safe.
class SettingsFile
{
public:
    static constexpr Milliseconds checkInterval{200};

    /// A relative path is looked up in the current working directory each time.
    explicit SettingsFile(QString path) : m_path(std::move(path)) {}

    /// The settings, when the file was written, made or removed since the last look; the first look always
    /// has them. Within `checkInterval` of the last look it does not look again.
    [[nodiscard]] std::optional<Settings> changed(Nanoseconds now);
    /// The same, however recent the last look.
    [[nodiscard]] std::optional<Settings> changedNow(Nanoseconds now);

private:
    struct State
    {
        QString path;
        QDateTime written;
        qint64 size = -1;

        friend bool operator==(const State &, const State &) = default;
    };

    QString m_path;
    std::optional<State> m_state;
    Nanoseconds m_nextCheck = Nanoseconds::min();
};

} // namespace simulator
