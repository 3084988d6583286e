#include "device/streamwatch.h"

#include <gtest/gtest.h>

namespace {

using Event = StreamWatch::Event;

/// A stream that began at 1000 ms.
class SilentStream : public testing::Test
{
protected:
    SilentStream() { watch.begin(1000); }

    [[nodiscard]] Event quiet(qint64 now) { return watch.quiet(now, false, false); }
    [[nodiscard]] Event quietStopping(qint64 now) { return watch.quiet(now, false, true); }

    StreamWatch watch;
};

} // namespace

TEST_F(SilentStream, is_told_once_after_five_seconds_without_a_byte)
{
    EXPECT_EQ(quiet(5999), Event::None);
    EXPECT_EQ(quiet(6000), Event::Interrupted);
    EXPECT_EQ(quiet(6001), Event::None);
    EXPECT_EQ(quiet(60000), Event::None);
}

TEST_F(SilentStream, is_over_with_the_next_byte_and_can_come_again)
{
    EXPECT_EQ(watch.arrived(2000), Event::None);
    EXPECT_EQ(quiet(6999), Event::None);
    EXPECT_EQ(quiet(7000), Event::Interrupted);
    EXPECT_EQ(watch.arrived(8000), Event::Resumed);
    EXPECT_EQ(watch.arrived(8001), Event::None);
    EXPECT_EQ(quiet(13001), Event::Interrupted);
}

TEST_F(SilentStream, is_none_while_the_next_block_is_held_back_and_counts_from_its_request)
{
    EXPECT_EQ(watch.quiet(60000, true, false), Event::None);
    watch.blockRequested(61000);
    EXPECT_EQ(quiet(65999), Event::None);
    EXPECT_EQ(quiet(66000), Event::Interrupted);
}

TEST_F(SilentStream, makes_a_stop_overdue_five_seconds_after_the_request_when_that_came_last)
{
    EXPECT_EQ(quietStopping(3000), Event::None);
    EXPECT_EQ(quietStopping(6000), Event::Interrupted);
    EXPECT_EQ(quietStopping(7999), Event::None);
    EXPECT_EQ(quietStopping(8000), Event::StopOverdue);
}

TEST_F(SilentStream, makes_a_stop_overdue_five_seconds_after_the_last_byte_when_that_came_last)
{
    EXPECT_EQ(quietStopping(2000), Event::None);
    EXPECT_EQ(watch.arrived(4000), Event::None);
    EXPECT_EQ(quietStopping(8999), Event::None);
    EXPECT_EQ(quietStopping(9000), Event::StopOverdue);
}

TEST_F(SilentStream, starts_over_with_the_next_acquisition)
{
    EXPECT_EQ(quietStopping(2000), Event::None);
    EXPECT_EQ(quiet(6000), Event::Interrupted);
    watch.begin(10000);
    EXPECT_EQ(quiet(14999), Event::None);
    EXPECT_EQ(quiet(15000), Event::Interrupted);
    EXPECT_EQ(watch.arrived(15001), Event::Resumed);
}

TEST(LostDevice, is_one_whose_status_failed_at_every_call_for_a_second)
{
    StreamWatch watch;
    EXPECT_FALSE(watch.isLost(1000, true));
    EXPECT_FALSE(watch.isLost(1999, true));
    EXPECT_TRUE(watch.isLost(2000, true));
}

TEST(LostDevice, is_none_whose_status_was_had_in_between)
{
    StreamWatch watch;
    EXPECT_FALSE(watch.isLost(1000, true));
    EXPECT_FALSE(watch.isLost(1500, false));
    EXPECT_FALSE(watch.isLost(2100, true));
    EXPECT_FALSE(watch.isLost(3099, true));
    EXPECT_TRUE(watch.isLost(3100, true));
}
