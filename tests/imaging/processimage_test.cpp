#include "device/portmanager.h"
#include "imaging/processimage.h"
#include "log/logmanager.h"
#include "tests/imaging/frames.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <limits>
#include <memory>

TEST(ProcessImage, starts_with_its_defaults)
{
    const WorkingFolder folder;
    const ProcessImage pipeline;
    EXPECT_FALSE(pipeline.fullOnFlag);
    EXPECT_FALSE(pipeline.fullOffFlag);
    EXPECT_FALSE(pipeline.caliEnabled);
    EXPECT_FALSE(pipeline.isSaving());
    EXPECT_EQ(pipeline.getCaliFrameCount(), 1);
    EXPECT_EQ(pipeline.getSaveFrameTotal(), 5);
    EXPECT_EQ(pipeline.getCurrentRange(), 150);
    EXPECT_EQ(pipeline.failedFiles(), 0);
    EXPECT_EQ(pipeline.fullOffData, std::vector<double>(Frames::pixels, 0.0));
    EXPECT_EQ(pipeline.fullOnData, std::vector<double>(Frames::pixels, 255.0));
    EXPECT_EQ(pipeline.grayLevels(), std::vector<int>(Frames::pixels, 0));
    EXPECT_TRUE(pipeline.lastFrame().empty());
}

TEST(ProcessImage, its_signals_and_its_slot_stand_in_their_order)
{
    const QMetaObject &meta = ProcessImage::staticMetaObject;
    QByteArrayList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names << meta.method(i).name();
    EXPECT_EQ(names, (QByteArrayList{"sendImagetoMain", "saveMessage", "caliMessage", "dataProcessed",
                                     "errorOccurred", "disConnect", "finished", "setMaxSuccess",
                                     "setMinSuccess", "onReadReady"}));
}

TEST(ProcessImage, makes_the_calibration_folder_when_the_log_folder_is_there)
{
    const WorkingFolder folder;
    QDir(folder.path()).mkdir("Logs");
    const ProcessImage pipeline;
    EXPECT_TRUE(QDir(folder.filePath("Logs/calib")).exists());
}

TEST(ProcessImage, makes_no_folder_when_the_log_folder_is_missing)
{
    const WorkingFolder folder;
    const ProcessImage pipeline;
    EXPECT_FALSE(QDir(folder.filePath("Logs")).exists());
}

TEST(ProcessImage, the_picture_is_1024_by_1024_in_8_bit_grey)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    QByteArray frame = Frames::useful(1);
    const QImage image = pipeline.processImage(frame);
    EXPECT_EQ(image.size(), QSize(1024, 1024));
    EXPECT_EQ(image.format(), QImage::Format_Grayscale8);
    EXPECT_EQ(image.bytesPerLine(), 1024);
}

TEST(ProcessImage, whole_frames_come_out_as_in_plain_words)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    Straightforward::Pipeline expected;
    for (QByteArray frame : {Frames::useful(2), Frames::edges(), Frames::noise(3),
                             Frames::useful(4).first(1234567), QByteArray(), Frames::noise(5) + "more"}) {
        const QImage image = pipeline.processImage(frame);
        EXPECT_EQ(image, expected.processImage(frame));
        EXPECT_EQ(pipeline.lastFrame(), expected.lastFrameData);
        EXPECT_EQ(pipeline.grayLevels(), expected.grayData);
    }
}

TEST(ProcessImage, the_contrast_scales_the_picture_and_not_the_grey_levels)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    pipeline.setContrastRatio(2.0);
    QByteArray frame = Frames::flat(Frames::sampleOf(40.5));
    const QImage image = pipeline.processImage(frame);
    EXPECT_EQ(pipeline.lastFrame()[0], 40.5);
    EXPECT_EQ(image.constBits()[0], 137);    // 137.7
    EXPECT_EQ(pipeline.grayLevels()[0], 68); // 68.85
}

TEST(ProcessImage, a_current_above_the_range_is_white_and_keeps_its_grey_level)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    pipeline.setContrastRatio(1.0);
    QByteArray frame = Frames::flat(Frames::sampleOf(303));
    const QImage image = pipeline.processImage(frame);
    EXPECT_EQ(pipeline.lastFrame()[0], 303.0);
    EXPECT_EQ(image.constBits()[0], 255);
    EXPECT_EQ(pipeline.grayLevels()[0], 515); // 515.1
}

TEST(ProcessImage, the_current_range_of_the_detector_changes_no_pixel)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    QByteArray frame = Frames::useful(6);
    const QImage before = pipeline.processImage(frame);
    const std::vector<double> currents = pipeline.lastFrame();
    for (const int range : {1, 10, 50, 150}) {
        pipeline.setCurrentRange(range);
        EXPECT_EQ(pipeline.getCurrentRange(), range);
        EXPECT_EQ(pipeline.processImage(frame), before) << range;
        EXPECT_EQ(pipeline.lastFrame(), currents) << range;
    }
}

TEST(ProcessImage, pictures_given_out_before_stay_as_they_are)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    QByteArray bright = Frames::flat(0x00100000);
    QByteArray dark = Frames::flat(0);
    const QImage first = pipeline.processImage(bright);
    const QImage second = pipeline.processImage(dark);
    EXPECT_EQ(first.constBits()[77], 255);
    EXPECT_EQ(second.constBits()[77], 0);
}

TEST(ProcessImage, the_frame_that_is_handed_in_is_not_changed)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    QByteArray frame = Frames::useful(8);
    const QByteArray shared = frame;
    const char *data = frame.constData();
    (void)pipeline.processImage(frame);
    EXPECT_EQ(frame.constData(), data);
    EXPECT_EQ(frame, shared);
}

TEST(ProcessImage, a_pixel_shows_0_0_before_the_first_frame)
{
    const WorkingFolder folder;
    const ProcessImage pipeline;
    EXPECT_EQ(pipeline.pixelValueText(0, 0), "0.0");
    EXPECT_EQ(pipeline.pixelValueText(1023, 1023), "0.0");
}

TEST(ProcessImage, a_pixel_is_read_with_its_row_first_and_four_decimals)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    QByteArray frame = Frames::of([](int i) {
        return i == 3 * 1024 + 5 ? 4096 + 1048576 : i == 5 * 1024 + 3 ? Frames::sampleOf(40.5) : 0;
    });
    (void)pipeline.processImage(frame);
    EXPECT_EQ(pipeline.pixelValueText(3, 5), "150.6024");
    EXPECT_EQ(pipeline.pixelValueText(5, 3), "40.5000");
    EXPECT_EQ(pipeline.pixelValueText(0, 0), "0.0000");
    EXPECT_EQ(pipeline.pixelValueText(2, 1024 + 5), "150.6024");
}

TEST(ProcessImage, a_pixel_outside_the_frame_shows_0_0)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    QByteArray frame = Frames::useful(9);
    (void)pipeline.processImage(frame);
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    for (const auto &[x, y] : {std::pair(1024, 0),
                               {1023, 1024},
                               {-1, 0},
                               {0, -1},
                               {-1, 1023},
                               {lowest, lowest + 1},
                               {highest, 0},
                               {0, highest},
                               {2097151, 0}})
        EXPECT_EQ(pipeline.pixelValueText(x, y), "0.0") << x << ' ' << y;
    EXPECT_NE(pipeline.pixelValueText(-1, 1024), "0.0"); // index 0
}

TEST(ProcessImage, a_frame_gives_its_picture_once)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    QList<QImage> pictures;
    QObject::connect(&pipeline, &ProcessImage::sendImagetoMain,
                     [&](const QImage &picture) { pictures.append(picture); });
    Straightforward::Pipeline expected;
    for (const quint32 seed : {1u, 2u}) {
        const QByteArray frame = Frames::useful(seed);
        pipeline.onReadReady(frame);
        EXPECT_EQ(pictures.takeFirst(), expected.processImage(frame));
        EXPECT_TRUE(pictures.isEmpty());
    }
}

TEST(ProcessImage, the_pixel_read_while_the_picture_is_shown_is_of_that_picture)
{
    const WorkingFolder folder;
    ProcessImage pipeline;
    QStringList texts;
    QObject::connect(&pipeline, &ProcessImage::sendImagetoMain,
                     [&] { texts << pipeline.pixelValueText(0, 0); });
    for (const double current : {11.0, 20.0, 30.0})
        pipeline.onReadReady(Frames::flat(Frames::sampleOf(current)));
    EXPECT_EQ(texts, (QStringList{"11.0000", "20.0000", "30.0000"}));
}

TEST(ProcessImage, the_pixel_read_while_a_frame_is_being_processed_is_of_the_frame_before)
{
    const WorkingFolder folder;
    QDir(folder.path()).mkdir("Logs");
    ProcessImage pipeline;
    QStringList texts;
    const auto note = [&] {
        texts << pipeline.pixelValueText(0, 0);
    };
    QObject::connect(&pipeline, &ProcessImage::caliMessage, note);
    QObject::connect(&pipeline, &ProcessImage::setMinSuccess, note);
    for (const double current : {11.0, 20.0}) {
        pipeline.fullOffFlag = true;
        pipeline.onReadReady(Frames::flat(Frames::sampleOf(current)));
    }
    EXPECT_EQ(texts, (QStringList{"0.0", "0.0", "11.0000", "11.0000"}));
}

TEST(ProcessImage, frames_of_the_receive_thread_are_processed_on_its_own_thread)
{
    const WorkingFolder folder;
    LogManager::createInstance();
    PortManager::setDriver(std::make_shared<D2xx>());
    PortManager::createInstance();
    {
        ProcessImage pipeline;
        QSignalSpy pictures(&pipeline, &ProcessImage::sendImagetoMain);
        QThread *shownOn = nullptr;
        QObject::connect(&pipeline, &ProcessImage::sendImagetoMain,
                         [&] { shownOn = QThread::currentThread(); });
        const QByteArray frame = Frames::flat(Frames::sampleOf(26));
        const std::unique_ptr<QThread> receiver(
            QThread::create([&frame] { Q_EMIT PortManager::instance()->read_ready(frame); }));
        receiver->start();
        receiver->wait();
        EXPECT_TRUE(pictures.isEmpty());
        EXPECT_TRUE(QTest::qWaitFor([&] { return pictures.size() == 1; }, 5000));
        EXPECT_EQ(shownOn, QThread::currentThread());
        EXPECT_EQ(pipeline.pixelValueText(0, 0), "26.0000");
    }
    PortManager::destroyInstance();
    LogManager::destroyInstance();
}
