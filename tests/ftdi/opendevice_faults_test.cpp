#include "ftdi/endings.h"

#include "tests/ftdi/openbridge.h"

#include <future>

using d2xx::Status;

TEST_F(OpenBridge, after_the_cable_was_pulled_every_call_is_an_io_error)
{
    chip->unplug();
    ASSERT_TRUE(waitForStatus(Status::IoError));

    std::uint32_t rx = 99;
    std::uint32_t other = 0;
    EXPECT_EQ(device.queued(&rx, &other, &other), Status::IoError);
    EXPECT_EQ(rx, 0U);
    EXPECT_EQ(read(1), Status::IoError);
    EXPECT_EQ(read(0), Status::IoError);
    EXPECT_EQ(write({1}), Status::IoError);
    EXPECT_EQ(device.reset(), Status::IoError);
    EXPECT_EQ(device.setBitMode(0xFF, 0x40), Status::IoError);
    EXPECT_EQ(device.setLatencyTimer(2), Status::IoError);
    EXPECT_EQ(device.setTransferSizes(64, 64), Status::IoError);
    EXPECT_EQ(device.setFlowControl(0, 0, 0), Status::IoError);
    EXPECT_EQ(device.purge(3), Status::IoError);
    EXPECT_EQ(device.setTimeouts(1, 1), Status::IoError);
    EXPECT_EQ(device.ending(), "pulled out");
}

TEST_F(OpenBridge, a_full_queue_hides_no_unplug_that_the_system_alone_knows_of)
{
    chip->deliver(numbered(2 * queueSize));
    ASSERT_TRUE(waitForQueued(queueSize));
    chip->unlist();
    ASSERT_TRUE(waitForStatus(Status::IoError));
    EXPECT_EQ(device.ending(), ftdi::unplugged);
    EXPECT_EQ(read(2 * queueSize), Status::Ok);
    EXPECT_EQ(received, numbered(2 * queueSize));
}

TEST_F(OpenBridge, what_arrived_before_the_cable_was_pulled_is_read_first)
{
    chip->deliver({1, 2, 3});
    chip->unplug();
    ASSERT_TRUE(waitForStatus(Status::IoError));
    EXPECT_EQ(queued(), 3U);
    EXPECT_EQ(write({1}), Status::IoError);
    EXPECT_EQ(read(2), Status::Ok);
    EXPECT_EQ(received, FakeChip::Bytes({1, 2}));
    EXPECT_EQ(read(2), Status::Ok) << "one byte is left";
    EXPECT_EQ(received, FakeChip::Bytes({3}));
    EXPECT_EQ(read(2), Status::IoError);
}

TEST_F(OpenBridge, a_write_that_the_chip_does_not_take_ends_the_connection_and_says_so)
{
    chip->deliver(numbered(5));
    ASSERT_TRUE(waitForQueued(5));
    chip->refuse();
    EXPECT_EQ(write({1}), Status::IoError);
    EXPECT_EQ(written, 0U);
    EXPECT_EQ(device.status(), Status::IoError);
    EXPECT_EQ(device.ending(), ftdi::takesNothing);
    EXPECT_EQ(read(9), Status::Ok) << "what had arrived";
    EXPECT_EQ(received, numbered(5));
    chip->deliver(numbered(5));
    EXPECT_EQ(read(1), Status::IoError) << "nothing comes after the end";
}

TEST_F(OpenBridge, an_unplug_that_the_system_knows_of_is_told_before_a_transfer_fails)
{
    EXPECT_EQ(device.ending(), "");
    chip->unlist();
    EXPECT_EQ(device.status(), Status::Ok);
    EXPECT_EQ(device.ending(), ftdi::unplugged);
}

TEST_F(OpenBridge, an_unplug_is_told_as_such_however_the_transfers_fail)
{
    chip->unplug();
    ASSERT_TRUE(waitForStatus(Status::IoError));
    EXPECT_EQ(device.ending(), "pulled out") << "the reason that the transfers gave";
    chip->unlist();
    EXPECT_EQ(device.ending(), ftdi::unplugged);
}

TEST_F(OpenBridge, a_full_queue_hides_no_unplug_and_nothing_that_waits_behind_it_is_lost)
{
    const FakeChip::Bytes expected = deliverMoreThanFits();
    chip->unplug();
    ASSERT_TRUE(waitForStatus(Status::IoError));
    EXPECT_EQ(write({1}), Status::IoError);

    FakeChip::Bytes all;
    while (read(77) == Status::Ok)
        all.insert(all.end(), received.begin(), received.end());
    EXPECT_EQ(all, expected);
}

TEST_F(OpenBridge, a_closing_drops_what_waits)
{
    chip->deliver({1, 2, 3});
    ASSERT_TRUE(waitForQueued(3));
    device.close();
    EXPECT_EQ(read(1), Status::InvalidHandle);
    std::uint32_t rx = 99;
    std::uint32_t other = 0;
    EXPECT_EQ(device.queued(&rx, &other, &other), Status::InvalidHandle);
    EXPECT_EQ(rx, 0U);
}

TEST_F(OpenBridge, what_the_chip_says_to_have_lost_is_counted)
{
    std::uint32_t count = 99;
    EXPECT_EQ(device.losses(&count), Status::Ok);
    EXPECT_EQ(count, 0U);
    chip->loseBytes();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return device.losses(&count) == Status::Ok && count == 1; }, patienceMs));
    EXPECT_EQ(device.losses(nullptr), Status::InvalidParameter);
}

TEST_F(OpenBridge, pulling_the_cable_ends_a_read_that_waits_without_limit_with_what_there_is)
{
    chip->deliver({1, 2});
    ASSERT_TRUE(waitForQueued(2));
    auto reading = std::async(std::launch::async, [this] { return read(100); });
    ASSERT_TRUE(waitForQueued(0)); // taken: it waits for the rest
    chip->unplug();
    EXPECT_EQ(reading.get(), Status::Ok);
    EXPECT_EQ(received, FakeChip::Bytes({1, 2}));
    EXPECT_EQ(read(1), Status::IoError);
}

TEST_F(OpenBridge, pulling_the_cable_ends_a_write_that_waits_without_limit)
{
    chip->takeAtMost(0);
    auto writing = std::async(std::launch::async, [this] { return write({1}); });
    ASSERT_TRUE(QTest::qWaitFor([this] { return chip->writesBegun() > 0; }, patienceMs));
    chip->unplug();
    EXPECT_EQ(writing.get(), Status::IoError);
}

TEST_F(OpenBridge, closing_ends_a_read_that_waits_without_limit)
{
    chip->deliver({1});
    ASSERT_TRUE(waitForQueued(1));
    auto reading = std::async(std::launch::async, [this] { return read(100); });
    ASSERT_TRUE(waitForQueued(0)); // taken: it waits for the rest
    device.close();
    EXPECT_EQ(reading.get(), Status::InvalidHandle);
}

TEST_F(OpenBridge, closing_ends_a_write_that_waits_without_limit)
{
    chip->takeAtMost(0);
    auto writing = std::async(std::launch::async, [this] { return write({1, 2, 3}); });
    ASSERT_TRUE(QTest::qWaitFor([this] { return chip->writesBegun() > 0; }, patienceMs));
    device.close();
    EXPECT_EQ(writing.get(), Status::InvalidHandle);
    EXPECT_EQ(written, 0U);
}

TEST_F(OpenBridge, closing_does_not_wait_for_room_in_a_full_queue)
{
    for (int i = 0; i < 20; ++i)
        chip->deliver(numbered(100));
    ASSERT_TRUE(waitForQueued(queueSize));
    device.close();
    EXPECT_FALSE(chip->isOpen());
    EXPECT_EQ(device.status(), Status::InvalidHandle);
}

TEST_F(OpenBridge, closing_lets_go_of_a_bridge_whose_cable_was_pulled)
{
    chip->unplug();
    ASSERT_TRUE(waitForStatus(Status::IoError));
    device.close();
    EXPECT_FALSE(chip->isOpen());
    EXPECT_EQ(read(1), Status::InvalidHandle);
    EXPECT_EQ(write({1}), Status::InvalidHandle);
}

TEST_F(OpenBridge, closing_twice_is_harmless)
{
    device.close();
    device.close();
    EXPECT_FALSE(chip->isOpen());
}

TEST_F(OpenBridge, many_threads_may_use_it_while_it_is_closed)
{
    ASSERT_EQ(device.setTimeouts(1, 1), Status::Ok);
    std::atomic<int> rounds{0};
    const auto use = [&] {
        std::uint8_t byte = 0;
        std::uint32_t count = 0;
        while (device.status() == Status::Ok) {
            chip->deliver({1, 2, 3});
            static_cast<void>(device.read(&byte, 1, &count));
            static_cast<void>(device.write(&byte, 1, &count));
            static_cast<void>(device.purge(3));
            ++rounds;
        }
        return device.read(&byte, 1, &count);
    };
    auto one = std::async(std::launch::async, use);
    auto other = std::async(std::launch::async, use);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rounds > 20; }, patienceMs));
    device.close();
    EXPECT_EQ(one.get(), Status::InvalidHandle);
    EXPECT_EQ(other.get(), Status::InvalidHandle);
}
