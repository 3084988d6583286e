#include "tools/progressline.h"

#include <gtest/gtest.h>

TEST(ProgressLine, of_so_many_frames_tells_the_time_that_the_others_take_at_this_rate)
{
    EXPECT_EQ(ProgressLine::textOf({.frames = 12, .wantedFrames = 50, .seconds = 2.0, .waiting = 3}),
              QStringLiteral("12 of 50 frames  6.00 frames/s  25.2 MB/s  3 waiting  7 s left"));
}

TEST(ProgressLine, of_so_many_seconds_tells_what_is_left_of_them)
{
    EXPECT_EQ(ProgressLine::textOf({.frames = 3, .seconds = 1.5, .wantedSeconds = 10}),
              QStringLiteral("3 frames  2.00 frames/s  8.4 MB/s  0 waiting  9 s left"));
    EXPECT_EQ(ProgressLine::textOf({.frames = 25, .seconds = 12.5, .wantedSeconds = 10}),
              QStringLiteral("25 frames  2.00 frames/s  8.4 MB/s  0 waiting  0 s left"));
}

TEST(ProgressLine, has_no_rate_before_time_went_by)
{
    EXPECT_EQ(ProgressLine::textOf({.frames = 1, .wantedFrames = 2}),
              QStringLiteral("1 of 2 frames  0.00 frames/s  0.0 MB/s  0 waiting  0 s left"));
}
