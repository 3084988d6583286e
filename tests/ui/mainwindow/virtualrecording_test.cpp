#include "tests/imaging/frames.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/support/limitedwriting.h"
#include "tests/support/systemreason.h"
#include "tests/ui/mainwindow/virtualwindow.h"

#include <QDir>
#include <QDoubleSpinBox>
#include <QLocale>
#include <QProgressBar>
#include <QRegularExpression>

#include <opencv2/videoio.hpp>

/// Recordings by the buttons, of frames that the virtual detector replays.
class RecordingOnVirtualDetector : public MainWindowOnVirtualDetector
{
protected:
    /// A frame as the pipeline handed it to the window.
    struct Frame
    {
        QImage picture;
        std::vector<double> currents;
        std::vector<int> greyLevels;
    };

    /// Opens the window on a detector that sends these frames over and over.
    void openReplaying(const QByteArray &frames, const QByteArray &config = {})
    {
        folder.write("frames.raw", frames);
        open("Scene=replay\nReplayFile=" + folder.filePath("frames.raw").toUtf8() + "\n", config);
        QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                         [this](const QImage &image) {
                             shown = {image.copy(), pipeline().lastFrame(), pipeline().grayLevels()};
                         });
        QObject::connect(&pipeline(), &ProcessImage::saveMessage, window.get(),
                         [this] { recorded << shown; });
    }

    void arm(const QString &name, int frames, bool data, bool pictureFiles, bool video)
    {
        recorded.clear();
        find<QLineEdit>("lineEdit_savename")->setText(name);
        find<QComboBox>("comboBox_saveframes")->setEditText(QString::number(frames));
        find<QCheckBox>("checkBox_data")->setChecked(data);
        find<QCheckBox>("checkBox_picture")->setChecked(pictureFiles);
        find<QCheckBox>("checkBox_video")->setChecked(video);
        click("pushButton_save");
    }

    void record(const QString &name, int frames, bool data, bool pictureFiles, bool video)
    {
        arm(name, frames, data, pictureFiles, video);
        waitForText("label_savestate", "Save Success");
        ASSERT_EQ(recorded.size(), frames);
        EXPECT_EQ(find<QProgressBar>("progressBar")->value(), frames);
    }

    [[nodiscard]] QString path(const QString &name, const QString &file) const
    {
        return folder.filePath("Logs/" + name + "/" + file);
    }
    [[nodiscard]] QStringList files(const QString &name) const
    {
        return QDir(folder.filePath("Logs/" + name)).entryList(QDir::Files, QDir::Name);
    }

    void expectData(const QString &name)
    {
        for (qsizetype n = 1; n <= recorded.size(); ++n) {
            const QString stem = "Logs/" + name + "/" + name;
            const QString end = QString::number(n) + ".csv";
            EXPECT_TRUE(folder.read(stem + "_data" + end) == csvOf(recorded[n - 1].currents)) << n;
            EXPECT_TRUE(folder.read(stem + "_data_gray" + end) == csvOf(recorded[n - 1].greyLevels)) << n;
        }
    }

    void expectPictures(const QString &name)
    {
        for (qsizetype n = 1; n <= recorded.size(); ++n)
            EXPECT_EQ(QImage(path(name, name + "_pic" + QString::number(n) + ".png")),
                      recorded[n - 1].picture);
    }

    /// The video has the size, the rate and the frames, in order; it is compressed with losses.
    void expectVideo(const QString &name)
    {
        cv::VideoCapture video(path(name, "output_video.mp4").toStdString());
        ASSERT_TRUE(video.isOpened());
        EXPECT_DOUBLE_EQ(video.get(cv::CAP_PROP_FPS), 0.5);
        EXPECT_EQ(static_cast<int>(video.get(cv::CAP_PROP_FRAME_COUNT)), recorded.size());
        cv::Mat frame;
        for (const Frame &expected : recorded) {
            ASSERT_TRUE(video.read(frame));
            ASSERT_EQ(frame.size(), cv::Size(1024, 1024));
            for (const int corner : {100, 900})
                EXPECT_NEAR(frame.at<cv::Vec3b>(corner, corner)[0],
                            expected.picture.constScanLine(corner)[corner], 12);
        }
        EXPECT_FALSE(video.read(frame));
    }

    [[nodiscard]] QByteArray csvOf(const auto &values) const
    {
        Straightforward::writeCsv(folder.filePath("expected.csv"), values);
        return folder.read("expected.csv");
    }

    /// Waits until the log names that many files of the folder, in a line each with the same reason; the
    /// recording's own begin and end name the folder too.
    void expectLogged(const QString &files, int count, const QString &reason)
    {
        const QRegularExpression ofFiles(QStringLiteral(">>   (?!开始保存|保存完成|保存中止).*") +
                                         QRegularExpression::escape(files));
        QStringList lines;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                lines = QString::fromUtf8(folder.read(logName())).split(u'\n').filter(ofFiles);
                return lines.size() >= count;
            },
            20000));
        EXPECT_EQ(lines.size(), count);
        for (const QString &line : lines)
            EXPECT_TRUE(line.contains(reason)) << qPrintable(line);
    }

    Frame shown;
    QList<Frame> recorded;
};

namespace {

/// Two frames with values of every size and number of digits, and one that is plain.
QByteArray framesOfAllKinds()
{
    QByteArray first = Frames::edges();
    const quint32 samples[] = {4096, 4097, Frames::sampleOf(12.3456), 4096 + 1048576, 0x7FFFFFFF};
    for (std::size_t i = 0; i < std::size(samples); ++i)
        qToBigEndian(samples[i], first.data() + 4 * i);
    return first + Frames::useful(1) + Frames::flat(Frames::sampleOf(50));
}

/// Frames that look even, of one level each.
QByteArray flatFrames(std::initializer_list<double> currents)
{
    QByteArray frames;
    for (const double current : currents)
        frames += Frames::flat(Frames::sampleOf(current));
    return frames;
}

} // namespace

TEST_F(RecordingOnVirtualDetector, every_combination_of_forms_holds_what_was_shown)
{
    openReplaying(framesOfAllKinds());
    click("pushButton_rotate"); // the files are not turned
    start();
    for (int forms = 1; forms < 8; ++forms) {
        const QString name = "run" + QString::number(forms);
        const bool data = forms & 1;
        const bool pictureFiles = forms & 2;
        const bool video = forms & 4;
        record(name, 3, data, pictureFiles, video);
        if (data)
            expectData(name);
        if (pictureFiles)
            expectPictures(name);
        EXPECT_EQ(QFile::exists(path(name, "output_video.mp4")), video);
        EXPECT_EQ(QFile::exists(path(name, "SetParameterData.txt")), data);
        EXPECT_EQ(files(name).size(), (data ? 7 : 0) + (pictureFiles ? 3 : 0) + (video ? 1 : 0));
        EXPECT_EQ(find<QLabel>("label_savestate")->toolTip(), "");
    }
    stop();
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(RecordingOnVirtualDetector, the_data_files_tell_values_of_every_size)
{
    openReplaying(framesOfAllKinds());
    arm("run", 1, true, false, false); // before the start: it takes the first frame
    start();
    waitForText("label_savestate", "Save Success");
    stop();
    EXPECT_TRUE(folder.read("Logs/run/run_data1.csv").startsWith("0,0.0001,12.3456,150.602,308433,"));
    EXPECT_TRUE(folder.read("Logs/run/run_data_gray1.csv").startsWith("0,0,20,256,524336,"));
}

TEST_F(RecordingOnVirtualDetector, the_video_opened_again_has_its_frames_in_order)
{
    openReplaying(flatFrames({20, 60, 100, 140}));
    start();
    record("run", 7, false, false, true);
    stop();
    expectVideo("run");
}

TEST_F(RecordingOnVirtualDetector, calibrated_pictures_and_levels_are_recorded_as_shown)
{
    openReplaying(framesOfAllKinds());
    start();
    click("pushButton_cali");
    record("run", 3, true, true, false);
    stop();
    expectData("run");
    expectPictures("run");
    EXPECT_EQ(recorded[0].greyLevels[1], recorded[0].picture.constBits()[1]);
}

TEST_F(RecordingOnVirtualDetector, a_german_locale_changes_no_byte_of_any_file)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    openReplaying(framesOfAllKinds());
    find<QDoubleSpinBox>("doubleSpinBox_contrast")->setValue(2.25);
    find<QDoubleSpinBox>("doubleSpinBox_vss")->setValue(1.5);
    start();
    record("run", 2, true, false, false);
    stop();
    expectData("run");
    EXPECT_EQ(
        folder.read("Logs/run/SetParameterData.txt"),
        "Current Range:150nA\nVss: 1.5 V\nVcom: -10 V\nVon: 15 V\nVoff: -15 V\nContrast Ratio: 2.25 \n");
}

TEST_F(RecordingOnVirtualDetector, stopped_half_way_it_keeps_what_is_stored_and_closes_the_video)
{
    openReplaying(flatFrames({20, 60, 100}));
    start();
    arm("cut", 1000, false, true, true);
    ASSERT_TRUE(QTest::qWaitFor([this] { return recorded.size() >= 3; }, 20000));
    click("pushButton_save"); // a second recording while one runs
    EXPECT_EQ(find<QProgressBar>("progressBar")->maximum(), 1000);
    stop();
    EXPECT_EQ(text("label_savestate"), "Save Stop");
    EXPECT_EQ(files("cut").size(), recorded.size() + 1);
    expectPictures("cut");
    expectVideo("cut");

    start();
    record("after", 2, false, true, true);
    stop();
    expectVideo("after");
}

TEST_F(RecordingOnVirtualDetector, the_same_name_twice_replaces_the_files_of_the_same_numbers)
{
    openReplaying(flatFrames({20, 60, 100}));
    start();
    record("same", 3, true, true, true);
    const QByteArray third = folder.read("Logs/same/same_data3.csv");
    click("pushButton_cali"); // other grey levels
    record("same", 2, true, true, true);
    stop();
    expectData("same");
    expectPictures("same");
    expectVideo("same");
    EXPECT_TRUE(folder.read("Logs/same/same_data3.csv") == third);
    EXPECT_EQ(files("same").size(), 3 * 3 + 2);
}

TEST_F(RecordingOnVirtualDetector, without_its_save_folder_every_file_fails_with_a_line_in_the_log)
{
    openReplaying(flatFrames({20}), "SavePath=" + folder.filePath("gone").toUtf8() + "\n");
    start();
    record("run", 2, true, true, true);
    EXPECT_EQ(find<QLabel>("label_savestate")->toolTip(), "8 files could not be written");
    stop();
    EXPECT_TRUE(boxes.isEmpty());
    expectLogged("gone/run/", 8, systemReason(SystemFailure::NoSuchFolder));
}

TEST_F(RecordingOnVirtualDetector, on_a_read_only_folder_every_file_fails_with_a_line_in_the_log)
{
    openReplaying(flatFrames({20}));
    start();
    waitForPictures(1);
    ASSERT_TRUE(QDir(folder.path()).mkdir("Logs/run"));
    {
        const ReadOnlyFolder readOnly(folder.filePath("Logs/run"));
        record("run", 2, true, true, true);
    }
    EXPECT_EQ(find<QLabel>("label_savestate")->toolTip(), "8 files could not be written");
    EXPECT_TRUE(files("run").isEmpty());
    stop();
    expectLogged("Logs/run/", 8, systemReason(SystemFailure::NoAccess));
}

TEST_F(RecordingOnVirtualDetector, files_that_the_disk_cuts_are_counted_and_logged_while_the_display_goes_on)
{
    openReplaying(framesOfAllKinds());
    start();
    waitForPictures(1);
    {
        const FileSizeLimit limit(100'000); // the settings and a dull picture fit, nothing else does
        record("run", 3, true, true, true);
    }
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return find<QLabel>("label_savestate")->toolTip().startsWith("9 files"); }, 5000))
        << qPrintable(find<QLabel>("label_savestate")->toolTip());
    waitForPictures(2);
    stop();
    EXPECT_TRUE(boxes.isEmpty());
    expectLogged("Logs/run/", 9, systemReason(SystemFailure::FileTooLarge));
}
