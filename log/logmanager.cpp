#include "log/logmanager.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

namespace {

constexpr unsigned long idlePauseMs = 1000;
constexpr unsigned long linePauseMs = 100;
constexpr int keptDays = 3;

LogManager *logInstance = nullptr;

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
    logInstance = new LogManager;
    logInstance->start(QThread::InheritPriority);
}

void LogManager::destroyInstance()
{
    delete logInstance;
    logInstance = nullptr;
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
        qDebug() << QStringLiteral("日志文件被占用，打开失败！");
    }
}

LogManager::~LogManager()
{
    m_running = false;
    wait(QDeadlineTimer(QDeadlineTimer::Forever));
    m_logFile->close();
}

void LogManager::writeLog(QString message)
{
    const QMutexLocker lock(&m_mutex);
    m_pending.append(std::move(message));
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
            qDebug() << message;
        stream << formatLine(message);
        stream.flush();
        msleep(linePauseMs);
    } while (m_running);

    while (takeNext(message))
        stream << message;
    stream << formatLine(QStringLiteral("日志线程结束"));
    stream.flush();
}
