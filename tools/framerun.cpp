#include "tools/framerun.h"

#include "device/conversations.h"
#include "device/portmanager.h"
#include "tools/detectorsession.h"
#include "tools/standardoutput.h"

#include <QDeadlineTimer>
#include <QThread>

namespace {

constexpr int readinessPauseMs = 1000;
constexpr unsigned long watchIntervalMs = 20; ///< between two looks whether to wait on
constexpr int stopTimeoutMs = 1000;           ///< until the next block boundary, when the run ends early

} // namespace

FrameRun::FrameRun(DetectorSession &session, const StandardOutput &output, Wanted wanted, Steps steps)
    : m_session(session), m_output(output), m_wanted(std::move(wanted)), m_steps(std::move(steps))
{
    m_frameTimeout.setSingleShot(true);
    m_frameTimeout.setInterval(m_wanted.timeoutSeconds * 1000);
    connect(&m_frameTimeout, &QTimer::timeout, this, [this] {
        stopEarly(QStringLiteral("time-out: no frame for %1 s").arg(m_wanted.timeoutSeconds));
    });
    m_stopTimeout.setSingleShot(true);
    m_stopTimeout.setInterval(stopTimeoutMs);
    connect(&m_stopTimeout, &QTimer::timeout, this, &FrameRun::haltNow);
    connect(&session.endRequests(), &TerminationSignals::requested, this,
            [this] { stopEarly(QString::fromLatin1(EndReason::signal)); });
    connect(&session.link(), &PortManager::stop, this, &FrameRun::onHalted);
    connect(&session.link(), &PortManager::lost, this, &FrameRun::onLost, Qt::QueuedConnection);
}

RunResult FrameRun::run()
{
    if (!m_output.hasReader())
        return {QString::fromLatin1(EndReason::outputClosed), ExitStatus::failed};
    for (const auto step : {&FrameRun::openDetector, &FrameRun::waitUntilReady, &FrameRun::startDetector,
                            &FrameRun::receiveFrames}) {
        if (RunResult result = (this->*step)(); !result.problem.isEmpty()) {
            Conversation::haltIfStreaming(m_session.link()); // there is no next try that would find it out
            return result;
        }
    }
    return {};
}

RunResult FrameRun::openDetector()
{
    return m_session.open(m_wanted.serial);
}

RunResult FrameRun::waitUntilReady()
{
    PortManager &link = m_session.link();
    if (m_wanted.testPattern > 0 && !Conversation::selectTestPattern(link, m_wanted.testPattern))
        return m_session.failure(QStringLiteral("time-out: the detector did not confirm the test pattern"));
    const QDeadlineTimer deadline(m_wanted.timeoutSeconds * 1000);
    const auto rest = [&link, &deadline] {
        const QDeadlineTimer restEnd(readinessPauseMs);
        while (!restEnd.hasExpired() && !TerminationSignals::received() && !link.isLost())
            QThread::msleep(watchIntervalMs);
        return !deadline.hasExpired() && !TerminationSignals::received() && !link.isLost();
    };
    const bool isReady = Conversation::waitUntilReady(link, rest);
    if (TerminationSignals::received())
        return {QString::fromLatin1(EndReason::signal), ExitStatus::failed};
    if (!isReady)
        return m_session.failure(QStringLiteral("time-out: the detector is busy, not ready after %1 s")
                                     .arg(m_wanted.timeoutSeconds));
    return {};
}

RunResult FrameRun::startDetector()
{
    if (Conversation::start(m_session.link()))
        return {};
    return m_session.failure(QStringLiteral("time-out: the detector did not confirm the start"));
}

RunResult FrameRun::receiveFrames()
{
    m_steps.begin();
    m_clock.start();
    Conversation::beginReceiving(m_session.link());
    m_frameTimeout.start();
    m_loop.exec(); // a signal that came before is told here

    if (m_whyEarly.isEmpty())
        return {};
    QString count = QString::number(m_frames);
    if (m_wanted.frames > 0)
        count += QStringLiteral(" of %1").arg(m_wanted.frames);
    return {m_whyEarly + QStringLiteral(", ") + count + QStringLiteral(" received"), ExitStatus::failed};
}

bool FrameRun::isLastFrame() const
{
    return m_wanted.frames > 0 ? m_frames == m_wanted.frames : m_lastFrameMs >= m_wanted.seconds * 1000LL;
}

void FrameRun::onFrame()
{
    if (m_isStopping)
        return;
    ++m_frames;
    m_lastFrameMs = m_clock.elapsed();
    m_steps.frame(isLastFrame());
    m_frameTimeout.start();
    if (isLastFrame()) {
        m_isStopping = true;
        m_frameTimeout.stop();
        m_session.link().requestStop();
    } else if (!m_output.hasReader()) {
        stopEarly(QString::fromLatin1(EndReason::outputClosed));
    }
}

void FrameRun::onLost()
{
    if (!m_isStopping)
        m_whyEarly = QString::fromLatin1(EndReason::unplugged);
    m_steps.cut();
    end();
}

/// The run ends here; the detector at the next block boundary, as by the button of the window, but is not
/// waited for as long.
void FrameRun::stopEarly(const QString &why)
{
    if (m_isStopping)
        return;
    m_isStopping = true;
    m_whyEarly = why;
    m_frameTimeout.stop();
    m_steps.cut();
    m_session.link().requestStop();
    m_stopTimeout.start();
}

void FrameRun::haltNow()
{
    m_session.link().halt();
    onHalted();
}

void FrameRun::onHalted()
{
    if (m_isEnded)
        return;
    Conversation::confirmHalt(m_session.link());
    end();
}

void FrameRun::end()
{
    m_isEnded = true;
    m_frameTimeout.stop();
    m_stopTimeout.stop();
    m_session.link().closeDevice();
    m_loop.quit();
}
