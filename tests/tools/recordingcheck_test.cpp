#include "imaging/videofile.h"
#include "tests/imaging/pictures.h"
#include "tests/imaging/video.h"
#include "tests/support/workingfolder.h"
#include "tools/recordingcheck.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

class Check : public testing::Test
{
protected:
    Check() { QDir().mkdir(QStringLiteral("T")); }

    static QByteArray csv(int lines, const QByteArray &value = "0.5")
    {
        QByteArray line;
        for (int i = 0; i < 1024; ++i)
            line += value + (i < 1023 ? "," : "\n");
        return line.repeated(lines);
    }

    void writeData(const QByteArray &content) const
    {
        folder.write(files.data(1), content);
        folder.write(files.grayData(1), csv(1024, "7"));
    }

    [[nodiscard]] static QString check(bool data, bool picture, bool video, int frames = 1)
    {
        return RecordingCheck::check({files, frames, {data, picture, video}});
    }

    static void writeVideo(int frames)
    {
        VideoFile video(files.video());
        for (int n = 0; n < frames; ++n)
            video.append(TestPictures::random(static_cast<quint32>(n)));
        EXPECT_EQ(video.finish(), QString());
    }

    inline static const RecordingFiles files{QStringLiteral("."), QStringLiteral("T")};

    WorkingFolder folder;
};

} // namespace

TEST_F(Check, whole_data_files_pass)
{
    writeData(csv(1024));
    EXPECT_EQ(check(true, false, false), QString());
}

TEST_F(Check, a_missing_line_is_found)
{
    writeData(csv(1023));
    EXPECT_TRUE(check(true, false, false).contains(QStringLiteral("it holds 1023 lines")));
}

TEST_F(Check, a_missing_value_is_found)
{
    QByteArray content = csv(1024);
    content.replace(0, 4, "");
    writeData(content);
    EXPECT_TRUE(check(true, false, false).contains(QStringLiteral("line 1 holds 1023 values")));
}

TEST_F(Check, a_cut_last_line_is_found)
{
    writeData(csv(1024).chopped(1));
    EXPECT_FALSE(check(true, false, false).isEmpty());
}

TEST_F(Check, what_is_no_number_is_found)
{
    QByteArray content = csv(1024);
    content.replace(0, 3, "x.y");
    writeData(content);
    EXPECT_TRUE(check(true, false, false).contains(QStringLiteral("no number in line 1")));
}

TEST_F(Check, a_missing_grey_file_is_found)
{
    folder.write(files.data(1), csv(1024));
    EXPECT_TRUE(check(true, false, false).contains(QStringLiteral("T_data_gray1.csv is missing")));
}

TEST_F(Check, a_picture_must_be_readable_and_of_the_detectors_size)
{
    EXPECT_FALSE(check(false, true, false).isEmpty());
    QImage(1024, 1023, QImage::Format_Grayscale8).save(files.picture(1));
    EXPECT_FALSE(check(false, true, false).isEmpty());
    QImage(1024, 1024, QImage::Format_Grayscale8).save(files.picture(1));
    EXPECT_EQ(check(false, true, false), QString());
}

TEST_F(Check, a_missing_or_broken_video_is_found)
{
    EXPECT_TRUE(check(false, false, true).contains(QStringLiteral("missing or unreadable")));
    folder.write(files.video(), "not a video");
    EXPECT_TRUE(check(false, false, true).contains(QStringLiteral("missing or unreadable")));
}

TEST_F(Check, a_video_must_hold_every_frame)
{
    writeVideo(3);
    EXPECT_EQ(check(false, false, true, 3), QString());
    EXPECT_TRUE(check(false, false, true, 4).contains(QStringLiteral("it holds 3 of 4 frames")));
}

TEST_F(Check, a_frame_of_the_video_that_cannot_be_decoded_is_found_although_the_file_states_it)
{
    writeVideo(3);
    QByteArray content = folder.read(files.video());
    tearSecondFrame(content);
    folder.write(files.video(), content);
    EXPECT_EQ(VideoFile::countFrames(files.video(), VideoFile::Count::Stated), 3);
    EXPECT_TRUE(check(false, false, true, 3).contains(QStringLiteral("is incomplete: it holds")));
}

TEST(CheckOfAnyPath, a_percent_sign_in_a_name_stands_in_the_message_as_it_is)
{
    const WorkingFolder folder;
    const RecordingFiles files{QStringLiteral("."), QStringLiteral("50%1 %2")};
    QDir().mkdir(files.name);
    const QString missing = RecordingCheck::check({files, 1, {.data = true}});
    EXPECT_TRUE(missing.contains(QStringLiteral("/50%1 %2/50%1 %2_data1.csv is missing: ")))
        << qPrintable(missing);
    folder.write(files.data(1), "1,2\n");
    const QString cut = RecordingCheck::check({files, 1, {.data = true}});
    EXPECT_TRUE(cut.endsWith(QStringLiteral("/50%1 %2_data1.csv is incomplete: line 1 holds 2 values")))
        << qPrintable(cut);
    const QString video = RecordingCheck::check({files, 1, {.video = true}});
    EXPECT_TRUE(video.endsWith(QStringLiteral("/50%1 %2/output_video.mp4 is missing or unreadable")))
        << qPrintable(video);
}
