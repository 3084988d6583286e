#include "device/conversations.h"
#include "device/d2xxlibrary.h"
#include "device/portmanager.h"
#include "device/protocol/commandframes.h"
#include "device/protocol/currentrange.h"
#include "device/protocol/frameformat.h"
#include "device/protocol/readback.h"
#include "device/protocol/timing.h"
#include "tests/support/logfile.h"
#include "tests/support/virtualdetector.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QtEndian>

namespace {

/// The link on the virtual detector, unpaced, through the shared library as the program loads it.
class VirtualDetector : public testing::Test
{
protected:
    VirtualDetector()
    {
        settleVirtualDetector(log.folder());
        PortManager::setDriver(D2xxLibrary::load(QStringLiteral("virtual")).driver);
        PortManager::createInstance();
        QObject::connect(&link(), &PortManager::read_ready, &m_context,
                         [this](const QByteArray &frame) { take(frame); });
        QObject::connect(&link(), &PortManager::stop, &m_context, [this] {
            Conversation::confirmHalt(link());
            ++stops;
        });
    }
    ~VirtualDetector() override { PortManager::destroyInstance(); }

    static PortManager &link() { return *PortManager::instance(); }

    /// Starts the counter pattern: pixel i of frame k holds 4096 + (i + k * 4099) mod 2^20.
    void startCounter()
    {
        frames = 0;
        firstSeen = false;
        ASSERT_TRUE(Conversation::selectTestPattern(link(), 5));
        ASSERT_TRUE(Conversation::isReady(link()));
        ASSERT_TRUE(Conversation::start(link()));
        Conversation::beginReceiving(link());
    }

    void take(const QByteArray &frame)
    {
        // A frame that was on its way when the device was closed belongs to the acquisition before.
        firstSeen = firstSeen || isCounterFrame(frame, 0);
        if (!firstSeen && earlierAcquisition)
            return;
        if (frame.size() != FrameFormat::frameBytes || !isCounterFrame(frame, frames))
            ++wrongFrames;
        ++frames;
    }

    static bool isCounterFrame(const QByteArray &frame, int number)
    {
        const auto *samples = reinterpret_cast<const uchar *>(frame.constData());
        const quint32 first = static_cast<quint32>(number) * 4099;
        for (quint32 pixel = 0; pixel < 1024 * 1024; ++pixel) {
            if (qFromBigEndian<quint32>(samples + 4 * pixel) != 4096 + ((pixel + first) & 0xFFFFF))
                return false;
        }
        return true;
    }

    bool waitForFrames(int count)
    {
        return QTest::qWaitFor([&] { return frames >= count; }, 120000);
    }

    LogFile log;
    bool earlierAcquisition = false;
    bool firstSeen = false;
    int frames = 0;
    int wrongFrames = 0;
    int stops = 0;

private:
    QObject m_context;
};

} // namespace

TEST_F(VirtualDetector, a_handle_that_the_library_failed_to_close_does_not_bar_the_next_connection)
{
    settleVirtualDetector(log.folder(), "[Faults]\nFailCalls=Close\nFailCallsCount=1\n");
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    link().closeDevice();
    EXPECT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    EXPECT_TRUE(Conversation::batteryLevel(link()));
}

TEST_F(VirtualDetector, a_handle_that_the_library_failed_to_close_is_closed_at_the_end)
{
    settleVirtualDetector(log.folder(), "[Faults]\nFailCalls=Close\nFailCallsCount=1\n");
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    link().closeDevice();
    PortManager::destroyInstance();
    PortManager::setDriver(D2xxLibrary::load(QStringLiteral("virtual")).driver);
    PortManager::createInstance();
    EXPECT_TRUE(link().openDevice(QStringLiteral("QV1K")));
}

TEST_F(VirtualDetector, a_thousand_counter_frames_arrive_whole_and_in_order_none_lost_or_doubled)
{
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    startCounter();
    ASSERT_TRUE(waitForFrames(1000));
    EXPECT_EQ(wrongFrames, 0);
    link().requestStop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return stops == 1; }, 10000));
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("下位机停止成功")));
}

TEST_F(VirtualDetector, after_power_up_it_holds_the_parameters_of_the_first_current_range)
{
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    const auto held = Readback::parameters(Conversation::readParameters(link()));
    ASSERT_TRUE(held);
    const CurrentRange::Gear gear = CurrentRange::gears.front();
    EXPECT_EQ(held->mode, 0);
    EXPECT_EQ(held->adcWord, AdcSelection{.pcRange = gear.pcRange}.word());
    EXPECT_EQ(held->timingWords, Timing::ofRange(gear.integrationTime).toWire());
}

TEST_F(VirtualDetector, five_start_and_stop_cycles_in_one_run_each_begin_with_a_first_frame)
{
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    for (int cycle = 1; cycle <= 5; ++cycle) {
        startCounter();
        ASSERT_TRUE(waitForFrames(3));
        link().requestStop();
        ASSERT_TRUE(QTest::qWaitFor([&] { return stops == cycle; }, 10000));
    }
    EXPECT_EQ(wrongFrames, 0);
}

TEST_F(VirtualDetector, closing_in_mid_stream_and_opening_again_begins_afresh)
{
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
        startCounter();
        ASSERT_TRUE(waitForFrames(2));
        link().closeDevice();
        link().pauseReceive();
        earlierAcquisition = true;
    }
    EXPECT_EQ(wrongFrames, 0);
}

TEST_F(VirtualDetector, a_torn_block_stalls_the_stream_instead_of_shifting_the_frame)
{
    settleVirtualDetector(log.folder(), "[Faults]\nTornBlockAt=40\n");
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    startCounter();
    ASSERT_TRUE(waitForFrames(1));
    EXPECT_FALSE(QTest::qWaitFor([&] { return frames > 1; }, 500));
    EXPECT_EQ(wrongFrames, 0);
}

TEST_F(VirtualDetector, a_doubled_block_shows_up_in_the_counter_and_in_the_log)
{
    settleVirtualDetector(log.folder(), "[Faults]\nDoubledBlockAt=3\n");
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    startCounter();
    ASSERT_TRUE(waitForFrames(1));
    EXPECT_EQ(wrongFrames, 1);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("接收数据多余 = 1")));
}

TEST_F(VirtualDetector, a_link_that_goes_while_the_detector_streams_brought_no_wrong_frame)
{
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    startCounter();
    ASSERT_TRUE(waitForFrames(1));
    PortManager::destroyInstance();
    QCoreApplication::processEvents(); // what was on its way
    EXPECT_EQ(wrongFrames, 0);
}
