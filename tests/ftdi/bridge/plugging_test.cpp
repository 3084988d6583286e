#include "tests/ftdi/bridge/locked.h"
#include "tests/ftdi/bridge/windowonbridge.h"

#include <QProcess>

using Plugging = WindowOnBridge;

namespace {

const UsbBed::Identity cable{.serialNumber = "FT7A3B9C", .product = "serial cable", .productId = 0x6015};

} // namespace

TEST_F(Plugging, a_detector_that_is_plugged_in_is_listed)
{
    open();
    EXPECT_EQ(ports(), QStringList());
    plugIn();
    expectThatItWorks();
}

TEST_F(Plugging, another_device_of_the_same_maker_is_listed_as_such_and_left_alone)
{
    open();
    plugIn(cable);
    waitForPorts({"FT7A3B9C (other bridge)"});
    EXPECT_EQ(find<QComboBox>("comboBox_port")->currentIndex(), -1);
    click("pushButton_Connect");
    EXPECT_FALSE(isConnected());
    EXPECT_TRUE(bridge->onChip([](EmulatedChip &chip) { return chip.bitModes().empty(); }))
        << "it was opened";
    unplug();
    waitForPorts({});
}

TEST_F(Plugging, another_device_that_comes_and_goes_does_not_disturb_an_acquisition)
{
    plugIn();
    open();
    connectDetector();
    start();
    waitForPictures(1);
    bed.plugIn(2, cable, std::make_unique<DetectorLines>(simulator::Settings()));
    waitForPorts({"QV1K", "FT7A3B9C (other bridge)"});
    waitForPictures(1);
    bed.unplug(2);
    waitForPorts({"QV1K"});
    waitForPictures(1);
    EXPECT_TRUE(isConnected() && isSampling());
    stop();
}

TEST_F(Plugging, a_detector_that_is_back_before_the_window_looks_is_given_up_and_can_be_used_again)
{
    plugIn();
    open();
    connectDetector();
    start();
    waitForPictures(1);
    unplug();
    plugIn();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !isConnected() && !isSampling(); }, patienceMs));
    expectThatItWorks();
}

TEST_F(Plugging, without_events_a_pulled_cable_is_noticed_while_pictures_come)
{
    bed.setSilent(true);
    plugIn();
    open();
    connectDetector();
    start();
    waitForPictures(1);
    unplug();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !isConnected() && !isSampling(); }, patienceMs));
    EXPECT_EQ(ports(), QStringList());
    EXPECT_TRUE(systemPage().contains("The bridge was unplugged.")) << qPrintable(systemPage());
}

TEST_F(Plugging, a_detector_that_may_not_be_opened_says_so_until_it_may)
{
    plugIn();
    open();
    {
        const Locked locked(bed.nodeOf(port));
        click("pushButton_Connect");
        EXPECT_EQ(boxes.last().text, "Device connect failed");
        EXPECT_FALSE(isConnected());
        EXPECT_TRUE(systemPage().contains("may not access the bridge")) << qPrintable(systemPage());
    }
    expectThatItWorks();
    EXPECT_FALSE(systemPage().contains("may not access"));
    EXPECT_TRUE(finalLog().contains(QStringLiteral("原因：This user may not access")));
}

TEST_F(Plugging, a_detector_that_another_program_holds_says_which)
{
    plugIn();
    open();
    QProcess holder;
    holder.start(QStringLiteral(QV1K_HOLDBRIDGE), {QStringLiteral("/dev/bus/usb/001/002")});
    ASSERT_TRUE(holder.waitForReadyRead(patienceMs));
    click("pushButton_Connect");
    EXPECT_FALSE(isConnected());
    EXPECT_TRUE(systemPage().contains("holdbridge (process ")) << qPrintable(systemPage());
    holder.closeWriteChannel();
    ASSERT_TRUE(holder.waitForFinished(patienceMs));
    // The emulated system hears of a closed node a little later.
    ASSERT_TRUE(QTest::qWaitFor(
        [this] {
            click("pushButton_Connect");
            return isConnected();
        },
        patienceMs));
    EXPECT_FALSE(systemPage().contains("holdbridge"));
}
