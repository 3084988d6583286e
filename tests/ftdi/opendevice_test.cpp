#include "tests/ftdi/openbridge.h"

#include <future>
#include <numeric>

using d2xx::Status;
using ftdi::OpenDevice;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Clock = std::chrono::steady_clock;

TEST_F(OpenBridge, what_arrives_is_counted_before_it_is_asked_for)
{
    chip->deliver({1, 2, 3});
    chip->deliver({4, 5});
    EXPECT_TRUE(waitForQueued(5));
    EXPECT_EQ(read(5), Status::Ok);
    EXPECT_THAT(received, ElementsAre(1, 2, 3, 4, 5));
    EXPECT_EQ(queued(), 0U);
}

TEST_F(OpenBridge, a_read_takes_no_more_than_it_asks_for)
{
    chip->deliver({1, 2, 3});
    ASSERT_TRUE(waitForQueued(3));
    EXPECT_EQ(read(2), Status::Ok);
    EXPECT_THAT(received, ElementsAre(1, 2));
    EXPECT_EQ(queued(), 1U);
}

TEST_F(OpenBridge, a_read_of_nothing_returns_at_once)
{
    std::uint8_t untouched = 7;
    std::uint32_t count = 99;
    EXPECT_EQ(device.read(&untouched, 0, &count), Status::Ok);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(untouched, 7);
}

TEST_F(OpenBridge, a_read_that_times_out_is_ok_and_returns_what_there_is)
{
    ASSERT_EQ(device.setTimeouts(30, 30), Status::Ok);
    chip->deliver({9});
    ASSERT_TRUE(waitForQueued(1));
    const auto begin = Clock::now();
    EXPECT_EQ(read(4), Status::Ok);
    EXPECT_GE(Clock::now() - begin, 30ms);
    EXPECT_THAT(received, ElementsAre(9));
}

TEST_F(OpenBridge, without_a_time_out_a_read_waits_for_every_byte)
{
    auto reading = std::async(std::launch::async, [this] { return read(4); });
    chip->deliver({1, 2});
    EXPECT_EQ(reading.wait_for(60ms), std::future_status::timeout);
    chip->deliver({3, 4});
    EXPECT_EQ(reading.get(), Status::Ok);
    EXPECT_THAT(received, ElementsAre(1, 2, 3, 4));
}

TEST_F(OpenBridge, a_read_larger_than_the_queue_gets_everything)
{
    auto reading = std::async(std::launch::async, [this] { return read(10 * queueSize); });
    FakeChip::Bytes expected;
    for (std::uint8_t i = 0; i < 100; ++i) {
        chip->deliver(numbered(100, i));
        const auto piece = numbered(100, i);
        expected.insert(expected.end(), piece.begin(), piece.end());
    }
    EXPECT_EQ(reading.get(), Status::Ok);
    EXPECT_EQ(received, expected);
}

TEST_F(OpenBridge, a_full_queue_holds_the_bridge_back_and_loses_nothing)
{
    const FakeChip::Bytes expected = deliverMoreThanFits();
    const std::size_t heldBack = chip->undelivered();
    EXPECT_EQ(heldBack, 40U - 12U);

    FakeChip::Bytes all;
    while (all.size() < expected.size()) {
        ASSERT_EQ(read(static_cast<std::uint32_t>(std::min<std::size_t>(77, expected.size() - all.size()))),
                  Status::Ok);
        all.insert(all.end(), received.begin(), received.end());
    }
    EXPECT_EQ(all, expected);
}

TEST_F(OpenBridge, a_purge_drops_what_arrived_and_stops_the_transfers_before_it_asks_the_chip)
{
    chip->deliver({1, 2, 3});
    ASSERT_TRUE(waitForQueued(3));
    EXPECT_EQ(device.purge(3), Status::Ok);
    EXPECT_EQ(queued(), 0U);
    EXPECT_THAT(chip->requests(), ElementsAre("stop reading", "purge received sent"));

    chip->deliver({4});
    EXPECT_EQ(read(1), Status::Ok);
    EXPECT_THAT(received, ElementsAre(4));
}

TEST_F(OpenBridge, a_purge_of_what_is_sent_keeps_what_arrived)
{
    chip->deliver({1, 2, 3});
    ASSERT_TRUE(waitForQueued(3));
    EXPECT_EQ(device.purge(2), Status::Ok);
    EXPECT_EQ(queued(), 3U);
    EXPECT_THAT(chip->requests(), ElementsAre("purge sent"));
}

TEST_F(OpenBridge, a_purge_gets_through_while_the_queue_is_full)
{
    for (int i = 0; i < 20; ++i)
        chip->deliver(numbered(100));
    ASSERT_TRUE(waitForQueued(queueSize));
    EXPECT_EQ(device.purge(1), Status::Ok);
    EXPECT_EQ(queued(), 0U);
    chip->deliver({5});
    EXPECT_EQ(read(1), Status::Ok);
    EXPECT_THAT(received, ElementsAre(5));
}

TEST_F(OpenBridge, a_reset_drops_what_arrived)
{
    chip->deliver({1, 2, 3});
    ASSERT_TRUE(waitForQueued(3));
    EXPECT_EQ(device.reset(), Status::Ok);
    EXPECT_EQ(queued(), 0U);
    EXPECT_THAT(chip->requests(), ElementsAre("stop reading", "reset"));
}

TEST_F(OpenBridge, the_set_up_of_a_detector_reaches_the_chip_in_order)
{
    EXPECT_EQ(device.reset(), Status::Ok);
    EXPECT_EQ(device.setBitMode(0xFF, 0x40), Status::Ok);
    EXPECT_EQ(device.setLatencyTimer(2), Status::Ok);
    EXPECT_EQ(device.setTransferSizes(65536, 65536), Status::Ok);
    EXPECT_EQ(device.setFlowControl(0x0100, 0, 0), Status::Ok);
    EXPECT_EQ(device.purge(3), Status::Ok);
    EXPECT_EQ(device.setTimeouts(10, 10), Status::Ok);
    EXPECT_THAT(chip->requests(),
                ElementsAre("stop reading", "reset", "bit mode 255 64", "latency 2", "sizes 65536 65536",
                            "flow 256 0 0", "stop reading", "purge received sent"));
}

TEST_F(OpenBridge, values_that_the_bridge_does_not_know_are_refused_and_do_not_reach_it)
{
    EXPECT_EQ(device.setBitMode(0xFF, 0x41), Status::InvalidParameter);
    EXPECT_EQ(device.setLatencyTimer(1), Status::InvalidParameter);
    EXPECT_EQ(device.setTransferSizes(0, 65536), Status::InvalidParameter);
    EXPECT_EQ(device.setTransferSizes(65536, 65537), Status::InvalidParameter);
    EXPECT_EQ(device.setTransferSizes(100, 64), Status::InvalidParameter);
    EXPECT_EQ(device.setFlowControl(0x0300, 0, 0), Status::InvalidParameter);
    EXPECT_EQ(device.purge(0), Status::InvalidParameter);
    EXPECT_EQ(device.purge(4), Status::InvalidParameter);
    EXPECT_THAT(chip->requests(), IsEmpty());
}

TEST_F(OpenBridge, null_pointers_are_refused)
{
    std::uint8_t byte = 0;
    std::uint32_t count = 0;
    EXPECT_EQ(device.read(nullptr, 1, &count), Status::InvalidParameter);
    EXPECT_EQ(device.read(&byte, 1, nullptr), Status::InvalidParameter);
    EXPECT_EQ(device.write(nullptr, 1, &count), Status::InvalidParameter);
    EXPECT_EQ(device.write(&byte, 1, nullptr), Status::InvalidParameter);
    EXPECT_EQ(device.queued(nullptr, &count, &count), Status::InvalidParameter);
    EXPECT_EQ(device.queued(&count, nullptr, &count), Status::InvalidParameter);
    EXPECT_EQ(device.queued(&count, &count, nullptr), Status::InvalidParameter);
}

TEST_F(OpenBridge, a_request_that_the_chip_refuses_is_an_io_error_and_the_bridge_stays_open)
{
    chip->refuse();
    EXPECT_EQ(device.setBitMode(0xFF, 0x40), Status::IoError);
    EXPECT_EQ(device.reset(), Status::IoError);
    EXPECT_EQ(device.status(), Status::Ok);
    EXPECT_EQ(device.ending(), "");
    chip->deliver({1});
    EXPECT_EQ(read(1), Status::Ok);
}

TEST_F(OpenBridge, what_is_written_leaves_whole_in_as_many_transfers_as_it_takes)
{
    chip->takeAtMost(64);
    const auto bytes = numbered(1000);
    EXPECT_EQ(write(bytes), Status::Ok);
    EXPECT_EQ(written, 1000U);
    EXPECT_EQ(chip->sent(), bytes);
}

TEST_F(OpenBridge, writing_nothing_is_ok)
{
    EXPECT_EQ(device.write("", 0, &written), Status::Ok);
    EXPECT_EQ(written, 0U);
    EXPECT_EQ(chip->writesBegun(), 0U);
}

TEST_F(OpenBridge, a_write_that_times_out_is_ok_and_tells_how_much_left)
{
    ASSERT_EQ(device.setTimeouts(10, 40), Status::Ok);
    chip->takeAtMost(0);
    const auto begin = Clock::now();
    EXPECT_EQ(write({1, 2, 3}), Status::Ok);
    EXPECT_GE(Clock::now() - begin, 40ms);
    EXPECT_EQ(written, 0U);
}

TEST_F(OpenBridge, reads_and_queries_are_not_held_up_by_a_write_that_waits)
{
    chip->takeAtMost(0);
    auto writing = std::async(std::launch::async, [this] { return write({1}); });
    ASSERT_TRUE(QTest::qWaitFor([this] { return chip->writesBegun() > 0; }, patienceMs));
    chip->deliver({8});
    EXPECT_EQ(read(1), Status::Ok);
    EXPECT_EQ(queued(), 0U);
    EXPECT_EQ(writing.wait_for(0ms), std::future_status::timeout);
    chip->takeAtMost(1);
    EXPECT_EQ(writing.get(), Status::Ok);
    EXPECT_THAT(chip->sent(), ElementsAre(1));
}

TEST(OpenBridgeStream, sixty_four_mebibytes_arrive_whole_and_in_order)
{
    constexpr std::size_t total = std::size_t{64} * 1024 * 1024;
    constexpr std::size_t transfer = 65280; // 128 packets without their status bytes
    const auto chip = std::make_shared<FakeChip>();
    // Smaller than the stream and no multiple of a transfer, so that it wraps and fills up on the way.
    OpenDevice device(std::make_unique<FakePort>(chip), 3'000'001);
    std::vector<std::uint32_t> sent(total / sizeof(std::uint32_t));
    std::iota(sent.begin(), sent.end(), 0x01020304U);
    const std::span bytes(reinterpret_cast<const std::uint8_t *>(sent.data()), total);
    for (std::size_t at = 0; at < total; at += transfer) {
        const auto piece = bytes.subspan(at, std::min(transfer, total - at));
        chip->deliver({piece.begin(), piece.end()});
    }

    std::vector<std::uint32_t> received(sent.size());
    auto *out = reinterpret_cast<std::uint8_t *>(received.data());
    const auto begin = Clock::now();
    for (std::size_t count = 0; count < total;) {
        std::uint32_t waiting = 0;
        std::uint32_t other = 0;
        ASSERT_EQ(device.queued(&waiting, &other, &other), Status::Ok);
        std::uint32_t taken = 0;
        ASSERT_EQ(device.read(out + count, std::max(waiting, 1U), &taken), Status::Ok);
        count += taken;
    }
    const std::chrono::duration<double> seconds = Clock::now() - begin;
    testing::Test::RecordProperty("megabytes_per_second", static_cast<int>(total / 1e6 / seconds.count()));
    EXPECT_EQ(received, sent);
}
