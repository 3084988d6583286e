#include "tests/ui/mainwindow/virtualwindow.h"

#include "device/d2xxlibrary.h"
#include "ui/mainwindow/stylesheets.h"

namespace {

constexpr int soon = 20000;

} // namespace

/// The whole program on a virtual detector whose link goes wrong in the second frame: what the operator sees,
/// what the log keeps, and that connecting and playing works again.
class MainWindowOnFaultyDetector : public MainWindowOnVirtualDetector
{
protected:
    /// Opens the window on a detector with these faults and shows the picture before they begin.
    void openAndPlay(const QByteArray &faults, const QByteArray &settings = {})
    {
        open(settings + "[Faults]\n" + faults);
        start();
        waitForPictures(1);
    }

    [[nodiscard]] bool isConnected() const { return button("pushButton_Connect")->text() == "Disconnect"; }
    [[nodiscard]] bool isSampling() const { return !button("pushButton_set")->isEnabled(); }

    void waitUntilDisconnected()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !isConnected(); }, soon));
        EXPECT_FALSE(isSampling());
        EXPECT_TRUE(button("pushButton_sample")->isEnabled());
        EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playRemoved);
        EXPECT_FALSE(MainWindowInspector::statusTimer(*window).isActive());
    }

    void waitForPort(const QString &only)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return ports() == QStringList{only}; }, soon))
            << qPrintable(ports().join(u' '));
    }

    void waitForInterruption()
    {
        auto *rate = find<QLabel>("label_fps");
        ASSERT_TRUE(QTest::qWaitFor([&] { return !rate->toolTip().isEmpty(); }, soon));
        EXPECT_EQ(rate->styleSheet(), StyleSheets::rateInterrupted);
        EXPECT_TRUE(isSampling()) << "it is the operator who stops it";
    }

    /// Ends the faults, and returns when the virtual detector has seen that: then there are two.
    void heal() const
    {
        settleVirtualDetector(folder, "SerialNumbers=QV1K,SPARE\n");
        const D2xxLibrary library = D2xxLibrary::load(QStringLiteral(QV1K_VIRTUAL_LIBRARY));
        const auto isSeen = [&library] {
            quint32 count = 0;
            return library.driver->createDeviceInfoList(&count) == d2xx::Status::Ok && count == 2;
        };
        ASSERT_TRUE(QTest::qWaitFor(isSeen, soon));
    }

    /// Connects where that is needed, plays, sees a picture, and stops without a message box so far.
    void expectThatItWorksAgain()
    {
        start();
        waitForPictures(1);
        stop();
        EXPECT_TRUE(isConnected());
        EXPECT_TRUE(boxes.isEmpty()) << qPrintable(boxes.last().text);
    }

    /// Ends the window; the log has each text so many times.
    void expectLogged(const QList<std::pair<QString, int>> &texts)
    {
        const QString log = finalLog();
        for (const auto &[text, count] : texts)
            EXPECT_EQ(log.count(text), count) << qPrintable(text);
    }
};

TEST_F(MainWindowOnFaultyDetector, a_block_request_that_is_lost_stands_still_until_the_operator_stops_it)
{
    openAndPlay("FaultsFromByte=5000000\nFailWrites=1\n");
    waitForInterruption();
    stop();
    EXPECT_TRUE(find<QLabel>("label_fps")->toolTip().isEmpty());
    expectThatItWorksAgain();
    expectLogged({{"接收数据中断", 1}, {"停止超时，强制停止采集", 1}, {"下位机停止成功", 2}});
}

TEST_F(MainWindowOnFaultyDetector, a_block_that_stops_in_its_middle_can_be_stopped)
{
    openAndPlay("StallAfterBytes=5000000\n");
    stop();
    EXPECT_TRUE(isConnected());
    heal();
    expectThatItWorksAgain();
    expectLogged({{"停止超时，强制停止采集", 1}, {"下位机停止成功", 2}, {"设备连接丢失", 0}});
}

TEST_F(MainWindowOnFaultyDetector, reads_that_fail_for_ever_leave_ten_lines_and_can_be_stopped)
{
    openAndPlay("FaultsFromByte=5000000\nFailReads=-1\n");
    waitForInterruption();
    stop();
    click("pushButton_Connect");
    EXPECT_FALSE(isConnected());
    heal();
    expectThatItWorksAgain();
    const QString log = finalLog();
    EXPECT_EQ(log.count("串口线程接收数据失败") - log.count("串口线程接收数据失败 "), 10)
        << "besides the lines that tell their number";
    EXPECT_EQ(log.count("接收数据中断"), 1);
    EXPECT_EQ(log.count("停止超时，强制停止采集"), 1);
    EXPECT_EQ(log.count("设备连接丢失"), 0);
}

TEST_F(MainWindowOnFaultyDetector, a_status_that_fails_for_ever_is_a_lost_device)
{
    openAndPlay("FaultsFromByte=5000000\nFailStatus=-1\n");
    waitUntilDisconnected();
    EXPECT_EQ(ports(), QStringList{"QV1K"});
    heal();
    expectThatItWorksAgain();
    expectLogged({{"设备连接丢失", 1}});
}

TEST_F(MainWindowOnFaultyDetector, the_open_detector_is_pulled_while_another_stays)
{
    openAndPlay("UnplugAtByte=5000000\n", "SerialNumbers=QV1K,SPARE\n");
    waitUntilDisconnected();
    EXPECT_EQ(ports(), QStringList{"SPARE"});
    settleVirtualDetector(folder, "SerialNumbers=QV1K,SPARE\n");
    waitForPort("QV1K");
    expectThatItWorksAgain();
    expectLogged({{"设备连接丢失", 1}});
}

TEST_F(MainWindowOnFaultyDetector, a_detector_that_is_back_within_milliseconds_has_to_be_connected_again)
{
    openAndPlay("UnplugAtByte=5000000\nReplugAfterMs=5\n");
    waitUntilDisconnected();
    waitForPort("QV1K");
    expectThatItWorksAgain();
    expectLogged({{"设备连接丢失", 1}, {"串口关闭", 2}});
}

TEST_F(MainWindowOnFaultyDetector, a_detector_that_streams_on_after_it_was_back_is_halted_and_plays)
{
    boxes.onDialog = [](QDialog *) {
    }; // that it is waited for is shown, and nobody cancels
    openAndPlay("KeepsStreaming=true\nUnplugAtByte=5000000\nReplugAfterMs=5\n");
    waitUntilDisconnected();
    expectThatItWorksAgain();
}

TEST_F(MainWindowOnFaultyDetector, a_close_that_hangs_holds_the_window_up_for_seconds_only)
{
    open("[Faults]\nHangCalls=Close\nHangMs=3600000\n");
    click("pushButton_Connect");
    ASSERT_TRUE(isConnected());
    QElapsedTimer clock;
    clock.start();
    click("pushButton_Connect");
    EXPECT_FALSE(isConnected());
    EXPECT_LT(clock.elapsed(), soon);
    click("pushButton_Connect");
    EXPECT_EQ(boxes.last().text, "Device connect failed") << "the old handle has it still";
}

TEST_F(MainWindowOnFaultyDetector, counts_that_are_not_true_leave_the_pictures_as_they_are)
{
    openAndPlay("ClaimedDevices=4294967295\nFaultsFromByte=4194304\nClaimedWaiting=4294967295\n");
    EXPECT_EQ(ports(), QStringList{"QV1K"});
    const std::set<uchar> before = greys();
    waitForPictures(1);
    EXPECT_GT(greys().size(), 50U);
    EXPECT_EQ(greys().size(), before.size());
    stop();
    EXPECT_TRUE(boxes.isEmpty());
}

/// When a removal is told, if at all.
class MainWindowOnRemovals : public MainWindowOnFaultyDetector,
                             public testing::WithParamInterface<const char *>
{
};

TEST_P(MainWindowOnRemovals, whenever_they_are_told_end_disconnected_with_one_line_and_without_a_box)
{
    openAndPlay(QByteArray("UnplugAtByte=5000000\nRemovalDelayMs=2500\nRemovalMessage=") + GetParam() + '\n');
    waitUntilDisconnected();
    ASSERT_TRUE(QTest::qWaitFor([this] { return ports().isEmpty(); }, soon));
    settleVirtualDetector(folder);
    waitForPort("QV1K");
    expectThatItWorksAgain();
    expectLogged({{"设备连接丢失", 1}});
}

INSTANTIATE_TEST_SUITE_P(Each, MainWindowOnRemovals, testing::Values("prompt", "late", "early", "never"));
