#include "device/failedreads.h"

#include <utility>

namespace {

const QString failureText = QStringLiteral("串口线程接收数据失败");

} // namespace

QString FailedReads::failed(qint64 now)
{
    m_inRow += 1;
    if (!arePersistent()) {
        m_lastTold = now;
        return failureText;
    }
    m_untold += 1;
    if (now - m_lastTold < intervalMs)
        return {};
    m_lastTold = now;
    return tellNumber();
}

QString FailedReads::succeeded()
{
    m_inRow = 0;
    return m_untold > 0 ? tellNumber() : QString();
}

QString FailedReads::tellNumber()
{
    return QStringLiteral("%1 %2 次").arg(failureText).arg(std::exchange(m_untold, 0));
}
