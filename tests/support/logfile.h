#pragma once

#include "log/logmanager.h"
#include "tests/support/workingfolder.h"

#include <QDate>
#include <QTest>

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
        QStringList result;
        const QStringList lines =
            QString::fromUtf8(m_folder.read(name())).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString &line : lines)
            result << line.section(QStringLiteral("   >>   "), 1);
        return result;
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
    static QString name()
    {
        return QStringLiteral("Logs/Log") + QDate::currentDate().toString(QStringLiteral("yyyyMMdd")) +
               QStringLiteral(".txt");
    }

    WorkingFolder m_folder;
};
