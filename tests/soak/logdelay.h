#pragma once

#include <QDateTime>
#include <QString>

/// How far the log is behind: a line is handed over, and the file says when it was written, to a second.
class LogDelay
{
public:
    /// Hands over the next line. GUI thread, while there is a log.
    void mark();
    /// Whether the last line is in the file. Reads what is new there.
    [[nodiscard]] bool isWritten();
    /// Between handing over and writing of the last line that is in the file.
    [[nodiscard]] qint64 delayMs() const { return m_delayMs; }
    /// How many lines were written meanwhile, and which of them most often.
    [[nodiscard]] QString waited() const { return m_waited; }
    [[nodiscard]] qint64 longestMs() const { return m_longestMs; }
    /// The log has ended: nothing is waited for.
    void forget() { m_isWritten = true; }

private:
    void note(const QByteArray &lines);

    QByteArray m_marker;
    int m_number = 0;
    qint64 m_markedAt = 0; ///< where the file ended when the line was handed over
    QString m_waited;
    bool m_isWritten = true;
    QDateTime m_handedOver;
    qint64 m_delayMs = 0;
    qint64 m_longestMs = 0;
};
