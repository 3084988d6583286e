#include "tests/simulator/firmware/detectorbench.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using simulator::blockBytes;
using simulator::Pacing;
using simulator::TestPattern;

namespace {

constexpr simulator::Nanoseconds period{158104400};

class Stream : public testing::Test
{
protected:
    Stream() { bench.settings.pacing = Pacing::None; }

    void requestFrame()
    {
        for (int block = 0; block < 32; ++block)
            ASSERT_EQ(bench.request(block), blockBytes) << block;
    }

    DetectorBench bench;
};

} // namespace

TEST_F(Stream, nothing_is_sent_before_block_0_is_requested)
{
    bench.start();
    bench.now += 10s;
    EXPECT_EQ(bench.takeAll(), QByteArray());
    EXPECT_EQ(bench.request(0), blockBytes);
}

TEST_F(Stream, each_request_brings_one_block_of_131072_bytes)
{
    bench.start();
    for (int image = 0; image < 3; ++image) {
        for (int block = 0; block < 32; ++block) {
            ASSERT_EQ(bench.request(block), 131072);
            EXPECT_EQ(bench.lastImage.offset, block * 131072);
            EXPECT_EQ(bench.lastImage.recipe.frame, static_cast<quint64>(image));
        }
    }
}

TEST_F(Stream, without_a_request_no_further_block_is_sent)
{
    bench.start();
    EXPECT_EQ(bench.request(0), blockBytes);
    bench.now += 10s;
    EXPECT_EQ(bench.takeAll(), QByteArray());
}

TEST_F(Stream, a_request_for_another_than_the_next_block_brings_none)
{
    bench.start();
    for (const int wrong : {1, 2, 31, 32, 255})
        EXPECT_EQ(bench.request(wrong), 0) << wrong;
    EXPECT_EQ(bench.request(0), blockBytes);
    for (const int wrong : {0, 2, 33})
        EXPECT_EQ(bench.request(wrong), 0) << wrong;
    EXPECT_EQ(bench.request(1), blockBytes);
}

TEST_F(Stream, after_the_32nd_block_the_next_number_is_0_and_not_32)
{
    bench.start();
    requestFrame();
    EXPECT_EQ(bench.request(32), 0);
    EXPECT_EQ(bench.request(0), blockBytes);
    EXPECT_EQ(bench.lastImage.recipe.frame, 1U);
}

TEST_F(Stream, requests_glued_into_one_write_are_all_heeded)
{
    bench.start();
    EXPECT_EQ(bench.exchange(frame(0, 0) + frame(0, 1) + frame(0, 2)).size(), 3 * blockBytes);
}

TEST_F(Stream, a_request_before_the_start_brings_nothing)
{
    EXPECT_EQ(bench.request(0), 0);
    bench.start();
    EXPECT_EQ(bench.takeAll(), QByteArray());
}

TEST_F(Stream, no_block_is_sent_outside_synchronous_fifo_mode)
{
    bench.firmware.setSynchronous(false);
    bench.start();
    EXPECT_EQ(bench.request(0), 0);
    bench.firmware.setSynchronous(true);
    EXPECT_EQ(bench.request(0), blockBytes);
}

TEST_F(Stream, a_request_after_the_halt_brings_nothing)
{
    bench.start();
    EXPECT_EQ(bench.request(0), blockBytes);
    EXPECT_EQ(bench.exchange(frame(3, 0xA1)), hex("FF BB 03 A1 0D EB"));
    EXPECT_EQ(bench.request(1), 0);
    EXPECT_EQ(bench.request(0), 0);
}

TEST_F(Stream, a_block_that_has_left_is_read_before_the_echo_of_the_halt)
{
    bench.start();
    bench.firmware.write(frame(0, 0) + frame(3, 0xA1), bench.now);
    bench.now += 16ms;
    const QByteArray bytes = bench.takeAll();
    EXPECT_EQ(bytes.size(), blockBytes + 6);
    EXPECT_EQ(bytes.right(6), hex("FF BB 03 A1 0D EB"));
}

TEST_F(Stream, a_new_start_begins_with_block_0_of_frame_0)
{
    bench.start();
    requestFrame();
    EXPECT_EQ(bench.request(0), blockBytes);
    EXPECT_EQ(bench.request(1), blockBytes);
    bench.exchange(frame(3, 0xA1));
    bench.start();
    EXPECT_EQ(bench.request(2), 0);
    EXPECT_EQ(bench.request(0), blockBytes);
    EXPECT_EQ(bench.lastImage.recipe.frame, 0U);
}

TEST_F(Stream, losing_the_host_ends_the_acquisition_and_keeps_the_parameters)
{
    bench.exchange(parameterFrame(0x00, hex("10")));
    bench.start();
    bench.firmware.hostLost();
    EXPECT_FALSE(bench.firmware.isStreaming());
    EXPECT_EQ(bench.exchange(frame(2, 0x00)).left(1), hex("10"));
}

TEST_F(Stream, a_test_pattern_stays_until_the_halt)
{
    bench.exchange(frame(3, 0xCF));
    bench.start();
    requestFrame();
    EXPECT_EQ(bench.request(0), blockBytes);
    EXPECT_EQ(bench.lastImage.recipe.pattern, TestPattern::Counter);
    bench.exchange(frame(3, 0xA1));
    bench.start();
    EXPECT_EQ(bench.request(0), blockBytes);
    EXPECT_EQ(bench.lastImage.recipe.pattern, TestPattern::None);
}

TEST_F(Stream, each_pattern_command_selects_its_pattern)
{
    for (const auto &[code, pattern] : {std::pair{0xC0, TestPattern::HorizontalRamp},
                                        {0xC1, TestPattern::VerticalRamp},
                                        {0xC2, TestPattern::Checkerboard},
                                        {0xC3, TestPattern::Flat},
                                        {0xCF, TestPattern::Counter}}) {
        bench.exchange(frame(3, code));
        bench.start();
        EXPECT_EQ(bench.request(0), blockBytes);
        EXPECT_EQ(bench.lastImage.recipe.pattern, pattern);
        bench.exchange(frame(3, 0xA1));
    }
}

TEST_F(Stream, a_frame_keeps_the_light_that_it_began_with)
{
    bench.start();
    EXPECT_EQ(bench.request(0), blockBytes);
    bench.settings.light = 0;
    EXPECT_EQ(bench.request(1), blockBytes);
    EXPECT_EQ(bench.lastImage.recipe.exposure.light, 1.0);
    for (int block = 2; block < 32; ++block)
        EXPECT_EQ(bench.request(block), blockBytes);
    EXPECT_EQ(bench.request(0), blockBytes);
    EXPECT_EQ(bench.lastImage.recipe.exposure.light, 0.0);
}

TEST_F(Stream, the_exposure_is_that_of_the_downloaded_parameters)
{
    bench.exchange(parameterFrame(0x01, hex("01 80"))); // 4 pC
    bench.exchange(parameterFrame(0x10, words({1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 40000})));
    bench.start();
    EXPECT_EQ(bench.request(0), blockBytes);
    EXPECT_EQ(bench.lastImage.recipe.exposure.fullScaleCharge, 4.0);
    EXPECT_EQ(bench.lastImage.recipe.exposure.integrationNs, 500000.0);
}

TEST_F(Stream, paced_frames_leave_one_per_frame_period)
{
    bench.settings.pacing = Pacing::Timing;
    const auto started = bench.now;
    bench.start();
    for (int image = 1; image <= 3; ++image) {
        bench.firmware.write(frame(0, 0), bench.now);
        bench.now = started + image * period - 1ns;
        EXPECT_EQ(bench.takeAll(), QByteArray()) << image;
        bench.now += 1ns;
        EXPECT_EQ(bench.takeAll().size(), blockBytes) << image;
        for (int block = 1; block < 32; ++block)
            ASSERT_EQ(bench.request(block), blockBytes);
    }
}

TEST_F(Stream, a_late_host_shifts_the_frames_after_it)
{
    bench.settings.pacing = Pacing::Timing;
    bench.start();
    bench.now += 10 * period;
    const auto late = bench.now;
    requestFrame();
    bench.firmware.write(frame(0, 0), bench.now);
    bench.now = late + period - 1ns;
    EXPECT_EQ(bench.takeAll(), QByteArray()) << "no frame is made up for";
    bench.now = late + period;
    EXPECT_EQ(bench.takeAll().size(), blockBytes);
}

TEST_F(Stream, the_downloaded_frame_period_is_in_nanoseconds)
{
    bench.settings.pacing = Pacing::Timing;
    bench.exchange(parameterFrame(0x10, words({4000000000U})));
    const auto started = bench.now;
    bench.start();
    bench.firmware.write(frame(0, 0), bench.now);
    bench.now = started + 4s - 1ns;
    EXPECT_EQ(bench.takeAll(), QByteArray());
    bench.now += 1ns;
    EXPECT_EQ(bench.takeAll().size(), blockBytes);
}

TEST_F(Stream, while_a_block_is_due_later_no_other_is_granted)
{
    bench.settings.pacing = Pacing::Timing;
    bench.start();
    bench.firmware.write(frame(0, 0), bench.now);
    EXPECT_EQ(bench.request(1), 0) << "block 0 has not been sent yet";
    bench.now += period;
    EXPECT_EQ(bench.takeAll().size(), blockBytes);
    EXPECT_EQ(bench.request(1), blockBytes);
}

TEST_F(Stream, a_halt_drops_the_block_that_is_not_due_yet)
{
    bench.settings.pacing = Pacing::Timing;
    bench.start();
    bench.firmware.write(frame(0, 0), bench.now);
    EXPECT_EQ(bench.exchange(frame(3, 0xA1)), hex("FF BB 03 A1 0D EB"));
    bench.now += 10 * period;
    EXPECT_EQ(bench.takeAll(), QByteArray());
}

TEST_F(Stream, a_halt_drops_no_reply_that_is_not_due_yet)
{
    bench.settings.faults.replyCommand = 0x03A0;
    bench.settings.faults.replyDelay = 30ms;
    EXPECT_EQ(bench.exchange(frame(3, 0xA0) + frame(3, 0xA1)), QByteArray());
    bench.now += 30ms;
    EXPECT_EQ(bench.takeAll(), hex("FF BB 03 A0 0D EB FF BB 03 A1 0D EB"));
}
