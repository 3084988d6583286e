#include "ui/inspector/plot.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

/// How many pixels of the painted plot have a colour.
int pixels(const QImage &image, const QColor &color)
{
    int found = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            found += image.pixelColor(x, y) == color ? 1 : 0;
    return found;
}

QImage painted(const Plot::Content &content)
{
    Plot plot;
    plot.resize(400, 200);
    plot.setContent(content);
    return plot.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

const QColor clipped(0xe6, 0x00, 0x12);
const QColor bar(0x89, 0x68, 0x27);
const QColor mark(0x41, 0x69, 0xe1);

} // namespace

TEST(Plot, paints_columns_on_a_logarithmic_scale_and_those_that_are_clipped_in_red)
{
    Plot::Content content{.form = Plot::Form::Columns, .across = {0, 4}, .values = {10, 0, 1000, 10}};
    const int plain = pixels(painted(content), bar);
    EXPECT_GT(plain, 1000);
    EXPECT_EQ(pixels(painted(content), clipped), 0);
    content.limits = PlotScale::Span{0, 4};
    content.isClippedBelow = true;
    const int below = pixels(painted(content), clipped);
    content.isClippedAbove = true;
    const int both = pixels(painted(content), clipped);
    EXPECT_GT(both, below + 500);
    content.values = {10, 0, 1000000, 10};
    EXPECT_LT(pixels(painted(content), clipped), both) << "the same columns on a longer scale";
}

TEST(Plot, marks_the_picked_place_only_where_it_is_seen)
{
    Plot::Content content{.across = {100, 200}, .values = {1, 2, 1}, .mark = 150};
    EXPECT_GT(pixels(painted(content), mark), 30);
    content.mark = 99;
    EXPECT_EQ(pixels(painted(content), mark), 0);
}

TEST(Plot, paints_nothing_one_value_and_equal_values)
{
    EXPECT_FALSE(painted({}).isNull());
    EXPECT_FALSE(painted({.form = Plot::Form::Columns}).isNull());
    const auto ofOne = painted({.across = {3, 4}, .values = {7}});
    EXPECT_NE(ofOne, painted({.across = {3, 4}}));
    EXPECT_NE(painted({.across = {0, 9}, .values = {7, 7, 7}}), ofOne);
}
