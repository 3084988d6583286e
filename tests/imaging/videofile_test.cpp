#include "imaging/videofile.h"
#include "tests/imaging/pictures.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/imaging/video.h"
#include "tests/support/limitedwriting.h"
#include "tests/support/systemreason.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

namespace {

void writeVideo(const QString &path, int frames)
{
    VideoFile video(path);
    for (int n = 1; n <= frames; ++n)
        video.append(TestPictures::random(static_cast<quint32>(n)));
    EXPECT_EQ(video.finish(), QString());
}

} // namespace

TEST(VideoFile, a_video_is_the_one_that_comes_by_way_of_pngs)
{
    const WorkingFolder folder;
    VideoFile ours(folder.filePath("ours.mp4"));
    cv::VideoWriter expected(folder.filePath("expected.mp4").toStdString(),
                             cv::VideoWriter::fourcc('m', 'p', '4', 'v'), 0.5, cv::Size(1024, 1024), true);
    ASSERT_EQ(ours.openingFailure(), QString());
    ASSERT_TRUE(expected.isOpened());
    for (const quint32 seed : {1u, 2u, 3u}) {
        const QImage image = TestPictures::random(seed);
        ours.append(image);
        expected.write(Straightforward::colourFrame(image));
    }
    EXPECT_EQ(ours.finish(), QString());
    expected.release();

    cv::VideoCapture a(folder.filePath("ours.mp4").toStdString());
    cv::VideoCapture b(folder.filePath("expected.mp4").toStdString());
    cv::Mat frameA;
    cv::Mat frameB;
    for (int n = 0; n < 3; ++n) {
        ASSERT_TRUE(a.read(frameA));
        ASSERT_TRUE(b.read(frameB));
        EXPECT_TRUE(TestPictures::same(frameA, frameB));
    }
    EXPECT_FALSE(a.read(frameA));
}

TEST(VideoFile, it_has_its_name_only_when_it_is_closed_and_keeps_its_ending_until_then)
{
    const WorkingFolder folder;
    folder.write("a.mp4", "of an earlier recording");
    VideoFile video(folder.filePath("a.mp4"));
    video.append(TestPictures::random(1));
    EXPECT_EQ(QDir().entryList(QDir::Files), QStringList({"a.mp4", "a.part.mp4"}));
    EXPECT_EQ(folder.read("a.mp4"), "of an earlier recording");
    EXPECT_EQ(video.finish(), QString());
    EXPECT_EQ(QDir().entryList(QDir::Files), QStringList("a.mp4"));
    EXPECT_EQ(Video(folder.filePath("a.mp4")).frames(), 1);
}

TEST(VideoFile, one_that_goes_away_unfinished_leaves_nothing)
{
    const WorkingFolder folder;
    {
        VideoFile video(folder.filePath("a.mp4"));
        video.append(TestPictures::random(1));
    }
    EXPECT_EQ(QDir().entryList(QDir::Files), QStringList());
}

TEST(VideoFile, where_the_library_counts_exactly_a_video_is_whole_with_its_frames_otherwise_when_it_opens)
{
    EXPECT_TRUE(VideoFile::isWhole(3, 3, true));
    EXPECT_FALSE(VideoFile::isWhole(2, 3, true));
    EXPECT_FALSE(VideoFile::isWhole(4, 3, true));
    EXPECT_FALSE(VideoFile::isWhole(std::nullopt, 3, true));
    EXPECT_TRUE(VideoFile::isWhole(2, 3, false));
    EXPECT_TRUE(VideoFile::isWhole(-1, 3, false));
    EXPECT_FALSE(VideoFile::isWhole(std::nullopt, 3, false));
    EXPECT_TRUE(VideoFile::countsExactly()) << "FFmpeg is what the packages bring";
}

TEST(VideoFile, an_empty_picture_is_left_out_and_complained_about)
{
    const WorkingFolder folder;
    VideoFile video(folder.filePath("a.mp4"));
    video.append(QImage());
    const QString failure = video.finish();
    EXPECT_TRUE(failure.contains("a.mp4"));
    EXPECT_TRUE(failure.contains("0 / 1 frames")) << qPrintable(failure);
}

TEST(VideoFile, a_folder_that_came_under_its_name_meanwhile_is_told_when_it_is_renamed)
{
    const WorkingFolder folder;
    VideoFile video("a.mp4");
    video.append(TestPictures::random(1));
    QDir().mkdir("a.mp4");
    const QString failure = video.finish();
    EXPECT_TRUE(failure.startsWith("视频改名失败：a.mp4（")) << qPrintable(failure);
}

TEST(VideoFile, one_that_lacks_a_frame_keeps_the_others)
{
    const WorkingFolder folder;
    VideoFile video(folder.filePath("a.mp4"));
    video.append(TestPictures::random(1));
    video.append(QImage());
    EXPECT_TRUE(video.finish().contains("1 / 2 frames"));
    EXPECT_EQ(Video(folder.filePath("a.mp4")).frames(), 1);
}

TEST(VideoFile, a_video_without_frames_or_that_never_opened_is_not_complained_about_at_its_end)
{
    const WorkingFolder folder;
    EXPECT_EQ(VideoFile(folder.filePath("empty.mp4")).finish(), QString());
    VideoFile closed(folder.filePath("no/a.mp4"));
    EXPECT_TRUE(closed.openingFailure().contains("no/a.mp4"));
    EXPECT_TRUE(closed.openingFailure().contains(systemReason(SystemFailure::NoSuchFolder)));
    closed.append(TestPictures::random(1));
    EXPECT_EQ(closed.finish(), QString());
}

TEST(VideoFile, looking_for_the_reason_of_a_failure_leaves_every_file_as_it_was)
{
    const WorkingFolder folder;
    folder.write("a.mp4", "of an earlier recording");
    {
        const FileSizeLimit limit(0);
        const VideoFile video(folder.filePath("a.mp4"));
        EXPECT_TRUE(video.openingFailure().contains(systemReason(SystemFailure::FileTooLarge)))
            << qPrintable(video.openingFailure());
    }
    EXPECT_EQ(QDir().entryList(QDir::Files | QDir::Hidden), QStringList("a.mp4"));
    EXPECT_EQ(folder.read("a.mp4"), "of an earlier recording");

    QDir().mkdir("b.mp4");
    EXPECT_TRUE(VideoFile(folder.filePath("b.mp4"))
                    .openingFailure()
                    .contains(systemReason(SystemFailure::IsAFolder)));
    EXPECT_EQ(QDir().entryList(QDir::Files | QDir::Hidden), QStringList("a.mp4"));
}

TEST(VideoFile, one_whose_end_found_no_room_is_removed_and_the_one_before_stays)
{
    const WorkingFolder folder;
    folder.write("a.mp4", "of an earlier recording");
    {
        VideoFile video(folder.filePath("a.mp4"));
        ASSERT_EQ(video.openingFailure(), QString());
        const FileSizeLimit limit(10'000);
        for (quint32 n = 1; n <= 3; ++n)
            video.append(TestPictures::random(n));
        const QString failure = video.finish();
        EXPECT_TRUE(failure.contains(systemReason(SystemFailure::FileTooLarge))) << qPrintable(failure);
        EXPECT_TRUE(failure.contains("/a.mp4")) << qPrintable(failure);
    }
    EXPECT_EQ(QDir().entryList(QDir::Files), QStringList("a.mp4"));
    EXPECT_EQ(folder.read("a.mp4"), "of an earlier recording");
}

TEST(VideoFile, the_frames_of_a_whole_video_are_those_it_states)
{
    const WorkingFolder folder;
    writeVideo("a.mp4", 3);
    EXPECT_EQ(VideoFile::countFrames("a.mp4", VideoFile::Count::Stated), 3);
    EXPECT_EQ(VideoFile::countFrames("a.mp4", VideoFile::Count::Decoded), 3);
    EXPECT_EQ(VideoFile::countFrames("none.mp4", VideoFile::Count::Stated), std::nullopt);
    EXPECT_EQ(VideoFile::countFrames("none.mp4", VideoFile::Count::Decoded), std::nullopt);
}

TEST(VideoFile, a_frame_whose_bytes_are_gone_is_stated_but_not_decoded)
{
    const WorkingFolder folder;
    writeVideo("a.mp4", 3);
    QByteArray content = folder.read("a.mp4");
    tearSecondFrame(content);
    folder.write("a.mp4", content);
    EXPECT_EQ(VideoFile::countFrames("a.mp4", VideoFile::Count::Stated), 3);
    EXPECT_LT(VideoFile::countFrames("a.mp4", VideoFile::Count::Decoded), 3);
}
