#include "device/protocol/commandframes.h"
#include "device/protocol/frameformat.h"
#include "tests/support/linkfixture.h"

#include <QPointer>
#include <QTest>
#include <QThread>

#include <stdexcept>

namespace {

class ReceiveLoop : public LinkFixture
{
protected:
    ReceiveLoop()
    {
        link().openDevice(QStringLiteral("QV1K"));
        QObject::connect(&link(), &PortManager::read_ready, &m_context,
                         [this](const QByteArray &frame) { frames << frame; });
        QObject::connect(&link(), &PortManager::stop, &m_context, [this] { ++stops; });
    }

    void start()
    {
        link().startReceive();
        ASSERT_TRUE(log.waitForMessage(QStringLiteral("串口接收线程开启")));
    }

    /// Bytes arrive and the loop has read them and dealt with them.
    void arrive(const QByteArray &bytes)
    {
        fake.push(bytes);
        ASSERT_TRUE(QTest::qWaitFor([&] { return fake.waiting() == 0; }, 10000));
        const int seen = fake.statusCalls();
        ASSERT_TRUE(QTest::qWaitFor([&] { return fake.statusCalls() > seen; }, 10000));
    }

    void arriveBlocks(int count)
    {
        for (int i = 0; i < count; ++i)
            arrive(block(i));
    }

    /// Lets the loop make some passes more.
    void pass()
    {
        const int seen = fake.statusCalls();
        ASSERT_TRUE(QTest::qWaitFor([&] { return fake.statusCalls() > seen + 2; }, 10000));
    }

    static QByteArray block(int value)
    {
        return QByteArray(FrameFormat::blockBytes, static_cast<char>(value));
    }

    static QByteArray requests(int first, int last)
    {
        QByteArray all;
        for (int i = first; i <= last; ++i)
            all += CommandFrame::blockRequest(i);
        return all.toHex().toUpper();
    }

    QList<QByteArray> frames;
    int stops = 0;

private:
    QObject m_context;
};

const char *const haltHex = "FFAA03A10DEB";

} // namespace

TEST_F(ReceiveLoop, each_block_is_acknowledged_and_the_32nd_completes_the_frame_with_counter_0)
{
    start();
    arriveBlocks(31);
    EXPECT_EQ(fake.writtenHex(), requests(1, 31));
    EXPECT_EQ(frames.size(), 0);
    arrive(block(31));
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames.size() == 1; }));
    EXPECT_EQ(fake.writtenHex(), requests(1, 31) + "FFAA00000DEB");
    ASSERT_EQ(frames[0].size(), 4194304);
    for (int i = 0; i < FrameFormat::blocksPerFrame; ++i)
        EXPECT_EQ(frames[0].mid(i * FrameFormat::blockBytes, FrameFormat::blockBytes), block(i));
}

TEST_F(ReceiveLoop, the_second_frame_counts_from_1_again_and_begins_empty)
{
    start();
    arriveBlocks(64);
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames.size() == 2; }));
    EXPECT_EQ(fake.writtenHex(), requests(1, 31) + requests(0, 31) + requests(0, 0));
    EXPECT_EQ(frames[1].size(), 4194304);
    EXPECT_EQ(frames[1].left(1), block(32).left(1));
}

TEST_F(ReceiveLoop, a_read_across_two_boundaries_answers_one_and_the_next_with_the_next_data)
{
    start();
    arrive(QByteArray(FrameFormat::blockBytes - 10, 'a'));
    EXPECT_EQ(fake.writtenHex(), "");
    arrive(QByteArray(FrameFormat::blockBytes + 20, 'b'));
    EXPECT_EQ(fake.writtenHex(), requests(1, 1));
    pass();
    EXPECT_EQ(fake.writtenHex(), requests(1, 1));
    arrive(QByteArray(1, 'c'));
    EXPECT_EQ(fake.writtenHex(), requests(1, 2));
}

TEST_F(ReceiveLoop, bytes_beyond_the_frame_in_the_last_read_go_with_it)
{
    start();
    arriveBlocks(31);
    arrive(block(31) + "extra");
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames.size() == 1; }));
    EXPECT_EQ(frames[0].size(), 4194304 + 5);
    EXPECT_EQ(frames[0].right(5), "extra");
    arriveBlocks(32);
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames.size() == 2; }));
    EXPECT_EQ(frames[1].size(), 4194304);
}

TEST_F(ReceiveLoop, a_stop_request_in_the_middle_of_a_block_reads_on_to_the_boundary_and_discards_the_frame)
{
    start();
    arriveBlocks(3);
    arrive(QByteArray(100, 'x'));
    link().requestStop();
    pass();
    EXPECT_EQ(fake.writtenHex(), requests(1, 3));
    EXPECT_EQ(stops, 0);
    arrive(QByteArray(FrameFormat::blockBytes - 100, 'x'));
    ASSERT_TRUE(QTest::qWaitFor([&] { return stops == 1; }));
    EXPECT_EQ(fake.writtenHex(), requests(1, 3) + haltHex);

    // Nothing further is read: replies are left to the command exchange.
    const int reads = fake.reads();
    fake.push(hex("FFBB03A10DEB"));
    pass();
    EXPECT_EQ(fake.reads(), reads);
    EXPECT_EQ(link().wait_for_read(3500, 6), "FFBB03A10DEB");
    EXPECT_EQ(frames.size(), 0);
}

TEST_F(ReceiveLoop, a_stop_request_at_the_32nd_block_hands_the_frame_on_first)
{
    QStringList order;
    QObject context;
    QObject::connect(&link(), &PortManager::read_ready, &context, [&] { order << QStringLiteral("frame"); });
    QObject::connect(&link(), &PortManager::stop, &context, [&] { order << QStringLiteral("stop"); });
    start();
    arriveBlocks(31);
    link().requestStop();
    arrive(block(31));
    ASSERT_TRUE(QTest::qWaitFor([&] { return stops == 1; }));
    EXPECT_EQ(order, QStringList({QStringLiteral("frame"), QStringLiteral("stop")}));
    EXPECT_EQ(frames[0].size(), FrameFormat::frameBytes);
    EXPECT_EQ(fake.writtenHex(), requests(1, 31) + haltHex);
}

TEST_F(ReceiveLoop, a_stop_request_before_the_first_block_halts_after_that_block)
{
    start();
    link().requestStop();
    pass();
    EXPECT_EQ(fake.writtenHex(), "");
    arrive(block(0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return stops == 1; }));
    EXPECT_EQ(fake.writtenHex(), haltHex);
    EXPECT_EQ(frames.size(), 0);
}

TEST_F(ReceiveLoop, a_new_start_after_a_halt_clears_the_stop_request_and_reuses_the_thread)
{
    start();
    link().requestStop();
    arrive(block(0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return stops == 1; }));
    QThread *thread = link().thread();
    EXPECT_NE(thread, QThread::currentThread());
    for (int cycle = 1; cycle <= 5; ++cycle) {
        link().pauseReceive();
        fake.clearWritten();
        link().startReceive();
        EXPECT_EQ(link().thread(), thread);
        arriveBlocks(32);
        ASSERT_TRUE(QTest::qWaitFor([&] { return frames.size() == cycle; }));
        EXPECT_EQ(fake.writtenHex(), requests(1, 31) + requests(0, 0));
        link().requestStop();
        arrive(block(0));
        ASSERT_TRUE(QTest::qWaitFor([&] { return stops == 1 + cycle; }));
    }
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return log.messages().filter(QStringLiteral("串口接收线程开启")).size() == 1; }));
}

TEST_F(ReceiveLoop, a_start_while_it_receives_goes_on_with_what_was_received)
{
    start();
    arrive(QByteArray(FrameFormat::blockBytes - 10, 'x'));
    link().startReceive();
    pass();
    arrive(QByteArray(10, 'x'));
    EXPECT_EQ(fake.writtenHex(), requests(1, 1));
}

TEST_F(ReceiveLoop, a_removal_in_mid_frame_leaves_nothing_behind_for_the_next_start)
{
    start();
    arriveBlocks(5);
    arrive(QByteArray(1000, 'x'));
    link().closeDevice();
    link().pauseReceive();
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    fake.clearWritten();
    link().startReceive();
    arriveBlocks(32);
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames.size() == 1; }));
    EXPECT_EQ(frames[0].size(), FrameFormat::frameBytes);
    EXPECT_EQ(frames[0].at(0), static_cast<char>(0));
    EXPECT_EQ(fake.writtenHex(), requests(1, 31) + requests(0, 0));
}

TEST_F(ReceiveLoop, after_a_removal_in_mid_frame_the_replies_of_the_next_connection_are_left_alone)
{
    start();
    arriveBlocks(1);
    link().closeDevice();
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    fake.push(hex("640210000DEB"));
    pass();
    EXPECT_EQ(fake.waiting(), 6);
    EXPECT_EQ(link().wait_for_read(500, 6), "640210000DEB");
}

TEST_F(ReceiveLoop, closing_the_device_leaves_the_loop_polling_without_a_word_in_the_log)
{
    start();
    arriveBlocks(1);
    const int reads = fake.reads();
    link().closeDevice();
    fake.push(block(1));
    ASSERT_TRUE(log.waitForMessage(QStringLiteral("串口关闭")));
    EXPECT_EQ(fake.reads(), reads);
    EXPECT_TRUE(log.messages().filter(QStringLiteral("失败")).isEmpty());
}

TEST_F(ReceiveLoop, a_failing_status_call_counts_as_nothing_waiting)
{
    start();
    fake.setStatusResult(d2xx::Status::IoError);
    fake.push(block(0));
    pass();
    EXPECT_EQ(fake.reads(), 0);
    fake.setStatusResult(d2xx::Status::Ok);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.writtenHex() == requests(1, 1); }, 10000));
}

TEST_F(ReceiveLoop, a_failing_read_is_logged_and_its_bytes_dropped)
{
    // A peer that sends a block when it is asked for it, and not before.
    fake.setOnWrite([this](const QByteArray &frame) {
        if (frame.startsWith(hex("FFAA00")))
            fake.push(block(frame[3]));
    });
    start();
    fake.setReadResult(d2xx::Status::IoError);
    arrive(block(0));
    fake.setReadResult(d2xx::Status::Ok);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("串口线程接收数据失败")));
    pass();
    EXPECT_EQ(fake.writtenHex(), "") << "a block that did not come was acknowledged";

    // A new start is what helps: nothing of what was dropped stands in its frame.
    link().closeDevice();
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    link().startReceive();
    fake.push(block(0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !frames.isEmpty(); }, 10000));
    ASSERT_EQ(frames[0].size(), FrameFormat::frameBytes);
    for (int i = 0; i < FrameFormat::blocksPerFrame; ++i)
        EXPECT_EQ(frames[0].mid(i * FrameFormat::blockBytes, FrameFormat::blockBytes), block(i));
}

TEST_F(ReceiveLoop, an_exception_is_logged_and_a_stop_still_ends)
{
    const auto fail = [] {
        throw std::runtime_error("in the receive thread");
    };
    QObject::connect(&link(), &PortManager::read_ready, &link(), fail, Qt::DirectConnection);
    start();
    arriveBlocks(FrameFormat::blocksPerFrame);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("串口接收线程异常")));
    link().requestStop();
    arriveBlocks(1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return stops == 1; }, 10000));
}

TEST_F(ReceiveLoop, a_pause_slows_the_loop_but_does_not_stop_the_reading)
{
    start();
    link().pauseReceive();
    arrive(block(0));
    EXPECT_EQ(fake.writtenHex(), requests(1, 1));
}

TEST_F(ReceiveLoop, a_pause_before_the_first_start_outlasts_that_start)
{
    link().pauseReceive();
    start();
    QElapsedTimer timer;
    const int before = fake.statusCalls();
    timer.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.statusCalls() >= before + 3; }, 10000));
    EXPECT_GE(timer.elapsed(), 180); // three passes at 100 ms, the first of them already begun
    link().startReceive();
    // However slow the machine is: some time or other three passes fit where a paused loop has one.
    const auto threePassesFit = [&] {
        const int after = fake.statusCalls();
        timer.restart();
        while (timer.elapsed() < 90)
            QThread::yieldCurrentThread();
        return fake.statusCalls() >= after + 3;
    };
    EXPECT_TRUE(QTest::qWaitFor(threePassesFit, 20000));
}

TEST_F(ReceiveLoop, destroying_the_link_ends_the_thread_also_while_it_is_paused)
{
    start();
    link().pauseReceive();
    const QPointer<PortManager> destroyed = &link();
    PortManager::destroyInstance();
    EXPECT_TRUE(destroyed.isNull());
    EXPECT_TRUE(log.waitFor({QStringLiteral("串口初始化"), QStringLiteral("串口连接配置成功"),
                             QStringLiteral("串口接收线程开启"), QStringLiteral("串口销毁"),
                             QStringLiteral("串口接收线程结束"), QStringLiteral("串口关闭")}));
}

TEST_F(ReceiveLoop, frames_are_handed_over_on_the_receivers_thread)
{
    QThread *receiver = nullptr;
    QObject context;
    QObject::connect(&link(), &PortManager::read_ready, &context,
                     [&] { receiver = QThread::currentThread(); });
    start();
    arriveBlocks(32);
    ASSERT_TRUE(QTest::qWaitFor([&] { return receiver != nullptr; }));
    EXPECT_EQ(receiver, QThread::currentThread());
}
