#include "log/logmanager.h"

#include "tests/support/debugoutput.h"
#include "tests/support/logfile.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>

namespace {

const QString separator = QStringLiteral("   >>   ");

class Log : public testing::Test
{
protected:
    ~Log() override { LogManager::destroyInstance(); }

    void write(const char *message) { LogManager::instance()->writeLog(QString::fromUtf8(message)); }

    [[nodiscard]] QString content() const { return QString::fromUtf8(m_folder.read(logName())); }

    [[nodiscard]] QStringList lines() const { return content().split(QLatin1Char('\n'), Qt::SkipEmptyParts); }

    /// What stands behind the stamp of each line.
    [[nodiscard]] QStringList messages() const { return logMessages(content()); }

    bool waitForLines(int count)
    {
        return QTest::qWaitFor([&] { return lines().size() >= count; }, 10000);
    }

    WorkingFolder m_folder;
};

} // namespace

TEST_F(Log, a_line_is_stamp_separator_message_and_a_single_line_feed)
{
    const QDateTime before = QDateTime::currentDateTime();
    const QString line = LogManager::formatLine(QStringLiteral("串口初始化"));
    EXPECT_EQ(line.mid(19), separator + QStringLiteral("串口初始化\n"));
    const QDateTime stamp = QDateTime::fromString(line.left(19), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    ASSERT_TRUE(stamp.isValid()) << qPrintable(line);
    EXPECT_LE(before.secsTo(stamp), 1);
    EXPECT_GE(before.secsTo(stamp), -1);
}

TEST_F(Log, without_a_logs_folder_the_folder_and_the_file_of_today_are_created)
{
    LogManager::createInstance();
    LogManager::destroyInstance();
    EXPECT_TRUE(QFile::exists(m_folder.filePath(logName())));
    EXPECT_EQ(messages(), QStringList({QStringLiteral("日志线程开启"), QStringLiteral("日志线程结束")}));
}

TEST_F(Log, two_starts_on_one_day_follow_each_other_in_the_same_file)
{
    for (const char *message : {"first", "second"}) {
        LogManager::createInstance();
        write(message);
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return messages().contains(QString::fromLatin1(message)); }, 10000));
        LogManager::destroyInstance();
    }
    EXPECT_EQ(messages(), QStringList({QStringLiteral("日志线程开启"), QStringLiteral("first"),
                                       QStringLiteral("日志线程结束"), QStringLiteral("日志线程开启"),
                                       QStringLiteral("second"), QStringLiteral("日志线程结束")}));
}

TEST_F(Log, messages_still_queued_at_shutdown_are_appended_raw_before_the_closing_line)
{
    LogManager::createInstance();
    write("written");
    ASSERT_TRUE(waitForLines(2));
    for (const char *message : {"一", "二", "三", "四"})
        write(message);
    LogManager::destroyInstance();

    const QString text = content();
    // At most one of the four was written as a line of its own before the thread saw the end.
    const QRegularExpression raw(
        QStringLiteral("\n(一?二三四|三四)\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d   >>   "
                       "日志线程结束\n$"));
    EXPECT_TRUE(text.contains(raw)) << qPrintable(text);
    for (const char *message : {"一", "二", "三", "四"})
        EXPECT_EQ(text.count(QString::fromUtf8(message)), 1);
}

TEST_F(Log, consecutive_messages_are_at_least_100_ms_apart)
{
    LogManager::createInstance();
    for (int i = 0; i < 4; ++i)
        write("message");
    ASSERT_TRUE(waitForLines(2));
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(waitForLines(5));
    // Three more lines; the first was seen up to one look (10 ms) after it was written.
    EXPECT_GE(timer.elapsed(), 280);
}

TEST_F(Log, messages_of_several_threads_are_all_written_each_in_its_order)
{
    LogManager::createInstance();
    constexpr int perThread = 5;
    QList<QThread *> threads;
    for (const QString &name : {QStringLiteral("a"), QStringLiteral("b")}) {
        threads << QThread::create([name] {
            for (int i = 0; i < perThread; ++i)
                LogManager::instance()->writeLog(name + QString::number(i));
        });
        threads.last()->start();
    }
    for (QThread *thread : threads) {
        thread->wait();
        delete thread;
    }
    ASSERT_TRUE(waitForLines(1 + 2 * perThread));
    const QStringList all = messages();
    EXPECT_EQ(all.filter(QRegularExpression(QStringLiteral("^a\\d$"))).join(u' '),
              QStringLiteral("a0 a1 a2 a3 a4"));
    EXPECT_EQ(all.filter(QRegularExpression(QStringLiteral("^b\\d$"))).join(u' '),
              QStringLiteral("b0 b1 b2 b3 b4"));
}

TEST_F(Log, each_message_is_repeated_without_a_stamp_on_the_debug_output)
{
    const DebugOutput debug;
    LogManager::createInstance();
    write("串口初始化");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !debug.messages().isEmpty(); }, 10000));
    EXPECT_EQ(debug.messages(), QStringList({QStringLiteral("串口初始化")}));
}

TEST_F(Log, control_characters_and_line_ends_in_a_message_become_visible_and_leave_it_one_line)
{
    const DebugOutput debug;
    LogManager::createInstance();
    const QString hostile = QStringLiteral("a\nb\rc\td") + QChar(u'\0') + QChar(0x1B) +
                            QStringLiteral("[31m") + QChar(0x7F) + QChar(0x85) + QChar(0x9F) + QChar(0x2028) +
                            QChar(0x2029) + QStringLiteral("z");
    LogManager::instance()->writeLog(hostile);
    ASSERT_TRUE(waitForLines(2));
    const QChar r(QChar::ReplacementCharacter);
    const QString cleaned = QStringLiteral("a") + r + u'b' + r + u'c' + r + u'd' + r + r +
                            QStringLiteral("[31m") + QString(5, r) + QStringLiteral("z");
    EXPECT_EQ(messages().value(1), cleaned);
    EXPECT_EQ(debug.messages(), QStringList(cleaned));
}

TEST_F(Log, a_message_without_control_characters_stays_as_it_is)
{
    LogManager::createInstance();
    const QString plain = QStringLiteral("  \"50%1\" ü 串口 \u00A0\u3000 \U0001F4F7  ");
    LogManager::instance()->writeLog(plain);
    ASSERT_TRUE(waitForLines(2));
    EXPECT_EQ(messages().value(1), plain);
}

TEST_F(Log, more_than_ten_thousand_waiting_messages_are_dropped_and_told_in_one_line)
{
    LogManager::createInstance();
    write("written");
    ASSERT_TRUE(waitForLines(2));
    // The thread takes ten a second; what it takes meanwhile makes room for as many more.
    for (int i = 0; i < 12'000; ++i)
        LogManager::instance()->writeLog(QStringLiteral("m%1;").arg(i));
    LogManager::destroyInstance();
    const QString log = content();
    qint64 dropped = 0;
    const QRegularExpression told(QStringLiteral("日志丢弃 (\\d+) 条"));
    for (const QRegularExpressionMatch &match : told.globalMatch(log))
        dropped += match.captured(1).toLongLong();
    EXPECT_GE(dropped, 1900);
    EXPECT_EQ(log.count(u';') + dropped, 12'000);
    EXPECT_TRUE(log.contains(QStringLiteral("m9998;"))) << "ten thousand have room";
    EXPECT_TRUE(log.contains(QRegularExpression(QStringLiteral("日志丢弃 \\d+ 条\\d{4}-.*日志线程结束\n$"))));
}

TEST_F(Log, what_was_dropped_stands_before_the_next_message_that_finds_room)
{
    LogManager::createInstance();
    write("written");
    ASSERT_TRUE(waitForLines(2));
    for (int i = 0; i < 10'010; ++i)
        write("waits");
    ASSERT_TRUE(waitForLines(2 + 4)); // room for four more, one of them for the line
    write("<late>");
    LogManager::destroyInstance();
    const QRegularExpression told(QStringLiteral("waits日志丢弃 \\d+ 条<late>\\d{4}-"));
    EXPECT_TRUE(content().contains(told)) << qPrintable(content().right(200));
}

TEST_F(Log, a_file_that_cannot_be_opened_is_told_and_the_thread_ends_by_itself)
{
    QDir().mkpath(logName()); // a folder stands where the file should be
    const DebugOutput debug;
    LogManager::createInstance();
    EXPECT_TRUE(debug.contains(QStringLiteral("日志文件被占用，打开失败！")));
    EXPECT_TRUE(LogManager::instance()->wait(QDeadlineTimer(5000)));
    write("stays in memory");
    LogManager::destroyInstance();
    EXPECT_TRUE(QDir(m_folder.filePath(logName())).isEmpty());
}

TEST_F(Log, destroying_twice_does_nothing_the_second_time)
{
    LogManager::createInstance();
    LogManager::destroyInstance();
    EXPECT_EQ(LogManager::instance(), nullptr);
    const QString before = content();
    LogManager::destroyInstance();
    EXPECT_EQ(content(), before);
}

TEST_F(Log, a_thread_that_took_the_log_before_it_ended_may_still_hand_over_a_message)
{
    LogManager::createInstance();
    LogManager *const taken = LogManager::instance();
    LogManager::destroyInstance();
    const QString before = content();
    taken->writeLog(QStringLiteral("late"));
    EXPECT_EQ(content(), before);
}

TEST_F(Log, a_thread_that_was_left_behind_may_write_while_the_log_ends)
{
    LogManager::createInstance();
    std::atomic<bool> wrote{false};
    std::jthread left([&wrote] {
        LogManager *log = nullptr;
        while ((log = LogManager::instance()) != nullptr) {
            log->writeLog(QStringLiteral("m"));
            wrote = true;
        }
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return wrote.load(); }, 10000));
    LogManager::destroyInstance();
    left.join();
    EXPECT_TRUE(content().contains(QStringLiteral("日志线程结束")));
}
