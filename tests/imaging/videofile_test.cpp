#include "imaging/videofile.h"
#include "tests/imaging/pictures.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/imaging/video.h"
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

TEST(VideoFile, a_video_that_holds_its_frames_is_not_complained_about)
{
    const WorkingFolder folder;
    const QString path = folder.filePath("a.mp4");
    writeVideo(path, 2);
    EXPECT_EQ(VideoFile::check(path, 2), QString());
    EXPECT_TRUE(VideoFile::check(path, 3).contains(path));
}

TEST(VideoFile, a_video_that_is_missing_or_torn_is_complained_about)
{
    const WorkingFolder folder;
    EXPECT_TRUE(VideoFile::check(folder.filePath("none.mp4"), 1).contains("none.mp4"));
    folder.write("torn.mp4", QByteArray(10000, '\0'));
    EXPECT_TRUE(VideoFile::check(folder.filePath("torn.mp4"), 1).contains("torn.mp4"));
}

TEST(VideoFile, an_empty_picture_is_left_out_and_complained_about)
{
    const WorkingFolder folder;
    VideoFile video(folder.filePath("a.mp4"));
    video.append(QImage());
    EXPECT_TRUE(video.finish().contains("a.mp4"));
    EXPECT_FALSE(VideoFile::check(folder.filePath("a.mp4"), 1).isEmpty());
}

TEST(VideoFile, a_video_without_frames_or_that_never_opened_is_not_complained_about_at_its_end)
{
    const WorkingFolder folder;
    EXPECT_EQ(VideoFile(folder.filePath("empty.mp4")).finish(), QString());
    VideoFile closed(folder.filePath("no/a.mp4"));
    EXPECT_TRUE(closed.openingFailure().contains("no/a.mp4"));
    EXPECT_TRUE(closed.openingFailure().contains("No such file or directory"));
    closed.append(TestPictures::random(1));
    EXPECT_EQ(closed.finish(), QString());
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
