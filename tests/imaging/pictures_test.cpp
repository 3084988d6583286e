#include "imaging/pictures.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/videoio.hpp>

namespace {

QImage randomPicture(quint32 seed)
{
    QImage image(1024, 1024, QImage::Format_Grayscale8);
    QRandomGenerator random(seed);
    for (qsizetype i = 0; i < image.sizeInBytes(); ++i)
        image.bits()[i] = uchar(i < 256 ? i : random.bounded(256));
    return image;
}

bool same(const cv::Mat &a, const cv::Mat &b)
{
    return a.size() == b.size() && a.type() == b.type() && cv::norm(a, b, cv::NORM_INF) == 0;
}

} // namespace

TEST(Pictures, a_saved_picture_read_back_is_the_one_that_the_image_itself_would_save)
{
    const WorkingFolder folder;
    const QImage image = randomPicture(1);
    EXPECT_EQ(Pictures::savePng("ours.png", image), QString());
    ASSERT_TRUE(image.save("expected.png"));
    const QImage ours("ours.png");
    const QImage expected("expected.png");
    EXPECT_EQ(ours.format(), QImage::Format_Grayscale8);
    EXPECT_EQ(ours, expected);
    EXPECT_EQ(ours, image);
}

TEST(Pictures, an_empty_picture_is_a_failure_that_names_the_file)
{
    EXPECT_TRUE(Pictures::savePng("empty.png", QImage()).contains("empty.png"));
}

TEST(Pictures, a_colour_frame_is_the_picture_by_way_of_a_png_pixel_for_pixel)
{
    const QImage image = randomPicture(2);
    EXPECT_TRUE(same(Pictures::colourFrame(image), Straightforward::colourFrame(image)));
}

TEST(Pictures, a_picture_with_padded_rows_gives_the_same_colour_frame)
{
    const QImage image = randomPicture(3).copy(0, 0, 1021, 7);
    ASSERT_NE(image.bytesPerLine(), image.width());
    EXPECT_TRUE(same(Pictures::colourFrame(image), Straightforward::colourFrame(image)));
}

TEST(Pictures, a_video_is_the_one_that_comes_by_way_of_pngs)
{
    const WorkingFolder folder;
    const auto ours = Pictures::openVideo(folder.filePath("ours.mp4"));
    cv::VideoWriter expected(folder.filePath("expected.mp4").toStdString(),
                             cv::VideoWriter::fourcc('m', 'p', '4', 'v'), 0.5, cv::Size(1024, 1024), true);
    ASSERT_TRUE(ours->isOpened());
    ASSERT_TRUE(expected.isOpened());
    for (const quint32 seed : {1u, 2u, 3u}) {
        const QImage image = randomPicture(seed);
        Pictures::appendToVideo(*ours, image);
        expected.write(Straightforward::colourFrame(image));
    }
    ours->release();
    expected.release();

    cv::VideoCapture a(folder.filePath("ours.mp4").toStdString());
    cv::VideoCapture b(folder.filePath("expected.mp4").toStdString());
    cv::Mat frameA;
    cv::Mat frameB;
    for (int n = 0; n < 3; ++n) {
        ASSERT_TRUE(a.read(frameA));
        ASSERT_TRUE(b.read(frameB));
        EXPECT_TRUE(same(frameA, frameB));
    }
    EXPECT_FALSE(a.read(frameA));
}

TEST(Pictures, a_video_that_holds_its_frames_is_not_complained_about)
{
    const WorkingFolder folder;
    const QString path = folder.filePath("a.mp4");
    const auto video = Pictures::openVideo(path);
    for (const quint32 seed : {1u, 2u})
        Pictures::appendToVideo(*video, randomPicture(seed));
    video->release();
    EXPECT_EQ(Pictures::checkVideo(path, 2), QString());
    EXPECT_TRUE(Pictures::checkVideo(path, 3).contains(path));
}

TEST(Pictures, a_video_that_is_missing_or_torn_is_complained_about)
{
    const WorkingFolder folder;
    EXPECT_TRUE(Pictures::checkVideo(folder.filePath("none.mp4"), 1).contains("none.mp4"));
    folder.write("torn.mp4", QByteArray(10000, '\0'));
    EXPECT_TRUE(Pictures::checkVideo(folder.filePath("torn.mp4"), 1).contains("torn.mp4"));
}

TEST(Pictures, a_picture_that_cannot_be_saved_is_named_with_the_reason)
{
    const WorkingFolder folder;
    EXPECT_TRUE(Pictures::savePng("no/a.png", randomPicture(1)).contains("No such file or directory"));
    ASSERT_TRUE(QFile::link("/dev/full", "full.png"));
    const QString failure = Pictures::savePng("full.png", randomPicture(1));
    EXPECT_TRUE(failure.contains("full.png"));
    EXPECT_TRUE(failure.contains("No space left on device"));
    EXPECT_TRUE(Pictures::savePng("null.png", QImage()).contains("null.png"));
}

TEST(Pictures, an_empty_picture_is_left_out_of_a_video)
{
    const WorkingFolder folder;
    const auto video = Pictures::openVideo(folder.filePath("a.mp4"));
    Pictures::appendToVideo(*video, QImage());
    video->release();
    EXPECT_FALSE(Pictures::checkVideo(folder.filePath("a.mp4"), 1).isEmpty());
}
