#include "device/shortrest.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

TEST(ShortRest, lasts_a_millisecond_at_least_on_the_average)
{
    ShortRest rest;
    QElapsedTimer clock;
    clock.start();
    constexpr int rests = 50;
    for (int i = 0; i < rests; ++i)
        rest.oneMillisecond();
    // The timers of some systems count in steps of half a millisecond.
    EXPECT_GE(clock.elapsed(), rests / 2);
}
