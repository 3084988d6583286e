#include "device/commandframes.h"
#include "device/portmanager.h"
#include "log/logmanager.h"

#include <QThread>

using namespace ftdi;

namespace {

constexpr unsigned long pausedPassMs = 100;
constexpr unsigned long idlePassMs = 1;

} // namespace

void PortManager::receiveLoop()
{
    LogManager::instance()->writeLog(QStringLiteral("串口接收线程开启"));
    BlockAssembler assembler;
    while (!QThread::currentThread()->isInterruptionRequested()) {
        if (m_paused)
            QThread::msleep(pausedPassMs);
        const DWORD waiting = bytesWaiting();
        if (waiting == 0 || m_halted) {
            QThread::msleep(idlePassMs);
            continue;
        }
        // Looked at after m_halted: who sees the halt lifted sees the restart too.
        if (m_restarted.exchange(false))
            assembler.restart();
        receiveWaiting(waiting, assembler);
        if (assembler.boundaryReached())
            handleBlockBoundary(assembler);
    }
    LogManager::instance()->writeLog(QStringLiteral("串口接收线程结束"));
}

void PortManager::receiveWaiting(DWORD waiting, BlockAssembler &assembler)
{
    char *room = assembler.reserve(qsizetype(waiting));
    DWORD bytesRead = 0;
    if (m_driver->read(m_handle, room, waiting, &bytesRead) == FT_OK) {
        assembler.keep(qsizetype(qMin(bytesRead, waiting)));
    } else {
        assembler.drop();
        LogManager::instance()->writeLog(QStringLiteral("串口线程接收数据失败"));
    }
}

// Called at most once a pass: when one read brings more than a block, the next boundary is handled after the
// next read.
void PortManager::handleBlockBoundary(BlockAssembler &assembler)
{
    if (assembler.frameComplete())
        Q_EMIT read_ready(assembler.takeFrame());
    if (m_stopRequested) {
        assembler.restart();
        m_halted = true;
        write(CommandFrame::haltAcquisition());
        Q_EMIT stop();
    } else {
        write(CommandFrame::blockRequest(assembler.nextRequest()));
    }
}
