#include "device/receiveloop.h"

#include "device/protocol/commandframes.h"
#include "log/logmanager.h"

#include <QThread>

#include <utility>

using namespace d2xx;

namespace {

constexpr unsigned long restMs = 100; ///< of a pass while paused, and after what fails again and again
constexpr qint64 waitingFramesLimit = 64;
constexpr qint64 waitingFramesResume = waitingFramesLimit / 2;

/// Nothing for an empty line. A call of the library that hung may come back when the log has ended.
void log(const QString &line)
{
    LogManager *log = LogManager::instance();
    if (log != nullptr && !line.isEmpty())
        log->writeLog(line);
}

} // namespace

ReceiveLoop::ReceiveLoop(LinkState &state, Callbacks callbacks)
    : m_state(state), m_callbacks(std::move(callbacks))
{
    for (std::size_t counter = 0; counter < m_blockRequests.size(); ++counter)
        m_blockRequests[counter] = CommandFrame::blockRequest(static_cast<int>(counter));
}

void ReceiveLoop::run()
{
    log(QStringLiteral("串口接收线程开启"));
    m_clock.start();
    while (!QThread::currentThread()->isInterruptionRequested()) {
        try {
            pass();
        } catch (...) {
            passFailed();
        }
    }
    log(QStringLiteral("串口接收线程结束"));
}

/// In a memory that is full even the line may be too much: what matters is that a stop still ends.
void ReceiveLoop::passFailed()
{
    try {
        log(m_exceptions.failed(m_clock.elapsed()));
        judge(m_watch.quiet(m_clock.elapsed(), m_heldBack, m_state.m_stopRequested));
    } catch (...) {
        m_assembler.restart();
    }
    QThread::msleep(restMs);
}

// The order in which the flags are looked at is told in device/linkstate.h.
void ReceiveLoop::pass()
{
    if (m_state.m_paused)
        QThread::msleep(restMs);
    m_handle = m_state.m_handle;
    const std::optional<quint32> waiting = m_state.bytesWaiting(m_handle);
    if (m_state.m_halted) {
        m_rest.oneMillisecond();
        return;
    }
    takeStart();
    if (m_watch.isLost(m_clock.elapsed(), !waiting)) {
        m_callbacks.lost(m_handle);
        m_rest.oneMillisecond();
        return;
    }
    if (m_heldBack && (m_state.m_stopRequested || framesWaiting() <= waitingFramesResume)) {
        m_heldBack = false;
        m_watch.blockRequested(m_clock.elapsed());
        requestNextBlock();
        return;
    }
    if (waiting.value_or(0) == 0) {
        judge(m_watch.quiet(m_clock.elapsed(), m_heldBack, m_state.m_stopRequested));
        m_rest.oneMillisecond();
        return;
    }
    receive(*waiting);
    if (m_assembler.boundaryReached())
        handleBlockBoundary();
}

void ReceiveLoop::takeStart()
{
    if (!m_state.m_restarted.exchange(false))
        return;
    m_watch.begin(m_clock.elapsed());
    m_lossWatch.begin(m_state.m_driver->losses(m_handle).value_or(0));
    m_surplusWatch.begin(m_surplusFrames);
    log(m_failedReads.succeeded());
    if (!m_state.m_closed.exchange(false))
        return;
    m_assembler.restart();
    m_heldBack = false;
}

void ReceiveLoop::receive(quint32 waiting)
{
    char *room = m_assembler.reserve(static_cast<qsizetype>(waiting));
    const std::optional<quint32> bytesRead = m_state.read(m_handle, room, waiting);
    if (!bytesRead) {
        m_assembler.drop();
        readFailed();
        return;
    }
    m_assembler.keep(static_cast<qsizetype>(*bytesRead));
    log(m_failedReads.succeeded());
    if (*bytesRead > 0) {
        lookForLosses();
        judge(m_watch.arrived(m_clock.elapsed()));
        return;
    }
    judge(m_watch.quiet(m_clock.elapsed(), m_heldBack, m_state.m_stopRequested));
    m_rest.oneMillisecond();
}

void ReceiveLoop::readFailed()
{
    log(m_failedReads.failed(m_clock.elapsed()));
    if (m_failedReads.arePersistent())
        QThread::msleep(restMs);
    judge(m_watch.quiet(m_clock.elapsed(), m_heldBack, m_state.m_stopRequested));
}

void ReceiveLoop::lookForLosses()
{
    const std::optional<quint32> count = m_state.m_driver->losses(m_handle);
    const auto times = count ? m_lossWatch.counted(*count, m_clock.elapsed()) : std::nullopt;
    if (!times)
        return;
    log(QStringLiteral("接收数据丢失 = ") + QString::number(*times));
    m_callbacks.bytesLost(*times);
}

void ReceiveLoop::judge(StreamWatch::Event event)
{
    switch (event) {
    case StreamWatch::Event::None:
        break;
    case StreamWatch::Event::Interrupted:
        log(QStringLiteral("接收数据中断"));
        m_callbacks.interrupted(true);
        break;
    case StreamWatch::Event::Resumed:
        log(QStringLiteral("接收数据恢复"));
        m_callbacks.interrupted(false);
        break;
    case StreamWatch::Event::StopOverdue:
        log(QStringLiteral("停止超时，强制停止采集"));
        halt();
        break;
    }
}

// Called at most once a pass: when one read brings more than a block, the next boundary is handled after the
// next read.
void ReceiveLoop::handleBlockBoundary()
{
    if (m_assembler.frameComplete()) {
        handOnFrame();
        m_heldBack = framesWaiting() >= waitingFramesLimit && !m_state.m_stopRequested;
    }
    if (!m_heldBack)
        requestNextBlock();
}

/// A block came twice, or what the detector was not asked for: the frame's rows are shifted from there on.
void ReceiveLoop::tellSurplus()
{
    if (const auto times = m_surplusWatch.counted(++m_surplusFrames, m_clock.elapsed()))
        log(QStringLiteral("接收数据多余 = ") + QString::number(*times));
}

void ReceiveLoop::handOnFrame()
{
    const QByteArray frame = m_assembler.takeFrame(m_buffers.take(m_state.m_framesDone));
    m_buffers.lend(frame);
    m_callbacks.frame(frame);
    if (frame.size() > FrameFormat::frameBytes)
        tellSurplus();
}

/// Or tells the detector to halt, when that was asked for.
void ReceiveLoop::requestNextBlock()
{
    if (m_state.m_stopRequested)
        halt();
    else
        m_state.write(m_handle, m_blockRequests[static_cast<std::size_t>(m_assembler.nextRequest())]);
}

void ReceiveLoop::halt()
{
    m_assembler.restart();
    if (!m_state.halt())
        return;
    m_state.write(m_handle, CommandFrame::haltAcquisition());
    m_callbacks.halted();
}

qint64 ReceiveLoop::framesWaiting() const
{
    return m_buffers.lentCount() - m_state.m_framesDone;
}
