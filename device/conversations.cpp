#include "device/conversations.h"

#include "device/portmanager.h"
#include "device/protocol/commandframes.h"
#include "log/logmanager.h"

namespace {

constexpr int replyTimeoutMs = 5000;
constexpr int haltTimeoutMs = 3500;

bool isEchoed(PortManager &link, const QByteArray &command)
{
    link.write(command);
    return AckFrame::echoes(link.wait_for_read(replyTimeoutMs, AckFrame::commandBytes), command);
}

} // namespace

namespace Acquisition {

bool selectTestPattern(PortManager &link, int pattern)
{
    return isEchoed(link, CommandFrame::testPattern(pattern));
}

bool isReady(PortManager &link)
{
    link.write(CommandFrame::readinessQuery());
    return AckFrame::isReady(link.wait_for_read(replyTimeoutMs, AckFrame::commandBytes));
}

bool start(PortManager &link)
{
    return isEchoed(link, CommandFrame::startAcquisition());
}

void beginReceiving(PortManager &link)
{
    link.startReceive();
    link.write(CommandFrame::blockRequest(0));
}

void confirmHalt(PortManager &link)
{
    link.pauseReceive();
    const QByteArray reply = link.wait_for_read(haltTimeoutMs, AckFrame::commandBytes);
    if (AckFrame::echoes(reply, CommandFrame::haltAcquisition()))
        LogManager::instance()->writeLog(QStringLiteral("下位机停止成功"));
}

} // namespace Acquisition
