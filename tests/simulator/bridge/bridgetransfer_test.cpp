#include "tests/simulator/bridge/virtualcable.h"

using namespace std::chrono_literals;
using simulator::blockBytes;
using simulator::Status;

TEST(BridgeTransfer, a_reply_arrives_after_the_latency_that_was_set)
{
    VirtualCable cable;
    cable.open();
    cable.send(frame(2, 0xFA));
    cable.clock.advance(2ms - 1ns);
    EXPECT_EQ(cable.waiting(), 0U);
    cable.clock.advance(1ns);
    EXPECT_EQ(cable.waiting(), 5U);
}

TEST(BridgeTransfer, the_latency_is_16_ms_again_after_a_close)
{
    VirtualCable cable;
    cable.open();
    cable.bridge->close(cable.handle);
    cable.bridge->openEx("QV1K", 1, &cable.handle);
    cable.send(frame(2, 0xFA));
    cable.clock.advance(16ms - 1ns);
    EXPECT_EQ(cable.waiting(), 0U);
    cable.clock.advance(1ns);
    EXPECT_EQ(cable.waiting(), 5U);
}

TEST(BridgeTransfer, a_read_of_what_waits_does_not_wait)
{
    VirtualCable cable;
    cable.open();
    cable.send(frame(2, 0xFA));
    cable.clock.advance(2ms);
    const auto before = cable.clock.now();
    EXPECT_EQ(cable.receive(3), hex("01 02 03"));
    EXPECT_EQ(cable.waiting(), 2U);
    EXPECT_EQ(cable.receive(2), hex("45 00"));
    EXPECT_EQ(cable.clock.now(), before);
}

TEST(BridgeTransfer, a_read_of_more_than_comes_ends_at_the_read_time_out_with_what_there_is)
{
    VirtualCable cable;
    cable.open();
    cable.send(frame(2, 0xFA));
    const auto before = cable.clock.now();
    EXPECT_EQ(cable.receive(6), hex("01 02 03 45 00"));
    EXPECT_EQ(cable.status, Status::Ok);
    EXPECT_EQ(cable.clock.now() - before, 10ms);
    EXPECT_EQ(cable.receive(6), QByteArray());
    EXPECT_EQ(cable.status, Status::Ok);
    EXPECT_EQ(cable.clock.now() - before, 20ms);
}

TEST(BridgeTransfer, a_read_returns_as_soon_as_its_bytes_are_there)
{
    VirtualCable cable;
    cable.open();
    cable.bridge->setTimeouts(cable.handle, 60000, 10);
    const auto before = cable.clock.now();
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5).size(), 5);
    EXPECT_EQ(cable.clock.now() - before, 2ms);
}

TEST(BridgeTransfer, a_read_of_nothing_returns_at_once)
{
    VirtualCable cable;
    cable.open();
    const auto before = cable.clock.now();
    EXPECT_EQ(cable.receive(0), QByteArray());
    EXPECT_EQ(cable.status, Status::Ok);
    EXPECT_EQ(cable.clock.now(), before);
}

TEST(BridgeTransfer, purging_drops_what_was_not_read)
{
    VirtualCable cable("Pacing=none\n");
    cable.open();
    cable.send(frame(2, 0xFA));
    EXPECT_EQ(cable.bridge->purge(cable.handle, 1), Status::Ok);
    cable.clock.advance(1s);
    EXPECT_EQ(cable.waiting(), 0U) << "also what still waited in the bridge";
    cable.start();
    cable.send(frame(0, 0));
    EXPECT_EQ(cable.waiting(), quint32{blockBytes});
    EXPECT_EQ(cable.bridge->purge(cable.handle, 3), Status::Ok);
    EXPECT_EQ(cable.waiting(), 0U);
    EXPECT_EQ(cable.exchange(frame(0, 1), blockBytes).size(), blockBytes) << "the detector goes on";
}

TEST(BridgeTransfer, purging_the_sent_bytes_leaves_the_received_ones)
{
    VirtualCable cable;
    cable.open();
    cable.send(frame(2, 0xFA));
    EXPECT_EQ(cable.bridge->purge(cable.handle, 2), Status::Ok);
    EXPECT_EQ(cable.receive(5).size(), 5);
}

TEST(BridgeTransfer, a_reset_drops_what_was_not_read)
{
    VirtualCable cable;
    cable.open();
    cable.send(frame(2, 0xFA));
    EXPECT_EQ(cable.bridge->resetDevice(cable.handle), Status::Ok);
    EXPECT_EQ(cable.receive(5), QByteArray());
}

TEST(BridgeTransfer, images_stream_only_after_the_synchronous_fifo_mode_was_set)
{
    VirtualCable cable("Pacing=none\n");
    cable.bridge->openEx("QV1K", 1, &cable.handle);
    cable.bridge->setTimeouts(cable.handle, 20, 10);
    cable.start();
    EXPECT_EQ(cable.exchange(frame(0, 0), blockBytes).size(), 0);
    cable.bridge->setBitMode(cable.handle, 0xFF, 0x00);
    EXPECT_EQ(cable.exchange(frame(0, 0), blockBytes).size(), 0);
    cable.bridge->setBitMode(cable.handle, 0x7F, 0x40);
    EXPECT_EQ(cable.exchange(frame(0, 0), blockBytes).size(), 0) << "a line is missing";
    cable.bridge->setBitMode(cable.handle, 0xFF, 0x40);
    EXPECT_EQ(cable.exchange(frame(0, 0), blockBytes).size(), blockBytes);
}

TEST(BridgeTransfer, the_fifo_mode_has_to_be_set_again_after_a_close)
{
    VirtualCable cable("Pacing=none\n");
    cable.open();
    cable.bridge->close(cable.handle);
    cable.bridge->openEx("QV1K", 1, &cable.handle);
    cable.bridge->setTimeouts(cable.handle, 20, 10);
    cable.start();
    EXPECT_EQ(cable.exchange(frame(0, 0), blockBytes).size(), 0);
}

TEST(BridgeTransfer, closing_ends_an_acquisition_so_that_the_next_open_finds_the_detector_idle)
{
    VirtualCable cable("Pacing=none\n");
    cable.open();
    cable.start();
    cable.send(frame(0, 0));
    cable.bridge->close(cable.handle);
    cable.open();
    EXPECT_EQ(cable.waiting(), 0U);
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5).size(), 5);
}

TEST(BridgeTransfer, parameters_outlive_a_close)
{
    VirtualCable cable;
    cable.open();
    EXPECT_EQ(cable.exchange(parameterFrame(0x00, hex("10")), 6).size(), 6);
    cable.bridge->close(cable.handle);
    cable.open();
    EXPECT_EQ(cable.exchange(frame(2, 0x00), 256).left(1), hex("10"));
}

TEST(BridgeTransfer, a_frame_can_be_read_in_pieces_of_any_size)
{
    VirtualCable cable("Pacing=none\nScene=chart\n");
    cable.open();
    cable.start();
    const QByteArray whole = cable.receiveFrame();
    cable.halt();
    cable.start();
    QByteArray pieces;
    for (int block = 0; block < 2; ++block) {
        cable.send(frame(0, block));
        for (qsizetype size = 1; cable.waiting() > 0; size = size * 3 + 1)
            pieces += cable.receive(qMin<qsizetype>(size, cable.waiting()));
    }
    EXPECT_TRUE(pieces == whole.left(2 * blockBytes));
}
