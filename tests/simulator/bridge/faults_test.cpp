#include "tests/simulator/bridge/faultycable.h"

using namespace std::chrono_literals;
using simulator::blockBytes;
using simulator::Status;

TEST(Faults, a_late_reply_leaves_after_its_delay)
{
    FaultyCable cable("ReplyDelayMs=3000\n");
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), QByteArray());
    cable.clock.advance(2991ms); // 10 ms of reading, 2 ms of latency
    EXPECT_EQ(cable.waiting(), 0U);
    cable.clock.advance(1ms);
    EXPECT_EQ(cable.receive(5), versionReply);
}

TEST(Faults, a_reply_waits_behind_a_late_one)
{
    FaultyCable cable("ReplyFaultCommand=0210\nReplyDelayMs=3000\n");
    cable.send(frame(2, 0x10) + frame(2, 0xFA));
    cable.clock.advance(2s);
    EXPECT_EQ(cable.waiting(), 0U);
    cable.clock.advance(2s);
    EXPECT_EQ(cable.waiting(), 11U);
}

TEST(Faults, a_purge_leaves_the_reply_that_the_detector_has_not_sent_yet)
{
    FaultyCable cable("ReplyDelayMs=3000\n");
    cable.send(frame(2, 0xFA));
    cable.bridge->purge(cable.handle, 3);
    cable.clock.advance(4s);
    EXPECT_EQ(cable.receive(5), versionReply);
}

TEST(Faults, a_short_reply_lacks_its_last_bytes)
{
    FaultyCable cable("ShortReply=2\n");
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), versionReply.left(3));
}

TEST(Faults, a_reply_cut_by_more_than_it_has_is_empty)
{
    FaultyCable cable("ShortReply=9\n");
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), QByteArray());
    EXPECT_EQ(cable.status, Status::Ok);
}

TEST(Faults, a_long_reply_has_zeros_at_its_end)
{
    FaultyCable cable("LongReply=2\n");
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 7), versionReply + QByteArray(2, '\0'));
}

TEST(Faults, a_corrupt_reply_has_every_byte_inverted)
{
    FaultyCable cable("CorruptReply=true\n");
    EXPECT_EQ(cable.exchange(frame(3, 0xA1), 6), hex("00 44 FC 5E F2 14"));
}

TEST(Faults, a_missing_reply_does_not_come_and_its_command_is_carried_out)
{
    FaultyCable cable("MissingReply=true\n");
    EXPECT_EQ(cable.exchange(frame(3, 0xA0), 6), QByteArray());
    EXPECT_EQ(cable.block(0).size(), blockBytes);
}

TEST(Faults, reply_faults_can_be_limited_to_one_command)
{
    FaultyCable cable("ReplyFaultCommand=0110\nMissingReply=true\n");
    EXPECT_EQ(cable.exchange(parameterFrame(0x10, {}), 6), QByteArray());
    EXPECT_EQ(cable.exchange(parameterFrame(0x02, {}), 6), hex("FF BB 01 02 0D EB"));
    EXPECT_EQ(cable.exchange(frame(2, 0x10), 6).size(), 6);
}

TEST(Faults, reply_faults_can_be_limited_to_a_number_of_replies)
{
    FaultyCable cable("ReplyFaultCommand=02FA\nReplyFaultCount=2\nMissingReply=true\n");
    EXPECT_EQ(cable.exchange(frame(2, 0x10), 6).size(), 6) << "another command does not count";
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), QByteArray());
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), QByteArray());
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), versionReply);
}

TEST(Faults, reply_faults_can_be_limited_to_none_and_last_for_ever)
{
    FaultyCable none("ReplyFaultCount=0\nMissingReply=true\n");
    EXPECT_EQ(none.exchange(frame(2, 0xFA), 5), versionReply);
    FaultyCable all("ReplyFaultCount=-1\nMissingReply=true\n");
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(all.exchange(frame(2, 0xFA), 5), QByteArray());
}

TEST(Faults, the_detector_is_not_ready_for_so_many_queries)
{
    FaultyCable cable("NotReadyQueries=2\n");
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6), hex("FF BB 03 AA 00 EB"));
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6), hex("FF BB 03 AA 00 EB"));
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6), hex("FF BB 03 AA 01 EB"));
}

TEST(Faults, the_detector_can_be_not_ready_for_ever)
{
    FaultyCable cable("NotReadyQueries=-1\n");
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6), hex("FF BB 03 AA 00 EB"));
}

TEST(Faults, so_many_opens_fail_with_the_status_that_was_asked_for)
{
    VirtualCable cable("[Faults]\nFailOpens=2\nOpenStatus=18\n");
    EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::OtherError);
    EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::OtherError);
    EXPECT_EQ(cable.handle, nullptr);
    EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::Ok);
}

TEST(Faults, an_open_fails_with_device_not_opened_when_no_status_is_given)
{
    VirtualCable cable("[Faults]\nFailOpens=1\n");
    EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::DeviceNotOpened);
}

TEST(Faults, opens_can_fail_for_ever)
{
    VirtualCable cable("[Faults]\nFailOpens=-1\n");
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(cable.bridge->openEx("QV1K", 1, &cable.handle), Status::DeviceNotOpened);
}

TEST(Faults, the_stream_stalls_after_so_many_bytes_and_can_be_halted)
{
    FaultyCable cable("StallAfterBytes=200000\n");
    for (int acquisition = 0; acquisition < 2; ++acquisition) {
        cable.start();
        EXPECT_EQ(cable.block(0).size(), blockBytes);
        EXPECT_EQ(cable.block(1).size(), 200000 - blockBytes);
        EXPECT_EQ(cable.block(2).size(), 0);
        cable.halt();
    }
}

TEST(Faults, a_stall_after_no_byte_sends_none)
{
    FaultyCable cable("StallAfterBytes=0\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), 0);
    cable.halt();
}

TEST(Faults, a_torn_block_loses_its_end_once)
{
    FaultyCable cable("TornBlockAt=33\nTornBlockBytes=1000\n");
    cable.start();
    cable.receiveFrame();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    EXPECT_EQ(cable.block(1).size(), blockBytes - 1000);
    EXPECT_EQ(cable.block(2).size(), blockBytes);
    cable.halt();
    cable.start();
    cable.receiveFrame();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    EXPECT_EQ(cable.block(1).size(), blockBytes);
}

TEST(Faults, a_torn_block_loses_one_packet_when_nothing_else_is_said)
{
    FaultyCable cable("TornBlockAt=0\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), blockBytes - 512);
}

TEST(Faults, a_block_can_be_sent_twice)
{
    FaultyCable cable("DoubledBlockAt=1\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    const QByteArray twice = cable.exchange(frame(0, 1), 3 * blockBytes);
    ASSERT_EQ(twice.size(), 2 * blockBytes);
    EXPECT_TRUE(twice.left(blockBytes) == twice.right(blockBytes));
    EXPECT_EQ(cable.block(2).size(), blockBytes);
}

TEST(Faults, the_cable_is_pulled_at_the_byte_that_was_asked_for)
{
    FaultyCable cable("UnplugAtByte=200001\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    EXPECT_EQ(cable.block(1).size(), 200001 - blockBytes);
    EXPECT_EQ(cable.status, Status::Ok);
    EXPECT_EQ(cable.receive(1), QByteArray());
    EXPECT_EQ(cable.status, Status::IoError);
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
}

TEST(Faults, the_cable_can_be_pulled_before_the_first_image_byte)
{
    FaultyCable cable("UnplugAtByte=0\n");
    cable.start();
    EXPECT_EQ(cable.block(0), QByteArray());
    EXPECT_EQ(cable.status, Status::IoError);
}

TEST(Faults, a_pulled_cable_is_plugged_in_again_when_the_file_is_written)
{
    FaultyCable cable("UnplugAtByte=10\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), 10);
    cable.clock.advance(10s);
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
    cable.change("Pacing=none\n");
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("QV1K")});
    cable.bridge->close(cable.handle);
    cable.open();
    cable.start();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
}

TEST(Faults, reading_the_file_again_renews_the_counts)
{
    FaultyCable cable("NotReadyQueries=1\n");
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6).at(4), '\0');
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6).at(4), '\1');
    cable.change("[Faults]\nNotReadyQueries=1 \n;again\n");
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6).at(4), '\0');
    EXPECT_EQ(cable.exchange(frame(3, 0xAA), 6).at(4), '\1');
}
