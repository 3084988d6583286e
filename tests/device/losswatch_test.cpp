#include "device/losswatch.h"

#include <gtest/gtest.h>

TEST(LossWatch, tells_nothing_while_nothing_is_lost)
{
    LossWatch watch;
    watch.begin(0);
    EXPECT_FALSE(watch.counted(0, 100));
    EXPECT_FALSE(watch.counted(0, 1'000'000));
}

TEST(LossWatch, tells_the_first_loss_at_once_and_more_of_them_once_in_ten_seconds)
{
    LossWatch watch;
    watch.begin(0);
    EXPECT_EQ(watch.counted(1, 500), 1U);
    EXPECT_FALSE(watch.counted(2, 501));
    EXPECT_FALSE(watch.counted(7, 10'499));
    EXPECT_EQ(watch.counted(8, 10'500), 8U);
    EXPECT_FALSE(watch.counted(8, 30'000)) << "it is no news";
}

TEST(LossWatch, counts_from_the_start_of_an_acquisition)
{
    LossWatch watch;
    watch.begin(40);
    EXPECT_FALSE(watch.counted(40, 0));
    EXPECT_EQ(watch.counted(43, 1), 3U);
    watch.begin(50);
    EXPECT_EQ(watch.counted(51, 2), 1U) << "ten seconds of the acquisition before do not count";
}
