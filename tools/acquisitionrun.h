#pragma once

#include "tools/acquireoptions.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QString>
#include <QTimer>

class PortManager;
class ProcessImage;
class StandardOutput;
class TerminationSignals;

/// One run of qv1k-acquire: open, ready, start, receive, stop, through the same libraries as the window.
///
/// However it ends once the detector was started, the detector is told to halt, once, unless it is unplugged.
class AcquisitionRun : public QObject
{
    Q_OBJECT

public:
    /// How a run ended.
    struct Result
    {
        QString problem; ///< in one line; empty when all frames came and all files are complete
        int status = ExitStatus::complete;
    };

    /// Runs whole and prints a line per frame. A signal that asks the process to end, and an output that
    /// nobody reads any more, end it early: within 6 s while the detector is asked for something, within 5 s
    /// while frames are received. See TerminationSignals::endBySignal() and StandardOutput::endBySignal() for
    /// what is left to do then.
    [[nodiscard]] static Result run(const AcquireOptions &options, StandardOutput &output);

private:
    AcquisitionRun(const AcquireOptions &options, PortManager &link, ProcessImage &pipeline,
                   StandardOutput &output, const TerminationSignals &signalsToEnd);

    Result acquire();
    Result openDetector();
    Result waitUntilReady();
    Result startDetector();
    Result receiveFrames();
    Result reportFrames();
    [[nodiscard]] Result failure(const QString &problem) const;

    void onFrame();
    void onLost();
    void stopEarly(const QString &why);
    void haltNow();
    void onHalted();
    void end();

    const AcquireOptions &m_options;
    PortManager &m_link;
    ProcessImage &m_pipeline;
    StandardOutput &m_output;
    QEventLoop m_loop;
    QTimer m_frameTimeout;
    QTimer m_stopTimeout;
    QElapsedTimer m_clock; ///< since the first block request
    qint64 m_lastFrameMs = 0;
    int m_frames = 0;
    bool m_isStopping = false;
    bool m_isEnded = false;
    QString m_whyEarly; ///< why not all frames were waited for
};
