#include "tests/support/debugoutput.h"
#include "ui/keepratiowidget.h"

#include <gtest/gtest.h>

#include <QColorSpace>
#include <QImage>
#include <QLabel>
#include <QRandomGenerator>

namespace {

QImage noise(QSize size, QImage::Format format, quint32 seed = 1)
{
    QRandomGenerator random(seed);
    QImage image(size, QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.scanLine(y)[x] = static_cast<uchar>(random.bounded(256));
    return image.convertToFormat(format);
}

QImage smoothlyScaled(const QImage &image, QSize size)
{
    return image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// A shown view whose label has this size.
class View : public KeepRatioWidget
{
public:
    explicit View(QSize labelSize) : KeepRatioWidget(nullptr)
    {
        setRatio(labelSize.width() + 4, labelSize.height() + 4);
        resize(labelSize + QSize(4, 4));
        show();
    }
    [[nodiscard]] QLabel *label() const { return findChild<QLabel *>(); }
};

} // namespace

class SetImageFormats : public testing::TestWithParam<QImage::Format>
{
};

TEST_P(SetImageFormats, the_image_and_what_is_shown_are_the_smoothly_scaled_picture)
{
    const QSize imageSizes[] = {{1024, 1024}, {1024, 1023}, {2000, 600}, {100, 37}, {1, 1}, {3, 900}};
    const QSize labelSizes[] = {{596, 596}, {1024, 1024}, {1300, 900}, {20, 50}};
    for (const QSize imageSize : imageSizes) {
        const QImage picture = noise(imageSize, GetParam());
        for (const QSize labelSize : labelSizes) {
            const testing::Message which = testing::Message()
                                           << imageSize.width() << " x " << imageSize.height() << " to "
                                           << labelSize.width() << " x " << labelSize.height();
            View view(labelSize);
            ASSERT_EQ(view.label()->size(), labelSize);
            const QImage expected = smoothlyScaled(picture, labelSize);
            QImage image = picture;

            view.setImage(image);

            EXPECT_TRUE(image == expected) << which;
            EXPECT_EQ(image.format(), GetParam()) << which;
            const QImage shown = view.label()->pixmap(Qt::ReturnByValue).toImage();
            EXPECT_TRUE(shown == QPixmap::fromImage(expected).toImage()) << which;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(SetImage, SetImageFormats,
                         testing::Values(QImage::Format_Grayscale8, QImage::Format_RGB32,
                                         QImage::Format_ARGB32));

TEST(SetImage, a_frame_is_scaled_alike_to_labels_of_every_size)
{
    QImage frame = noise({1024, 1024}, QImage::Format_Grayscale8);
    for (const int side : {1, 2, 255, 511, 512, 513, 700, 1023, 1025, 1600}) {
        View view({side, side});
        QImage image = frame;
        view.setImage(image);
        EXPECT_TRUE(image == smoothlyScaled(frame, {side, side})) << side;
    }
}

TEST(SetImage, every_grey_level_survives)
{
    QImage image(256, 256, QImage::Format_Grayscale8);
    for (int y = 0; y < 256; ++y)
        std::fill_n(image.scanLine(y), 256, static_cast<uchar>(y));
    const QImage before = image;
    View view({256, 256});
    view.setImage(image);
    EXPECT_EQ(image, before);
}

TEST(SetImage, the_picture_is_replaced_by_the_next)
{
    View view({200, 200});
    QImage first = noise({1024, 1024}, QImage::Format_Grayscale8, 1);
    QImage second = noise({1024, 1024}, QImage::Format_Grayscale8, 2);
    view.setImage(first);
    view.setImage(second);
    EXPECT_NE(first, second);
    EXPECT_EQ(view.label()->pixmap(Qt::ReturnByValue).toImage().convertToFormat(QImage::Format_Grayscale8),
              second);
}

TEST(SetImage, the_resolution_of_the_picture_is_kept)
{
    View view({200, 200});
    QImage image = noise({1024, 1024}, QImage::Format_Grayscale8);
    image.setDotsPerMeterX(1234);
    image.setDotsPerMeterY(2345);
    const QImage expected = smoothlyScaled(image, {200, 200});
    view.setImage(image);
    EXPECT_EQ(image.dotsPerMeterX(), expected.dotsPerMeterX());
    EXPECT_EQ(image.dotsPerMeterY(), expected.dotsPerMeterY());
    EXPECT_EQ(image.devicePixelRatio(), expected.devicePixelRatio());
}

TEST(SetImage, a_picture_with_a_colour_space_is_scaled_alike)
{
    View view({300, 300});
    QImage image = noise({512, 512}, QImage::Format_Grayscale8);
    image.setColorSpace(QColorSpace::SRgb);
    const QImage expected = smoothlyScaled(image, {300, 300});
    view.setImage(image);
    EXPECT_TRUE(image == expected);
    EXPECT_EQ(image.colorSpace(), expected.colorSpace());
}

TEST(SetImage, a_copy_that_the_caller_kept_is_not_touched)
{
    View view({300, 300});
    QImage image = noise({1024, 1024}, QImage::Format_Grayscale8);
    const QImage kept = image;
    const QImage deep = image.copy();
    view.setImage(image);
    EXPECT_EQ(kept, deep);
}

TEST(SetImage, a_null_image_clears_the_picture_without_a_warning)
{
    View view({300, 300});
    QImage image = noise({64, 64}, QImage::Format_Grayscale8);
    view.setImage(image);
    const DebugOutput debug;
    QImage null;
    view.setImage(null);
    EXPECT_TRUE(null.isNull());
    EXPECT_TRUE(view.label()->pixmap(Qt::ReturnByValue).isNull());
    EXPECT_TRUE(debug.messages().isEmpty()) << qPrintable(debug.messages().join(u'\n'));
}

TEST(SetImage, a_label_without_area_shows_nothing_and_leaves_a_null_image)
{
    View view({100, 100});
    view.resize(4, 4);
    ASSERT_TRUE(view.label()->size().isEmpty());
    const DebugOutput debug;
    QImage image = noise({64, 64}, QImage::Format_Grayscale8);
    view.setImage(image);
    EXPECT_TRUE(image.isNull());
    EXPECT_TRUE(view.label()->pixmap(Qt::ReturnByValue).isNull());
    EXPECT_TRUE(debug.messages().isEmpty()) << qPrintable(debug.messages().join(u'\n'));
}

TEST(SetImage, a_large_picture_does_not_keep_the_view_from_shrinking)
{
    View view({1024, 1024});
    QImage image = noise({1024, 1024}, QImage::Format_Grayscale8);
    view.setImage(image);
    view.resize(204, 204);
    EXPECT_EQ(view.size(), QSize(204, 204));
    EXPECT_EQ(view.label()->size(), QSize(200, 200));
}

TEST(SetImage, a_view_that_changes_its_size_scales_the_picture_that_it_was_given)
{
    const QImage picture = noise({1024, 1024}, QImage::Format_Grayscale8);
    View view({400, 400});
    QImage image = picture;
    view.setImage(image);
    for (const int side : {700, 300, 1024, 400}) {
        view.resize(side + 4, side + 4);
        ASSERT_EQ(view.label()->size(), QSize(side, side));
        const QImage shown = view.label()->pixmap(Qt::ReturnByValue).toImage();
        const QImage expected = smoothlyScaled(picture, {side, side});
        EXPECT_TRUE(shown == QPixmap::fromImage(expected).toImage()) << side;
    }
    EXPECT_EQ(image.size(), QSize(400, 400)) << "the caller's stays";
}

TEST(SetImage, a_cleared_view_stays_empty_when_it_changes_its_size)
{
    View view({400, 400});
    QImage image = noise({64, 64}, QImage::Format_Grayscale8);
    view.setImage(image);
    image = {};
    view.setImage(image);
    view.resize(500, 500);
    EXPECT_TRUE(view.label()->pixmap(Qt::ReturnByValue).isNull());
}
