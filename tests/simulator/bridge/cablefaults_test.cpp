#include "tests/simulator/bridge/faultycable.h"
#include "tests/simulator/bridge/statusofcalls.h"
#include "tests/simulator/bridge/toldevents.h"

using namespace std::chrono_literals;
using simulator::blockBytes;
using simulator::Handle;
using simulator::Status;

namespace {

const QStringList both{QStringLiteral("A"), QStringLiteral("B")};

/// What all calls on the handle come to: alike, or the test fails.
Status commonStatus(const VirtualCable &cable, Handle handle)
{
    const std::vector<Status> all = statusOfAllCalls(*cable.bridge, handle);
    for (const Status status : all)
        EXPECT_EQ(status, all.front());
    return all.front();
}

} // namespace

TEST(Unplugging, concerns_only_the_detectors_that_are_named)
{
    VirtualCable cable("SerialNumbers=A,B\n");
    cable.open("B");
    const Handle staying = cable.handle;
    cable.open("A");
    EXPECT_EQ(cable.serialNumbers(), both);
    cable.change("SerialNumbers=A,B\nUnplugged=A\n");
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("B")});
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::IoError);
    EXPECT_EQ(commonStatus(cable, staying), Status::Ok);
    cable.change("SerialNumbers=A,B\n");
    EXPECT_EQ(cable.serialNumbers(), both);
}

TEST(Unplugging, at_a_byte_concerns_only_the_detector_that_streams)
{
    VirtualCable cable("SerialNumbers=A,B\nPacing=none\n[Faults]\nUnplugAtByte=10\n");
    cable.open("B");
    const Handle staying = cable.handle;
    cable.open("A");
    cable.start();
    EXPECT_EQ(cable.exchange(frame(0, 0), blockBytes).size(), 10);
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("B")});
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::IoError);
    EXPECT_EQ(commonStatus(cable, staying), Status::Ok);
}

TEST(Replugging, follows_by_itself_under_the_same_number_and_the_old_handle_stays_dead)
{
    FaultyCable cable("UnplugAtByte=10\nReplugAfterMs=5\n");
    const Handle lost = cable.handle;
    cable.start();
    EXPECT_EQ(cable.block(0).size(), 10);
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
    cable.clock.advance(5ms - 1ns);
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
    cable.clock.advance(1ns);
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("QV1K")});
    EXPECT_EQ(commonStatus(cable, lost), Status::IoError);
    cable.open();
    cable.start();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    EXPECT_EQ(commonStatus(cable, lost), Status::IoError) << "for ever";
}

TEST(Replugging, follows_the_settings_that_unplug_too_each_time_they_are_written)
{
    VirtualCable cable("[Faults]\nReplugAfterMs=5\n");
    for (const char *again : {"", ";\n"}) {
        cable.open();
        cable.change(QByteArray("Unplugged=QV1K\n[Faults]\nReplugAfterMs=5\n") + again);
        EXPECT_EQ(commonStatus(cable, cable.handle), Status::IoError);
        EXPECT_TRUE(cable.serialNumbers().isEmpty());
        cable.clock.advance(5ms);
        EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("QV1K")});
    }
}

TEST(Replugging, is_told_when_no_call_is_made)
{
    VirtualCable cable("Unplugged=QV1K\n[Faults]\nReplugAfterMs=5\n");
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.clock.advance(5ms);
    EXPECT_TRUE(events.become("+"));
}

TEST(Replugging, does_not_follow_when_the_detector_is_taken_from_the_settings)
{
    VirtualCable cable("SerialNumbers=A,B\nUnplugged=A\n[Faults]\nReplugAfterMs=1000\n");
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("B")});
    cable.change("SerialNumbers=B\n[Faults]\nReplugAfterMs=1000\n");
    cable.clock.advance(10s);
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("B")});
    EXPECT_EQ(cable.bridge->openEx("A", 1, &cable.handle), Status::DeviceNotFound);
    cable.change("Attached=false\nSerialNumbers=B\n[Faults]\nReplugAfterMs=1000\n");
    cable.clock.advance(10s);
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
}

TEST(RemovalMessages, can_come_late)
{
    VirtualCable cable("SerialNumbers=A\n");
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.open("A");
    cable.change("SerialNumbers=A,B\nUnplugged=A\n[Faults]\nRemovalMessage=late\nRemovalDelayMs=3000\n");
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::IoError);
    EXPECT_TRUE(events.become("+")) << "the arrival of the other is told before";
    cable.clock.advance(3s - 1ns);
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("B")});
    cable.clock.advance(1ns);
    EXPECT_TRUE(events.become("+-"));
}

TEST(RemovalMessages, can_come_early_while_the_handle_lives_and_the_detector_is_listed)
{
    VirtualCable cable;
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.open();
    cable.change("Unplugged=QV1K\n[Faults]\nRemovalMessage=early\nRemovalDelayMs=3000\n");
    EXPECT_TRUE(events.become("-"));
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5).size(), 5);
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("QV1K")});
    cable.clock.advance(3s);
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::IoError);
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
    cable.change("Attached=true\n");
    EXPECT_TRUE(events.become("-+")) << "it was told once";
}

TEST(RemovalMessages, told_early_are_neither_told_again_nor_put_off_by_the_same_settings)
{
    const QByteArray early("Unplugged=QV1K\n[Faults]\nRemovalMessage=early\nRemovalDelayMs=3000\n");
    VirtualCable cable;
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.open();
    cable.change(early);
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::Ok);
    cable.clock.advance(2s);
    cable.change(early + ";\n");
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::Ok);
    cable.clock.advance(1s);
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::IoError);
    cable.change("Attached=true\n");
    EXPECT_FALSE(cable.serialNumbers().isEmpty());
    EXPECT_TRUE(events.become("-+"));
}

TEST(RemovalMessages, told_early_at_a_byte_leave_the_stream_until_the_cable_is_pulled)
{
    for (const char *at : {"0", "10"}) {
        FaultyCable cable(QByteArray("RemovalMessage=early\nUnplugAtByte=") + at + '\n');
        ToldEvents events;
        cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
        cable.start();
        EXPECT_EQ(cable.block(0).size(), blockBytes);
        EXPECT_TRUE(events.become("-"));
        EXPECT_EQ(cable.block(1).size(), blockBytes);
        cable.clock.advance(1s);
        EXPECT_EQ(commonStatus(cable, cable.handle), Status::IoError);
    }
}

TEST(RemovalMessages, told_early_are_taken_back_by_settings_that_unplug_nothing)
{
    VirtualCable cable;
    cable.open();
    cable.change("Unplugged=QV1K\n[Faults]\nRemovalMessage=early\n");
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("QV1K")});
    cable.change("Attached=true\n");
    cable.clock.advance(10s);
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::Ok);
}

TEST(RemovalMessages, can_be_missing)
{
    VirtualCable cable;
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.open();
    cable.change("Unplugged=QV1K\n[Faults]\nRemovalMessage=never\n");
    EXPECT_EQ(commonStatus(cable, cable.handle), Status::IoError);
    cable.clock.advance(1h);
    cable.change("Attached=true\n");
    EXPECT_TRUE(events.become("+"));
}

TEST(KeepsStreaming, the_next_opener_finds_a_detector_that_answers_nothing_but_a_halt)
{
    FaultyCable cable("KeepsStreaming=true\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    cable.bridge->close(cable.handle);
    cable.open();
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), QByteArray());
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6), QByteArray());
    cable.halt();
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5).size(), 5);
}

TEST(KeepsStreaming, what_was_left_of_a_block_arrives_at_the_next_opener_before_the_echo_of_the_halt)
{
    FaultyCable cable("KeepsStreaming=true\n");
    cable.start();
    cable.send(frame(0, 0));
    EXPECT_EQ(cable.receive(1000).size(), 1000);
    cable.bridge->close(cable.handle);
    cable.open();
    EXPECT_EQ(cable.waiting(), blockBytes - 1000U);
    const QByteArray bytes = cable.exchange(frame(3, 0xA1), blockBytes - 1000 + 6);
    EXPECT_EQ(bytes.size(), blockBytes - 1000 + 6);
    EXPECT_EQ(bytes.right(6), hex("FF BB 03 A1 0D EB"));
}

TEST(KeepsStreaming, what_has_left_the_detector_can_be_purged_and_what_is_due_later_comes_after_the_purge)
{
    VirtualCable cable("[Faults]\nKeepsStreaming=true\n");
    cable.open();
    cable.start();
    cable.send(frame(0, 0)); // due in a frame period
    cable.bridge->close(cable.handle);
    cable.open();
    cable.bridge->purge(cable.handle, 3);
    EXPECT_EQ(cable.waiting(), 0U);
    cable.clock.advance(1s);
    EXPECT_EQ(cable.waiting(), quint32{blockBytes});
    cable.bridge->purge(cable.handle, 3);
    EXPECT_EQ(cable.waiting(), 0U);
}

TEST(KeepsStreaming, a_detector_whose_cable_was_pulled_streams_on_too_without_what_was_in_the_bridge)
{
    FaultyCable cable("KeepsStreaming=true\nUnplugAtByte=10\nReplugAfterMs=5\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), 10);
    cable.clock.advance(5ms);
    cable.open();
    EXPECT_EQ(cable.waiting(), 0U);
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6), QByteArray());
    EXPECT_EQ(cable.block(1).size(), blockBytes) << "the request for the next block is answered";
    cable.halt();
}

TEST(KeepsStreaming, the_bridge_itself_begins_anew)
{
    FaultyCable cable("KeepsStreaming=true\nFaultsFromByte=10\nFailStatus=-1\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), 10);
    EXPECT_EQ(cable.look(), Status::IoError);
    cable.bridge->close(cable.handle);
    ASSERT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::Ok);
    EXPECT_EQ(cable.look(), Status::Ok) << "the bytes are counted from 0";
    cable.bridge->purge(cable.handle, 3);
    cable.send(frame(3, 0xA1));
    cable.clock.advance(16ms - 1ns);
    EXPECT_EQ(cable.waiting(), 0U) << "the latency is the usual one";
    cable.clock.advance(1ns);
    EXPECT_EQ(cable.waiting(), 6U);
}

TEST(KeepsStreaming, a_detector_that_was_halted_has_nothing_to_keep)
{
    FaultyCable cable("KeepsStreaming=true\n");
    cable.start();
    cable.halt();
    cable.send(frame(2, 0xFA));
    cable.bridge->close(cable.handle);
    cable.open();
    EXPECT_EQ(cable.waiting(), 0U);
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5).size(), 5);
}
