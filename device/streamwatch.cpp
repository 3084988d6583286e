#include "device/streamwatch.h"

#include <algorithm>
#include <utility>

void StreamWatch::begin(qint64 now)
{
    *this = {};
    blockRequested(now);
}

StreamWatch::Event StreamWatch::arrived(qint64 now)
{
    m_quietSince = now;
    return std::exchange(m_interrupted, false) ? Event::Resumed : Event::None;
}

StreamWatch::Event StreamWatch::quiet(qint64 now, bool isHeldBack, bool stopRequested)
{
    if (stopRequested && !m_stoppingSince)
        m_stoppingSince = now;
    if (m_stoppingSince && now - std::max(m_quietSince, *m_stoppingSince) >= silenceMs)
        return Event::StopOverdue;
    if (m_interrupted || isHeldBack || now - m_quietSince < silenceMs)
        return Event::None;
    m_interrupted = true;
    return Event::Interrupted;
}

bool StreamWatch::isLost(qint64 now, bool statusFailed)
{
    if (!statusFailed)
        m_failingSince.reset();
    else if (!m_failingSince)
        m_failingSince = now;
    return m_failingSince && now - *m_failingSince >= lossMs;
}
