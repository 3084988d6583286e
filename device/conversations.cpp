#include "device/conversations.h"

#include "device/exchange.h"
#include "device/portmanager.h"
#include "device/protocol/commandframes.h"
#include "device/protocol/readback.h"
#include "log/logmanager.h"

#include <QThread>

namespace {

constexpr int levelTimeoutMs = 500;
constexpr int commandTimeoutMs = 2000;
constexpr int haltTimeoutMs = 3500;
constexpr int replyTimeoutMs = 5000;
constexpr unsigned long readinessPauseMs = 1000;

bool isEchoed(PortManager &link, const QByteArray &command)
{
    return AckFrame::echoes(Exchange::run(link, command, {replyTimeoutMs}), command);
}

} // namespace

namespace Conversation {

std::optional<int> batteryLevel(PortManager &link)
{
    const QByteArray reply = Exchange::run(link, CommandFrame::levelQuery(), {levelTimeoutMs});
    return reply.isEmpty() ? std::nullopt : std::optional(AckFrame::level(reply));
}

bool selectTestPattern(PortManager &link, int pattern)
{
    return isEchoed(link, CommandFrame::testPattern(pattern));
}

bool isReady(PortManager &link)
{
    return AckFrame::isReady(Exchange::run(link, CommandFrame::readinessQuery(), {replyTimeoutMs}));
}

bool waitUntilReady(PortManager &link, const std::function<bool()> &goesOn)
{
    while (!isReady(link)) {
        if (!goesOn())
            return false;
        QThread::msleep(readinessPauseMs);
    }
    return true;
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
    const QByteArray reply = Exchange::reply(link, {haltTimeoutMs});
    if (AckFrame::echoes(reply, CommandFrame::haltAcquisition()))
        LogManager::instance()->writeLog(QStringLiteral("下位机停止成功"));
}

void command(PortManager &link, const QByteArray &frame)
{
    Exchange::run(link, frame, {commandTimeoutMs});
}

bool download(PortManager &link, const QByteArray &frame)
{
    return AckFrame::acknowledgesParameters(Exchange::run(link, frame, {commandTimeoutMs}));
}

QByteArray readVersion(PortManager &link)
{
    return Exchange::run(link, CommandFrame::versionReadback(), {replyTimeoutMs, Readback::versionBytes});
}

QByteArray readParameters(PortManager &link)
{
    return Exchange::run(link, CommandFrame::parameterReadback(), {replyTimeoutMs, Readback::parameterBytes});
}

QByteArray readEeprom(PortManager &link)
{
    return Exchange::run(link, CommandFrame::eepromReadback(), {replyTimeoutMs, Readback::eepromBytes});
}

} // namespace Conversation
