#include "tests/ui/mainwindow/mainwindowtest.h"

#include "device/portmanager.h"
#include "ui/mainwindow/stylesheets.h"

#include <QTextEdit>

using d2xx::Status;

/// What the operator sees of a link that goes wrong, and that the window is free again.
class MainWindowSickLink : public MainWindowTest
{
protected:
    void pullOut(const QStringList &left)
    {
        detector.link.serialNumbers = left;
        detector.link.setStatusResult(Status::IoError);
    }

    void plugInAgain()
    {
        detector.link.serialNumbers = {"QV1K"};
        detector.link.setStatusResult(Status::Ok);
    }

    [[nodiscard]] bool looksDisconnected() const
    {
        return button("pushButton_Connect")->text() == "Connect" && looksIdle() &&
               !statusTimer().isActive() && button("pushButton_set")->isEnabled() && !detector.link.isOpen();
    }

    [[nodiscard]] QString systemPage() const { return find<QTextEdit>("textEdit")->toPlainText(); }

    /// The way to a picture that the operator would go now.
    void expectThatItWorksAgain()
    {
        if (!detector.link.isOpen()) {
            plugInAgain();
            ForwardLibrary::reportDeviceEvent(true);
            ASSERT_TRUE(QTest::qWaitFor([this] { return ports() == QStringList("QV1K"); }, 10000));
            connectDetector();
        }
        click("pushButton_sample");
        ASSERT_TRUE(looksRunning());
        showFrames(1);
        stop();
        EXPECT_TRUE(looksIdle());
    }
};

TEST_F(MainWindowSickLink, a_stream_that_stands_still_is_shown_and_can_be_stopped)
{
    openSampling();
    showFrames(1);
    auto *rate = find<QLabel>("label_fps");
    const QString shown = rate->text();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !rate->toolTip().isEmpty(); }, 10000));
    EXPECT_EQ(rate->text(), shown);
    EXPECT_EQ(rate->styleSheet(), StyleSheets::rateInterrupted);
    EXPECT_TRUE(systemPage().contains(rate->toolTip()));

    click("pushButton_sample");
    EXPECT_TRUE(looksStopping());
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
    EXPECT_EQ(detector.count(CommandFrame::haltAcquisition()), 1);
    EXPECT_TRUE(rate->toolTip().isEmpty());
    EXPECT_TRUE(rate->styleSheet().isEmpty());
    EXPECT_FALSE(systemPage().contains("No data"));
    expectThatItWorksAgain();
    EXPECT_TRUE(boxes.isEmpty());
    const QString log = finalLog();
    EXPECT_EQ(log.count(QStringLiteral("接收数据中断")), 1);
    EXPECT_EQ(log.count(QStringLiteral("停止超时，强制停止采集")), 1);
}

TEST_F(MainWindowSickLink, the_sign_of_a_stream_that_stands_still_goes_with_the_next_picture)
{
    openSampling();
    showFrames(1);
    const auto *rate = find<QLabel>("label_fps");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !rate->styleSheet().isEmpty(); }, 10000));
    showFrames(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return rate->styleSheet().isEmpty(); }, 10000));
    stop();
}

TEST_F(MainWindowSickLink, lost_bytes_are_shown_until_the_acquisition_ends)
{
    openSampling();
    showFrames(1);
    auto *rate = find<QLabel>("label_fps");
    EXPECT_TRUE(rate->toolTip().isEmpty());
    detector.link.setLosses(3);
    showFrames(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !rate->toolTip().isEmpty(); }, 10000));
    EXPECT_EQ(rate->styleSheet(), StyleSheets::rateInterrupted);
    EXPECT_TRUE(rate->toolTip().contains("lost data 3 times"));
    EXPECT_TRUE(systemPage().contains(rate->toolTip()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return rate->toolTip().contains("No data"); }, 10000));
    EXPECT_TRUE(systemPage().contains("lost data"));
    showFrames(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !rate->toolTip().contains("No data"); }, 10000));
    EXPECT_TRUE(systemPage().contains("lost data")) << "what arrives does not bring back what was lost";

    stop();
    EXPECT_TRUE(rate->toolTip().isEmpty());
    EXPECT_TRUE(rate->styleSheet().isEmpty());
    EXPECT_FALSE(systemPage().contains("lost data"));
    expectThatItWorksAgain();
    EXPECT_TRUE(rate->toolTip().isEmpty()) << "what was lost before the start";
    EXPECT_EQ(finalLog().count(QStringLiteral("接收数据丢失 = 3")), 1);
}

TEST_F(MainWindowSickLink, what_the_receive_thread_tells_too_late_is_not_shown)
{
    openSampling();
    showFrames(1);
    stop();
    const QString before = systemPage();
    Q_EMIT PortManager::instance()->interrupted(true);
    Q_EMIT PortManager::instance()->bytesLost(2);
    const auto *rate = find<QLabel>("label_fps");
    EXPECT_EQ(rate->toolTip(), "");
    EXPECT_EQ(rate->styleSheet(), "");
    EXPECT_EQ(systemPage(), before);
}

TEST_F(MainWindowSickLink, why_a_device_cannot_be_opened_stands_on_the_system_page_until_it_can)
{
    open();
    detector.link.openStatus = Status::DeviceNotOpened;
    detector.link.problem = "Another program holds it.";
    click("pushButton_Connect");
    EXPECT_TRUE(systemPage().contains("Another program holds it."));
    detector.link.openStatus = Status::Ok;
    detector.link.problem.clear();
    connectDetector();
    EXPECT_FALSE(systemPage().contains("Another program holds it."));
}

TEST_F(MainWindowSickLink, a_stream_that_goes_on_takes_its_sign_away)
{
    openSampling();
    auto *rate = find<QLabel>("label_fps");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !rate->toolTip().isEmpty(); }, 10000));
    showFrames(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return rate->toolTip().isEmpty(); }, 10000));
    EXPECT_EQ(finalLog().count(QStringLiteral("接收数据恢复")), 1);
}

TEST_F(MainWindowSickLink, a_detector_pulled_out_while_another_bridge_stays_is_given_up_with_its_message)
{
    openSampling();
    showFrames(1);
    pullOut({"OTHER"});
    ForwardLibrary::reportDeviceEvent(false);
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksDisconnected(); }, 10000));
    EXPECT_EQ(ports(), QStringList("OTHER"));
    EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playRemoved);
    EXPECT_TRUE(systemPage().contains("was lost at"));
    expectThatItWorksAgain();
    EXPECT_FALSE(systemPage().contains("was lost at"));
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_EQ(finalLog().count(QStringLiteral("设备连接丢失")), 1);
}

TEST_F(MainWindowSickLink,
       an_idle_detector_pulled_out_while_another_bridge_stays_is_given_up_with_its_message)
{
    openConnected();
    pullOut({"OTHER"});
    ForwardLibrary::reportDeviceEvent(false);
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksDisconnected(); }, 10000));
    EXPECT_EQ(ports(), QStringList("OTHER"));
}

TEST_F(MainWindowSickLink, a_detector_that_vanishes_without_a_message_is_given_up_after_a_second)
{
    openSampling();
    showFrames(1);
    click("pushButton_sample"); // also while it is being stopped
    pullOut({"QV1K"});
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksDisconnected(); }, 10000));
    EXPECT_EQ(ports(), QStringList("QV1K"));
    EXPECT_TRUE(systemPage().contains("was lost at"));
    expectThatItWorksAgain();
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_EQ(finalLog().count(QStringLiteral("设备连接丢失")), 1);
}

TEST_F(MainWindowSickLink, a_recording_ends_with_a_detector_that_vanishes)
{
    openSampling();
    find<QLineEdit>("lineEdit_savename")->setText("cut");
    find<QComboBox>("comboBox_saveframes")->setEditText("500");
    click("checkBox_picture");
    click("pushButton_save");
    showFrames(2);
    pullOut({});
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksDisconnected(); }, 10000));
    EXPECT_FALSE(pipeline().isSaving());
    EXPECT_EQ(text("label_savestate"), "Save Stop");
}

TEST_F(MainWindowSickLink, play_on_a_dead_handle_comes_back_and_gives_it_up)
{
    openConnected();
    pullOut({});
    QElapsedTimer blocked;
    blocked.start();
    click("pushButton_sample");
    EXPECT_LT(blocked.elapsed(), 9000);
    EXPECT_TRUE(looksDisconnected());
    EXPECT_EQ(detector.count(CommandFrame::haltAcquisition()), 0);
    expectThatItWorksAgain();
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowSickLink, a_download_on_a_dead_handle_first_shows_its_message)
{
    openConnected();
    pullOut({});
    boxes.onBox = [this] {
        EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect") << "not yet";
    };
    click("pushButton_set");
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().text, "set time sequence fail");
    EXPECT_TRUE(looksDisconnected());
    EXPECT_EQ(finalLog().count(QStringLiteral("设备连接丢失")), 1);
}

TEST_F(MainWindowSickLink, connecting_to_a_handle_that_dies_at_once_ends_disconnected)
{
    open();
    detector.link.setStatusResult(Status::IoError);
    click("pushButton_Connect");
    EXPECT_TRUE(looksDisconnected());
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowSickLink, the_charge_query_of_a_timer_finds_a_dead_handle_too)
{
    openConnected();
    pullOut({"OTHER"});
    window->check_lower_computer_status();
    EXPECT_TRUE(QTest::qWaitFor([this] { return looksDisconnected(); }, 10000));
    EXPECT_EQ(ports(), QStringList("OTHER"));
}

TEST_F(MainWindowSickLink, a_refused_packet_is_not_taken_for_set_because_of_a_late_acknowledgement)
{
    openConnected();
    detector.answerParameters(0x10, {}); // timing: its acknowledgement comes only later
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set time sequence fail");
    boxes.startOver();
    detector.link.push(hex("FFBB01100DEB"));
    detector.answerParameters(0x10, hex("FFBB7F100DEB")); // and now it is refused
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set time sequence fail");
}

TEST_F(MainWindowSickLink, a_stop_is_confirmed_whenever_a_device_is_connected)
{
    openConnected();
    detector.link.push(hex("FFBB03A10DEB"));
    window->handleStop();
    EXPECT_EQ(detector.link.waiting(), 0);
    EXPECT_EQ(detector.link.written().last(), CommandFrame::levelQuery());
    EXPECT_TRUE(finalLog().contains(QStringLiteral("下位机停止成功")));
}
