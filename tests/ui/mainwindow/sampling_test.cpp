#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/mainwindow/stylesheets.h"

#include <QElapsedTimer>

class MainWindowSampling : public MainWindowTest
{
protected:
    /// Everything written since, without the level queries.
    [[nodiscard]] QByteArray commands() const
    {
        QByteArray all;
        for (const QByteArray &frame : detector.link.written()) {
            if (frame != CommandFrame::levelQuery())
                all += hexText(frame) + ' ';
        }
        return all.trimmed();
    }
};

TEST_F(MainWindowSampling, play_while_disconnected_says_so_and_stays_usable)
{
    open();
    click("pushButton_sample");
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().title, "Error");
    EXPECT_EQ(boxes.last().text, "No Devices Connected");
    EXPECT_EQ(boxes.last().icon, QMessageBox::Information);
    EXPECT_EQ(boxes.last().buttons, QMessageBox::Ok);
    EXPECT_TRUE(looksIdle());
    EXPECT_TRUE(detector.link.written().isEmpty());
}

TEST_F(MainWindowSampling, play_asks_for_readiness_starts_and_requests_the_first_block)
{
    openConnected();
    click("pushButton_sample");
    EXPECT_EQ(commands(), "FFAA03AA0DEB FFAA03A00DEB FFAA00000DEB");
    EXPECT_TRUE(looksRunning());
    EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playRunning);
    EXPECT_TRUE(button("pushButton_sample")->isEnabled());
    EXPECT_FALSE(button("pushButton_set")->isEnabled());
    EXPECT_FALSE(statusTimer().isActive());
    EXPECT_EQ(text("label_fps"), "FPS: N/A");
    EXPECT_EQ(text("label_savestate"), "");
    EXPECT_EQ(find<QProgressBar>("progressBar")->value(), 0);
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
}

TEST_F(MainWindowSampling, pictures_arrive_and_their_rate_is_shown)
{
    openSampling();
    showFrames(3);
    EXPECT_TRUE(QRegularExpression("^FPS: \\d+\\.\\d\\d$").match(text("label_fps")).hasMatch())
        << qPrintable(text("label_fps"));
}

TEST_F(MainWindowSampling, a_second_press_asks_for_the_stop_and_waits_for_the_detector)
{
    openSampling();
    showFrames(1);
    click("pushButton_sample");
    EXPECT_TRUE(looksStopping());
    EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playStopping);
    EXPECT_FALSE(button("pushButton_sample")->isEnabled());
    EXPECT_FALSE(button("pushButton_set")->isEnabled());
    EXPECT_FALSE(statusTimer().isActive());
    EXPECT_EQ(detector.count(CommandFrame::haltAcquisition()), 0);

    detector.pushBlock();
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
    EXPECT_EQ(detector.count(CommandFrame::haltAcquisition()), 1);
    EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playIdle);
    EXPECT_TRUE(button("pushButton_set")->isEnabled());
    EXPECT_TRUE(statusTimer().isActive());
    EXPECT_EQ(statusTimer().interval(), 120000);
    EXPECT_EQ(detector.link.written().last(), CommandFrame::levelQuery());
    EXPECT_TRUE(finalLog().contains(QStringLiteral("下位机停止成功")));
}

TEST_F(MainWindowSampling, a_press_on_the_disabled_button_does_nothing)
{
    openSampling();
    showFrames(1);
    click("pushButton_sample");
    const auto before = detector.link.written().size();
    click("pushButton_sample");
    EXPECT_TRUE(looksStopping());
    EXPECT_EQ(detector.link.written().size(), before);
}

TEST_F(MainWindowSampling, five_starts_and_stops_in_one_run_each_show_their_own_pictures_and_rate)
{
    openConnected();
    for (int cycle = 1; cycle <= 5; ++cycle) {
        click("pushButton_sample");
        ASSERT_TRUE(looksRunning()) << cycle;
        EXPECT_EQ(text("label_fps"), "FPS: N/A") << cycle;
        showFrames(2, 4096 + 1000 * static_cast<quint32>(cycle));
        EXPECT_NE(text("label_fps"), "FPS: N/A") << cycle;
        EXPECT_NE(text("label_current"), "Current: 0.0nA") << cycle;
        stop();
        EXPECT_EQ(detector.count(CommandFrame::haltAcquisition()), cycle);
    }
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowSampling, the_contrast_reaches_the_pipeline_only_when_the_acquisition_starts)
{
    // 37.5 nA and contrast 2 is grey 127.
    const quint32 sample = 4096 + 261095; // 37.4999 nA
    QList<int> greys;
    openConnected();
    QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                     [&](const QImage &picture) { greys << picture.constScanLine(5)[5]; });
    find<QDoubleSpinBox>("doubleSpinBox_contrast")->setValue(2.0);
    click("pushButton_sample");
    showFrames(1, sample);
    find<QDoubleSpinBox>("doubleSpinBox_contrast")->setValue(1.0);
    showFrames(1, sample);
    stop();
    click("pushButton_sample");
    showFrames(1, sample);
    EXPECT_EQ(greys, QList<int>({127, 127, 63}));
}

TEST_F(MainWindowSampling, each_test_image_asks_for_its_pattern_before_anything_else)
{
    openConnected("DebugMode=true\n");
    const std::array<const char *, 5> names{"testImage1", "testImage2", "testImage3", "testImage4",
                                            "testImage5"};
    const std::array<const char *, 5> codes{"C0", "C1", "C2", "C3", "CF"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        click(names[i]);
        detector.link.clearWritten();
        click("pushButton_sample");
        EXPECT_EQ(commands(),
                  QByteArray("FFAA03") + codes[i] + "0DEB FFAA03AA0DEB FFAA03A00DEB FFAA00000DEB");
        showFrames(1);
        stop();
        click(names[i]);
        EXPECT_FALSE(button(names[i])->isChecked());
    }
}

TEST_F(MainWindowSampling, of_several_checked_test_images_the_lowest_is_requested)
{
    openConnected("DebugMode=true\n");
    click("testImage4");
    click("testImage2");
    click("pushButton_sample");
    EXPECT_EQ(commands(), "FFAA03C10DEB FFAA03AA0DEB FFAA03A00DEB FFAA00000DEB");
}

TEST_F(MainWindowSampling, a_detector_that_is_not_ready_is_asked_once_a_second)
{
    openConnected();
    detector.link.answer(CommandFrame::readinessQuery(), hex("FFBB03AA00EB"));
    QList<qint64> times;
    QElapsedTimer clock;
    clock.start();
    detector.link.setOnWrite([&](const QByteArray &frame) {
        if (frame != CommandFrame::readinessQuery())
            return;
        times << clock.elapsed();
        if (times.size() == 2) // even numbers are not ready, odd ones are
            detector.link.answer(frame, hex("FFBB03AAFEEB"));
        if (times.size() == 3)
            detector.link.answer(frame, hex("FFBB03AAFFEB"));
    });
    click("pushButton_sample");
    ASSERT_EQ(times.size(), 4);
    for (qsizetype i = 1; i < times.size(); ++i) {
        EXPECT_GE(times.at(i) - times.at(i - 1), 1000);
        EXPECT_LT(times.at(i) - times.at(i - 1), 3000);
    }
    EXPECT_TRUE(looksRunning());
    EXPECT_EQ(commands(), "FFAA03AA0DEB FFAA03AA0DEB FFAA03AA0DEB FFAA03AA0DEB FFAA03A00DEB FFAA00000DEB");
}

TEST_F(MainWindowSampling, a_press_during_the_start_does_not_start_twice)
{
    openConnected();
    // The press arrives while the handler exchanges commands, and waits in the event queue.
    detector.link.setOnWrite([&](const QByteArray &frame) {
        if (frame != CommandFrame::readinessQuery())
            return;
        auto *play = button("pushButton_sample");
        const QPointF centre = play->rect().center();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            const auto pressed = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
            QCoreApplication::postEvent(play, new QMouseEvent(type, centre, play->mapToGlobal(centre),
                                                              Qt::LeftButton, pressed, Qt::NoModifier));
        }
    });
    click("pushButton_sample");
    QCoreApplication::processEvents(); // whatever still waits
    EXPECT_TRUE(looksRunning());
    EXPECT_TRUE(button("pushButton_sample")->isEnabled());
    EXPECT_EQ(detector.count(CommandFrame::startAcquisition()), 1);
}
