#pragma once

#include <QObject>

#include <memory>

/// While it lives the system's requests to end (SIGINT, SIGTERM, SIGHUP; on Windows Ctrl+C, Ctrl+Break and
/// the closing of the console) do not end the process but are told, so that it can end in good order. Those
/// that were ignored when the process was started stay ignored. One at a time; lives on the main thread.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    /// What came afterwards ends the process again.
    ~TerminationSignals() override;

    /// The number of the first signal that came, 0 for none. At once, also while no events are handled. Any
    /// thread.
    [[nodiscard]] static int received();

    /// Ends the process as the signal would have, so that whoever started it sees why it ended. Returns when
    /// none was received.
    static void endBySignal();

Q_SIGNALS:
    /// A signal came: from the event loop.
    void requested();

private:
    struct Handlers;
    std::unique_ptr<Handlers> m_handlers;
};
