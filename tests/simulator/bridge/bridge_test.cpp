#include "tests/simulator/bridge/statusofcalls.h"
#include "tests/simulator/bridge/virtualcable.h"

#include <array>

using simulator::DeviceRecord;
using simulator::Handle;
using simulator::Status;

TEST(Bridge, without_settings_there_is_one_detector)
{
    VirtualCable cable;
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("QV1K")});
}

TEST(Bridge, all_serial_numbers_are_listed_in_their_order)
{
    VirtualCable cable("SerialNumbers=FT7A3B9C, QV1K,A1\n");
    EXPECT_EQ(cable.serialNumbers().join(u'|'), QStringLiteral("FT7A3B9C|QV1K|A1"));
}

TEST(Bridge, an_unplugged_detector_is_not_listed_and_not_found)
{
    VirtualCable cable("Attached=false\n");
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
    EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::DeviceNotFound);
}

TEST(Bridge, the_record_tells_whether_the_device_is_open)
{
    VirtualCable cable;
    quint32 count = 0;
    DeviceRecord record{};
    cable.bridge->createDeviceInfoList(&count);
    cable.bridge->getDeviceInfoList(&record, &count);
    EXPECT_EQ(record.flags & 1U, 0U);
    EXPECT_EQ(record.handle, nullptr);
    cable.open();
    cable.bridge->createDeviceInfoList(&count);
    cable.bridge->getDeviceInfoList(&record, &count);
    EXPECT_EQ(record.flags & 1U, 1U);
    EXPECT_EQ(record.handle, cable.handle);
    EXPECT_STREQ(record.description, "QV1K virtual detector");
}

TEST(Bridge, the_records_are_those_that_were_counted)
{
    VirtualCable cable;
    quint32 count = 0;
    cable.bridge->createDeviceInfoList(&count);
    cable.change("SerialNumbers=A,B,C\n");
    std::array<DeviceRecord, 3> records{};
    EXPECT_EQ(cable.bridge->getDeviceInfoList(records.data(), &count), Status::Ok);
    EXPECT_EQ(count, 1U);
}

TEST(Bridge, an_unknown_serial_number_is_not_found)
{
    VirtualCable cable;
    EXPECT_EQ(cable.bridge->openEx("QV1L", 1, &cable.handle), Status::DeviceNotFound);
    EXPECT_EQ(cable.handle, nullptr);
}

TEST(Bridge, a_second_open_of_the_same_device_fails_until_it_is_closed)
{
    VirtualCable cable;
    cable.open();
    Handle second = nullptr;
    EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &second), Status::DeviceNotOpened);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(cable.bridge->close(cable.handle), Status::Ok);
    EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &second), Status::Ok);
}

TEST(Bridge, two_devices_can_be_open_and_do_not_mix_their_replies)
{
    VirtualCable cable("SerialNumbers=A,B\n");
    cable.open("A");
    const Handle first = cable.handle;
    cable.open("B");
    const Handle second = cable.handle;
    cable.send(frame(2, 0xFA));
    cable.handle = first;
    EXPECT_EQ(cable.receive(5), QByteArray());
    cable.handle = second;
    EXPECT_EQ(cable.receive(5).size(), 5);
}

TEST(Bridge, a_closed_handle_is_invalid_and_never_comes_again)
{
    VirtualCable cable;
    cable.open();
    const Handle old = cable.handle;
    EXPECT_EQ(cable.bridge->close(old), Status::Ok);
    EXPECT_EQ(cable.bridge->close(old), Status::InvalidHandle);
    cable.open();
    EXPECT_NE(cable.handle, old);
    for (const Status status : statusOfAllCalls(*cable.bridge, old))
        EXPECT_EQ(status, Status::InvalidHandle);
}

TEST(Bridge, null_and_made_up_handles_are_invalid)
{
    VirtualCable cable;
    int wild = 0;
    for (const Handle handle : {Handle{nullptr}, Handle{&wild}, Handle{&cable}}) {
        for (const Status status : statusOfAllCalls(*cable.bridge, handle))
            EXPECT_EQ(status, Status::InvalidHandle);
        EXPECT_EQ(cable.bridge->close(handle), Status::InvalidHandle);
    }
}

TEST(Bridge, an_open_handle_takes_every_call_of_the_set_up)
{
    VirtualCable cable;
    cable.open();
    for (const Status status : statusOfAllCalls(*cable.bridge, cable.handle))
        EXPECT_EQ(status, Status::Ok);
}

TEST(Bridge, null_pointers_are_invalid_parameters)
{
    VirtualCable cable;
    cable.open();
    simulator::Bridge &bridge = *cable.bridge;
    quint32 n = 0;
    DeviceRecord record{};
    char byte = 0;
    EXPECT_EQ(bridge.createDeviceInfoList(nullptr), Status::InvalidParameter);
    EXPECT_EQ(bridge.getDeviceInfoList(nullptr, &n), Status::InvalidParameter);
    EXPECT_EQ(bridge.getDeviceInfoList(&record, nullptr), Status::InvalidParameter);
    EXPECT_EQ(bridge.openEx(nullptr, 1, &cable.handle), Status::InvalidParameter);
    EXPECT_EQ(bridge.openEx("QV1K", 1, nullptr), Status::InvalidParameter);
    EXPECT_EQ(bridge.getStatus(cable.handle, nullptr, &n, &n), Status::InvalidParameter);
    EXPECT_EQ(bridge.getStatus(cable.handle, &n, nullptr, &n), Status::InvalidParameter);
    EXPECT_EQ(bridge.getStatus(cable.handle, &n, &n, nullptr), Status::InvalidParameter);
    EXPECT_EQ(bridge.read(cable.handle, nullptr, 1, &n), Status::InvalidParameter);
    EXPECT_EQ(bridge.read(cable.handle, &byte, 1, nullptr), Status::InvalidParameter);
    EXPECT_EQ(bridge.write(cable.handle, nullptr, 1, &n), Status::InvalidParameter);
    EXPECT_EQ(bridge.write(cable.handle, &byte, 1, nullptr), Status::InvalidParameter);
}

TEST(Bridge, values_that_the_bridge_does_not_know_are_invalid_parameters)
{
    VirtualCable cable;
    cable.open();
    simulator::Bridge &bridge = *cable.bridge;
    EXPECT_EQ(bridge.openEx("QV1K", 2, &cable.handle), Status::InvalidParameter) << "by description";
    EXPECT_EQ(bridge.setBitMode(cable.handle, 0xFF, 0x03), Status::InvalidParameter);
    EXPECT_EQ(bridge.setLatencyTimer(cable.handle, 1), Status::InvalidParameter);
    EXPECT_EQ(bridge.setUsbParameters(cable.handle, 65, 64), Status::InvalidParameter);
    EXPECT_EQ(bridge.setUsbParameters(cable.handle, 64, 131072), Status::InvalidParameter);
    EXPECT_EQ(bridge.setFlowControl(cable.handle, 0x0300, 0, 0), Status::InvalidParameter);
    EXPECT_EQ(bridge.purge(cable.handle, 0), Status::InvalidParameter);
    EXPECT_EQ(bridge.purge(cable.handle, 4), Status::InvalidParameter);
}
