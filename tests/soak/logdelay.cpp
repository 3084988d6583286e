#include "tests/soak/logdelay.h"

#include "log/logmanager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace {

constexpr qsizetype stampLength = 27; ///< "2026-11-22 17:26:02   >>   "

/// The file is named after the day on which the log was made: the newest is the one.
QString newestLog()
{
    const QStringList files = QDir(QStringLiteral("Logs")).entryList(QDir::Files, QDir::Name);
    return QStringLiteral("Logs/") + (files.isEmpty() ? QString() : files.last());
}

} // namespace

void LogDelay::mark()
{
    m_marker = "<soak " + QByteArray::number(++m_number) + ">";
    m_isWritten = false;
    m_markedAt = QFileInfo(newestLog()).size();
    m_handedOver = QDateTime::currentDateTime();
    LogManager::instance()->writeLog(QString::fromLatin1(m_marker));
}

bool LogDelay::isWritten()
{
    if (m_isWritten)
        return true;
    QFile file(newestLog());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    file.seek(m_markedAt <= file.size() ? m_markedAt : 0);
    const QByteArray news = file.readAll();
    const qsizetype marker = news.indexOf(m_marker);
    if (marker < 0)
        return false;
    m_isWritten = true;
    // The last lines of a log have no stamp.
    const qsizetype line = news.lastIndexOf('\n', marker) + 1;
    const QDateTime written =
        QDateTime::fromString(QString::fromUtf8(news.mid(line, 19)), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (written.isValid())
        m_delayMs = qMax(qint64{0}, m_handedOver.msecsTo(written));
    m_longestMs = qMax(m_longestMs, m_delayMs);
    note(news.left(line));
    return true;
}

void LogDelay::note(const QByteArray &lines)
{
    QHash<QByteArray, int> times;
    for (const QByteArray &line : lines.split('\n'))
        ++times[line.mid(stampLength)];
    times.remove({});
    const auto most = std::max_element(times.begin(), times.end());
    m_waited = QStringLiteral("%1 lines").arg(lines.count('\n'));
    if (most != times.end())
        m_waited += QStringLiteral(", %1 of them \"%2\"").arg(*most).arg(QString::fromUtf8(most.key()));
}
