#include "ui/inspector/plotscale.h"

#include <gmock/gmock.h>

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

TEST(PlotScale, ticks_are_round_and_not_too_many)
{
    EXPECT_THAT(PlotScale::ticks({0, 150}, 9), ElementsAre(0, 20, 40, 60, 80, 100, 120, 140));
    EXPECT_THAT(PlotScale::ticks({0, 1023}, 5), ElementsAre(0, 500, 1000));
    EXPECT_THAT(PlotScale::ticks({-0.31, 0.29}, 4), Pointwise(DoubleNear(1e-12), {-0.2, 0.0, 0.2}));
    EXPECT_THAT(PlotScale::ticks({149.9991, 150.0009}, 5),
                Pointwise(DoubleNear(1e-9), {149.9995, 150.0, 150.0005}));
    for (double end = 0.001; end < 2e6; end *= 1.37) {
        const std::vector<double> ticks = PlotScale::ticks({0, end}, 7);
        EXPECT_LE(ticks.size(), 7U) << end;
        EXPECT_GE(ticks.size(), 3U) << end;
        EXPECT_LE(ticks.back(), end);
    }
}

TEST(PlotScale, a_tick_has_the_decimals_of_its_distance)
{
    EXPECT_EQ(PlotScale::text(20, 20), "20");
    EXPECT_EQ(PlotScale::text(0.5, 0.5), "0.5");
    EXPECT_EQ(PlotScale::text(149.9995, 0.0005), "149.9995");
    EXPECT_EQ(PlotScale::text(-1e-17, 0.1), "0.0");
    EXPECT_EQ(PlotScale::text(-3, 1), "-3");
}

TEST(PlotScale, an_axis_has_room_around_its_values)
{
    const PlotScale::Span some = PlotScale::around({3, 9, 5});
    EXPECT_LT(some.begin, 3);
    EXPECT_GT(some.end, 9);
    const PlotScale::Span equal = PlotScale::around({4, 4});
    EXPECT_LT(equal.begin, 4);
    EXPECT_DOUBLE_EQ(equal.begin + equal.end, 8);
    EXPECT_LT(PlotScale::around({}).begin, PlotScale::around({}).end);
}
