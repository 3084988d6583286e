#include "tests/simulator/bridge/faultycable.h"

using namespace std::chrono_literals;
using simulator::blockBytes;
using simulator::Status;

namespace {

constexpr int often = 100; // stands for ever

} // namespace

TEST(TransferFaults, so_many_looks_at_the_waiting_bytes_fail)
{
    FaultyCable cable("FailStatus=2\n");
    EXPECT_EQ(cable.look(), Status::IoError);
    EXPECT_EQ(cable.look(), Status::IoError);
    EXPECT_EQ(cable.look(), Status::Ok);
}

TEST(TransferFaults, looks_reads_and_writes_can_fail_for_ever_until_the_file_is_written)
{
    FaultyCable cable("FailStatus=-1\nFailReads=-1\nFailWrites=-1\n");
    for (int i = 0; i < often; ++i) {
        EXPECT_EQ(cable.look(), Status::IoError);
        EXPECT_EQ(cable.send(frame(2, 0xFA)), Status::IoError);
        EXPECT_EQ(cable.receive(5), QByteArray());
        EXPECT_EQ(cable.status, Status::IoError);
    }
    cable.change("[Faults]\n");
    EXPECT_EQ(cable.look(), Status::Ok);
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), versionReply);
}

TEST(TransferFaults, a_failed_look_leaves_what_waits)
{
    FaultyCable cable("FailStatus=1\n");
    cable.send(frame(2, 0xFA));
    EXPECT_EQ(cable.look(), Status::IoError);
    EXPECT_EQ(cable.receive(5), versionReply);
}

TEST(TransferFaults, a_failed_read_takes_nothing)
{
    FaultyCable cable("FailReads=1\n");
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), QByteArray());
    EXPECT_EQ(cable.status, Status::IoError);
    EXPECT_EQ(cable.receive(5), versionReply);
}

TEST(TransferFaults, a_failed_read_can_lose_what_it_would_have_brought_and_no_more)
{
    FaultyCable cable("FailReads=2\nFailReadsConsume=true\n");
    cable.send(frame(2, 0xFA) + frame(2, 0xFA));
    cable.clock.advance(2ms);
    EXPECT_EQ(cable.receive(2), QByteArray());
    EXPECT_EQ(cable.status, Status::IoError);
    EXPECT_EQ(cable.receive(4), QByteArray()) << "also over the end of a reply";
    EXPECT_EQ(cable.receive(4), versionReply.right(4));
}

TEST(TransferFaults, a_failed_read_that_loses_image_data_leaves_the_rest_of_the_block)
{
    FaultyCable cable("FailReads=1\nFailReadsConsume=true\nFaultsFromByte=1000\n");
    cable.start();
    cable.send(frame(0, 0));
    EXPECT_EQ(cable.receive(1000).size(), 1000);
    EXPECT_EQ(cable.receive(5000).size(), 0);
    EXPECT_EQ(cable.waiting(), blockBytes - 6000U);
}

TEST(TransferFaults, a_failed_read_that_loses_image_data_can_pull_the_cable)
{
    FaultyCable cable("FailReads=1\nFailReadsConsume=true\nFaultsFromByte=1\nUnplugAtByte=1000\n");
    cable.start();
    cable.send(frame(0, 0));
    EXPECT_EQ(cable.receive(1).size(), 1);
    EXPECT_EQ(cable.receive(blockBytes).size(), 0);
    EXPECT_EQ(cable.status, Status::IoError);
    EXPECT_EQ(cable.look(), Status::IoError) << "the handle is dead";
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
}

TEST(TransferFaults, a_failed_write_does_not_reach_the_detector)
{
    FaultyCable cable("FailWrites=1\n");
    EXPECT_EQ(cable.write(frame(2, 0xFA)), std::pair(Status::IoError, 0U));
    EXPECT_EQ(cable.receive(5), QByteArray());
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), versionReply);
}

TEST(TransferFaults, so_many_reads_bring_only_so_many_bytes_and_the_next_brings_the_rest)
{
    FaultyCable cable("ShortReads=2\nShortReadBytes=2\n");
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5), versionReply.left(2));
    EXPECT_EQ(cable.status, Status::Ok);
    EXPECT_EQ(cable.receive(1), versionReply.mid(2, 1)) << "what is shorter already is not made longer";
    EXPECT_EQ(cable.receive(2), versionReply.right(2));
}

TEST(TransferFaults, a_short_read_brings_one_byte_when_nothing_else_is_said)
{
    FaultyCable cable("ShortReads=-1\n");
    cable.send(frame(2, 0xFA));
    for (const char byte : versionReply)
        EXPECT_EQ(cable.receive(5), QByteArray(1, byte));
}

TEST(TransferFaults, of_a_short_write_the_first_bytes_reach_the_detector_and_are_counted)
{
    FaultyCable cable("ShortWrites=1\nShortWriteBytes=4\n");
    EXPECT_EQ(cable.write(frame(2, 0xFA)), std::pair(Status::Ok, 4U));
    EXPECT_EQ(cable.receive(5), QByteArray());
    EXPECT_EQ(cable.write(frame(2, 0xFA).right(2)), std::pair(Status::Ok, 2U));
    EXPECT_EQ(cable.receive(5), versionReply) << "the rest completes the frame";
}

TEST(TransferFaults, a_short_write_ends_after_three_bytes_when_nothing_else_is_said)
{
    FaultyCable cable("ShortWrites=-1\n");
    EXPECT_EQ(cable.write(frame(2, 0xFA)), std::pair(Status::Ok, 3U));
    EXPECT_EQ(cable.write(frame(2, 0xFA).left(2)), std::pair(Status::Ok, 2U));
}

TEST(TransferFaults, begin_at_the_byte_of_the_stream_that_was_asked_for)
{
    FaultyCable cable("FaultsFromByte=200001\nFailStatus=-1\nFailReads=-1\nFailWrites=1\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    cable.send(frame(0, 1));
    EXPECT_EQ(cable.look(), Status::Ok);
    EXPECT_EQ(cable.receive(blockBytes).size(), 200001 - blockBytes) << "the read ends at that byte";
    EXPECT_EQ(cable.status, Status::Ok);
    EXPECT_EQ(cable.receive(1).size(), 0);
    EXPECT_EQ(cable.status, Status::IoError);
    EXPECT_EQ(cable.look(), Status::IoError);
    EXPECT_EQ(cable.send(frame(0, 2)), Status::IoError);
}

TEST(TransferFaults, that_begin_in_the_stream_end_with_the_handle_and_begin_again_at_their_byte)
{
    FaultyCable cable("FaultsFromByte=10\nFailReads=-1\n");
    for (int connection = 0; connection < 2; ++connection) {
        cable.start();
        EXPECT_EQ(cable.block(0).size(), 10);
        EXPECT_EQ(cable.receive(1).size(), 0);
        EXPECT_EQ(cable.status, Status::IoError);
        cable.bridge->close(cable.handle);
        cable.open();
    }
}

TEST(TransferFaults, short_reads_and_writes_can_begin_in_the_stream_too)
{
    FaultyCable cable("FaultsFromByte=131072\nShortReads=1\nShortReadBytes=7\nShortWrites=1\n");
    cable.start();
    EXPECT_EQ(cable.block(0).size(), blockBytes);
    EXPECT_EQ(cable.write(frame(0, 1)).second, 3U);
    EXPECT_EQ(cable.write(frame(0, 1).right(3)).second, 3U);
    EXPECT_EQ(cable.receive(blockBytes).size(), 7);
    EXPECT_EQ(cable.receive(blockBytes - 7).size(), blockBytes - 7);
}

TEST(TransferFaults, from_the_first_byte_on_leave_replies_that_run_together_in_one_read)
{
    FaultyCable cable("FaultsFromByte=0\n");
    EXPECT_EQ(cable.exchange(frame(2, 0xFA) + frame(2, 0xFA), 10), versionReply + versionReply);
}
