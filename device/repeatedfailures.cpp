#include "device/repeatedfailures.h"

QString RepeatedFailures::failed(qint64 now)
{
    m_inRow += 1;
    if (!arePersistent()) {
        m_lastTold = now;
        return m_text;
    }
    m_untold += 1;
    if (now - m_lastTold < intervalMs)
        return {};
    m_lastTold = now;
    return tellNumber();
}

QString RepeatedFailures::succeeded()
{
    m_inRow = 0;
    return m_untold > 0 ? tellNumber() : QString();
}

QString RepeatedFailures::tellNumber()
{
    return m_text + QStringLiteral(" %1 次").arg(std::exchange(m_untold, 0));
}
