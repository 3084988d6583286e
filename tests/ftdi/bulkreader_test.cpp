#include "ftdi/bulkreader.h"

#include "tests/ftdi/fakelibusb.h"
#include "tests/ftdi/packed.h"

#include <gmock/gmock.h>

using ftdi::BulkReader;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono_literals;

constexpr std::size_t transferCount = 16;

class BulkReading : public testing::Test
{
protected:
    ~BulkReading() override { usb.handlingResult = LIBUSB_SUCCESS; }
    /// The bytes of the next transfer; fails when the bridge is gone.
    Bytes next()
    {
        const auto bytes = reader.read(10ms);
        EXPECT_TRUE(bytes);
        return bytes ? Bytes(bytes->begin(), bytes->end()) : Bytes();
    }

    /// Everything until reading ends.
    Bytes untilTheEnd()
    {
        Bytes all;
        while (const auto bytes = reader.read(10ms))
            all.insert(all.end(), bytes->begin(), bytes->end());
        return all;
    }

    /// What was cancelled comes back.
    void giveBackCancelled()
    {
        while (!usb.cancelled.empty())
            libusb_handle_events_timeout_completed(nullptr, nullptr, nullptr);
    }

    void expectToStreamOnWhenAllIsGivenBack()
    {
        usb.keepsCancelled = false;
        EXPECT_THAT(next(), IsEmpty());
        giveBackCancelled();
        EXPECT_EQ(usb.allocated, static_cast<int>(transferCount));
        usb.deliver(packed(numbered(6)));
        EXPECT_EQ(next(), numbered(6));
    }

    FakeLibusb &usb = FakeLibusb::instance() = {};
    BulkReader reader{{nullptr, nullptr, 0x81, packetSize}};
};

} // namespace

TEST_F(BulkReading, begins_with_many_transfers_under_way_and_keeps_as_many)
{
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_EQ(usb.underWay.size(), transferCount);
    for (std::uint8_t i = 0; i < 50; ++i) {
        usb.deliver(packed(numbered(100, i)));
        EXPECT_EQ(next(), numbered(100, i));
        EXPECT_EQ(usb.underWay.size(), transferCount - 1); // the bytes of the last are being looked at
    }
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_EQ(usb.underWay.size(), transferCount);
}

TEST_F(BulkReading, returns_transfers_in_their_order_also_when_several_ended_at_once)
{
    EXPECT_THAT(next(), IsEmpty());
    for (std::uint8_t i = 0; i < 10; ++i) {
        usb.deliver(packed(numbered(3, i)));
        libusb_handle_events_timeout_completed(nullptr, nullptr, nullptr);
    }
    for (std::uint8_t i = 0; i < 10; ++i)
        EXPECT_EQ(next(), numbered(3, i));
    EXPECT_THAT(next(), IsEmpty());
}

TEST_F(BulkReading, an_interrupted_wait_is_no_fault)
{
    usb.handlingResult = LIBUSB_ERROR_INTERRUPTED;
    EXPECT_THAT(next(), IsEmpty());
}

TEST_F(BulkReading, asks_for_whole_packets)
{
    reader.setTransferSize(65536);
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(usb.lengths, Each(65536));
    usb.lengths.clear();
    reader.setTransferSize(1088);
    usb.deliver({0x32, 0x60});
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(usb.lengths, ElementsAre(1024));
    usb.lengths.clear();
    reader.stop();
    reader.setTransferSize(64);
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(usb.lengths, Each(512));
}

TEST_F(BulkReading, ends_when_the_bridge_is_gone)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.endings.push_back({LIBUSB_TRANSFER_NO_DEVICE, {}});
    EXPECT_THAT(untilTheEnd(), IsEmpty());
    EXPECT_EQ(reader.ending(), "The bridge was unplugged.");
    EXPECT_EQ(usb.haltsCleared, 0);
}

TEST_F(BulkReading, a_stall_is_cleared_and_reading_goes_on)
{
    for (const auto status : {LIBUSB_TRANSFER_STALL, LIBUSB_TRANSFER_ERROR, LIBUSB_TRANSFER_OVERFLOW}) {
        usb.haltsCleared = 0;
        EXPECT_THAT(next(), IsEmpty());
        usb.endings.push_back({status, {}});
        while (usb.haltsCleared == 0)
            ASSERT_THAT(next(), IsEmpty()) << status;
        EXPECT_THAT(next(), IsEmpty());
        EXPECT_EQ(usb.underWay.size(), transferCount);
        usb.deliver(packed(numbered(5)));
        EXPECT_EQ(next(), numbered(5));
    }
}

TEST_F(BulkReading, what_arrived_around_a_failure_is_returned_in_order)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.deliver(packed(numbered(3, 0)));
    usb.endings.push_back({LIBUSB_TRANSFER_STALL, packed(numbered(3, 3))});
    usb.deliver(packed(numbered(3, 6)));
    for (int i = 0; i < 3; ++i)
        libusb_handle_events_timeout_completed(nullptr, nullptr, nullptr);
    usb.cancelledBringsNext = packed(numbered(3, 9));

    Bytes all;
    while (usb.haltsCleared == 0) {
        const Bytes bytes = next();
        all.insert(all.end(), bytes.begin(), bytes.end());
    }
    EXPECT_EQ(all, numbered(12));
}

TEST_F(BulkReading, what_arrived_before_an_unplug_is_returned_first)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.deliver(packed(numbered(3, 0)));
    usb.endings.push_back({LIBUSB_TRANSFER_NO_DEVICE, packed(numbered(3, 3))});
    for (int i = 0; i < 2; ++i)
        libusb_handle_events_timeout_completed(nullptr, nullptr, nullptr);
    EXPECT_TRUE(reader.isGone());
    EXPECT_EQ(untilTheEnd(), numbered(6));
}

TEST_F(BulkReading, ends_when_clearing_does_not_help)
{
    for (int i = 0; i < 100; ++i)
        usb.endings.push_back({LIBUSB_TRANSFER_STALL, {}});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(untilTheEnd(), IsEmpty());
    EXPECT_GE(std::chrono::steady_clock::now() - begin,
              (BulkReader::mostTries - 1) * BulkReader::betweenTries)
        << "the system learns of an unplug meanwhile";
    EXPECT_EQ(usb.haltsCleared, BulkReader::mostTries);
    EXPECT_THAT(reader.ending(), testing::HasSubstr("halted"));
    EXPECT_THAT(usb.underWay, IsEmpty());
    EXPECT_FALSE(reader.read(10ms)) << "it stays at its end";
}

TEST_F(BulkReading, ends_with_a_sentence_of_its_own_when_the_bridge_sends_too_much)
{
    for (int i = 0; i < 100; ++i)
        usb.endings.push_back({LIBUSB_TRANSFER_OVERFLOW, {}});
    EXPECT_THAT(untilTheEnd(), IsEmpty());
    EXPECT_THAT(reader.ending(), testing::HasSubstr("more than it is asked for"));
}

TEST_F(BulkReading, goes_on_after_a_failure_also_when_the_other_transfers_are_not_given_back)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.keepsCancelled = true;
    usb.endings.push_back({LIBUSB_TRANSFER_STALL, {}});
    while (usb.haltsCleared == 0)
        ASSERT_THAT(next(), IsEmpty());
    EXPECT_EQ(usb.allocated, 2 * static_cast<int>(transferCount) - 1) << "the system may still write to them";

    expectToStreamOnWhenAllIsGivenBack();
}

TEST_F(BulkReading, ends_when_nothing_can_be_cleared)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.clearResult = LIBUSB_ERROR_NO_DEVICE;
    usb.endings.push_back({LIBUSB_TRANSFER_STALL, {}});
    EXPECT_THAT(untilTheEnd(), IsEmpty());
    EXPECT_EQ(usb.haltsCleared, 1);
    EXPECT_EQ(reader.ending(), "The bridge was unplugged.");
}

TEST_F(BulkReading, good_transfers_in_between_make_a_failure_a_new_one)
{
    EXPECT_THAT(next(), IsEmpty());
    for (int i = 1; i <= 3 * BulkReader::mostTries; ++i) {
        usb.endings.push_back({LIBUSB_TRANSFER_ERROR, {}});
        while (usb.haltsCleared < i)
            ASSERT_THAT(next(), IsEmpty());
        usb.deliver(packed(numbered(5)));
        while (next().empty())
            ASSERT_EQ(usb.haltsCleared, i);
    }
}

TEST_F(BulkReading, fewer_transfers_are_under_way_where_there_is_no_memory_for_more)
{
    usb.mostUnderWay = 5;
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_EQ(usb.underWay.size(), 5U);
    usb.deliver(packed(numbered(4)));
    EXPECT_EQ(next(), numbered(4));
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_EQ(usb.underWay.size(), 5U);
}

TEST_F(BulkReading, without_memory_for_any_transfer_it_waits_for_some)
{
    usb.mostUnderWay = 0;
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(next(), IsEmpty());
    usb.mostUnderWay = 1;
    EXPECT_THAT(next(), IsEmpty());
    usb.deliver(packed(numbered(4)));
    EXPECT_EQ(next(), numbered(4));
}

TEST_F(BulkReading, packets_that_tell_of_lost_bytes_are_counted)
{
    EXPECT_EQ(reader.losses(), 0U);
    EXPECT_THAT(next(), IsEmpty());
    Bytes bytes = packed(numbered(1100));
    bytes[packetSize + 1] |= 0x02;
    bytes[2 * packetSize + 1] |= 0x80;
    usb.deliver(bytes);
    EXPECT_EQ(next(), numbered(1100));
    EXPECT_EQ(reader.losses(), 2U);
}

TEST_F(BulkReading, ends_when_a_transfer_cannot_be_begun)
{
    usb.submitsLeft = 5;
    EXPECT_THAT(untilTheEnd(), IsEmpty());
    EXPECT_THAT(usb.underWay, IsEmpty());
}

TEST_F(BulkReading, ends_when_a_transfer_cannot_be_begun_again)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.submitsLeft = 0;
    usb.deliver(packed(numbered(4)));
    EXPECT_EQ(untilTheEnd(), numbered(4));
}

TEST_F(BulkReading, a_transfer_that_cannot_be_begun_is_no_unplug_unless_the_bridge_is_gone)
{
    usb.submitsLeft = 5;
    usb.submitResult = LIBUSB_ERROR_IO;
    EXPECT_THAT(untilTheEnd(), IsEmpty());
    EXPECT_THAT(reader.ending(), testing::HasSubstr("fail again and again"));
}

TEST_F(BulkReading, ends_when_events_cannot_be_handled)
{
    usb.handlingResult = LIBUSB_ERROR_IO;
    EXPECT_FALSE(reader.read(10ms));
}

TEST_F(BulkReading, ends_when_events_cannot_be_handled_while_it_waits_for_memory)
{
    usb.mostUnderWay = 0;
    EXPECT_THAT(next(), IsEmpty());
    usb.handlingResult = LIBUSB_ERROR_IO;
    EXPECT_FALSE(reader.read(10ms));
}

TEST_F(BulkReading, a_bridge_is_not_gone_while_transfers_wait_or_end_well)
{
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_FALSE(reader.isGone());
    usb.deliver(packed(numbered(3)));
    EXPECT_FALSE(reader.isGone());
    EXPECT_EQ(next(), numbered(3));
}

TEST_F(BulkReading, a_stop_drops_what_ended_and_waits_for_the_rest)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.deliver(packed(numbered(4)));
    libusb_handle_events_timeout_completed(nullptr, nullptr, nullptr);
    reader.stop();
    EXPECT_THAT(usb.underWay, IsEmpty());
    EXPECT_THAT(next(), IsEmpty());
    usb.deliver(packed(numbered(6)));
    EXPECT_EQ(next(), numbered(6));
}

TEST_F(BulkReading, a_stop_before_the_first_read_is_harmless)
{
    reader.stop();
    EXPECT_THAT(usb.lengths, IsEmpty());
}

TEST_F(BulkReading, a_stop_does_not_wait_for_ever_and_what_is_given_back_later_is_freed_then)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.keepsCancelled = true;
    reader.stop();
    EXPECT_EQ(usb.underWay.size(), transferCount);
    EXPECT_EQ(usb.allocated, 2 * static_cast<int>(transferCount)) << "the system may still write to the old";

    expectToStreamOnWhenAllIsGivenBack();
}

TEST_F(BulkReading, a_stop_that_can_handle_no_events_waits_for_none)
{
    EXPECT_THAT(next(), IsEmpty());
    usb.handlingResult = LIBUSB_ERROR_IO;
    usb.timesHandled = 0;
    EXPECT_FALSE(reader.stop());
    EXPECT_EQ(usb.timesHandled, static_cast<int>(transferCount)) << "each was asked for once";
    usb.handlingResult = LIBUSB_SUCCESS;
    giveBackCancelled(); // late: each is freed then
    EXPECT_THAT(usb.underWay, IsEmpty());
}

TEST(BulkReadingWithoutMemory, begins_no_transfer_and_does_not_end)
{
    FakeLibusb &usb = FakeLibusb::instance() = {};
    usb.hasMemory = false;
    BulkReader reader({nullptr, nullptr, 0x81, packetSize});
    EXPECT_TRUE(reader.read(10ms));
    EXPECT_THAT(usb.lengths, IsEmpty());
}

TEST(BulkReadingAtTheEnd, all_transfers_are_given_back_and_freed)
{
    FakeLibusb &usb = FakeLibusb::instance() = {};
    {
        BulkReader reader({nullptr, nullptr, 0x81, packetSize});
        EXPECT_TRUE(reader.read(10ms));
        EXPECT_EQ(usb.underWay.size(), transferCount);
    }
    EXPECT_THAT(usb.underWay, IsEmpty());
    EXPECT_EQ(usb.allocated, 0);
}
