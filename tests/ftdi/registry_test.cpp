#include "ftdi/registry.h"

#include "tests/ftdi/fakeusb.h"
#include "tests/support/patience.h"

#include <gmock/gmock.h>

#include <QTest>

#include <array>
#include <future>

using d2xx::DeviceRecord;
using d2xx::Handle;
using d2xx::Status;
using ftdi::OpenDevice;
using ftdi::Registry;

namespace {

class Bridges : public testing::Test
{
protected:
    Status open(const char *serialNumber) { return registry.open(serialNumber, 1, &handle); }
    Status statusOf(Handle which)
    {
        return registry.onOpen(which, [](OpenDevice &device) { return device.status(); });
    }
    /// How many bytes wait for a read.
    std::uint32_t queued()
    {
        std::uint32_t rx = 0;
        std::uint32_t tx = 0;
        std::uint32_t events = 0;
        EXPECT_EQ(
            registry.onOpen(handle, [&](OpenDevice &device) { return device.queued(&rx, &tx, &events); }),
            Status::Ok);
        return rx;
    }
    /// Lists what is plugged in, three records at most.
    std::vector<DeviceRecord> list()
    {
        std::array<DeviceRecord, 3> records;
        std::uint32_t count = 0;
        EXPECT_EQ(registry.createDeviceInfoList(&count), Status::Ok);
        EXPECT_LE(count, records.size());
        EXPECT_EQ(registry.getDeviceInfoList(records.data(), &count), Status::Ok);
        return {records.begin(), records.begin() + count};
    }

    std::unique_ptr<FakeBus> owned = std::make_unique<FakeBus>();
    FakeBus &bus = *owned;
    Registry registry{std::move(owned)};
    Handle handle = nullptr;
};

} // namespace

TEST_F(Bridges, none_plugged_in_is_an_empty_list)
{
    std::uint32_t count = 99;
    EXPECT_EQ(registry.createDeviceInfoList(&count), Status::Ok);
    EXPECT_EQ(count, 0U);
}

TEST_F(Bridges, an_unusable_usb_is_told_from_an_empty_one)
{
    bus.isUsable = false;
    std::uint32_t count = 99;
    EXPECT_EQ(registry.createDeviceInfoList(&count), Status::OtherError);
    EXPECT_EQ(count, 99U);
}

TEST_F(Bridges, each_is_listed_with_what_is_known_of_it)
{
    bus.plugIn("FT7A3B9C");
    bus.plugIn("QV1K");
    const auto records = list();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_STREQ(records[0].serialNumber, "FT7A3B9C");
    EXPECT_STREQ(records[0].description, "Detector");
    EXPECT_EQ(records[0].flags, 2U);
    EXPECT_EQ(records[0].type, 8U);
    EXPECT_EQ(records[0].id, 0x04036014U);
    EXPECT_EQ(records[0].locationId, 1U);
    EXPECT_EQ(records[0].handle, nullptr);
    EXPECT_STREQ(records[1].serialNumber, "QV1K");
    bus.entries[0].info.isHighSpeed = false;
    EXPECT_EQ(list()[0].flags, 0U);
}

TEST_F(Bridges, texts_that_are_too_long_are_cut_and_still_end)
{
    bus.plugIn(std::string(40, 's'));
    bus.entries[0].info.description = std::string(100, 'd');
    const auto records = list();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].serialNumber, std::string(15, 's'));
    EXPECT_EQ(records[0].description, std::string(63, 'd'));
}

TEST_F(Bridges, an_open_one_is_marked_in_the_list)
{
    bus.plugIn("QV1K");
    ASSERT_EQ(open("QV1K"), Status::Ok);
    const auto records = list();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].flags, 3U);
    EXPECT_EQ(records[0].handle, handle);
}

TEST_F(Bridges, the_records_are_those_of_the_last_list_that_was_made)
{
    bus.plugIn("QV1K");
    std::uint32_t count = 99;
    DeviceRecord record;
    EXPECT_EQ(registry.getDeviceInfoList(&record, &count), Status::Ok);
    EXPECT_EQ(count, 0U);
}

TEST_F(Bridges, an_unknown_serial_number_is_not_found)
{
    bus.plugIn("QV1K");
    EXPECT_EQ(open("QV1"), Status::DeviceNotFound);
    EXPECT_EQ(handle, nullptr);
}

TEST_F(Bridges, one_that_another_program_holds_is_not_opened)
{
    bus.plugIn("QV1K");
    bus.isHeldElsewhere = true;
    EXPECT_EQ(open("QV1K"), Status::DeviceNotOpened);
    EXPECT_EQ(handle, nullptr);
}

TEST_F(Bridges, one_that_is_open_here_is_not_opened_again)
{
    bus.plugIn("QV1K");
    ASSERT_EQ(open("QV1K"), Status::Ok);
    const Handle first = handle;
    EXPECT_EQ(open("QV1K"), Status::DeviceNotOpened);
    EXPECT_EQ(handle, first);
    EXPECT_EQ(statusOf(first), Status::Ok);
}

TEST_F(Bridges, a_refusal_is_told_in_words_until_the_next_opening)
{
    EXPECT_EQ(registry.problem(nullptr), "");
    EXPECT_EQ(open("QV1K"), Status::DeviceNotFound);
    EXPECT_EQ(registry.problem(nullptr), "not there");
    bus.plugIn("QV1K");
    EXPECT_EQ(open("QV1K"), Status::Ok);
    EXPECT_EQ(registry.problem(nullptr), "");
    EXPECT_EQ(open("QV1K"), Status::DeviceNotOpened);
    EXPECT_EQ(registry.problem(nullptr), "The bridge is open in this program already.");
}

TEST_F(Bridges, why_an_open_one_is_gone_is_told_in_words)
{
    const auto chip = bus.plugIn("QV1K");
    ASSERT_EQ(open("QV1K"), Status::Ok);
    EXPECT_EQ(registry.problem(handle), "");
    chip->unplug();
    ASSERT_TRUE(QTest::qWaitFor([&] { return statusOf(handle) == Status::IoError; }, patienceMs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return registry.problem(handle) == "pulled out"; }, patienceMs));
    EXPECT_EQ(registry.close(handle), Status::Ok);
    EXPECT_EQ(registry.problem(handle), "");
}

TEST_F(Bridges, two_may_be_open_at_once)
{
    bus.plugIn("ONE");
    bus.plugIn("TWO");
    ASSERT_EQ(open("ONE"), Status::Ok);
    const Handle first = handle;
    ASSERT_EQ(open("TWO"), Status::Ok);
    EXPECT_NE(handle, first);
    EXPECT_EQ(registry.close(first), Status::Ok);
    EXPECT_EQ(statusOf(handle), Status::Ok);
}

TEST_F(Bridges, only_opening_by_serial_number_is_known)
{
    bus.plugIn("QV1K");
    EXPECT_EQ(registry.open("QV1K", 2, &handle), Status::InvalidParameter);
    EXPECT_EQ(registry.open(nullptr, 1, &handle), Status::InvalidParameter);
    EXPECT_EQ(registry.open("QV1K", 1, nullptr), Status::InvalidParameter);
    EXPECT_FALSE(bus.entries[0].chip->isOpen());
}

TEST_F(Bridges, null_pointers_are_refused)
{
    std::uint32_t count = 0;
    DeviceRecord record;
    EXPECT_EQ(registry.createDeviceInfoList(nullptr), Status::InvalidParameter);
    EXPECT_EQ(registry.getDeviceInfoList(nullptr, &count), Status::InvalidParameter);
    EXPECT_EQ(registry.getDeviceInfoList(&record, nullptr), Status::InvalidParameter);
}

TEST_F(Bridges, a_handle_that_was_closed_is_invalid_also_after_opening_again)
{
    bus.plugIn("QV1K");
    ASSERT_EQ(open("QV1K"), Status::Ok);
    const Handle stale = handle;
    EXPECT_EQ(registry.close(stale), Status::Ok);
    ASSERT_EQ(open("QV1K"), Status::Ok);
    EXPECT_NE(handle, stale);
    EXPECT_EQ(statusOf(stale), Status::InvalidHandle);
    EXPECT_EQ(registry.close(stale), Status::InvalidHandle);
    EXPECT_EQ(statusOf(handle), Status::Ok);
}

TEST_F(Bridges, handles_that_never_were_are_invalid)
{
    int elsewhere = 0;
    EXPECT_EQ(statusOf(nullptr), Status::InvalidHandle);
    EXPECT_EQ(statusOf(&elsewhere), Status::InvalidHandle);
    EXPECT_EQ(registry.close(nullptr), Status::InvalidHandle);
}

TEST_F(Bridges, closing_ends_a_read_in_another_thread)
{
    const auto chip = bus.plugIn("QV1K");
    ASSERT_EQ(open("QV1K"), Status::Ok);
    chip->deliver({1});
    ASSERT_TRUE(QTest::qWaitFor([this] { return queued() == 1; }, patienceMs));
    auto reading = std::async(std::launch::async, [this] {
        std::array<std::uint8_t, 100> buffer;
        std::uint32_t count = 0;
        return registry.onOpen(
            handle, [&](OpenDevice &device) { return device.read(buffer.data(), buffer.size(), &count); });
    });
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return queued() == 0; }, patienceMs)); // taken: it waits for the rest
    EXPECT_EQ(registry.close(handle), Status::Ok);
    EXPECT_EQ(reading.get(), Status::InvalidHandle);
    EXPECT_FALSE(chip->isOpen());
}

TEST_F(Bridges, one_that_was_plugged_in_again_can_be_opened_while_the_lost_handle_is_not_closed_yet)
{
    const auto chip = bus.plugIn("QV1K");
    ASSERT_EQ(open("QV1K"), Status::Ok);
    const Handle lost = handle;
    chip->unplug();
    ASSERT_TRUE(QTest::qWaitFor([&] { return statusOf(lost) == Status::IoError; }, patienceMs));

    bus.entries.clear();
    bus.plugIn("QV1K");
    EXPECT_EQ(open("QV1K"), Status::Ok);
    EXPECT_EQ(statusOf(handle), Status::Ok);
    EXPECT_EQ(registry.close(lost), Status::Ok);
    EXPECT_EQ(statusOf(handle), Status::Ok);
}

TEST_F(Bridges, of_two_threads_that_open_the_same_one_only_one_gets_it)
{
    bus.plugIn("QV1K");
    const auto openOnce = [this] {
        Handle mine = nullptr;
        return registry.open("QV1K", 1, &mine);
    };
    auto one = std::async(std::launch::async, openOnce);
    auto other = std::async(std::launch::async, openOnce);
    const std::array results{one.get(), other.get()};
    EXPECT_THAT(results, testing::UnorderedElementsAre(Status::Ok, Status::DeviceNotOpened));
}

TEST(BridgesAtTheEnd, those_that_were_left_open_are_closed)
{
    auto bus = std::make_unique<FakeBus>();
    const auto chip = bus->plugIn("QV1K");
    {
        Registry registry(std::move(bus));
        Handle handle = nullptr;
        ASSERT_EQ(registry.open("QV1K", 1, &handle), Status::Ok);
        EXPECT_TRUE(chip->isOpen());
    }
    EXPECT_FALSE(chip->isOpen());
}
