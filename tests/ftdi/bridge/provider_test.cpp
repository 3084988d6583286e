#include "tests/ftdi/bridge/bedtest.h"
#include "tests/ftdi/numbered.h"

using d2xx::Status;

using Provider = BedTest;

TEST_F(Provider, lists_a_bridge_that_is_plugged_in_with_its_texts)
{
    plugIn();
    std::uint32_t count = 0;
    ASSERT_EQ(f.createDeviceInfoList(&count), Status::Ok);
    ASSERT_EQ(count, 1U);
    d2xx::DeviceRecord record{};
    ASSERT_EQ(f.getDeviceInfoList(&record, &count), Status::Ok);
    EXPECT_EQ(d2xx::textOf(record.serialNumber), "QV1K");
    EXPECT_EQ(d2xx::textOf(record.description), "QV1K detector");
    EXPECT_EQ(record.id, 0x04036014U);
    EXPECT_EQ(record.flags, d2xx::flagHighSpeed);
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
