#include "device/linkstate.h"

#include <gtest/gtest.h>

namespace {

/// A link without a driver library: only its flags count here.
class Flags : public testing::Test
{
protected:
    LinkState state{std::make_shared<D2xx>()};
    int device = 0;
};

} // namespace

TEST_F(Flags, a_start_forgets_the_stop_and_lifts_the_halt)
{
    state.m_stopRequested = true;
    state.m_halted = true;
    state.begin();
    EXPECT_FALSE(state.m_stopRequested);
    EXPECT_FALSE(state.m_halted);
    EXPECT_TRUE(state.m_restarted);
    EXPECT_FALSE(state.m_closed) << "what was received counts on";
}

TEST_F(Flags, a_start_leaves_a_pause_in_force)
{
    state.m_paused = true;
    state.begin();
    EXPECT_TRUE(state.m_paused);
}

TEST_F(Flags, closing_halts_and_takes_the_handle_back_once)
{
    state.m_handle = &device;
    EXPECT_EQ(state.close(), &device);
    EXPECT_TRUE(state.m_halted);
    EXPECT_TRUE(state.m_closed) << "what was received does not count any more";
    EXPECT_EQ(state.m_handle, nullptr);
    EXPECT_EQ(state.close(), nullptr);
}

TEST_F(Flags, a_halt_holds_when_nothing_was_started_meanwhile)
{
    state.begin();
    state.m_restarted = false; // the loop has taken it
    EXPECT_TRUE(state.halt());
    EXPECT_TRUE(state.m_halted);
}

TEST_F(Flags, a_halt_that_meets_a_start_gives_way_to_it)
{
    state.begin();
    EXPECT_FALSE(state.halt());
    EXPECT_FALSE(state.m_halted);
}

TEST_F(Flags, of_two_halts_that_meet_one_tells_the_detector)
{
    state.begin();
    state.m_restarted = false;
    EXPECT_TRUE(state.takeHalt());
    EXPECT_FALSE(state.halt());
    EXPECT_FALSE(state.takeHalt());
}

TEST_F(Flags, only_the_open_device_can_be_lost_and_only_once)
{
    int other = 0;
    EXPECT_FALSE(state.lose(nullptr));
    state.m_handle = &device;
    EXPECT_FALSE(state.lose(&other));
    EXPECT_FALSE(state.m_lost);
    EXPECT_TRUE(state.lose(&device));
    EXPECT_FALSE(state.lose(&device));
    EXPECT_TRUE(state.m_halted);
    EXPECT_EQ(state.close(), &device);
    EXPECT_FALSE(state.m_lost);
}

TEST_F(Flags, without_a_driver_it_is_not_known_what_waits)
{
    EXPECT_EQ(state.bytesWaiting(&device), std::nullopt);
}
