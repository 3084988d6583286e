#include "tests/ftdi/bridge/bedtest.h"
#include "tests/ftdi/numbered.h"

using d2xx::Status;

using Provider = BedTest;

TEST_F(Provider, lists_a_bridge_that_is_plugged_in_with_its_texts)
{
    plugIn();
    const auto records = list();
    ASSERT_EQ(records.size(), 1U);
    const d2xx::DeviceRecord &record = records[0];
    EXPECT_EQ(d2xx::textOf(record.serialNumber), "QV1K");
    EXPECT_EQ(d2xx::textOf(record.description), "QV1K detector");
    EXPECT_EQ(record.id, 0x04036014U);
    EXPECT_EQ(record.flags, d2xx::flagHighSpeed);
}

TEST_F(Provider, lists_a_bridge_behind_a_hub_with_its_texts)
{
    bed.plugInHub(2);
    plugIn({.hub = 2});
    const auto records = list();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(d2xx::textOf(records[0].serialNumber), "QV1K");
    EXPECT_EQ(d2xx::textOf(records[0].description), "QV1K detector");
}

TEST_F(Provider, lists_each_channel_of_a_bridge_that_has_several_under_a_letter)
{
    plugIn({.serialNumber = "FT0123456789ABCD", .product = "Two", .productId = 0x6010});
    const auto records = list();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(d2xx::textOf(records[0].serialNumber), "FT0123456789ABA") << "the letter always has room";
    EXPECT_EQ(d2xx::textOf(records[1].serialNumber), "FT0123456789ABB");
    EXPECT_EQ(d2xx::textOf(records[0].description), "Two A");
    EXPECT_EQ(d2xx::textOf(records[1].description), "Two B");
    EXPECT_EQ(records[1].locationId, records[0].locationId + 1);
    EXPECT_EQ(records[0].id, 0x04036010U);
    EXPECT_EQ(open("FT0123456789ABA"), Status::Ok);
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Provider, lists_nothing_of_the_same_vendor_that_it_does_not_know)
{
    plugIn({.productId = 0x6001});
    std::uint32_t count = 99;
    EXPECT_EQ(f.createDeviceInfoList(&count), Status::Ok);
    EXPECT_EQ(count, 0U);
}

TEST_F(Provider, reads_what_is_on_the_lines_and_writes_to_them)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    const auto bytes = numbered(100'000);
    put(bytes);
    ASSERT_TRUE(waitForQueued(100'000));
    EXPECT_EQ(read(100'000), Status::Ok);
    EXPECT_EQ(received, bytes);

    std::uint32_t written = 0;
    EXPECT_EQ(f.write(handle, received.data(), 7, &written), Status::Ok);
    EXPECT_EQ(written, 7U);
    EXPECT_EQ(bridge->onChip([this](EmulatedChip &) { return lines->written(); }), numbered(7));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Provider, pulling_the_cable_is_an_io_error_and_plugging_in_again_helps)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    unplug();
    std::uint32_t bytes = 0;
    ASSERT_TRUE(QTest::qWaitFor([&] { return queued(bytes) == Status::IoError; }, patienceMs));
    EXPECT_EQ(f.close(handle), Status::Ok);

    plugIn();
    EXPECT_EQ(open(), Status::Ok);
    put({5});
    ASSERT_TRUE(waitForQueued(1));
    EXPECT_EQ(f.close(handle), Status::Ok);
}
