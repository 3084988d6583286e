#include "tests/soak/logdelay.h"

#include "log/logmanager.h"

#include <QDir>
#include <QFile>

void LogDelay::mark()
{
    m_marker = "<soak " + QByteArray::number(++m_number) + ">";
    m_isWritten = false;
    m_handedOver = QDateTime::currentDateTime();
    LogManager::instance()->writeLog(QString::fromLatin1(m_marker));
}

bool LogDelay::isWritten()
{
    if (m_isWritten)
        return true;
    // The file is named after the day on which the log was made: the newest is the one.
    const QStringList files = QDir(QStringLiteral("Logs")).entryList(QDir::Files, QDir::Name);
    QFile file(QStringLiteral("Logs/") + (files.isEmpty() ? QString() : files.last()));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    m_place = m_place <= file.size() ? m_place : 0;
    file.seek(m_place);
    const QByteArray news = file.readAll();
    const qsizetype marker = news.indexOf(m_marker);
    if (marker < 0) {
        m_place += news.lastIndexOf('\n') + 1;
        return false;
    }
    m_isWritten = true;
    // The last lines of a log have no stamp.
    const qsizetype line = news.lastIndexOf('\n', marker) + 1;
    const QDateTime written =
        QDateTime::fromString(QString::fromUtf8(news.mid(line, 19)), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (written.isValid())
        m_delayMs = qMax(qint64{0}, m_handedOver.msecsTo(written));
    m_longestMs = qMax(m_longestMs, m_delayMs);
    return true;
}
