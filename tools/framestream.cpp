#include "tools/framestream.h"

#include "device/portmanager.h"
#include "tools/detectorsession.h"

#include <QJsonObject>

namespace {

constexpr int briefMs = 2000; ///< for the end to reach whom nobody waits for

} // namespace

FrameStream::FrameStream(const PublishOptions &options, DetectorSession &session)
    : m_session(session), m_timeoutMs(options.timeoutMs), m_mustArrive(options.mustArrive)
{
    if (options.endpoint.isEmpty())
        return;
    m_publisher.emplace(
        options, [&session] { return TerminationSignals::received() == 0 && !session.link().isLost(); });
    if (options.raw)
        connect(&session.link(), &PortManager::read_ready, this,
                [this](const QByteArray &raw) { m_raw = raw; });
}

RunResult FrameStream::begin()
{
    return !isWanted() || m_publisher->waitForReceivers() ? RunResult() : failure();
}

void FrameStream::setFacts(const QJsonObject &facts)
{
    if (isWanted())
        m_publisher->setFacts(facts);
}

bool FrameStream::send(std::span<const double> currents)
{
    const bool isSent = !isWanted() || m_publisher->publish(m_raw, currents);
    m_raw.clear(); // its room is needed for the next one
    return isSent;
}

/// A wait that a signal or the detector's end broke off is told as such.
RunResult FrameStream::failure() const
{
    if (TerminationSignals::received() != 0)
        return {QString::fromLatin1(EndReason::signal), ExitStatus::failed};
    const bool isLost = m_session.link().isLost();
    return {isLost ? QString::fromLatin1(EndReason::unplugged) : m_publisher->problem(), ExitStatus::failed};
}

RunResult FrameStream::end(bool isWhole)
{
    const int withinMs = isWhole && m_mustArrive ? m_timeoutMs : briefMs;
    return !isWanted() || m_publisher->end(withinMs) ? RunResult() : failure();
}

void FrameStream::addTo(QJsonObject &summary) const
{
    if (isWanted())
        summary[QLatin1String("published")] = m_publisher->frames();
}
