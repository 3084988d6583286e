#include "device/protocol/frameformat.h"
#include "imaging/rawrecording.h"
#include "imaging/videofile.h"
#include "tests/imaging/pictures.h"
#include "tests/imaging/video.h"
#include "tests/support/workingfolder.h"
#include "tools/recordingcheck.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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

    /// Raw frames one after the other, and the index beside them.
    void writeRaw(int frames) const
    {
        QByteArray bytes;
        QJsonArray entries;
        for (int n = 1; n <= frames; ++n) {
            const QByteArray frame(FrameFormat::frameBytes, static_cast<char>(n));
            entries.append(QJsonObject{{"number", n},
                                       {"offset", bytes.size()},
                                       {"bytes", frame.size()},
                                       {"crc32", QString::number(RawRecording::checksum(frame), 16)}});
            bytes += frame;
        }
        folder.write(files.raw(), bytes);
        folder.write(RecordingFiles::description(files.raw()),
                     QJsonDocument(QJsonObject{{"frames", entries}}).toJson());
    }

    [[nodiscard]] static QString checkRaw(int frames)
    {
        return RecordingCheck::check({files, frames, {.raw = true}});
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

TEST_F(Check, what_stands_for_no_finite_number_is_found)
{
    for (const char *value : {"nan", "inf", "-inf"}) {
        QByteArray content = csv(1024);
        content.replace(0, 3, value);
        writeData(content);
        EXPECT_TRUE(check(true, false, false).contains(QStringLiteral("no number in line 1"))) << value;
    }
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

TEST_F(Check, of_a_frames_files_the_first_that_is_wrong_is_told)
{
    writeData(csv(1023));
    EXPECT_TRUE(check(true, true, false).contains("it holds 1023 lines"));
    writeData(csv(1024));
    EXPECT_TRUE(check(true, true, false).contains("T_pic1.png is missing or incomplete"));
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

TEST_F(Check, a_file_of_all_frames_has_its_description_and_room_for_them)
{
    const RecordingForms both{.tiff = true, .npy = true};
    const auto told = [&](int frames) {
        return RecordingCheck::check({files, frames, both});
    };
    const QByteArray frame(FrameFormat::frameBytes, 'x');
    folder.write(files.npy(), frame);
    folder.write(RecordingFiles::description(files.npy()), "{}");
    EXPECT_TRUE(told(1).endsWith("/T/T.tif is missing")) << qPrintable(told(1));
    folder.write(files.tiff(), frame.repeated(2));
    EXPECT_TRUE(told(1).endsWith("/T/T.tif.json is missing")) << qPrintable(told(1));
    folder.write(RecordingFiles::description(files.tiff()), "{}");
    EXPECT_EQ(told(1), QString());
    EXPECT_TRUE(told(2).endsWith("/T/T.npy is incomplete: it has no room for 2 frames"))
        << qPrintable(told(2));
}

TEST_F(Check, every_raw_frame_is_there_and_is_what_was_recorded)
{
    writeRaw(2);
    EXPECT_EQ(checkRaw(2), QString());
    QByteArray bytes = folder.read(files.raw());
    bytes[FrameFormat::frameBytes] = 'x';
    folder.write(files.raw(), bytes);
    EXPECT_TRUE(checkRaw(2).endsWith("T.raw: frame 2 is damaged: its checksum differs"))
        << qPrintable(checkRaw(2));
}

TEST_F(Check, raw_frames_that_the_index_does_not_tell_are_found)
{
    writeRaw(1);
    folder.write(files.raw(), folder.read(files.raw()).repeated(2));
    EXPECT_TRUE(checkRaw(2).endsWith("T.raw is incomplete: it holds 1 of 2 frames"))
        << qPrintable(checkRaw(2));
    folder.write(RecordingFiles::description(files.raw()), "no index");
    EXPECT_TRUE(checkRaw(2).contains("T.raw.json is no index of raw frames: ")) << qPrintable(checkRaw(2));
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
