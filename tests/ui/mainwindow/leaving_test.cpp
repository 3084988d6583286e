#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QCloseEvent>

/// Every way in which the window closes.
class MainWindowLeaving : public MainWindowTest
{
protected:
    /// The task bar, the window manager, the end of a session.
    void closeFromOutside()
    {
        QCloseEvent event;
        QCoreApplication::sendEvent(window->windowHandle(), &event);
    }

    void expectQuestion()
    {
        ASSERT_EQ(boxes.boxes().size(), 1);
        EXPECT_EQ(boxes.last().title, "Warning");
        EXPECT_EQ(boxes.last().text, QStringLiteral("Are you sure you want to exit？"));
        EXPECT_EQ(boxes.last().buttons, QMessageBox::Yes | QMessageBox::No);
        EXPECT_EQ(boxes.last().defaultButton, QMessageBox::No);
    }

    void record()
    {
        find<QLineEdit>("lineEdit_savename")->setText("cut");
        find<QComboBox>("comboBox_saveframes")->setEditText("500");
        click("checkBox_picture");
        click("pushButton_save");
    }

    [[nodiscard]] qsizetype halts() const { return detector.count(CommandFrame::haltAcquisition()); }
};

TEST_F(MainWindowLeaving, a_close_from_outside_asks_while_an_acquisition_runs_and_heeds_a_no)
{
    openSampling();
    boxes.startOver(QMessageBox::No);
    closeFromOutside();
    expectQuestion();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(looksRunning());
    EXPECT_EQ(halts(), 0);
    showFrames(1);
}

TEST_F(MainWindowLeaving, a_close_from_outside_that_is_confirmed_halts_the_detector_once)
{
    openSampling();
    showFrames(1);
    boxes.startOver(QMessageBox::Yes);
    closeFromOutside();
    expectQuestion();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(halts(), 1);
    window.reset();
    EXPECT_EQ(halts(), 1);
    EXPECT_FALSE(detector.link.isOpen());
}

TEST_F(MainWindowLeaving, a_recording_that_waits_for_frames_counts_as_running)
{
    openConnected();
    record();
    boxes.startOver(QMessageBox::No);
    closeFromOutside();
    expectQuestion();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(pipeline().isSaving());
}

TEST_F(MainWindowLeaving, while_idle_only_the_button_asks)
{
    openConnected();
    closeFromOutside();
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(halts(), 0);
}

TEST_F(MainWindowLeaving, a_close_by_the_program_never_asks_and_ends_recording_and_acquisition)
{
    openSampling();
    record();
    showFrames(2);
    window->close();
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(pipeline().isSaving());
    EXPECT_EQ(text("label_savestate"), "Save Stop");
    EXPECT_EQ(halts(), 1);
}

TEST_F(MainWindowLeaving, a_window_that_is_destroyed_while_it_runs_halts_the_detector_once)
{
    openSampling();
    showFrames(1);
    window.reset();
    EXPECT_EQ(halts(), 1);
    EXPECT_FALSE(detector.link.isOpen());
}

TEST_F(MainWindowLeaving, while_a_stop_is_under_way_one_halt_is_enough)
{
    openSampling();
    showFrames(1);
    click("pushButton_sample");
    EXPECT_TRUE(looksStopping());
    detector.pushBlock();
    window.reset();
    EXPECT_EQ(halts(), 1);
}

TEST_F(MainWindowLeaving, an_idle_window_says_nothing_to_the_detector_when_it_goes)
{
    openConnected();
    const auto before = detector.link.written().size();
    window.reset();
    EXPECT_EQ(detector.link.written().size(), before);
}
