#include "device/receiveloop.h"

#include "device/protocol/commandframes.h"
#include "log/logmanager.h"

#include <QThread>

#include <utility>

using namespace d2xx;

namespace {

constexpr unsigned long pausedPassMs = 100;
constexpr unsigned long idlePassMs = 1;
constexpr qint64 waitingFramesLimit = 64;
constexpr qint64 waitingFramesResume = waitingFramesLimit / 2;

} // namespace

ReceiveLoop::ReceiveLoop(LinkState &state, Callbacks callbacks)
    : m_state(state), m_callbacks(std::move(callbacks))
{
    for (std::size_t counter = 0; counter < m_blockRequests.size(); ++counter)
        m_blockRequests[counter] = CommandFrame::blockRequest(static_cast<int>(counter));
}

void ReceiveLoop::run()
{
    LogManager::instance()->writeLog(QStringLiteral("串口接收线程开启"));
    while (!QThread::currentThread()->isInterruptionRequested())
        pass();
    LogManager::instance()->writeLog(QStringLiteral("串口接收线程结束"));
}

// The order in which the flags are looked at is told in device/linkstate.h.
void ReceiveLoop::pass()
{
    if (m_state.m_paused)
        QThread::msleep(pausedPassMs);
    m_handle = m_state.m_handle;
    const quint32 waiting = m_state.bytesWaiting(m_handle);
    if (m_state.m_halted) {
        QThread::msleep(idlePassMs);
        return;
    }
    if (m_state.m_restarted.exchange(false)) {
        m_assembler.restart();
        m_heldBack = false;
    }
    if (m_heldBack && (m_state.m_stopRequested || framesWaiting() <= waitingFramesResume)) {
        m_heldBack = false;
        requestNextBlock();
        return;
    }
    if (waiting == 0) {
        QThread::msleep(idlePassMs);
        return;
    }
    receive(waiting);
    if (m_assembler.boundaryReached())
        handleBlockBoundary();
}

void ReceiveLoop::receive(quint32 waiting)
{
    char *room = m_assembler.reserve(static_cast<qsizetype>(waiting));
    quint32 bytesRead = 0;
    if (m_state.m_driver->read(m_handle, room, waiting, &bytesRead) == Status::Ok) {
        m_assembler.keep(static_cast<qsizetype>(qMin(bytesRead, waiting)));
    } else {
        m_assembler.drop();
        LogManager::instance()->writeLog(QStringLiteral("串口线程接收数据失败"));
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

void ReceiveLoop::handOnFrame()
{
    const QByteArray frame = m_assembler.takeFrame(m_buffers.take(m_state.m_framesDone));
    m_buffers.lend(frame);
    m_callbacks.frame(frame);
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
