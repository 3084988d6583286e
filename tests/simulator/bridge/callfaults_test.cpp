#include "tests/simulator/bridge/faultycable.h"

#include <future>
#include <limits>
#include <thread>

using namespace std::chrono_literals;
using simulator::blockBytes;
using simulator::Bridge;
using simulator::DeviceRecord;
using simulator::Handle;
using simulator::Status;

namespace {

const QByteArray version = QByteArray::fromHex("0102034500");

/// A clock on which whoever waits stays until the test opens the gate, or until it is notified.
class GatedClock final : public simulator::Clock
{
public:
    [[nodiscard]] simulator::Nanoseconds now() const override { return m_isOpen ? 2000s : 1000s; }
    void wait(std::unique_lock<std::mutex> &lock, std::condition_variable &wake,
              simulator::Nanoseconds /*deadline*/) override
    {
        if (!m_waits.exchange(true))
            m_someoneWaits.set_value();
        wake.wait_for(lock, 1ms);
    }

    void open() { m_isOpen = true; }
    /// Returns when a call has begun to wait.
    void untilSomeoneWaits() { m_someoneWaits.get_future().wait(); }

private:
    std::atomic<bool> m_isOpen{false};
    std::atomic<bool> m_waits{false};
    std::promise<void> m_someoneWaits;
};

using SetUpCall = Status (*)(Bridge &, Handle);

struct NamedCall
{
    const char *name;
    SetUpCall call;
};

const std::vector<NamedCall> setUpCalls{{"ResetDevice",
                                         [](Bridge &bridge, Handle handle) {
                                             return bridge.resetDevice(handle);
                                         }},
                                        {"SetBitMode",
                                         [](Bridge &bridge, Handle handle) {
                                             return bridge.setBitMode(handle, 0xFF, 0x40);
                                         }},
                                        {"SetLatencyTimer",
                                         [](Bridge &bridge, Handle handle) {
                                             return bridge.setLatencyTimer(handle, 2);
                                         }},
                                        {"SetUSBParameters",
                                         [](Bridge &bridge, Handle handle) {
                                             return bridge.setUsbParameters(handle, 65536, 65536);
                                         }},
                                        {"SetFlowControl",
                                         [](Bridge &bridge, Handle handle) {
                                             return bridge.setFlowControl(handle, 0x0100, 0, 0);
                                         }},
                                        {"Purge",
                                         [](Bridge &bridge, Handle handle) {
                                             return bridge.purge(handle, 3);
                                         }},
                                        {"SetTimeouts",
                                         [](Bridge &bridge, Handle handle) {
                                             return bridge.setTimeouts(handle, 10, 10);
                                         }},
                                        {"Close", [](Bridge &bridge, Handle handle) {
                                             return bridge.close(handle);
                                         }}};

} // namespace

TEST(CallFaults, each_call_of_the_set_up_and_the_close_can_fail_alone)
{
    for (const NamedCall &failing : setUpCalls) {
        VirtualCable cable(QByteArray("[Faults]\nFailCalls=") + failing.name + '\n');
        ASSERT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::Ok);
        for (const NamedCall &each : setUpCalls)
            EXPECT_EQ(each.call(*cable.bridge, cable.handle),
                      each.name == failing.name ? Status::IoError : Status::Ok)
                << failing.name << ", " << each.name;
    }
}

TEST(CallFaults, several_calls_can_fail_so_many_times)
{
    FaultyCable cable("FailCalls=Purge, ResetDevice\nFailCallsCount=2\n");
    EXPECT_EQ(cable.bridge->purge(cable.handle, 3), Status::IoError);
    EXPECT_EQ(cable.bridge->resetDevice(cable.handle), Status::IoError);
    EXPECT_EQ(cable.bridge->purge(cable.handle, 3), Status::Ok);
}

TEST(CallFaults, a_failed_call_does_nothing)
{
    FaultyCable cable("FailCalls=Purge\n");
    cable.send(frame(2, 0xFA));
    EXPECT_EQ(cable.bridge->purge(cable.handle, 3), Status::IoError);
    EXPECT_EQ(cable.receive(5), version);
}

TEST(CallFaults, a_close_that_fails_leaves_the_device_open)
{
    VirtualCable cable("[Faults]\nFailCalls=Close\nFailCallsCount=1\n");
    cable.open();
    EXPECT_EQ(cable.bridge->close(cable.handle), Status::IoError);
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), version);
    Handle second = nullptr;
    EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &second), Status::DeviceNotOpened);
    EXPECT_EQ(cable.bridge->close(cable.handle), Status::Ok);
}

TEST(CallFaults, each_call_can_hang_and_then_does_its_work)
{
    for (const NamedCall &hanging : setUpCalls) {
        VirtualCable cable(QByteArray("[Faults]\nHangMs=700\nHangCalls=") + hanging.name + '\n');
        ASSERT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::Ok);
        for (const NamedCall &each : setUpCalls) {
            const auto before = cable.clock.now();
            EXPECT_EQ(each.call(*cable.bridge, cable.handle), Status::Ok);
            EXPECT_EQ(cable.clock.now() - before, each.name == hanging.name ? 700ms : 0ms)
                << hanging.name << ", " << each.name;
        }
    }
}

TEST(CallFaults, opening_looking_reading_and_writing_can_hang_too)
{
    VirtualCable cable("[Faults]\nHangMs=700\nHangCalls=OpenEx,GetStatus,Read,Write\n");
    auto before = cable.clock.now();
    const auto took = [&] {
        return cable.clock.now() - std::exchange(before, cable.clock.now());
    };
    cable.open();
    EXPECT_EQ(took(), 700ms);
    cable.send(frame(2, 0xFA));
    EXPECT_EQ(took(), 700ms);
    cable.clock.advance(2ms);
    EXPECT_EQ(took(), 2ms);
    EXPECT_EQ(cable.waiting(), 5U);
    EXPECT_EQ(took(), 700ms);
    EXPECT_EQ(cable.receive(5), version);
    EXPECT_EQ(took(), 700ms);
}

TEST(CallFaults, so_many_calls_hang_for_five_seconds_when_nothing_else_is_said)
{
    VirtualCable cable("[Faults]\nHangCalls=Write\nHangCallsCount=1\n");
    cable.open();
    const auto before = cable.clock.now();
    cable.send(frame(2, 0xFA));
    EXPECT_EQ(cable.clock.now() - before, 5s);
    cable.send(frame(2, 0xFA));
    EXPECT_EQ(cable.clock.now() - before, 5s);
}

TEST(CallFaults, a_transfer_hangs_from_the_byte_of_the_stream_that_was_asked_for)
{
    FaultyCable cable("FaultsFromByte=131072\nHangCalls=Write\n");
    cable.start();
    auto before = cable.clock.now();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    EXPECT_EQ(cable.clock.now() - before, 0s);
    EXPECT_EQ(cable.block(1).size(), blockBytes);
    EXPECT_EQ(cable.clock.now() - before, 5s);
}

TEST(CallFaults, closing_a_lost_handle_can_hang_too)
{
    VirtualCable cable;
    cable.open();
    cable.change("Attached=false\n[Faults]\nHangCalls=Close\n");
    const auto before = cable.clock.now();
    EXPECT_EQ(cable.bridge->close(cable.handle), Status::Ok);
    EXPECT_EQ(cable.clock.now() - before, 5s);
}

TEST(CallFaults, a_call_that_hangs_holds_up_no_other)
{
    WorkingFolder folder;
    folder.write(QStringLiteral("virtual-detector.ini"),
                 "SerialNumbers=A,B\n[Faults]\nHangCalls=Close\nHangCallsCount=1\n");
    GatedClock clock;
    Bridge bridge(clock, folder.path());
    Handle first = nullptr;
    ASSERT_EQ(bridge.openEx("A", 1, &first), Status::Ok);
    std::thread closing([&] { EXPECT_EQ(bridge.close(first), Status::Ok); });
    clock.untilSomeoneWaits();
    quint32 n = 0;
    EXPECT_EQ(bridge.getStatus(first, &n, &n, &n), Status::Ok) << "it is not closed yet";
    Handle second = nullptr;
    EXPECT_EQ(bridge.openEx("B", 1, &second), Status::Ok);
    EXPECT_EQ(bridge.close(second), Status::Ok);
    clock.open();
    closing.join();
    EXPECT_EQ(bridge.getStatus(first, &n, &n, &n), Status::InvalidHandle);
}

TEST(CallFaults, a_call_that_hangs_fails_when_its_handle_is_gone_meanwhile)
{
    WorkingFolder folder;
    folder.write(QStringLiteral("virtual-detector.ini"), "[Faults]\nHangCalls=Purge\nFailCalls=Purge\n");
    GatedClock clock;
    Bridge bridge(clock, folder.path());
    Handle handle = nullptr;
    ASSERT_EQ(bridge.openEx("QV1K", 1, &handle), Status::Ok);
    std::thread purging([&] { EXPECT_EQ(bridge.purge(handle, 3), Status::InvalidHandle); });
    clock.untilSomeoneWaits();
    EXPECT_EQ(bridge.close(handle), Status::Ok);
    clock.open();
    purging.join();
}

TEST(CallFaults, a_call_that_hangs_ends_with_the_bridge)
{
    WorkingFolder folder;
    folder.write(QStringLiteral("virtual-detector.ini"), "[Faults]\nHangCalls=Write\n");
    GatedClock clock;
    auto bridge = std::make_unique<Bridge>(clock, folder.path());
    Handle handle = nullptr;
    ASSERT_EQ(bridge->openEx("QV1K", 1, &handle), Status::Ok);
    std::thread writing([&target = *bridge, handle] {
        quint32 written = 0;
        EXPECT_EQ(target.write(handle, "x", 1, &written), Status::Ok);
    });
    clock.untilSomeoneWaits();
    bridge.reset();
    writing.join();
}

TEST(ClaimedCounts, the_list_can_be_told_longer_or_shorter_than_it_is)
{
    for (const quint32 claimed : {0U, 7U, 4294967295U}) {
        VirtualCable cable("[Faults]\nClaimedDevices=" + QByteArray::number(claimed) + '\n');
        quint32 count = 1;
        EXPECT_EQ(cable.bridge->createDeviceInfoList(&count), Status::Ok);
        EXPECT_EQ(count, claimed);
    }
}

TEST(ClaimedCounts, the_records_are_as_many_as_there_are_and_as_there_is_room_for)
{
    VirtualCable cable("SerialNumbers=A,B,C\n[Faults]\nClaimedDevices=1000\n");
    quint32 count = 0;
    cable.bridge->createDeviceInfoList(&count);
    std::array<DeviceRecord, 4> records{};
    count = 2;
    EXPECT_EQ(cable.bridge->getDeviceInfoList(records.data(), &count), Status::Ok);
    EXPECT_EQ(count, 2U);
    EXPECT_STREQ(records[1].serialNumber, "B");
    EXPECT_STREQ(records[2].serialNumber, "") << "there was no room for it";
    count = 4;
    EXPECT_EQ(cable.bridge->getDeviceInfoList(records.data(), &count), Status::Ok);
    EXPECT_EQ(count, 3U);
    EXPECT_STREQ(records[2].serialNumber, "C");
}

TEST(ClaimedCounts, a_look_tells_of_more_bytes_than_wait)
{
    FaultyCable cable("ClaimedWaiting=1000\n");
    EXPECT_EQ(cable.waiting(), 1000U);
    cable.send(frame(2, 0xFA));
    cable.clock.advance(2ms);
    EXPECT_EQ(cable.waiting(), 1005U);
    EXPECT_EQ(cable.receive(1005), version);
}

TEST(ClaimedCounts, a_look_tells_of_no_more_bytes_than_fit_its_count)
{
    FaultyCable cable("ClaimedWaiting=99999999999\n");
    cable.send(frame(2, 0xFA));
    cable.clock.advance(2ms);
    EXPECT_EQ(cable.waiting(), std::numeric_limits<quint32>::max());
}

TEST(ClaimedCounts, a_read_tells_of_more_bytes_than_it_was_asked_for_and_writes_no_more)
{
    FaultyCable cable("ClaimedRead=4096\n");
    cable.send(frame(2, 0xFA));
    QByteArray buffer(8, '\x5A');
    quint32 count = 0;
    EXPECT_EQ(cable.bridge->read(cable.handle, buffer.data(), 3, &count), Status::Ok);
    EXPECT_EQ(count, 4099U);
    EXPECT_EQ(buffer, version.left(3) + QByteArray(5, '\x5A'));
}

TEST(ClaimedCounts, of_looks_and_reads_begin_at_the_byte_of_the_stream_that_was_asked_for)
{
    FaultyCable cable("FaultsFromByte=10\nClaimedRead=1\nClaimedWaiting=1\n");
    cable.start();
    cable.send(frame(0, 0));
    EXPECT_EQ(cable.waiting(), quint32{blockBytes});
    EXPECT_EQ(cable.receive(10).size(), 10);
    EXPECT_EQ(cable.waiting(), blockBytes - 10 + 1U);
    QByteArray buffer(10, '\0');
    quint32 count = 0;
    EXPECT_EQ(cable.bridge->read(cable.handle, buffer.data(), 10, &count), Status::Ok);
    EXPECT_EQ(count, 11U);
}
