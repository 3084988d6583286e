#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/mainwindow/stylesheets.h"

class MainWindowLinkFaults : public MainWindowTest
{
protected:
    void expectFailure(const char *message)
    {
        ASSERT_EQ(boxes.boxes().size(), 1);
        EXPECT_EQ(boxes.last().title, "Error");
        EXPECT_EQ(boxes.last().text, message);
        EXPECT_EQ(boxes.last().icon, QMessageBox::Critical);
        EXPECT_EQ(boxes.last().buttons, QMessageBox::Ok);
        EXPECT_TRUE(looksIdle());
        EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playIdle);
        EXPECT_TRUE(button("pushButton_set")->isEnabled());
        EXPECT_TRUE(statusTimer().isActive());
        EXPECT_EQ(detector.count(CommandFrame::blockRequest(0)), 0);
    }
};

TEST_F(MainWindowLinkFaults, a_test_pattern_that_is_answered_wrongly_says_test_failed_and_starts_nothing)
{
    openConnected("DebugMode=true\n");
    click("testImage5");
    detector.link.answer(CommandFrame::testPattern(5), hex("FFBB03C40DEB"));
    click("pushButton_sample");
    expectFailure("test failed");
    EXPECT_EQ(detector.count(CommandFrame::readinessQuery()), 0);
    EXPECT_EQ(detector.count(CommandFrame::startAcquisition()), 0);
}

TEST_F(MainWindowLinkFaults, a_test_echo_that_does_not_stand_at_the_beginning_is_refused)
{
    openConnected("DebugMode=true\n");
    click("testImage1");
    detector.link.answer(CommandFrame::testPattern(1), hex("00FFBB03C00D"));
    click("pushButton_sample");
    expectFailure("test failed");
}

TEST_F(MainWindowLinkFaults, a_start_that_is_not_echoed_says_play_failed)
{
    openConnected();
    detector.link.answer(CommandFrame::startAcquisition(), hex("FFBB03A10DEB"));
    click("pushButton_sample");
    expectFailure("Play failed");
    detector.link.answer(CommandFrame::startAcquisition(), hex("FFBB03A00DEB"));
    click("pushButton_sample");
    EXPECT_TRUE(looksRunning());
}

TEST_F(MainWindowLinkFaults, a_start_without_an_answer_says_play_failed_after_five_seconds)
{
    openConnected();
    detector.link.answer(CommandFrame::startAcquisition(), {});
    QElapsedTimer clock;
    clock.start();
    click("pushButton_sample");
    EXPECT_GE(clock.elapsed(), 5000);
    expectFailure("Play failed");
}

TEST_F(MainWindowLinkFaults, a_stop_that_the_detector_does_not_confirm_still_returns_to_idle)
{
    openSampling();
    showFrames(1);
    detector.link.answer(CommandFrame::haltAcquisition(), {});
    QElapsedTimer clock;
    clock.start();
    stop();
    EXPECT_GE(clock.elapsed(), 3500);
    EXPECT_TRUE(looksIdle());
    EXPECT_TRUE(button("pushButton_set")->isEnabled());
    EXPECT_TRUE(statusTimer().isActive());
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_FALSE(finalLog().contains(QStringLiteral("下位机停止成功")));
}

TEST_F(MainWindowLinkFaults, a_silent_detector_is_asked_for_readiness_until_it_answers)
{
    openConnected();
    detector.link.answer(CommandFrame::readinessQuery(), {});
    int queries = 0;
    detector.link.setOnWrite([&](const QByteArray &frame) {
        if (frame == CommandFrame::readinessQuery() && ++queries == 1)
            detector.link.answer(frame, hex("FFBB03AA01EB"));
    });
    click("pushButton_sample");
    EXPECT_EQ(queries, 2);
    EXPECT_TRUE(looksRunning());
}

TEST_F(MainWindowLinkFaults, the_window_can_be_closed_in_the_middle_of_an_acquisition)
{
    openSampling();
    detector.stream(50);
    ASSERT_TRUE(QTest::qWaitFor([this] { return text("label_fps") != "FPS: N/A"; }, 10000));
    EXPECT_TRUE(finalLog().contains(QStringLiteral("串口销毁")));
    EXPECT_FALSE(detector.link.isOpen());
}

TEST_F(MainWindowLinkFaults, a_charge_query_that_fails_while_idle_changes_nothing)
{
    openConnected();
    detector.link.answer(CommandFrame::levelQuery(), {});
    const QRect before = find<QWidget>("battery_color")->geometry();
    window->check_lower_computer_status();
    EXPECT_EQ(find<QWidget>("battery_color")->geometry(), before);
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    EXPECT_TRUE(boxes.isEmpty());
}
