#pragma once

#include <QFile>
#include <QList>
#include <QMutex>
#include <QString>
#include <QThread>

#include <atomic>
#include <memory>

/// The program's only log: one text file a day, written by a thread of its own.
///
/// Callers hand over a finished message and go on at once; the log thread stamps it with the time of
/// writing, appends it to `<working directory>/Logs/Log<yyyyMMdd>.txt`, flushes, and repeats it on the
/// debug output. The file is named once, after the day on which the log was created.
///
/// A message is one line: each control character in it, line ends among them, becomes U+FFFD. At most 10 000
/// messages wait; of those beyond only the number is kept, and told by a line of its own (日志丢弃 N 条)
/// where they are missing.
///
/// The thread polls: it rests 1 s when nothing waits and 100 ms after every line.
class LogManager : public QThread
{
    Q_OBJECT

public:
    /// Makes the one log and starts its thread. Must come before anything that logs.
    static void createInstance();

    /// Ends the log, if there is one. Waits for the thread, about a second when it is idle. Messages that
    /// still wait are appended to the file raw: neither stamp nor line feed. What a thread that took the log
    /// before hands over afterwards is written nowhere.
    static void destroyInstance();

    /// The log of this process; null before createInstance() and after destroyInstance(). Any thread; what
    /// was taken stays valid.
    [[nodiscard]] static LogManager *instance();

    /// Queues a message, or counts it when too many wait. Any thread; holds the mutex for the append only and
    /// never fails.
    void writeLog(QString message);

    /// The line as it stands in the file: "yyyy-MM-dd HH:mm:ss   >>   message\n", stamped now.
    [[nodiscard]] static QString formatLine(QString message);

protected:
    void run() override;

private:
    LogManager();
    void openLogFile(const QString &folder);
    void end();
    [[nodiscard]] bool takeNext(QString &message);
    /// Queues the line about dropped messages, if there are any; m_mutex is held.
    void tellDropped();

    std::unique_ptr<QFile> m_logFile;
    QList<QString> m_pending;           ///< not yet written, oldest first; guarded by m_mutex
    qint64 m_dropped = 0;               ///< messages since the last that was queued; guarded by m_mutex
    std::atomic<bool> m_running{false}; ///< the thread is to go on; true only when the file opened
    QMutex m_mutex;
    std::atomic<bool> m_echoToDebug{false};
};
