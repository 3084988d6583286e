#include "device/receiveloop.h"

#include "device/portmanager.h"
#include "device/protocol/commandframes.h"
#include "log/logmanager.h"

#include <QThread>

using namespace d2xx;

namespace {

constexpr unsigned long pausedPassMs = 100;
constexpr unsigned long idlePassMs = 1;
constexpr qint64 waitingFramesLimit = 64;
constexpr qint64 waitingFramesResume = waitingFramesLimit / 2;

} // namespace

ReceiveLoop::ReceiveLoop(PortManager &link) : m_link(link)
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

void ReceiveLoop::pass()
{
    if (m_link.m_paused)
        QThread::msleep(pausedPassMs);
    // One handle for the whole pass: when the device is closed and opened again meanwhile, what this pass
    // still does fails, instead of taking bytes of the new connection or writing to it.
    m_handle = m_link.m_handle;
    const quint32 waiting = m_link.bytesWaiting(m_handle);
    if (m_link.m_halted) {
        QThread::msleep(idlePassMs);
        return;
    }
    // Looked at after m_halted: who sees the halt lifted sees the restart too.
    if (m_link.m_restarted.exchange(false)) {
        m_assembler.restart();
        m_heldBack = false;
    }
    if (m_heldBack && (m_link.m_stopRequested || framesWaiting() <= waitingFramesResume)) {
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
    if (m_link.m_driver->read(m_handle, room, waiting, &bytesRead) == Status::Ok) {
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
        m_heldBack = framesWaiting() >= waitingFramesLimit && !m_link.m_stopRequested;
    }
    if (!m_heldBack)
        requestNextBlock();
}

void ReceiveLoop::handOnFrame()
{
    const QByteArray frame = m_assembler.takeFrame(m_buffers.take(m_link.m_framesDone));
    m_buffers.lend(frame);
    Q_EMIT m_link.read_ready(frame);
}

/// Or tells the detector to halt, when that was asked for.
void ReceiveLoop::requestNextBlock()
{
    if (m_link.m_stopRequested)
        halt();
    else
        m_link.writeTo(m_handle, m_blockRequests[static_cast<std::size_t>(m_assembler.nextRequest())]);
}

void ReceiveLoop::halt()
{
    m_assembler.restart();
    m_link.m_halted = true;
    // A start that came between the request and here has lifted the halt already, and it stays lifted.
    if (m_link.m_restarted) {
        m_link.m_halted = false;
        return;
    }
    m_link.writeTo(m_handle, CommandFrame::haltAcquisition());
    Q_EMIT m_link.stop();
}

qint64 ReceiveLoop::framesWaiting() const
{
    return m_buffers.lentCount() - m_link.m_framesDone;
}
