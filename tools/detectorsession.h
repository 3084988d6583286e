#pragma once

#include "device/d2xxlibrary.h"
#include "process/terminationsignals.h"
#include "tools/runresult.h"

#include <functional>

class PortManager;
class StandardOutput;

/// What a command has as long as it talks with a detector: the log, the link, and the system's requests to
/// end, which no longer end the process by themselves. One at a time; main thread.
class DetectorSession
{
public:
    explicit DetectorSession(const D2xxLibrary &library);
    /// Closes the detector.
    ~DetectorSession();
    Q_DISABLE_COPY_MOVE(DetectorSession)

    /// The driver library that was asked for is there; else why not.
    [[nodiscard]] static RunResult check(const D2xxLibrary &library);
    /// Says so when what follows is simulated.
    static void tellWhetherSimulated(const D2xxLibrary &library, StandardOutput &output);

    [[nodiscard]] PortManager &link() const;
    [[nodiscard]] const TerminationSignals &endRequests() const { return m_signals; }
    /// Of the detector that was opened last.
    [[nodiscard]] const QString &serial() const { return m_serial; }

    /// Opens the detector of that serial number, or without one the only detector there is.
    [[nodiscard]] RunResult open(const QString &serial);

    /// Does what asks the detector for something. Where not even its first question was answered, the
    /// detector may have been left streaming: it is told to halt, and asked once more.
    [[nodiscard]] RunResult ask(const std::function<RunResult()> &work,
                                const std::function<bool()> &wasAnswered);

    /// That problem; a detector that is gone is told as such, whatever it was asked for.
    [[nodiscard]] RunResult failure(const QString &problem) const;

private:
    TerminationSignals m_signals;
    QString m_serial;
};

/// Why a run ended that was ended by others.
namespace EndReason {
inline constexpr const char *unplugged = "the detector was unplugged";
inline constexpr const char *signal = "ended by a signal";
inline constexpr const char *outputClosed = "nobody reads the standard output any more";
} // namespace EndReason
