#include "log/logmanager.h"
#include "tests/log/calendar.h"
#include "tests/support/logfile.h"

#include <gtest/gtest.h>

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QTest>

namespace {

class LogCalendar : public testing::Test
{
protected:
    ~LogCalendar() override
    {
        LogManager::destroyInstance();
        turnCalendar(0);
    }

    void waitForMessage(const QString &file, const QString &message)
    {
        LogManager::instance()->writeLog(message);
        ASSERT_TRUE(QTest::qWaitFor([&] { return content(file).contains(message); }, 10000));
    }

    [[nodiscard]] QString content(const QString &file) const
    {
        return QString::fromUtf8(m_folder.read(file));
    }

    /// A file in the log's folder, made now.
    [[nodiscard]] QFileInfo makeFile() const
    {
        QDir().mkdir(QStringLiteral("Logs"));
        m_folder.write(QStringLiteral("Logs/other.txt"), "kept");
        QFileInfo file(m_folder.filePath(QStringLiteral("Logs/other.txt")));
        file.setCaching(false);
        return file;
    }

    /// Starts the log so many days from now.
    static void startIn(int days)
    {
        turnCalendar(days);
        LogManager::createInstance();
    }

    WorkingFolder m_folder;
};

} // namespace

TEST_F(LogCalendar, a_run_past_midnight_stays_in_the_file_of_its_first_day_and_stamps_the_new_date)
{
    const QDate first = QDate::currentDate();
    const QString file = logName(first);
    LogManager::createInstance();
    waitForMessage(file, QStringLiteral("before midnight"));
    turnCalendar(1);
    ASSERT_EQ(QDate::currentDate(), first.addDays(1)) << "the calendar does not turn";
    waitForMessage(file, QStringLiteral("after midnight"));
    LogManager::destroyInstance();

    const QString stamp = first.addDays(1).toString(QStringLiteral("yyyy-MM-dd "));
    EXPECT_TRUE(content(file).split(u'\n').at(2).startsWith(stamp)) << qPrintable(content(file));
    EXPECT_EQ(content(file).count(stamp), 2) << "the message and the closing line";
    EXPECT_FALSE(QFileInfo::exists(m_folder.filePath(logName(first.addDays(1)))));
}

TEST_F(LogCalendar, a_file_stays_however_long_ago_it_was_made)
{
    const QFileInfo file = makeFile();
    for (const int days : {3, 4, 10, 4000}) {
        startIn(days);
        EXPECT_TRUE(file.exists()) << days;
        LogManager::destroyInstance();
    }
}

TEST_F(LogCalendar, a_file_made_three_days_from_now_stays)
{
    const QFileInfo file = makeFile();
    startIn(-3);
    EXPECT_TRUE(file.exists());
}

TEST_F(LogCalendar, a_file_made_four_days_from_now_is_removed)
{
    const QFileInfo file = makeFile();
    // Where the file system does not tell when a file was made, it stays.
    const bool known = file.fileTime(QFileDevice::FileBirthTime).isValid();
    startIn(-4);
    EXPECT_EQ(file.exists(), !known);
}
