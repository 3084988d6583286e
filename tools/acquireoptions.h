#pragma once

#include <QString>
#include <QStringList>

/// The exit statuses of qv1k-acquire. A process that a signal asked to end ends by that signal.
namespace ExitStatus {
inline constexpr int complete = 0;   ///< all frames came and every file is complete
inline constexpr int failed = 1;     ///< they did not; standard error tells why in one line
inline constexpr int wrongUsage = 2; ///< the arguments do not say what is wanted; no detector was opened
} // namespace ExitStatus

/// What the command line of qv1k-acquire asks for.
struct AcquireOptions
{
    QString library; ///< as the key `D2xxLibrary` of config.ini
    QString output;  ///< folder in which the recording's folder is made
    QString name;    ///< of the recording, see RecordingFiles::nameFor(); the current time when not given
    QString serial;  ///< of the detector; empty for the only one there is
    int frames = 1;
    int testPattern = 0; ///< 1 to 5, 0 for the sensor's own picture
    int timeoutSeconds = 30;
    bool data = false;
    bool picture = true; ///< pictures are what is stored when nothing is chosen
    bool video = false;
    bool verbose = false;

    /// Reads the arguments. Prints help, version or what is wrong with them and ends the process where there
    /// is nothing to run.
    [[nodiscard]] static AcquireOptions fromArguments(const QStringList &arguments);
};
