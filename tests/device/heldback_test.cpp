#include "device/protocol/commandframes.h"
#include "device/protocol/frameformat.h"
#include "tests/support/linkfixture.h"
#include "tests/support/patience.h"

#include <QTest>

#include <functional>

namespace {

/// A detector that answers each block request with a block at once, and a GUI thread that does not get to its
/// events: frames pile up.
class PilingUp : public LinkFixture
{
protected:
    PilingUp()
    {
        link().openDevice(QStringLiteral("QV1K"));
        fake.setOnWrite([this](const QByteArray &command) {
            if (!command.startsWith(QByteArray("\xFF\xAA\x00", 3)))
                return;
            if (onRequest)
                onRequest();
            fake.push(QByteArray(FrameFormat::blockBytes, 'x'));
        });
        QObject::connect(&link(), &PortManager::read_ready, &m_context, [this] {
            ++received;
            if (onReceived)
                onReceived();
        });
        QObject::connect(&link(), &PortManager::stop, &m_context, [this] { ++stops; });
    }

    void start()
    {
        link().startReceive();
        link().write(CommandFrame::blockRequest(0));
    }

    /// Waits without handling events.
    template <typename Predicate>
    static bool waitBlocked(Predicate predicate)
    {
        QElapsedTimer timer;
        timer.start();
        while (!predicate() && timer.elapsed() < 20000 * patience)
            QThread::yieldCurrentThread();
        return predicate();
    }

    /// The loop has made some more passes since.
    void pass()
    {
        const int seen = fake.statusCalls();
        ASSERT_TRUE(waitBlocked([&] { return fake.statusCalls() > seen + 5; }));
    }

    int received = 0;
    int stops = 0;
    std::function<void()> onRequest;  ///< before its block is sent; set before the start
    std::function<void()> onReceived; ///< while the frame is at work

private:
    QObject m_context;
};

class HeldBack : public PilingUp
{
protected:
    HeldBack() { start(); }
};

constexpr int requestsFor64Frames = 64 * FrameFormat::blocksPerFrame;

} // namespace

TEST_F(HeldBack, when_64_frames_wait_the_next_first_block_is_not_requested_until_half_are_through)
{
    ASSERT_TRUE(waitBlocked([&] { return fake.writes() == requestsFor64Frames; }));
    ASSERT_TRUE(waitBlocked([&] { return fake.waiting() == 0; }));
    pass();
    EXPECT_EQ(fake.writes(), requestsFor64Frames);

    // The request comes when 32 are through, and it is the one that was due.
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.writes() > requestsFor64Frames; }, 10000));
    EXPECT_GE(received, 32);
    EXPECT_EQ(fake.written().at(requestsFor64Frames), CommandFrame::blockRequest(0));
    EXPECT_EQ(fake.written().at(requestsFor64Frames - 1), CommandFrame::blockRequest(31));
}

TEST_F(HeldBack, nothing_is_requested_while_more_than_half_still_wait)
{
    ASSERT_TRUE(waitBlocked([&] { return fake.writes() == requestsFor64Frames; }));
    ASSERT_TRUE(waitBlocked([&] { return fake.waiting() == 0; }));
    pass();
    qsizetype requestsThen = 0;
    onReceived = [&] {
        if (received != 32) // 31 are through, 33 wait
            return;
        pass();
        requestsThen = fake.writes();
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return received >= 64; }, 10000));
    EXPECT_EQ(requestsThen, requestsFor64Frames);
}

TEST_F(HeldBack, the_frames_that_wait_are_counted_and_the_one_at_work_is_among_them)
{
    EXPECT_GE(link().framesWaiting(), 0);
    ASSERT_TRUE(waitBlocked([&] { return link().framesWaiting() == 64; }));
    qint64 waitingThen = 0;
    onReceived = [&] {
        if (received == 32)
            waitingThen = link().framesWaiting();
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return received >= 32; }, 10000));
    EXPECT_EQ(waitingThen, 33);
}

TEST_F(HeldBack, a_frame_is_not_through_before_who_was_connected_after_the_start_is_through_with_it)
{
    int receivedLate = 0;
    qsizetype requestsThen = 0;
    QObject late;
    QObject::connect(&link(), &PortManager::read_ready, &late, [&] {
        if (++receivedLate != 32) // 31 are through, 33 wait
            return;
        pass();
        requestsThen = fake.writes();
    });
    ASSERT_TRUE(waitBlocked([&] { return fake.writes() == requestsFor64Frames; }));
    ASSERT_TRUE(waitBlocked([&] { return fake.waiting() == 0; }));
    pass();
    ASSERT_TRUE(QTest::qWaitFor([&] { return received >= 64; }, 10000));
    EXPECT_EQ(requestsThen, requestsFor64Frames);
}

TEST_F(HeldBack, a_stop_request_is_honoured_while_held_back)
{
    ASSERT_TRUE(waitBlocked([&] { return fake.writes() == requestsFor64Frames; }));
    ASSERT_TRUE(waitBlocked([&] { return fake.waiting() == 0; }));
    pass();
    link().requestStop();
    ASSERT_TRUE(waitBlocked([&] { return fake.writes() > requestsFor64Frames; }));
    EXPECT_EQ(fake.written().last(), CommandFrame::haltAcquisition());
    ASSERT_TRUE(QTest::qWaitFor([&] { return stops == 1; }, 10000));
    EXPECT_EQ(received, 64);
}

TEST_F(PilingUp, is_stopped_at_once_by_a_request_that_comes_while_the_64th_frame_arrives)
{
    onRequest = [&] {
        if (fake.writes() == requestsFor64Frames)
            link().requestStop();
    };
    start();
    ASSERT_TRUE(waitBlocked([&] { return fake.written().contains(CommandFrame::haltAcquisition()); }));
    ASSERT_TRUE(QTest::qWaitFor([&] { return stops == 1; }, 10000));
    EXPECT_EQ(received, 64);
    EXPECT_EQ(fake.writes(), requestsFor64Frames + 1);
}

TEST_F(HeldBack, a_new_start_while_held_back_begins_afresh)
{
    ASSERT_TRUE(waitBlocked([&] { return fake.writes() == requestsFor64Frames; }));
    ASSERT_TRUE(waitBlocked([&] { return fake.waiting() == 0; }));
    pass();
    link().closeDevice();
    link().openDevice(QStringLiteral("QV1K"));
    fake.clearWritten();
    link().startReceive();
    link().write(CommandFrame::blockRequest(0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.writes() > FrameFormat::blocksPerFrame; }, 10000));
    EXPECT_EQ(fake.written().at(1), CommandFrame::blockRequest(1));
}
