#include "tests/ftdi/bridge/bedtest.h"
#include "tests/ftdi/numbered.h"

#include <cerrno>
#include <future>

using d2xx::Status;
using testing::HasSubstr;

namespace {

constexpr std::size_t manyBytes = 100'000;

class Recovery : public BedTest
{
protected:
    /// Reads everything until the bridge has nothing more for good.
    BytesLines::Bytes readToTheEnd()
    {
        BytesLines::Bytes all;
        EXPECT_EQ(f.setTimeouts(handle, 0, 0), Status::IoError);
        while (read(1000) == Status::Ok)
            all.insert(all.end(), received.begin(), received.end());
        return all;
    }
    [[nodiscard]] bool waitForTheEnd()
    {
        return QTest::qWaitFor([this] { return f.setTimeouts(handle, 10, 10) == Status::IoError; },
                               patienceMs);
    }
    /// Opens a bridge that refuses ten bytes so, which ends the connection.
    void expectNoWrite(const EmulatedBridge::Faults &faults)
    {
        plugIn();
        ASSERT_EQ(open(), Status::Ok);
        bridge->setFaults(faults);
        auto bytes = numbered(10);
        std::uint32_t written = 99;
        EXPECT_EQ(f.write(handle, bytes.data(), 10, &written), Status::IoError);
        EXPECT_EQ(written, 0U);
        EXPECT_THAT(problem(handle), HasSubstr("does not take what is sent"));
    }
    std::uint8_t bitMode()
    {
        return bridge->onChip([](EmulatedChip &chip) { return chip.bitMode(); });
    }
};

} // namespace

TEST_F(Recovery, a_bridge_whose_descriptor_tells_no_packet_size_is_read)
{
    for (const bool isHighSpeed : {true, false}) {
        plugIn({.packetSize = 0, .isHighSpeed = isHighSpeed});
        ASSERT_EQ(open(), Status::Ok);
        put(numbered(2000));
        ASSERT_TRUE(waitForQueued(2000));
        EXPECT_EQ(read(2000), Status::Ok);
        EXPECT_EQ(received, numbered(2000));
        EXPECT_EQ(f.close(handle), Status::Ok);
        unplug();
    }
}

TEST_F(Recovery, a_halt_that_was_left_behind_is_cleared_when_the_bridge_is_opened)
{
    plugIn();
    bridge->setFaults({.failures = 1, .failure = EPIPE});
    ASSERT_EQ(open(), Status::Ok);
    EXPECT_GE(bridge->haltsCleared(), 1);
    put(numbered(2000));
    ASSERT_TRUE(waitForQueued(2000));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, after_a_stall_or_a_damaged_transfer_everything_arrives_in_order)
{
    for (const int failure : {EPIPE, EPROTO, EOVERFLOW}) {
        plugIn();
        ASSERT_EQ(open(), Status::Ok);
        ASSERT_EQ(f.setUsbParameters(handle, 4096, 4096), Status::Ok);
        bridge->setFaults({.failures = 3, .failure = failure, .failAfter = 50'000, .partial = 1024});
        put(numbered(manyBytes));
        ASSERT_TRUE(waitForQueued(manyBytes)) << failure;
        EXPECT_EQ(read(manyBytes), Status::Ok);
        EXPECT_EQ(received, numbered(manyBytes));
        EXPECT_EQ(f.close(handle), Status::Ok);
        unplug();
    }
}

TEST_F(Recovery, a_write_that_stalls_or_is_damaged_is_sent_again_from_where_it_stood)
{
    for (const int failure : {EPIPE, EPROTO}) {
        plugIn();
        ASSERT_EQ(open(), Status::Ok);
        bridge->setFaults({.failure = failure, .writeFailures = 2, .writePartial = 100});
        auto bytes = numbered(1000);
        std::uint32_t written = 0;
        EXPECT_EQ(f.write(handle, bytes.data(), 1000, &written), Status::Ok) << failure;
        EXPECT_EQ(written, 1000U);
        EXPECT_EQ(bridge->onChip([this](EmulatedChip &) { return lines->written(); }), bytes);
        EXPECT_EQ(f.close(handle), Status::Ok);
        unplug();
    }
}

TEST_F(Recovery, a_write_that_cannot_be_mended_ends_the_connection_and_says_why)
{
    expectNoWrite({.failure = EPIPE, .writeFailures = 1000});
    auto bytes = numbered(10);
    std::uint32_t written = 99;
    EXPECT_EQ(f.write(handle, bytes.data(), 10, &written), Status::IoError);
    EXPECT_EQ(f.close(handle), Status::Ok);

    bridge->setFaults({});
    // The emulated system hears of a closed node a little later.
    ASSERT_TRUE(QTest::qWaitFor([this] { return open() == Status::Ok; }, patienceMs));
    EXPECT_EQ(f.write(handle, bytes.data(), 10, &written), Status::Ok);
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, a_write_that_fails_as_no_clearing_mends_ends_the_connection_at_once)
{
    expectNoWrite({.failure = EOVERFLOW, .writeFailures = 1});
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, a_write_that_the_bridge_does_not_take_in_time_is_ok_and_tells_that_nothing_left)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    ASSERT_EQ(f.setTimeouts(handle, 100, 100), Status::Ok);
    bridge->setFaults({.holdsWrites = true});
    auto bytes = numbered(10);
    std::uint32_t written = 99;
    EXPECT_EQ(f.write(handle, bytes.data(), 10, &written), Status::Ok);
    EXPECT_EQ(written, 0U);
    bridge->setFaults({});
    EXPECT_EQ(f.write(handle, bytes.data(), 10, &written), Status::Ok);
    EXPECT_EQ(written, 10U);
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, a_cable_that_is_pulled_ends_a_write_that_waits_and_is_told_as_such)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    bridge->setFaults({.holdsWrites = true});
    auto status = std::async(std::launch::async, [this] {
        auto bytes = numbered(10);
        std::uint32_t written = 99;
        return f.write(handle, bytes.data(), 10, &written);
    });
    EXPECT_TRUE(QTest::qWaitFor([this] { return bridge->writesUnderWay() == 1; }, patienceMs));
    unplug();
    EXPECT_EQ(status.get(), Status::IoError);
    EXPECT_THAT(problem(handle), HasSubstr("unplugged"));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, a_chip_that_answers_no_more_fails_what_is_asked_of_it_and_can_be_closed)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    EXPECT_EQ(f.purge(handle, d2xx::purgeBoth), Status::Ok);
    bridge->setFaults({.isMute = true});
    EXPECT_EQ(f.purge(handle, d2xx::purgeReceived), Status::IoError);
    EXPECT_EQ(f.purge(handle, d2xx::purgeSent), Status::IoError);
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, what_cannot_be_mended_ends_the_connection_and_says_why)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    ASSERT_EQ(f.setUsbParameters(handle, 4096, 4096), Status::Ok);
    bridge->setFaults({.failures = 1, .failure = EPIPE, .failAfter = 50'000, .staysHalted = true});
    put(numbered(manyBytes));
    ASSERT_TRUE(waitForTheEnd());
    const auto before = readToTheEnd();
    EXPECT_GE(before.size(), 40'000U);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), numbered(manyBytes).begin()));
    EXPECT_THAT(problem(handle), HasSubstr("stays halted"));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, transfers_that_fail_until_the_hub_is_asked_are_an_unplug)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    bridge->setFaults({.failures = 1'000'000, .failure = EPROTO});
    const int cleared = bridge->haltsCleared();
    ASSERT_TRUE(QTest::qWaitFor([&] { return bridge->haltsCleared() > cleared + 1; }, patienceMs));
    unplug();
    ASSERT_TRUE(waitForTheEnd());
    EXPECT_EQ(problem(handle), "The bridge was unplugged.");
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, what_waits_when_the_cable_is_pulled_can_still_be_read)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    put(numbered(manyBytes));
    ASSERT_TRUE(waitForQueued(manyBytes));
    unplug();
    ASSERT_TRUE(waitForTheEnd());
    EXPECT_EQ(readToTheEnd(), numbered(manyBytes));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, closing_puts_the_lines_back_into_their_first_mode)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    ASSERT_EQ(f.setBitMode(handle, d2xx::allDataLines, d2xx::bitModeSyncFifo), Status::Ok);
    EXPECT_EQ(bitMode(), d2xx::bitModeSyncFifo);
    EXPECT_EQ(f.close(handle), Status::Ok);
    EXPECT_EQ(bitMode(), d2xx::bitModeReset);
}

TEST_F(Recovery, opening_puts_back_the_mode_that_a_killed_program_left)
{
    plugIn();
    bridge->onChip([](EmulatedChip &chip) {
        return chip.control({0x40, 0x0B, d2xx::allDataLines, d2xx::bitModeSyncFifo, 1, 0, 0, 0}, {});
    });
    ASSERT_EQ(bitMode(), d2xx::bitModeSyncFifo);
    ASSERT_EQ(open(), Status::Ok);
    EXPECT_EQ(bitMode(), d2xx::bitModeReset);
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, with_little_memory_for_transfers_it_goes_on_with_few)
{
    plugIn();
    bridge->setFaults({.mostReads = 3});
    ASSERT_EQ(open(), Status::Ok);
    put(numbered(manyBytes));
    ASSERT_TRUE(waitForQueued(manyBytes));
    EXPECT_EQ(read(manyBytes), Status::Ok);
    EXPECT_EQ(received, numbered(manyBytes));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Recovery, bytes_that_the_chip_lost_are_counted)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    std::uint32_t count = 99;
    EXPECT_EQ(f.countLosses(handle, &count), Status::Ok);
    EXPECT_EQ(count, 0U);
    bridge->onChip([](EmulatedChip &chip) { chip.noteErrors(EmulatedChip::overrun); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.countLosses(handle, &count) == Status::Ok && count == 1; },
                                patienceMs));
    EXPECT_EQ(f.close(handle), Status::Ok);
    EXPECT_EQ(f.countLosses(handle, &count), Status::InvalidHandle);
}
