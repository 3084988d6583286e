#include "tests/ui/mainwindow/virtualwindow.h"

#include "device/d2xxlibrary.h"

#include <QDir>
#include <QRadioButton>
#include <QTextEdit>

TEST_F(MainWindowOnVirtualDetector, the_system_page_says_that_everything_is_simulated)
{
    open("SerialNumbers=QV1K, SPARE\n");
    EXPECT_TRUE(find<QTextEdit>("textEdit")->toPlainText().startsWith("Virtual detector"));
    EXPECT_EQ(find<QComboBox>("comboBox_port")->count(), 2);
    EXPECT_EQ(find<QComboBox>("comboBox_port")->itemText(1), "SPARE");
}

TEST_F(MainWindowOnVirtualDetector, five_acquisitions_in_one_run_show_the_phantom)
{
    open();
    for (int cycle = 0; cycle < 5; ++cycle) {
        start();
        waitForPictures(2);
        EXPECT_GT(greys().size(), 50U) << "a picture with shades";
        EXPECT_TRUE(find<QLabel>("label_fps")->text().startsWith("FPS: "));
        stop();
    }
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_EQ(finalLog().count("下位机停止成功"), 5);
}

TEST_F(MainWindowOnVirtualDetector, pictures_come_at_the_pace_of_the_timing_and_a_click_reads_a_current)
{
    open("Pacing=timing\n");
    click("pushButton_Connect");
    click("radioButton_150");
    click("pushButton_set");
    ASSERT_EQ(boxes.last().text, "set success");
    start();
    EXPECT_EQ(find<QLabel>("label_fps")->text(), "FPS: N/A");
    waitForPictures(10);
    // One picture per 0.1581044 s; a busy computer may be late, nothing can be early.
    const double rate = framesPerSecond();
    EXPECT_GT(rate, 1.0);
    EXPECT_LT(rate, 6.5);

    auto *view = find<QWidget>("frame")->findChild<QLabel *>();
    QTest::mouseClick(view, Qt::LeftButton, {}, view->rect().center());
    const QRegularExpression coordinate("^Coordinate: \\(5\\d\\d,5\\d\\d\\)$");
    const QString place = find<QLabel>("label_coor")->text();
    EXPECT_TRUE(coordinate.match(place).hasMatch()) << qPrintable(place);
    const QRegularExpression current("^Current: (\\d+\\.\\d{4})nA$");
    const QString shown = find<QLabel>("label_current")->text();
    EXPECT_TRUE(current.match(shown).hasMatch()) << qPrintable(shown);
    EXPECT_GT(current.match(shown).captured(1).toDouble(), 1.0) << "the phantom is lit there";
    waitForPictures(1);
    EXPECT_TRUE(current.match(find<QLabel>("label_current")->text()).hasMatch());
    EXPECT_EQ(find<QLabel>("label_coor")->text(), place);
    stop();
}

TEST_F(MainWindowOnVirtualDetector, each_range_is_downloaded_and_acknowledged)
{
    open();
    click("pushButton_Connect");
    for (const char *range : {"radioButton_150", "radioButton_50", "radioButton_10", "radioButton_1"}) {
        click(range);
        click("pushButton_set");
        EXPECT_EQ(boxes.last().text, "set success") << range;
    }
}

TEST_F(MainWindowOnVirtualDetector, each_test_image_shows_its_own_picture)
{
    open({}, "DebugMode=true\n");
    QList<QImage> shown;
    for (const char *name : {"testImage1", "testImage2", "testImage3", "testImage4", "testImage5"}) {
        click(name);
        start();
        waitForPictures(1);
        for (const QImage &other : shown)
            EXPECT_NE(picture, other) << name;
        shown << picture;
        stop();
        click(name);
    }
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowOnVirtualDetector, a_recording_through_the_window_holds_every_frame)
{
    open();
    find<QLineEdit>("lineEdit_savename")->setText("run");
    find<QComboBox>("comboBox_saveframes")->setEditText("3");
    for (const char *kind : {"checkBox_data", "checkBox_picture", "checkBox_video"})
        click(kind);
    start();
    waitForPictures(1);
    click("pushButton_save");
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return find<QLabel>("label_savestate")->text() == "Save Success"; }, 20000));
    stop();
    const QStringList files = QDir(folder.filePath("Logs/run")).entryList(QDir::Files);
    EXPECT_EQ(files.filter("_data_gray").size(), 3);
    EXPECT_EQ(files.filter(QRegularExpression("_data\\d+\\.csv")).size(), 3);
    EXPECT_EQ(files.filter("_pic").size(), 3);
    EXPECT_TRUE(files.contains("output_video.mp4"));
    EXPECT_TRUE(files.contains("SetParameterData.txt"));
    EXPECT_EQ(files.size(), 11);
}

TEST_F(MainWindowOnVirtualDetector, no_detector_attached_says_device_not_found)
{
    open("Attached=false\n");
    click("pushButton_Connect");
    EXPECT_EQ(boxes.last().text, "Device not found");
}

TEST_F(MainWindowOnVirtualDetector, a_detector_held_by_someone_else_can_be_connected_once_it_is_free)
{
    open();
    const D2xxLibrary other = D2xxLibrary::load(QStringLiteral(QV1K_VIRTUAL_LIBRARY));
    d2xx::Handle handle = nullptr;
    ASSERT_EQ(other.driver->open("QV1K", &handle), d2xx::Status::Ok);
    click("pushButton_Connect");
    EXPECT_EQ(boxes.last().text, "Device connect failed");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");

    ASSERT_EQ(other.driver->close(handle), d2xx::Status::Ok);
    click("pushButton_Connect");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
}

TEST_F(MainWindowOnVirtualDetector, the_cable_pulled_and_plugged_in_again_while_sampling)
{
    open("[Faults]\nUnplugAtByte=12000000\n");
    start();
    ASSERT_TRUE(QTest::qWaitFor([this] { return button("pushButton_Connect")->text() == "Connect"; }, 20000));
    EXPECT_EQ(find<QComboBox>("comboBox_port")->count(), 0);
    EXPECT_TRUE(button("pushButton_set")->isEnabled());
    EXPECT_TRUE(button("pushButton_sample")->isEnabled());
    EXPECT_FALSE(MainWindowInspector::statusTimer(*window).isActive());

    settleVirtualDetector(folder, "Seed=2\n");
    ASSERT_TRUE(QTest::qWaitFor([this] { return find<QComboBox>("comboBox_port")->count() == 1; }, 20000));
    EXPECT_EQ(find<QComboBox>("comboBox_port")->currentText(), "QV1K");
    start();
    waitForPictures(2);
    stop();
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowOnVirtualDetector, a_detector_that_needs_a_moment_is_waited_for)
{
    open("[Faults]\nNotReadyQueries=1\n");
    QElapsedTimer clock;
    clock.start();
    start();
    EXPECT_GE(clock.elapsed(), 1000);
    waitForPictures(1);
    stop();
}

TEST_F(MainWindowOnVirtualDetector, a_timing_packet_whose_reply_is_lost_is_told_and_nothing_more_is_sent)
{
    open("[Faults]\nReplyFaultCommand=0110\nReplyFaultCount=1\nMissingReply=true\n");
    click("pushButton_Connect");
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set time sequence fail");
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set success");
}
