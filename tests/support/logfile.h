#pragma once

#include "log/logmanager.h"
#include "tests/support/workingfolder.h"

#include <QDate>
#include <QTest>

/// Where the log of a day lies in the working folder.
inline QString logName(QDate day = QDate::currentDate())
{
    return QStringLiteral("Logs/Log%1.txt").arg(day.toString(QStringLiteral("yyyyMMdd")));
}

/// The messages of a log, without the stamps of their lines.
inline QStringList logMessages(const QString &log)
{
    QStringList result;
    const QStringList lines = log.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines)
        result << line.section(QStringLiteral("   >>   "), 1);
    return result;
}

/// The program's log whose file cannot be opened, as it is when its thread has ended for that, for the life
/// of a test.
class UnopenedLog
{
public:
    UnopenedLog()
    {
        QDir().mkpath(logName()); // a folder stands where the file should be
        LogManager::createInstance();
        LogManager::instance()->wait();
    }
    ~UnopenedLog() { LogManager::destroyInstance(); }
    Q_DISABLE_COPY_MOVE(UnopenedLog)

private:
    WorkingFolder m_folder;
};

/// The program's log in an empty working folder, for the life of a test.
class LogFile
{
public:
    LogFile() { LogManager::createInstance(); }
    ~LogFile() { LogManager::destroyInstance(); }
    Q_DISABLE_COPY_MOVE(LogFile)

    /// The messages written so far, without their stamps; "日志线程开启" is the first.
    [[nodiscard]] QStringList messages() const
    {
        return logMessages(QString::fromUtf8(m_folder.read(logName())));
    }

    /// Waits until the log thread has written all of these, in this order, and nothing else so far.
    [[nodiscard]] bool waitFor(const QStringList &expected) const
    {
        const QStringList all = QStringList{QStringLiteral("日志线程开启")} + expected;
        return QTest::qWaitFor([&] { return messages().size() >= all.size(); }, 15000) && messages() == all;
    }

    /// Waits until the message is written.
    [[nodiscard]] bool waitForMessage(const QString &message) const
    {
        return QTest::qWaitFor([&] { return messages().contains(message); }, 15000);
    }

    [[nodiscard]] const WorkingFolder &folder() const { return m_folder; }

private:
    WorkingFolder m_folder;
};
