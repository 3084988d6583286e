#include "tests/ftdi/bridge/windowonbridge.h"

#include "device/portmanager.h"
#include "simulator/sensor/testpatterns.h"

#include <QElapsedTimer>
#include <QtEndian>

#include <atomic>
#include <cerrno>

using Flow = WindowOnBridge;

namespace {

/// Whether it is that frame of the counter pattern, sample for sample.
bool isCounterFrame(const QByteArray &frame, quint64 number)
{
    const auto *bytes = reinterpret_cast<const uchar *>(frame.constData());
    for (qint64 pixel = 0; pixel < frame.size() / 4; ++pixel) {
        if (qFromBigEndian<quint32>(bytes + 4 * pixel) != simulator::counterSample(number, pixel))
            return false;
    }
    return frame.size() == 4'194'304;
}

} // namespace

TEST_F(Flow, a_thousand_frames_arrive_whole_and_in_order_and_are_shown)
{
    constexpr int frames = 1000;
    plugIn();
    open();
    connectDetector();
    std::atomic<int> right{0};
    std::atomic<int> wrong{0};
    QObject::connect(
        PortManager::instance(), &PortManager::read_ready, window.get(),
        [&](const QByteArray &frame) {
            const int number = right + wrong;
            ++(isCounterFrame(frame, static_cast<quint64>(number)) ? right : wrong);
        },
        Qt::DirectConnection);
    click("testImage5"); // the counter pattern
    start();
    QElapsedTimer clock;
    clock.start();
    waitForPictures(frames);
    RecordProperty("frames_per_second",
                   static_cast<int>(1000.0 * pictures / static_cast<double>(clock.elapsed())));
    stop();
    EXPECT_EQ(wrong, 0);
    EXPECT_GE(right, frames);
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(Flow, a_cable_that_is_pulled_and_plugged_in_again_is_noticed_before_connecting)
{
    plugIn();
    open();
    waitForPorts({"QV1K"});
    unplug();
    waitForPorts({});
    plugIn();
    expectThatItWorks();
}

TEST_F(Flow, a_cable_that_is_pulled_while_idle_is_noticed_and_it_works_again)
{
    plugIn();
    open();
    connectDetector();
    unplug();
    expectThatItIsGivenUp();
    EXPECT_TRUE(systemPage().contains("The bridge was unplugged.")) << qPrintable(systemPage());
    plugIn();
    expectThatItWorks();
    EXPECT_FALSE(systemPage().contains("unplugged"));
    EXPECT_TRUE(finalLog().contains(QStringLiteral("原因：The bridge was unplugged.")));
}

TEST_F(Flow, a_cable_that_is_pulled_while_pictures_come_is_noticed_and_it_works_again)
{
    plugIn();
    open();
    connectDetector();
    start();
    waitForPictures(3);
    unplug();
    expectThatItIsGivenUp();
    plugIn();
    expectThatItWorks();
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(Flow, a_cable_that_is_pulled_while_an_acquisition_stops_is_noticed_and_it_works_again)
{
    plugIn();
    open();
    connectDetector();
    start();
    waitForPictures(1);
    click("pushButton_sample");
    unplug();
    expectThatItIsGivenUp();
    plugIn();
    expectThatItWorks();
}

TEST_F(Flow, a_stall_in_mid_stream_costs_no_frame)
{
    plugIn();
    open();
    connectDetector();
    start();
    waitForPictures(1);
    bridge->setFaults({.failures = 1, .failure = EPIPE, .failAfter = 1'000'000, .partial = 8192});
    const int cleared = bridge->haltsCleared();
    waitForPictures(5);
    EXPECT_GT(bridge->haltsCleared(), cleared);
    stop();
    EXPECT_FALSE(systemPage().contains("lost data"));
}

TEST_F(Flow, bytes_that_the_chip_lost_are_shown)
{
    plugIn();
    open();
    connectDetector();
    start();
    waitForPictures(1);
    bridge->onChip([](EmulatedChip &chip) { chip.noteErrors(EmulatedChip::overrun); });
    ASSERT_TRUE(QTest::qWaitFor([this] { return systemPage().contains("lost data 1 times"); }, patienceMs));
    EXPECT_TRUE(find<QLabel>("label_fps")->toolTip().contains("lost data"));
    stop();
    EXPECT_FALSE(systemPage().contains("lost data"));
    EXPECT_TRUE(finalLog().contains(QStringLiteral("接收数据丢失 = 1")));
}
