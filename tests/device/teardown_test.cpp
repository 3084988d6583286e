#include "device/exchange.h"
#include "device/protocol/commandframes.h"
#include "device/protocol/frameformat.h"
#include "tests/support/linkfixture.h"
#include "tests/support/patience.h"

#include <QElapsedTimer>
#include <QTest>

namespace {

/// The link goes while it is at work.
class LinkTearDown : public LinkFixture
{
protected:
    LinkTearDown()
    {
        link().openDevice(QStringLiteral("QV1K"));
        QObject::connect(&link(), &PortManager::read_ready, &m_context, [this](const QByteArray &frame) {
            ++frames;
            wholeFrames += frame == QByteArray(FrameFormat::frameBytes, 'x') ? 1 : 0;
        });
    }

    /// Each request brings its block at once.
    void stream()
    {
        fake.setOnWrite([this](const QByteArray &) { fake.push(QByteArray(FrameFormat::blockBytes, 'x')); });
        link().startReceive();
        link().write(CommandFrame::blockRequest(0));
    }

    /// The thread has ended and the device is closed: nothing more is asked of it.
    void expectEnded()
    {
        EXPECT_FALSE(fake.isOpen());
        EXPECT_TRUE(log.messages().contains(QStringLiteral("串口接收线程结束")) ||
                    log.waitForMessage(QStringLiteral("串口接收线程结束")));
        const int calls = fake.statusCalls();
        QCoreApplication::processEvents();
        EXPECT_EQ(fake.statusCalls(), calls);
    }

    int frames = 0;
    int wholeFrames = 0;

private:
    QObject m_context;
};

} // namespace

TEST_F(LinkTearDown, while_frames_stream_in_its_thread_ends_and_the_device_is_closed)
{
    stream();
    ASSERT_TRUE(QTest::qWaitFor([this] { return frames >= 2; }, 20000 * patience));
    PortManager::destroyInstance();
    expectEnded();
}

TEST_F(LinkTearDown, frames_that_were_on_their_way_are_whole_when_the_link_is_gone)
{
    stream();
    QElapsedTimer timer;
    timer.start();
    while (fake.writes() <= 3 * FrameFormat::blocksPerFrame && timer.elapsed() < 20000 * patience)
        QThread::yieldCurrentThread();
    PortManager::destroyInstance();
    EXPECT_EQ(frames, 0);
    expectEnded(); // which hands them over
    EXPECT_GE(frames, 3);
    EXPECT_EQ(wholeFrames, frames);
}

TEST_F(LinkTearDown, a_device_that_is_closed_while_its_reply_is_awaited_leaves_nothing_behind)
{
    fake.setOnWrite([](const QByteArray &) { link().closeDevice(); });
    EXPECT_EQ(Exchange::run(link(), CommandFrame::readinessQuery(), {100, 6}), QByteArray());
    PortManager::destroyInstance();
    EXPECT_FALSE(fake.isOpen());
    EXPECT_EQ(fake.calls().count(QStringLiteral("Close")), 1);
}
