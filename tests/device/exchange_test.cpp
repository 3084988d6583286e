#include "device/exchange.h"

#include "tests/support/linkfixture.h"

#include <QElapsedTimer>

namespace {

class Replies : public LinkFixture
{
protected:
    Replies() { link().openDevice(QStringLiteral("QV1K")); }
};

} // namespace

TEST_F(Replies, all_bytes_of_a_command_go_out_in_one_write)
{
    link().write(hex("FFAA01010DEB01B6B7"));
    EXPECT_EQ(fake.written(), QList<QByteArray>({hex("FFAA01010DEB01B6B7")}));
}

TEST_F(Replies, a_reply_of_the_expected_length_comes_back_at_once_as_upper_case_text_and_is_logged)
{
    fake.push(hex("ffbb03a00deb"));
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(link().wait_for_read(60000, 6), "FFBB03A00DEB");
    EXPECT_LT(timer.elapsed(), 30000);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("串口接收数据 = FFBB03A00DEB")));
}

TEST_F(Replies, a_reply_in_pieces_is_put_together)
{
    // The rest arrives only after the first piece was read.
    fake.push(hex("FFBB03"));
    QThread *sender = QThread::create([this] {
        while (fake.waiting() > 0)
            QThread::yieldCurrentThread();
        fake.push(hex("A00DEB"));
    });
    sender->start();
    EXPECT_EQ(link().wait_for_read(5000, 6), "FFBB03A00DEB");
    sender->wait();
    delete sender;
}

TEST_F(Replies, a_longer_reply_never_matches_and_comes_back_whole_at_the_time_out)
{
    fake.push(hex("FFBB03A00DEB00"));
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(link().wait_for_read(200, 6), "FFBB03A00DEB00");
    EXPECT_GE(timer.elapsed(), 200);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("wait_for_read 接收数据超时")));
}

TEST_F(Replies, two_replies_run_together_never_match)
{
    fake.push(hex("FFBB03A00DEBFFBB03A10DEB"));
    EXPECT_EQ(link().wait_for_read(50, 6), "FFBB03A00DEBFFBB03A10DEB");
}

TEST_F(Replies, a_short_reply_comes_back_at_the_time_out)
{
    fake.push(hex("FFBB"));
    EXPECT_EQ(link().wait_for_read(50, 6), "FFBB");
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("wait_for_read 接收数据超时")));
}

TEST_F(Replies, a_time_out_of_0_or_less_returns_empty_at_once_and_is_logged)
{
    fake.push(hex("FFBB03A00DEB"));
    EXPECT_EQ(link().wait_for_read(0, 6), QByteArray());
    EXPECT_EQ(link().wait_for_read(-1, 6), QByteArray());
    EXPECT_EQ(fake.statusCalls(), 0);
    EXPECT_TRUE(log.waitFor({QStringLiteral("串口初始化"), QStringLiteral("串口连接配置成功"),
                             QStringLiteral("wait_for_read 接收数据超时"),
                             QStringLiteral("wait_for_read 接收数据超时")}));
}

TEST_F(Replies, a_failing_read_ends_the_wait_with_what_had_come)
{
    fake.push(hex("FFBB"));
    QThread *sender = QThread::create([this] {
        while (fake.waiting() > 0)
            QThread::yieldCurrentThread();
        fake.setReadResult(d2xx::Status::IoError);
        fake.push(hex("03A0"));
    });
    sender->start();
    EXPECT_EQ(link().wait_for_read(60000, 6), "FFBB");
    sender->wait();
    delete sender;
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("串口接收数据失败")));
}

TEST_F(Replies, when_the_status_call_fails_nothing_counts_as_waiting)
{
    fake.push(hex("FFBB03A00DEB"));
    fake.setStatusResult(d2xx::Status::IoError);
    EXPECT_EQ(link().wait_for_read(30, 6), QByteArray());
    EXPECT_EQ(fake.reads(), 0);
}

TEST_F(Replies, on_a_closed_device_the_wait_runs_out_and_a_write_is_ignored)
{
    link().closeDevice();
    fake.push(hex("FFBB03A00DEB"));
    link().write("x");
    EXPECT_EQ(link().wait_for_read(30, 6), QByteArray());
    EXPECT_EQ(fake.written().size(), 0);
    EXPECT_EQ(fake.statusCalls(), 0);
}

TEST_F(Replies, an_exchange_is_one_write_and_the_wait_for_its_reply)
{
    fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03AA01EB"));
    EXPECT_EQ(Exchange::run(link(), hex("FFAA03AA0DEB"), {5000, 6}), "FFBB03AA01EB");
    EXPECT_EQ(fake.written(), QList<QByteArray>({hex("FFAA03AA0DEB")}));
}

TEST_F(Replies, an_exchange_waits_for_six_bytes_unless_told_otherwise)
{
    fake.answer(hex("FFAA02FA0DEB"), hex("0102034500"));
    EXPECT_EQ(Exchange::run(link(), hex("FFAA02FA0DEB"), {5000, 5}), "0102034500");
    EXPECT_EQ(Exchange::run(link(), hex("FFAA02FA0DEB"), {20}), "0102034500");
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("wait_for_read 接收数据超时")));
}
