#pragma once

#include "tools/runresult.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QTimer>

#include <functional>

class DetectorSession;
class StandardOutput;

/// Frames from a detector: open, ready, start, receive, stop, through the same link as the window.
///
/// However it ends once the detector was started, the detector is told to halt, once, unless it is unplugged.
class FrameRun : public QObject
{
    Q_OBJECT

public:
    /// Which frames, of which detector.
    struct Wanted
    {
        QString serial;      ///< empty for the only detector there is
        int frames = 1;      ///< that many; 0 for those of so many seconds
        int seconds = 0;     ///< the frame that is under way then is the last
        int testPattern = 0; ///< 1 to 5, 0 for the sensor's own picture
        int timeoutSeconds = 30;
    };

    /// What whoever wants the frames does meanwhile.
    struct Steps
    {
        std::function<void()> begin;            ///< right before the first block is asked for
        std::function<void(bool isLast)> frame; ///< a frame is through and counted
        std::function<void()> cut;              ///< no further frame counts, though not all came
    };

    FrameRun(DetectorSession &session, const StandardOutput &output, Wanted wanted, Steps steps);

    /// Runs whole.
    [[nodiscard]] RunResult run();

    /// To be called when a frame is through.
    void onFrame();

    /// Ends it: no further frame counts. To be called by whoever cannot go on.
    void stopEarly(const QString &why);

    [[nodiscard]] int frames() const { return m_frames; }
    /// From the first block request to the last frame.
    [[nodiscard]] double seconds() const { return static_cast<double>(m_lastFrameMs) / 1000.0; }

private:
    RunResult openDetector();
    RunResult waitUntilReady();
    RunResult startDetector();
    RunResult receiveFrames();
    [[nodiscard]] bool isLastFrame() const;

    void onLost();
    void haltNow();
    void onHalted();
    void end();

    DetectorSession &m_session;
    const StandardOutput &m_output;
    const Wanted m_wanted;
    const Steps m_steps;
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
