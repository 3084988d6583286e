#pragma once

#include "tools/acquireoptions.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QString>
#include <QTimer>

class PortManager;
class ProcessImage;

/// One run of qv1k-acquire: open, ready, start, receive, stop, through the same libraries as the window.
class AcquisitionRun : public QObject
{
    Q_OBJECT

public:
    /// Runs whole and prints a line per frame on standard output. Returns what went wrong in one line, or an
    /// empty text when all frames came and all files are complete.
    [[nodiscard]] static QString run(const AcquireOptions &options);

private:
    AcquisitionRun(const AcquireOptions &options, PortManager &link, ProcessImage &pipeline);

    QString acquire();
    QString openFirstDetector();
    QString waitUntilReady();
    QString startDetector();
    QString receiveFrames();
    void onFrame();
    void onStop();

    const AcquireOptions &m_options;
    PortManager &m_link;
    ProcessImage &m_pipeline;
    QEventLoop m_loop;
    QTimer m_frameTimeout;
    QElapsedTimer m_clock;
    int m_frames = 0;
    bool m_timedOut = false;
};
