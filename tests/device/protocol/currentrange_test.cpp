#include "device/protocol/currentrange.h"

#include <gtest/gtest.h>

using PcRange = AdcSelection::PcRange;

TEST(CurrentRange, the_four_gears_have_their_charge_range_and_base_time)
{
    const std::array<CurrentRange::Gear, 4> expected{{{150, PcRange::Pc25, 16600},
                                                      {50, PcRange::Pc25, 50000},
                                                      {10, PcRange::Pc13, 130000},
                                                      {1, PcRange::Pc4, 400000}}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(CurrentRange::gears[i].nanoamperes, expected[i].nanoamperes);
        EXPECT_EQ(CurrentRange::gears[i].pcRange, expected[i].pcRange);
        EXPECT_EQ(CurrentRange::gears[i].integrationTime, expected[i].integrationTime);
    }
}
