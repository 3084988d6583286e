#include "log/logmanager.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <vector>

namespace {

constexpr unsigned long idlePauseMs = 1000;
constexpr unsigned long linePauseMs = 100;
constexpr int keptDays = 3;
constexpr qsizetype maxWaiting = 10000;

std::atomic<LogManager *> logInstance{nullptr};

/// A thread that hung in a call of a driver library, and was left behind, may hold the log when it ends.
std::vector<LogManager *> &endedLogs()
{
    static auto *logs = new std::vector<LogManager *>; // never deleted: such a thread may outlive main()
    return *logs;
}

/// What breaks a line or steers a terminal: the control characters of both sets, and Unicode's own line ends.
bool isControl(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString droppedText(qint64 messages)
{
    return QStringLiteral("日志丢弃 %1 条").arg(messages);
}

/// Removes the log files whose creation lies more than three days after today. The count runs from now to
/// the file's creation, so that files of the past, however old, stay.
void removeFilesFromTheFuture(const QDir &folder)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QFileInfoList entries = folder.entryInfoList(QDir::Files, QDir::NoSort);
    for (const QFileInfo &entry : entries) {
        if (now.daysTo(entry.fileTime(QFileDevice::FileBirthTime)) > keptDays)
            QFile::remove(entry.absoluteFilePath());
    }
}

} // namespace

void LogManager::createInstance()
{
    auto *log = new LogManager;
    log->start(QThread::InheritPriority);
    logInstance = log;
}

void LogManager::destroyInstance()
{
    LogManager *log = logInstance.exchange(nullptr);
    if (log == nullptr)
        return;
    log->end();
    endedLogs().push_back(log);
}

LogManager *LogManager::instance()
{
    return logInstance;
}

LogManager::LogManager()
{
    const QString folder = QDir::currentPath() + QStringLiteral("/Logs");
    if (QDir().exists(folder))
        removeFilesFromTheFuture(QDir(folder));
    else
        QDir().mkdir(folder);
    openLogFile(folder);
}

void LogManager::openLogFile(const QString &folder)
{
    const QString day = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd"));
    m_logFile = std::make_unique<QFile>(folder + QStringLiteral("/Log") + day + QStringLiteral(".txt"));
    if (m_logFile->open(QIODevice::WriteOnly | QIODevice::Append)) {
        m_running = true;
        m_echoToDebug = true;
    } else {
        qDebug().noquote() << QStringLiteral("日志文件被占用，打开失败！");
    }
}

void LogManager::end()
{
    m_running = false;
    wait(QDeadlineTimer(QDeadlineTimer::Forever));
    m_logFile->close();
}

void LogManager::writeLog(QString message)
{
    std::replace_if(message.begin(), message.end(), isControl, QChar(QChar::ReplacementCharacter));
    const QMutexLocker lock(&m_mutex);
    // What was dropped stands where it is missing: before the next message that finds room.
    const qsizetype more = m_dropped > 0 ? 2 : 1;
    if (m_pending.size() + more > maxWaiting) {
        m_dropped += 1;
        return;
    }
    tellDropped();
    m_pending.append(std::move(message));
}

void LogManager::tellDropped()
{
    if (m_dropped > 0)
        m_pending.append(droppedText(m_dropped));
    m_dropped = 0;
}

QString LogManager::formatLine(QString message)
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) +
           QStringLiteral("   >>   ") + message + QLatin1Char('\n');
}

bool LogManager::takeNext(QString &message)
{
    const QMutexLocker lock(&m_mutex);
    if (m_pending.isEmpty())
        tellDropped();
    if (m_pending.isEmpty())
        return false;
    message = m_pending.takeFirst();
    return true;
}

void LogManager::run()
{
    QTextStream stream(m_logFile.get());
    stream << formatLine(QStringLiteral("日志线程开启"));

    QString message;
    do {
        if (!takeNext(message)) {
            msleep(idlePauseMs);
            continue; // to the loop's condition
        }
        if (m_echoToDebug)
            qDebug().noquote() << message;
        stream << formatLine(message);
        stream.flush();
        msleep(linePauseMs);
    } while (m_running);

    while (takeNext(message))
        stream << message;
    stream << formatLine(QStringLiteral("日志线程结束"));
    stream.flush();
}
