#include "device/conversations.h"

#include "device/exchange.h"
#include "device/portmanager.h"
#include "device/protocol/commandframes.h"
#include "device/protocol/readback.h"
#include "log/logmanager.h"

namespace {

constexpr int levelTimeoutMs = 500;
constexpr int commandTimeoutMs = 2000;
constexpr int haltTimeoutMs = 3500;
constexpr int replyTimeoutMs = 5000;
constexpr int silentQueries = 3;
constexpr int endOfStreamMs = 500;

bool isEchoed(PortManager &link, const QByteArray &command)
{
    return AckFrame::echoes(Exchange::run(link, command, {replyTimeoutMs}), command);
}

QByteArray askForReadiness(PortManager &link)
{
    return Exchange::run(link, CommandFrame::readinessQuery(), {replyTimeoutMs});
}

} // namespace

namespace Conversation {

std::optional<int> batteryLevel(PortManager &link)
{
    const QByteArray query = CommandFrame::levelQuery();
    const QByteArray reply = Exchange::run(link, query, {levelTimeoutMs});
    if (reply.isEmpty() || AckFrame::answersAnother(reply, query))
        return std::nullopt;
    return AckFrame::level(reply);
}

bool selectTestPattern(PortManager &link, int pattern)
{
    const QByteArray command = CommandFrame::testPattern(pattern);
    const QByteArray reply = Exchange::run(link, command, {replyTimeoutMs});
    if (!reply.isEmpty())
        link.setMayBeStreaming(false);
    else if (link.mayBeStreaming())
        haltIfStreaming(link);
    else
        link.setMayBeStreaming(true);
    return AckFrame::echoes(reply, command);
}

bool isReady(PortManager &link)
{
    return AckFrame::isReady(askForReadiness(link));
}

bool waitUntilReady(PortManager &link, const std::function<bool()> &rest)
{
    const int toleratedSilence = link.mayBeStreaming() ? 1 : silentQueries;
    int silent = 0;
    bool wasHalted = false;
    bool wasAnothers = false;
    while (true) {
        const QByteArray reply = askForReadiness(link);
        // What was left over says nothing of readiness. Twice in a row it is how this detector answers.
        const bool isAnothers = AckFrame::answersAnother(reply, CommandFrame::readinessQuery());
        if (AckFrame::isReady(reply) && (!isAnothers || wasAnothers))
            return true;
        wasAnothers = isAnothers;
        silent = reply.isEmpty() ? silent + 1 : 0;
        if (silent >= toleratedSilence && !wasHalted) {
            wasHalted = true;
            link.setMayBeStreaming(true);
            haltIfStreaming(link);
        }
        if (!rest())
            return false;
    }
}

bool start(PortManager &link)
{
    const bool isStarted = isEchoed(link, CommandFrame::startAcquisition());
    link.setMayBeStreaming(!isStarted);
    return isStarted;
}

void haltIfStreaming(PortManager &link)
{
    if (!link.mayBeStreaming() || link.isLost())
        return;
    link.write(CommandFrame::haltAcquisition());
    link.dropWaiting(endOfStreamMs);
    link.setMayBeStreaming(false);
}

void beginReceiving(PortManager &link)
{
    link.startReceive();
    link.write(CommandFrame::blockRequest(0));
}

void confirmHalt(PortManager &link)
{
    link.pauseReceive();
    const QByteArray halt = CommandFrame::haltAcquisition();
    const bool isHalted = AckFrame::echoes(Exchange::reply(link, halt, {haltTimeoutMs}), halt);
    link.setMayBeStreaming(!isHalted);
    if (isHalted)
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
