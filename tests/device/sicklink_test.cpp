#include "device/conversations.h"
#include "device/exchange.h"
#include "device/protocol/frameformat.h"
#include "tests/support/arrivedsignals.h"
#include "tests/support/linkfixture.h"

#include <QElapsedTimer>
#include <QTest>

#include <atomic>

using d2xx::Status;

namespace {

/// An open device that goes wrong; what the link tells about it is kept.
class SickLink : public LinkFixture
{
protected:
    SickLink() { link().openDevice(QStringLiteral("QV1K")); }

    void startReceiving()
    {
        Conversation::beginReceiving(link());
        ASSERT_TRUE(log.waitForMessage(QStringLiteral("串口接收线程开启")));
    }

    ArrivedSignals<> lost{link(), &PortManager::lost};
    ArrivedSignals<bool> interrupted{link(), &PortManager::interrupted};
    ArrivedSignals<> stops{link(), &PortManager::stop};
};

const QByteArray voltages = hex("FFAA01020DEB8000");
const QByteArray halt = CommandFrame::haltAcquisition();
const QByteArray query = CommandFrame::readinessQuery();

} // namespace

TEST_F(SickLink, a_late_reply_is_not_taken_for_the_answer_to_the_next_command)
{
    EXPECT_EQ(Exchange::run(link(), voltages, {20}), "");
    EXPECT_FALSE(link().isSettled());
    fake.push(hex("FFBB01020DEB")); // the acknowledgement that came too late
    fake.answer(hex("FFAA01010DEB"), hex("FFBB7F010DEB"));
    EXPECT_EQ(Exchange::run(link(), hex("FFAA01010DEB"), {5000}), "FFBB7F010DEB");
    EXPECT_TRUE(link().isSettled());
}

TEST_F(SickLink, every_reply_that_is_not_exactly_what_was_waited_for_leaves_the_link_unsettled)
{
    for (const char *reply : {"", "FFBB", "FFBB01020DEB00"}) {
        fake.answer(voltages, hex(reply));
        Exchange::run(link(), voltages, {20});
        EXPECT_FALSE(link().isSettled()) << reply;
    }
    fake.answer(voltages, hex("FFBB01020DEB"));
    fake.setReadResult(Status::IoError);
    Exchange::run(link(), voltages, {20});
    EXPECT_FALSE(link().isSettled()) << "the read failed";
    fake.setReadResult(Status::Ok);
    Exchange::run(link(), voltages, {5000});
    EXPECT_TRUE(link().isSettled());
}

TEST_F(SickLink, a_reply_that_another_command_left_over_leaves_the_link_unsettled)
{
    fake.push(hex("FFBB03A10DEB"));
    EXPECT_EQ(Exchange::run(link(), voltages, {5000}), "FFBB03A10DEB");
    EXPECT_FALSE(link().isSettled());
    fake.push(hex("FFBB01020DEB")); // the answer, which that kept waiting
    fake.answer(query, hex("FFBB03AA01EB"));
    EXPECT_EQ(Exchange::run(link(), query, {5000}), "FFBB03AA01EB");
    EXPECT_TRUE(link().isSettled());
}

TEST_F(SickLink, opening_and_closing_settle_the_link)
{
    Exchange::run(link(), voltages, {20});
    link().closeDevice();
    EXPECT_TRUE(link().isSettled());
    Exchange::run(link(), voltages, {20});
    link().openDevice(QStringLiteral("QV1K"));
    EXPECT_TRUE(link().isSettled());
}

TEST_F(SickLink, on_a_settled_link_nothing_is_read_before_a_write)
{
    fake.push("left");
    fake.answer(voltages, hex("FFBB01020DEB"));
    EXPECT_EQ(Exchange::run(link(), voltages, {20}), hexText("left") + "FFBB01020DEB");
}

TEST_F(SickLink, what_never_stops_coming_does_not_hold_up_the_next_command)
{
    Exchange::run(link(), voltages, {20});
    fake.setWaitingTold(1); // each read brings nothing, the status says that a byte waits
    fake.clearWritten();
    QElapsedTimer timer;
    timer.start();
    Exchange::run(link(), voltages, {20});
    EXPECT_LT(timer.elapsed(), 3000);
    EXPECT_EQ(fake.written(), QByteArrayList{voltages});
}

TEST_F(SickLink, a_device_whose_status_fails_during_a_whole_exchange_is_lost)
{
    fake.setStatusResult(Status::IoError);
    Exchange::run(link(), voltages, {20});
    Exchange::run(link(), voltages, {20});
    EXPECT_TRUE(link().isLost());
    EXPECT_EQ(lost.count(), 1);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("设备连接丢失")));
    link().closeDevice();
    EXPECT_FALSE(link().isLost());
}

TEST_F(SickLink, a_device_whose_status_was_had_once_in_an_exchange_is_not_lost)
{
    fake.setStatusResult(Status::IoError);
    fake.setOnWrite([this](const QByteArray &) { fake.setStatusResult(Status::Ok); });
    Exchange::run(link(), voltages, {20});
    EXPECT_FALSE(link().isLost());
    EXPECT_EQ(lost.count(), 0);
}

TEST_F(SickLink, a_closed_device_cannot_be_lost)
{
    link().closeDevice();
    Exchange::run(link(), voltages, {20});
    EXPECT_FALSE(link().checkLost());
    EXPECT_EQ(lost.count(), 0);
}

TEST_F(SickLink, a_look_at_the_status_finds_the_loss)
{
    EXPECT_FALSE(link().checkLost());
    fake.setStatusResult(Status::IoError);
    EXPECT_TRUE(link().checkLost());
    EXPECT_TRUE(link().isLost());
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("设备连接丢失")));
}

TEST_F(SickLink, a_device_whose_status_fails_for_a_second_of_an_acquisition_is_lost)
{
    startReceiving();
    fake.setStatusResult(Status::IoError);
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(lost.wait(10000));
    EXPECT_GE(timer.elapsed(), 900);
    EXPECT_TRUE(link().isLost());
    fake.setStatusResult(Status::Ok);
    fake.push("reply");
    EXPECT_EQ(link().wait_for_read(2000, 5), hexText("reply")) << "nothing is received any more";
    EXPECT_EQ(stops.count(), 0);
}

TEST_F(SickLink, a_device_that_is_idle_is_not_given_up_by_the_loop)
{
    startReceiving();
    link().halt();
    fake.setStatusResult(Status::IoError);
    const int looks = fake.statusCalls();
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return fake.statusCalls() > looks + 1200; }, 20000)); // one a millisecond
    EXPECT_EQ(lost.count(), 0);
}

TEST_F(SickLink, a_stream_that_falls_silent_is_told_and_so_is_its_next_byte)
{
    startReceiving();
    ASSERT_TRUE(interrupted.wait(10000));
    EXPECT_EQ(std::get<0>(interrupted.takeFirst()), true);
    fake.push("x");
    ASSERT_TRUE(interrupted.wait(10000));
    EXPECT_EQ(std::get<0>(interrupted.takeFirst()), false);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("接收数据恢复")));
    EXPECT_EQ(log.messages().count(QStringLiteral("接收数据中断")), 1);
}

TEST_F(SickLink, bytes_that_the_bridge_lost_are_told_with_the_next_ones_that_arrive)
{
    ArrivedSignals<quint32> losses(link(), &PortManager::bytesLost);
    fake.setLosses(5); // before the start: no news
    startReceiving();
    fake.push("x");
    ASSERT_TRUE(QTest::qWaitFor([this] { return fake.waiting() == 0; }, 10000));
    EXPECT_EQ(losses.count(), 0);
    fake.setLosses(7);
    fake.push("x");
    ASSERT_TRUE(losses.wait(10000));
    EXPECT_EQ(std::get<0>(losses.takeFirst()), 2U);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("接收数据丢失 = 2")));
}

TEST_F(SickLink, why_the_device_is_gone_is_logged_where_the_library_tells_it)
{
    fake.problem = "It was unplugged.";
    fake.setStatusResult(Status::IoError);
    EXPECT_TRUE(link().checkLost());
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("原因：It was unplugged.")));
    EXPECT_EQ(link().problem(), QStringLiteral("It was unplugged."));
}

TEST_F(SickLink, a_stop_that_no_byte_follows_is_carried_out_after_five_seconds)
{
    startReceiving();
    fake.push("a part of a block");
    QElapsedTimer timer;
    timer.start();
    link().requestStop();
    ASSERT_TRUE(stops.wait(15000));
    EXPECT_GE(timer.elapsed(), 4900);
    EXPECT_EQ(fake.written().last(), halt);
    EXPECT_EQ(fake.written().count(halt), 1);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("停止超时，强制停止采集")));
    fake.push(hex("FFBB03A10DEB"));
    EXPECT_EQ(link().wait_for_read(3500, 6), "FFBB03A10DEB") << "nothing is received any more";
}

TEST_F(SickLink, a_stop_is_carried_out_also_when_every_read_fails)
{
    startReceiving();
    fake.setReadResult(Status::IoError);
    fake.setWaitingTold(4096);
    link().requestStop();
    ASSERT_TRUE(stops.wait(15000));
    EXPECT_EQ(fake.written().last(), halt);
}

TEST_F(SickLink, a_stop_is_carried_out_also_when_the_status_promises_bytes_that_no_read_brings)
{
    startReceiving();
    fake.setWaitingTold(1);
    link().requestStop();
    ASSERT_TRUE(stops.wait(15000));
    EXPECT_EQ(fake.written().last(), halt);
}

TEST_F(SickLink, a_pattern_that_meets_with_silence_twice_halts_a_detector_that_may_be_streaming)
{
    const QByteArray pattern = CommandFrame::testPattern(1);
    EXPECT_FALSE(Conversation::selectTestPattern(link(), 1));
    EXPECT_EQ(fake.written(), QByteArrayList{pattern});
    EXPECT_FALSE(Conversation::selectTestPattern(link(), 1));
    EXPECT_EQ(fake.written(), QByteArrayList({pattern, pattern, halt}));
    EXPECT_FALSE(link().mayBeStreaming());
}

TEST_F(SickLink, reads_that_keep_failing_are_made_ten_times_a_second)
{
    startReceiving();
    fake.setReadResult(Status::IoError);
    fake.setWaitingTold(4096);
    ASSERT_TRUE(QTest::qWaitFor([this] { return fake.reads() >= 12; }, 10000));
    const int reads = fake.reads();
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.reads() >= reads + 10; }, 10000));
    EXPECT_GE(timer.elapsed(), 900);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("串口线程接收数据失败")));
}

TEST_F(SickLink, the_halt_of_a_program_that_leaves_is_the_only_one)
{
    startReceiving();
    link().halt();
    EXPECT_EQ(fake.written().count(halt), 1);
    link().requestStop();
    fake.push(QByteArray(FrameFormat::blockBytes, 'x'));
    link().halt();
    PortManager::destroyInstance();
    EXPECT_EQ(fake.written().count(halt), 1);
}

TEST_F(SickLink, a_stop_that_was_carried_out_needs_no_other_halt)
{
    startReceiving();
    link().requestStop();
    fake.push(QByteArray(FrameFormat::blockBytes, 'x'));
    ASSERT_TRUE(stops.wait(10000));
    link().halt();
    EXPECT_EQ(fake.written().count(halt), 1);
}

TEST_F(SickLink, a_detector_that_answers_three_queries_with_nothing_is_told_to_halt_once)
{
    int queries = 0;
    fake.setOnWrite([&](const QByteArray &frame) {
        if (frame == query && ++queries >= 5)
            fake.push(hex("FFBB03AA01EB"));
        if (frame == halt)
            fake.push(QByteArray(1000, 'x')); // the rest of a stream
    });
    EXPECT_TRUE(Conversation::waitUntilReady(link(), [] { return true; }));
    EXPECT_EQ(fake.written(), QByteArrayList({query, query, query, halt, query, query}));
}

TEST_F(SickLink, what_still_comes_within_half_a_second_of_that_halt_is_dropped)
{
    link().setMayBeStreaming(true);
    QElapsedTimer sinceHalt;
    fake.setOnWrite([&](const QByteArray &frame) {
        EXPECT_EQ(frame, halt);
        sinceHalt.start();
        fake.push(QByteArray(1000, 'x'));
    });
    Conversation::haltIfStreaming(link());
    EXPECT_GE(sinceHalt.elapsed(), 500);
    EXPECT_EQ(fake.waiting(), 0);
    EXPECT_LT(fake.statusCalls(), 1000) << "it rests between two looks";
}

TEST_F(SickLink, a_detector_that_answers_that_it_is_not_ready_is_left_alone)
{
    fake.answer(query, hex("FFBB03AA00EB"));
    int rests = 0;
    EXPECT_FALSE(Conversation::waitUntilReady(link(), [&] { return ++rests < 5; }));
    EXPECT_EQ(fake.written(), QByteArrayList(5, query));
}

TEST_F(SickLink, after_a_start_that_was_not_confirmed_the_first_silence_is_enough)
{
    fake.answer(CommandFrame::startAcquisition(), hex("FFBB03A10DEB"));
    EXPECT_FALSE(Conversation::start(link()));
    EXPECT_EQ(fake.written(), QByteArrayList{CommandFrame::startAcquisition()})
        << "and nothing more by itself";
    int rests = 0;
    EXPECT_FALSE(Conversation::waitUntilReady(link(), [&] { return ++rests < 2; }));
    EXPECT_EQ(fake.written(), QByteArrayList({CommandFrame::startAcquisition(), query, halt, query}));
}

TEST_F(SickLink, a_lost_device_is_not_told_to_halt)
{
    link().setMayBeStreaming(true);
    fake.setStatusResult(Status::IoError);
    EXPECT_FALSE(Conversation::waitUntilReady(link(), [] { return false; }));
    EXPECT_EQ(fake.written(), QByteArrayList{query});
    EXPECT_TRUE(link().isLost());
}

TEST_F(SickLink, a_count_of_waiting_bytes_that_cannot_be_true_costs_no_memory)
{
    fake.setWaitingTold(0xFFFFFFFFU);
    fake.push(hex("FFBB01020DEB"));
    EXPECT_EQ(link().wait_for_read(2000, 6), "FFBB01020DEB");
    EXPECT_TRUE(fake.trace().contains(QStringLiteral("Read 67108864")));
}

TEST_F(SickLink, a_receive_thread_that_hangs_in_a_call_does_not_hold_up_the_end_of_the_program)
{
    startReceiving();
    std::atomic<bool> hangs{false};
    std::atomic<bool> released{false};
    fake.setOnWrite([&](const QByteArray &) {
        hangs = true;
        while (!released)
            QThread::yieldCurrentThread();
    });
    QThread *thread = link().thread();
    fake.push(QByteArray(FrameFormat::blockBytes, 'x'));
    ASSERT_TRUE(QTest::qWaitFor([&] { return hangs.load(); }, 10000));
    QElapsedTimer timer;
    timer.start();
    PortManager::destroyInstance();
    EXPECT_LT(timer.elapsed(), 8000);
    EXPECT_EQ(PortManager::instance(), nullptr);
    released = true;
    EXPECT_TRUE(thread->wait(10000)) << "it ends with the call";
}
