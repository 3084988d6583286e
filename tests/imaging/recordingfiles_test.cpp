#include "imaging/recordingfiles.h"
#include "tests/imaging/recording.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/imaging/video.h"
#include "tests/support/debugoutput.h"

#include <gtest/gtest.h>

#include <QLocale>

#include <opencv2/core.hpp>

namespace {

QByteArray csvOf(const Recording &recording, const auto &values)
{
    Straightforward::writeCsv(recording.folder.filePath("expected.csv"), values);
    return recording.folder.read("expected.csv");
}

} // namespace

TEST(RecordingFiles, lie_in_a_folder_of_the_recordings_name)
{
    const RecordingFiles files{"/data", "T"};
    EXPECT_EQ(files.folder(), "/data/T/");
    EXPECT_EQ(files.data(3), "/data/T/T_data3.csv");
    EXPECT_EQ(files.grayData(10), "/data/T/T_data_gray10.csv");
    EXPECT_EQ(files.picture(1), "/data/T/T_pic1.png");
    EXPECT_EQ(files.video(), "/data/T/output_video.mp4");
    EXPECT_EQ(files.parameters(), "/data/T/SetParameterData.txt");
}

TEST(Recording, every_combination_of_forms_stores_its_files_and_no_others)
{
    for (int forms = 0; forms < 8; ++forms) {
        SCOPED_TRACE(forms);
        const bool data = forms & 1;
        const bool picture = forms & 2;
        const bool video = forms & 4;
        Recording recording(2);
        const DebugOutput output;
        recording.pipeline.startSaving(data, picture, video);
        EXPECT_EQ(recording.pipeline.isSaving(), forms != 0);
        recording.feed(3);
        EXPECT_FALSE(recording.pipeline.isSaving());

        QStringList expected;
        for (const char *number : {"1", "2"}) {
            if (data)
                expected << QString("T_data%1.csv").arg(number) << QString("T_data_gray%1.csv").arg(number);
            if (picture)
                expected << QString("T_pic%1.png").arg(number);
        }
        if (video)
            expected << "output_video.mp4";
        expected.sort();
        QStringList files = recording.files();
        files.sort();
        EXPECT_EQ(files, expected);
        EXPECT_EQ(recording.progress(), forms != 0 ? (QList<int>{1, 2}) : QList<int>());
        EXPECT_EQ(recording.pipeline.failedFiles(), 0);
        EXPECT_EQ(output.messages(), QStringList());
        EXPECT_EQ(QDir(recording.folder.filePath("save/T")).exists(), forms != 0);
    }
}

TEST(Recording, the_data_files_are_those_of_a_text_stream_to_the_byte)
{
    Recording recording(3);
    recording.pipeline.startSaving(true, false, false);
    Straightforward::Pipeline expected;
    int n = 0;
    for (const QByteArray &frame : {Frames::useful(1), Frames::edges(), Frames::noise(2)}) {
        recording.pipeline.onReadReady(frame);
        (void)expected.processImage(frame);
        const QString number = QString::number(++n);
        EXPECT_TRUE(recording.folder.read("save/T/T_data" + number + ".csv") ==
                    csvOf(recording, expected.frameData));
        EXPECT_TRUE(recording.folder.read("save/T/T_data_gray" + number + ".csv") ==
                    csvOf(recording, expected.grayData));
    }
}

TEST(Recording, the_number_of_threads_changes_no_byte)
{
    const int before = cv::getNumThreads();
    QList<QByteArrayList> recorded;
    for (const int threads : {1, 2, 7}) {
        cv::setNumThreads(threads);
        Recording recording(2);
        recording.pipeline.setContrastRatio(1.0);
        recording.pipeline.startSaving(true, true, true);
        recording.feed(2);
        QByteArrayList contents;
        for (const QString &file : recording.files())
            contents << file.toUtf8() + recording.folder.read("save/T/" + file);
        EXPECT_EQ(contents.size(), 2 * 3 + 1);
        recorded << contents;
    }
    cv::setNumThreads(before);
    EXPECT_TRUE(recorded[1] == recorded[0]);
    EXPECT_TRUE(recorded[2] == recorded[0]);
}

TEST(Recording, values_of_every_size_stand_in_the_data_file)
{
    Recording recording;
    recording.pipeline.startSaving(true, false, false);
    QByteArray frame = Frames::flat(0);
    const quint32 samples[] = {4097, Frames::sampleOf(12.5), 4096 + 1048576, 0x7FFFFFFF, 0x80000000};
    for (std::size_t i = 0; i < std::size(samples); ++i)
        qToBigEndian(samples[i], frame.data() + 4 * i);
    recording.pipeline.onReadReady(frame);
    EXPECT_TRUE(recording.folder.read("save/T/T_data1.csv").startsWith("0.0001,12.5,150.602,308433,0,0,0,"));
    EXPECT_TRUE(recording.folder.read("save/T/T_data_gray1.csv").startsWith("0,21,256,524336,0,0,0,"));
}

TEST(Recording, calibrated_grey_levels_are_those_of_the_picture)
{
    Recording recording;
    recording.pipeline.caliEnabled = true;
    recording.pipeline.startSaving(true, true, false);
    recording.feed(1);
    const QImage picture(recording.folder.filePath("save/T/T_pic1.png"));
    const std::vector<int> levels(picture.constBits(), picture.constBits() + picture.sizeInBytes());
    EXPECT_EQ(recording.pipeline.grayLevels(), levels);
    EXPECT_TRUE(recording.folder.read("save/T/T_data_gray1.csv") == csvOf(recording, levels));
}

TEST(Recording, the_pictures_read_back_equal_the_frames)
{
    Recording recording(2);
    QList<QImage> shown;
    QObject::connect(&recording.pipeline, &ProcessImage::sendImagetoMain,
                     [&](const QImage &image) { shown << image; });
    recording.pipeline.setContrastRatio(1.0);
    recording.pipeline.startSaving(false, true, false);
    recording.feed(2);
    for (int n = 1; n <= 2; ++n) {
        const QImage back(recording.folder.filePath(QString("save/T/T_pic%1.png").arg(n)));
        EXPECT_EQ(back.format(), QImage::Format_Grayscale8);
        EXPECT_EQ(back, shown[n - 1]);
    }
}

TEST(Recording, the_video_holds_the_frames_at_half_a_frame_a_second)
{
    Recording recording(10);
    recording.pipeline.startSaving(false, false, true);
    recording.feed(12);
    Video video(recording.stored.video());
    ASSERT_TRUE(video.capture.isOpened());
    EXPECT_DOUBLE_EQ(video.capture.get(cv::CAP_PROP_FPS), 0.5);
    EXPECT_EQ(video.capture.get(cv::CAP_PROP_FRAME_WIDTH), 1024);
    EXPECT_EQ(video.capture.get(cv::CAP_PROP_FRAME_HEIGHT), 1024);
    EXPECT_EQ(video.capture.get(cv::CAP_PROP_FRAME_COUNT), 10);
    EXPECT_EQ(static_cast<int>(video.capture.get(cv::CAP_PROP_FOURCC)),
              cv::VideoWriter::fourcc('m', 'p', '4', 'v'));
    EXPECT_EQ(video.frames(), 10);
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
}

TEST(Recording, frame_numbers_are_not_padded)
{
    Recording recording(10);
    recording.pipeline.startSaving(false, true, false);
    recording.feed(10);
    EXPECT_TRUE(recording.files().contains("T_pic1.png"));
    EXPECT_TRUE(recording.files().contains("T_pic10.png"));
    EXPECT_EQ(recording.files().size(), 10);
}

TEST(Recording, a_name_of_any_script_names_the_files)
{
    Recording recording;
    recording.pipeline.setTimeStamp("测试 50%1 ü");
    recording.pipeline.startSaving(true, true, true);
    recording.feed(1);
    for (const char *file :
         {"测试 50%1 ü_data1.csv", "测试 50%1 ü_data_gray1.csv", "测试 50%1 ü_pic1.png", "output_video.mp4"})
        EXPECT_TRUE(QFile::exists(recording.folder.filePath(QString("save/测试 50%1 ü/") + file))) << file;
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
}

TEST(Recording, the_parameter_file_is_the_text_in_utf8_and_replaces_what_was_there)
{
    Recording recording;
    recording.pipeline.startSaving(true, false, false);
    recording.folder.write("save/T/SetParameterData.txt", QByteArray(500, 'x'));
    recording.pipeline.writeParameterFile("Current Range:150nA\nVss: -10 V\nµ 电压\n");
    EXPECT_EQ(recording.folder.read("save/T/SetParameterData.txt"),
              "Current Range:150nA\nVss: -10 V\nµ 电压\n");
    recording.pipeline.writeParameterFile(QString());
    EXPECT_TRUE(QFile::exists(recording.folder.filePath("save/T/SetParameterData.txt")));
    EXPECT_EQ(recording.folder.read("save/T/SetParameterData.txt"), "");
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
}

TEST(Recording, a_german_locale_changes_no_byte)
{
    Recording recording;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    recording.pipeline.startSaving(true, false, false);
    recording.pipeline.onReadReady(Frames::flat(Frames::sampleOf(12.5)));
    EXPECT_TRUE(recording.folder.read("save/T/T_data1.csv") ==
                (QByteArray("12.5,").repeated(1023) + "12.5\n").repeated(1024));
}

TEST(Recording, before_any_frame_the_data_of_a_stored_picture_is_zero)
{
    Recording recording;
    recording.pipeline.startSaving(true, false, false);
    recording.pipeline.saveFrame(QImage(1024, 1024, QImage::Format_Grayscale8));
    EXPECT_TRUE(recording.folder.read("save/T/T_data1.csv") ==
                (QByteArray("0,").repeated(1023) + "0\n").repeated(1024));
}
