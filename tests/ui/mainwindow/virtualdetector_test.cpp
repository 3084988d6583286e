#include "device/d2xxlibrary.h"
#include "mainwindowinspector.h"
#include "tests/support/children.h"
#include "tests/support/messageboxes.h"
#include "tests/support/workingfolder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTest>
#include <QTextEdit>

#include <set>

/// The whole way from the buttons down to the virtual detector and back.
class MainWindowOnVirtualDetector : public testing::Test
{
protected:
    void open(const QByteArray &detector = {}, const QByteArray &config = {})
    {
        settleDetector(detector);
        folder.write("config.ini", "[General]\nD2xxLibrary=" QV1K_VIRTUAL_LIBRARY "\n" + config);
        window = std::make_unique<mainwindow>();
        window->show();
        QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                         [this](const QImage &image) {
                             ++pictures;
                             picture = image.copy();
                         });
    }

    /// Writes the detector's settings; paces are off unless said otherwise.
    void settleDetector(const QByteArray &lines)
    {
        folder.write("virtual-detector.ini", "[General]\nPacing=none\n" + lines);
    }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return getChild<Widget>(*window, name);
    }
    [[nodiscard]] QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    [[nodiscard]] ProcessImage &pipeline() const { return MainWindowInspector::pipeline(*window); }

    void click(const char *name)
    {
        auto *target = find<QAbstractButton>(name);
        auto *pages = find<QStackedWidget>("stackedWidget");
        for (int row = 0; row < pages->count(); ++row) {
            if (pages->widget(row)->isAncestorOf(target))
                find<QListWidget>("listWidget")->setCurrentRow(row);
        }
        ASSERT_TRUE(target->isVisible()) << name;
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(8, target->height() / 2));
    }

    void start()
    {
        if (button("pushButton_Connect")->text() == "Connect")
            click("pushButton_Connect");
        click("pushButton_sample");
        ASSERT_FALSE(button("pushButton_set")->isEnabled()) << "the acquisition does not run";
    }

    void waitForPictures(int more)
    {
        const int target = pictures + more;
        ASSERT_TRUE(QTest::qWaitFor([&] { return pictures >= target; }, 20000)) << pictures;
    }

    void stop()
    {
        click("pushButton_sample");
        ASSERT_TRUE(QTest::qWaitFor([this] { return button("pushButton_set")->isEnabled(); }, 20000));
        EXPECT_TRUE(button("pushButton_sample")->isEnabled());
    }

    [[nodiscard]] std::set<uchar> greys() const
    {
        std::set<uchar> levels;
        for (int y = 0; y < picture.height(); ++y)
            levels.insert(picture.constScanLine(y), picture.constScanLine(y) + picture.width());
        return levels;
    }

    WorkingFolder folder;
    MessageBoxes boxes;
    int pictures = 0;
    QImage picture;
    std::unique_ptr<mainwindow> window;
};

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
    window.reset();
    const QString log = QStringLiteral("Logs/Log%1.txt").arg(QDate::currentDate().toString("yyyyMMdd"));
    EXPECT_EQ(folder.read(log).count("下位机停止成功"), 5);
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

TEST_F(MainWindowOnVirtualDetector, dark_and_bright_references_are_taken_and_even_out_the_picture)
{
    open("Scene=flat\nLight=0\n");
    start();
    waitForPictures(1);
    click("pushButton_cali");
    click("pushButton_full_off");
    const auto says = [this](const char *state) {
        return find<QLabel>("label_calistate")->text() == state;
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return says("Full Off Success"); }, 20000));

    settleDetector("Scene=flat\nLight=1\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return pipeline().lastFrame()[512 * 1024 + 512] > 20.0; }, 20000));
    click("pushButton_full_on");
    ASSERT_TRUE(QTest::qWaitFor([&] { return says("Full On Success"); }, 20000));
    waitForPictures(2);
    int bright = 0;
    for (int x = 0; x < 1024; ++x)
        bright += picture.constScanLine(512)[x] > 240 ? 1 : 0;
    EXPECT_GT(bright, 1000);
    stop();
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
    ftdi::FT_HANDLE handle = nullptr;
    ASSERT_EQ(other.driver->open("QV1K", &handle), ftdi::FT_OK);
    click("pushButton_Connect");
    EXPECT_EQ(boxes.last().text, "Device connect failed");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");

    ASSERT_EQ(other.driver->close(handle), ftdi::FT_OK);
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

    settleDetector("Seed=2\n");
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
