#include "imaging/screenpicture.h"

#include <gtest/gtest.h>

#include <opencv2/core/utility.hpp>

#include <QScopeGuard>

#include <algorithm>

namespace {

/// Grey that rises from the left to the right.
QImage ramp()
{
    QImage image(256, 256, QImage::Format_Grayscale8);
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x)
            image.scanLine(y)[x] = static_cast<uchar>(x);
    return image;
}

} // namespace

TEST(ScreenPicture, a_picture_of_its_own_size_keeps_every_pixel)
{
    const QImage picture = ramp();
    EXPECT_EQ(ScreenPicture::scaled(picture, picture.size()), picture.convertToFormat(QImage::Format_RGB32));
}

TEST(ScreenPicture, it_grows_and_shrinks_smoothly_to_the_size_that_was_asked_for)
{
    for (const QSize size :
         {QSize(100, 100), QSize(255, 256), QSize(257, 300), QSize(300, 100), QSize(1000, 700)}) {
        const QImage scaled = ScreenPicture::scaled(ramp(), size);
        ASSERT_EQ(scaled.size(), size);
        EXPECT_EQ(scaled.format(), QImage::Format_RGB32);
        const double step = 256.0 / size.width();
        for (int x = 0; x < size.width(); ++x) {
            const QRgb pixel = scaled.pixel(x, size.height() / 2);
            EXPECT_EQ(qRed(pixel), qGreen(pixel));
            EXPECT_EQ(qRed(pixel), qBlue(pixel));
            EXPECT_NEAR(qRed(pixel), std::clamp((x + 0.5) * step - 0.5, 0.0, 255.0), 1.0)
                << size.width() << ' ' << x;
        }
    }
}

TEST(ScreenPicture, its_bytes_do_not_depend_on_the_number_of_workers)
{
    const auto restored = qScopeGuard([threads = cv::getNumThreads()] { cv::setNumThreads(threads); });
    const QImage picture = ramp();
    cv::setNumThreads(1);
    const QImage alone = ScreenPicture::scaled(picture, {1940, 1940});
    cv::setNumThreads(4);
    EXPECT_EQ(ScreenPicture::scaled(picture, {1940, 1940}), alone);
}

TEST(ScreenPicture, nothing_scales_to_nothing)
{
    EXPECT_TRUE(ScreenPicture::scaled({}, {10, 10}).isNull());
    EXPECT_TRUE(ScreenPicture::scaled(ramp(), {0, 10}).isNull());
}
