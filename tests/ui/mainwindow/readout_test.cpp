#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/mainwindow/mainwindow_rules.h"

class MainWindowReadout : public MainWindowTest
{
protected:
    /// A press on the picture at a fraction of its width and height.
    void clickPicture(double across, double down)
    {
        auto *picture = find<QWidget>("frame")->findChild<QLabel *>();
        QTest::mouseClick(
            picture, Qt::LeftButton, {},
            QPoint(static_cast<int>(across * picture->width()), static_cast<int>(down * picture->height())));
    }
};

TEST_F(MainWindowReadout, a_click_before_any_frame_shows_the_coordinate_and_no_current)
{
    open();
    clickPicture(0.5, 0.5);
    EXPECT_TRUE(
        QRegularExpression("^Coordinate: \\((50|51)\\d,(50|51)\\d\\)$").match(text("label_coor")).hasMatch())
        << qPrintable(text("label_coor"));
    EXPECT_EQ(text("label_current"), "Current: 0.0nA");
}

TEST_F(MainWindowReadout, each_frame_refreshes_the_current_of_the_same_point)
{
    openSampling();
    clickPicture(0.5, 0.25);
    const QString coordinate = text("label_coor");
    EXPECT_TRUE(QRegularExpression("^Coordinate: \\(51\\d,25\\d\\)$").match(coordinate).hasMatch())
        << qPrintable(coordinate);
    EXPECT_EQ(text("label_current"), "Current: 0.0nA");
    showFrames(1, 4096 + 1048576);
    EXPECT_EQ(text("label_current"), "Current: 150.6024nA");
    showFrames(1, 4096);
    EXPECT_EQ(text("label_current"), "Current: 0.0000nA");
    EXPECT_EQ(text("label_coor"), coordinate);
}

TEST_F(MainWindowReadout, the_x_coordinate_selects_the_run_of_1024)
{
    open();
    QByteArray raw(4 * 1024 * 1024, '\0');
    qToBigEndian<quint32>(4096 + 1048576, raw.data() + 4 * (3 * 1024 + 7));
    pipeline().onReadReady(raw);
    window->handleLabelClick(3, 7);
    EXPECT_EQ(text("label_current"), "Current: 150.6024nA");
    window->handleLabelClick(7, 3);
    EXPECT_EQ(text("label_current"), "Current: 0.0000nA");
    EXPECT_EQ(text("label_coor"), "Coordinate: (7,3)");
    window->handleLabelClick(1024, 0);
    EXPECT_EQ(text("label_current"), "Current: 0.0nA");
}

TEST_F(MainWindowReadout, an_error_that_the_pipeline_reports_is_ignored)
{
    open();
    Q_EMIT pipeline().errorOccurred({});
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_TRUE(looksIdle());
}

TEST_F(MainWindowReadout, frames_are_counted_from_the_start_of_each_acquisition)
{
    openSampling();
    showFrames(5);
    stop();
    QElapsedTimer sinceStart;
    sinceStart.start();
    click("pushButton_sample");
    EXPECT_EQ(text("label_fps"), "FPS: N/A");
    showFrames(1);
    const qint64 frames = MainWindowInspector::frameCount(*window);
    const qint64 elapsed = MainWindowInspector::elapsedMs(*window);
    EXPECT_EQ(frames, 1);
    EXPECT_LE(elapsed, sinceStart.elapsed());
    EXPECT_EQ(text("label_fps"), MainWindowRules::frameRateText(frames, elapsed));
}
