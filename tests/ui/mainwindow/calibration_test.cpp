#include "tests/ui/mainwindow/mainwindowtest.h"

#include <algorithm>

class MainWindowCalibration : public MainWindowTest
{
protected:
    [[nodiscard]] QPushButton *fullOn() const { return button("pushButton_full_on"); }
    [[nodiscard]] QPushButton *fullOff() const { return button("pushButton_full_off"); }
    [[nodiscard]] QProgressBar *progress() const { return find<QProgressBar>("progressBar_cali"); }

    void openCalibrating()
    {
        openSampling();
        click("pushButton_cali");
        ASSERT_TRUE(pipeline().caliEnabled);
    }

    void expectRefused(QPushButton *pressed)
    {
        ASSERT_EQ(boxes.boxes().size(), 1);
        EXPECT_EQ(boxes.last().title, "Error");
        EXPECT_EQ(boxes.last().text, "Please start sample first");
        EXPECT_EQ(boxes.last().icon, QMessageBox::Information);
        EXPECT_EQ(boxes.last().buttons, QMessageBox::Ok);
        EXPECT_FALSE(pressed->isChecked());
        EXPECT_FALSE(pipeline().fullOnFlag);
        EXPECT_FALSE(pipeline().fullOffFlag);
    }

    static bool allEqual(const std::vector<double> &reference, double value)
    {
        return std::all_of(reference.begin(), reference.end(),
                           [value](double element) { return element == value; });
    }
};

TEST_F(MainWindowCalibration, opened_while_nothing_runs_it_shows_both_capture_buttons_disabled)
{
    open();
    click("pushButton_cali");
    EXPECT_EQ(button("pushButton_cali")->text(), "Close Calibration");
    EXPECT_TRUE(pipeline().caliEnabled);
    for (const QPushButton *capture : {fullOn(), fullOff()}) {
        EXPECT_TRUE(capture->isVisible());
        EXPECT_FALSE(capture->isEnabled());
    }
}

TEST_F(MainWindowCalibration, opened_while_the_acquisition_runs_it_enables_them)
{
    openCalibrating();
    for (const QPushButton *capture : {fullOn(), fullOff()}) {
        EXPECT_TRUE(capture->isVisible());
        EXPECT_TRUE(capture->isEnabled());
    }
}

TEST_F(MainWindowCalibration, opened_before_its_captures_can_be_used_once_the_acquisition_runs)
{
    openConnected();
    click("pushButton_cali");
    ASSERT_FALSE(fullOn()->isEnabled());
    click("pushButton_sample");
    EXPECT_TRUE(fullOn()->isEnabled());
    EXPECT_TRUE(fullOff()->isEnabled());
    click("pushButton_full_off");
    showFrames(1, 4096 + 10486);
    EXPECT_EQ(text("label_calistate"), "Full Off Success");
}

TEST_F(MainWindowCalibration, closed_it_hides_them_and_clears_the_progress)
{
    openCalibrating();
    click("pushButton_full_on");
    showFrames(1);
    EXPECT_EQ(progress()->value(), 1);
    click("pushButton_cali");
    EXPECT_EQ(button("pushButton_cali")->text(), "Open Calibration");
    EXPECT_FALSE(pipeline().caliEnabled);
    EXPECT_TRUE(fullOn()->isHidden());
    EXPECT_TRUE(fullOff()->isHidden());
    EXPECT_EQ(progress()->value(), 0);
    EXPECT_EQ(text("label_calistate"), "");
}

TEST_F(MainWindowCalibration, a_capture_without_an_acquisition_is_refused)
{
    openCalibrating();
    showFrames(1);
    stop();
    click("pushButton_full_on"); // still enabled since the acquisition ran
    expectRefused(fullOn());
    boxes.startOver();
    click("pushButton_full_off");
    expectRefused(fullOff());
}

TEST_F(MainWindowCalibration, full_on_takes_the_next_frame_as_the_bright_reference)
{
    openCalibrating();
    click("pushButton_full_on");
    EXPECT_TRUE(pipeline().fullOnFlag);
    EXPECT_TRUE(allEqual(pipeline().fullOnData, 255.0));
    EXPECT_EQ(progress()->maximum(), 1);
    EXPECT_EQ(progress()->value(), 0);
    EXPECT_EQ(text("label_calistate"), "");

    showFrames(1, 4096 + 1048576);
    EXPECT_FALSE(pipeline().fullOnFlag);
    EXPECT_FALSE(fullOn()->isChecked());
    EXPECT_TRUE(allEqual(pipeline().fullOnData, 150.6024));
    EXPECT_EQ(progress()->value(), 1);
    EXPECT_EQ(text("label_calistate"), "Full On Success");
}

TEST_F(MainWindowCalibration, full_off_takes_the_next_frame_as_the_dark_reference)
{
    openCalibrating();
    click("pushButton_full_off");
    EXPECT_TRUE(pipeline().fullOffFlag);
    EXPECT_TRUE(allEqual(pipeline().fullOffData, 0.0));

    showFrames(1, 4096 + 10486);
    EXPECT_FALSE(pipeline().fullOffFlag);
    EXPECT_FALSE(fullOff()->isChecked());
    EXPECT_TRUE(allEqual(pipeline().fullOffData, 1.5061));
    EXPECT_EQ(text("label_calistate"), "Full Off Success");
}

TEST_F(MainWindowCalibration, full_on_during_a_full_off_capture_is_cancelled_and_leaves_it_running)
{
    openCalibrating();
    click("pushButton_full_off");
    click("pushButton_full_on");
    EXPECT_FALSE(fullOn()->isChecked());
    EXPECT_FALSE(pipeline().fullOnFlag);
    EXPECT_TRUE(fullOff()->isChecked());
    EXPECT_TRUE(pipeline().fullOffFlag);
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowCalibration, full_off_during_a_full_on_capture_is_cancelled_and_leaves_it_running)
{
    openCalibrating();
    click("pushButton_full_on");
    click("pushButton_full_off");
    EXPECT_FALSE(fullOff()->isChecked());
    EXPECT_FALSE(pipeline().fullOffFlag);
    EXPECT_TRUE(fullOn()->isChecked());
    EXPECT_TRUE(pipeline().fullOnFlag);
}

TEST_F(MainWindowCalibration, it_cannot_be_closed_while_a_capture_runs)
{
    openCalibrating();
    for (QPushButton *capture : {fullOff(), fullOn()}) {
        QTest::mouseClick(capture, Qt::LeftButton);
        ASSERT_TRUE(capture->isChecked());
        click("pushButton_cali");
        EXPECT_EQ(button("pushButton_cali")->text(), "Close Calibration");
        EXPECT_TRUE(pipeline().caliEnabled);
        EXPECT_TRUE(capture->isVisible());
        QTest::mouseClick(capture, Qt::LeftButton); // abandoned
    }
}

TEST_F(MainWindowCalibration, unchecking_abandons_the_capture_and_keeps_the_fill_value)
{
    openCalibrating();
    click("pushButton_full_off");
    showFrames(1, 4096 + 10486); // a dark reference that is not 0
    click("pushButton_full_off");
    click("pushButton_full_off");
    EXPECT_FALSE(pipeline().fullOffFlag);
    EXPECT_TRUE(allEqual(pipeline().fullOffData, 0.0));
    EXPECT_EQ(text("label_calistate"), "");
    showFrames(1, 4096 + 10486);
    EXPECT_TRUE(allEqual(pipeline().fullOffData, 0.0));
}

TEST_F(MainWindowCalibration, a_capture_pending_at_the_stop_takes_the_first_frame_of_the_next_acquisition)
{
    openCalibrating();
    click("pushButton_full_off");
    stop();
    EXPECT_TRUE(pipeline().fullOffFlag);
    EXPECT_TRUE(fullOff()->isChecked());
    click("pushButton_sample");
    showFrames(2, 4096 + 10486);
    EXPECT_TRUE(allEqual(pipeline().fullOffData, 1.5061));
    EXPECT_FALSE(fullOff()->isChecked());
    EXPECT_EQ(text("label_calistate"), "Full Off Success");
}

TEST_F(MainWindowCalibration, the_progress_counts_frames_until_the_capture_is_whole)
{
    open();
    window->handleCaliMessage(7);
    EXPECT_EQ(text("label_calistate"), "Frame 7");
    window->handleCaliMessage(1);
    EXPECT_EQ(text("label_calistate"), "Frame 1") << "whole, but no capture is running";
}

TEST_F(MainWindowCalibration, the_finished_references_uncheck_their_own_button)
{
    open();
    for (QPushButton *capture : {fullOn(), fullOff()})
        capture->setChecked(true);
    window->handleSetMaxSuccess();
    EXPECT_FALSE(fullOn()->isChecked());
    EXPECT_TRUE(fullOff()->isChecked());
    window->handleSetMinSuccess();
    EXPECT_FALSE(fullOff()->isChecked());
}
