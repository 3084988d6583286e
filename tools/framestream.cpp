#include "tools/framestream.h"

#include "device/portmanager.h"
#include "tools/detectorsession.h"

#include <QJsonObject>

FrameStream::FrameStream(const PublishOptions &options, DetectorSession &session)
{
    if (options.endpoint.isEmpty())
        return;
    m_publisher.emplace(options, [] { return TerminationSignals::received() == 0; });
    if (options.raw)
        connect(&session.link(), &PortManager::read_ready, this,
                [this](const QByteArray &raw) { m_raw = raw; });
}

RunResult FrameStream::begin()
{
    return isWanted() ? result(m_publisher->waitForReceivers()) : RunResult();
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

RunResult FrameStream::end()
{
    return isWanted() ? result(m_publisher->end()) : RunResult();
}

QString FrameStream::problem() const
{
    return isWanted() ? m_publisher->problem() : QString();
}

/// A wait that a signal ended is told as such.
RunResult FrameStream::result(bool isDone) const
{
    if (isDone)
        return {};
    if (TerminationSignals::received() != 0)
        return {QString::fromLatin1(EndReason::signal), ExitStatus::failed};
    return {problem(), ExitStatus::failed};
}

void FrameStream::addTo(QJsonObject &summary) const
{
    if (isWanted())
        summary[QLatin1String("published")] = m_publisher->frames();
}
