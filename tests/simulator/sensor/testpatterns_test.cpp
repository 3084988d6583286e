#include "tests/simulator/bytes.h"

#include "simulator/geometry.h"
#include "simulator/sensor/sensor.h"

#include <gtest/gtest.h>

using simulator::counterSample;
using simulator::Sensor;
using simulator::TestPattern;

namespace {

QByteArray patternFrame(TestPattern pattern, quint64 frame = 0)
{
    Sensor sensor;
    simulator::FrameRecipe recipe;
    recipe.pattern = pattern;
    recipe.frame = frame;
    QByteArray raw(simulator::frameBytes, '\x5A');
    sensor.read(recipe, 0, {reinterpret_cast<uchar *>(raw.data()), static_cast<std::size_t>(raw.size())});
    return raw;
}

/// Holds every sample of a pattern against `expected(row, column)`.
template <typename Expected>
void expectSamples(const QByteArray &raw, Expected expected)
{
    for (quint32 i = 0; i < 1024U * 1024U; ++i)
        ASSERT_EQ(sampleAt(raw, i), expected(i / 1024, i % 1024)) << i;
}

} // namespace

TEST(TestPatterns, the_first_rises_from_left_to_right_over_the_whole_range)
{
    expectSamples(patternFrame(TestPattern::HorizontalRamp),
                  [](quint32, quint32 column) { return 4096 + 1025 * column; });
}

TEST(TestPatterns, the_second_rises_from_top_to_bottom_over_the_whole_range)
{
    expectSamples(patternFrame(TestPattern::VerticalRamp),
                  [](quint32 row, quint32) { return 4096 + 1025 * row; });
}

TEST(TestPatterns, the_third_is_a_checkerboard_of_64_pixel_squares)
{
    expectSamples(patternFrame(TestPattern::Checkerboard), [](quint32 row, quint32 column) {
        return (row / 64 + column / 64) % 2 == 0 ? 4096U : 4096U + 1048575U;
    });
}

TEST(TestPatterns, the_fourth_is_half_of_full_scale_everywhere)
{
    expectSamples(patternFrame(TestPattern::Flat), [](quint32, quint32) { return 4096U + 524288U; });
}

TEST(TestPatterns, the_fifth_counts_pixels_and_frames)
{
    for (const quint64 frame : {quint64{0}, quint64{1}, quint64{255}, quint64{1} << 40U})
        expectSamples(patternFrame(TestPattern::Counter, frame), [frame](quint32 row, quint32 column) {
            return 4096U + static_cast<quint32>((row * 1024U + column + frame * 4099U) % 1048576U);
        });
}

TEST(TestPatterns, the_counter_tells_each_frame_and_pixel_apart)
{
    EXPECT_EQ(counterSample(0, 0), 4096U);
    EXPECT_EQ(counterSample(0, 1048575), 4096U + 1048575U);
    EXPECT_EQ(counterSample(1, 0), 4096U + 4099U);
    EXPECT_EQ(counterSample(1, 1048575), 4096U + 4098U);
    for (quint64 frame = 1; frame < 100000; ++frame)
        ASSERT_NE(counterSample(frame, 0), counterSample(0, 0));
}

TEST(TestPatterns, all_but_the_counter_are_the_same_in_every_frame)
{
    for (const TestPattern pattern : {TestPattern::HorizontalRamp, TestPattern::VerticalRamp,
                                      TestPattern::Checkerboard, TestPattern::Flat})
        EXPECT_TRUE(patternFrame(pattern, 0) == patternFrame(pattern, 17));
}
