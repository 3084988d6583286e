#include "imaging/pictures.h"
#include "tests/imaging/pictures.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/support/limitedwriting.h"
#include "tests/support/systemreason.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QColorSpace>

#include <utility>

TEST(Pictures, a_saved_picture_read_back_is_the_one_that_the_image_itself_would_save)
{
    const WorkingFolder folder;
    const QImage image = TestPictures::random(1);
    EXPECT_EQ(Pictures::savePng("ours.png", image), QString());
    ASSERT_TRUE(image.save("expected.png"));
    const QImage ours("ours.png");
    const QImage expected("expected.png");
    EXPECT_EQ(ours.format(), QImage::Format_Grayscale8);
    EXPECT_EQ(ours, expected);
    EXPECT_EQ(ours, image);
}

TEST(Pictures, a_saved_picture_has_the_size_depth_and_resolution_that_the_image_itself_would_save)
{
    const WorkingFolder folder;
    for (const auto &[x, y] : {std::pair(3780, 3780), std::pair(2835, 11811)}) {
        QImage image = TestPictures::random(2).copy(0, 0, 1021, 7);
        image.setDotsPerMeterX(x);
        image.setDotsPerMeterY(y);
        ASSERT_EQ(Pictures::savePng("ours.png", image), QString());
        ASSERT_TRUE(image.save("expected.png"));
        const QImage ours("ours.png");
        const QImage expected("expected.png");
        EXPECT_EQ(ours.dotsPerMeterX(), x);
        EXPECT_EQ(ours.dotsPerMeterY(), y);
        EXPECT_EQ(expected.dotsPerMeterX(), x);
        EXPECT_EQ(ours.size(), expected.size());
        EXPECT_EQ(ours.depth(), expected.depth());
        EXPECT_EQ(ours.format(), expected.format());
        EXPECT_EQ(ours.textKeys(), expected.textKeys());
        EXPECT_EQ(ours.colorSpace(), expected.colorSpace());
        EXPECT_EQ(ours, expected);
    }
}

TEST(Pictures, an_empty_picture_is_a_failure_that_names_the_file)
{
    EXPECT_TRUE(Pictures::savePng("empty.png", QImage()).contains("empty.png"));
}

TEST(Pictures, a_colour_frame_is_the_picture_by_way_of_a_png_pixel_for_pixel)
{
    const QImage image = TestPictures::random(2);
    EXPECT_TRUE(TestPictures::same(Pictures::colourFrame(image), Straightforward::colourFrame(image)));
}

TEST(Pictures, a_picture_with_padded_rows_gives_the_same_colour_frame)
{
    const QImage image = TestPictures::random(3).copy(0, 0, 1021, 7);
    ASSERT_NE(image.bytesPerLine(), image.width());
    EXPECT_TRUE(TestPictures::same(Pictures::colourFrame(image), Straightforward::colourFrame(image)));
}

TEST(Pictures, a_picture_that_cannot_be_saved_is_named_with_the_reason)
{
    const WorkingFolder folder;
    EXPECT_TRUE(Pictures::savePng("no/a.png", TestPictures::random(1))
                    .contains(systemReason(SystemFailure::NoSuchFolder)));
    const FullFile full("full.png");
    const QString failure = Pictures::savePng("full.png", TestPictures::random(1));
    EXPECT_TRUE(failure.contains("full.png"));
    EXPECT_TRUE(failure.contains(systemReason(SystemFailure::DiskFull)));
    EXPECT_TRUE(Pictures::savePng("null.png", QImage()).contains("null.png"));
}
