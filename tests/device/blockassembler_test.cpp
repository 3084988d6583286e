#include "device/blockassembler.h"
#include "device/protocol/frameformat.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

namespace {

void append(BlockAssembler &assembler, qsizetype length, char value)
{
    std::memset(assembler.reserve(length), value, static_cast<std::size_t>(length));
    assembler.keep(length);
}

} // namespace

TEST(BlockAssembler, a_boundary_is_reached_with_the_last_byte_of_a_block)
{
    BlockAssembler assembler;
    append(assembler, FrameFormat::blockBytes - 1, 'a');
    EXPECT_FALSE(assembler.boundaryReached());
    append(assembler, 1, 'b');
    EXPECT_TRUE(assembler.boundaryReached());
    EXPECT_EQ(assembler.nextRequest(), 1);
    EXPECT_FALSE(assembler.boundaryReached());
}

TEST(BlockAssembler, what_was_read_in_vain_is_dropped_and_what_was_read_short_is_kept_as_far_as_it_came)
{
    BlockAssembler assembler;
    append(assembler, 10, 'a');
    std::memset(assembler.reserve(100), 'x', 100);
    assembler.drop();
    std::memset(assembler.reserve(100), 'b', 100);
    assembler.keep(5);
    EXPECT_EQ(assembler.takeFrame(), QByteArray(10, 'a') + QByteArray(5, 'b'));
}

TEST(BlockAssembler, a_taken_frame_holds_everything_and_the_next_begins_empty_with_counter_0)
{
    BlockAssembler assembler;
    for (int block = 1; block <= FrameFormat::blocksPerFrame; ++block) {
        append(assembler, FrameFormat::blockBytes, static_cast<char>(block));
        ASSERT_TRUE(assembler.boundaryReached());
        ASSERT_EQ(assembler.frameComplete(), block == FrameFormat::blocksPerFrame);
        if (block < FrameFormat::blocksPerFrame) {
            ASSERT_EQ(assembler.nextRequest(), block);
        }
    }
    const QByteArray frame = assembler.takeFrame();
    ASSERT_EQ(frame.size(), FrameFormat::frameBytes);
    for (int block = 1; block <= FrameFormat::blocksPerFrame; ++block)
        EXPECT_EQ(frame.at((block - 1) * FrameFormat::blockBytes), static_cast<char>(block));
    EXPECT_EQ(assembler.nextRequest(), 0);
    EXPECT_FALSE(assembler.boundaryReached());
}

TEST(BlockAssembler, blocks_arrive_in_the_place_from_which_the_frame_is_handed_out)
{
    BlockAssembler assembler;
    assembler.restart();
    QByteArray next;
    next.reserve(FrameFormat::frameBytes + FrameFormat::blockBytes);
    const char *place = assembler.reserve(0);
    for (int frame = 1; frame <= 2; ++frame) {
        for (int block = 0; block < FrameFormat::blocksPerFrame; ++block) {
            EXPECT_EQ(assembler.reserve(FrameFormat::blockBytes), place + block * FrameFormat::blockBytes);
            assembler.keep(FrameFormat::blockBytes);
        }
        const char *nextPlace = next.constData();
        EXPECT_EQ(assembler.takeFrame(std::move(next)).constData(), place);
        place = nextPlace;
        next = QByteArray();
    }
}

TEST(BlockAssembler, a_restart_forgets_the_partial_frame)
{
    BlockAssembler assembler;
    append(assembler, FrameFormat::blockBytes + 7, 'a');
    EXPECT_EQ(assembler.nextRequest(), 1);
    assembler.restart();
    EXPECT_FALSE(assembler.boundaryReached());
    append(assembler, FrameFormat::blockBytes, 'b');
    EXPECT_TRUE(assembler.boundaryReached());
    EXPECT_EQ(assembler.nextRequest(), 1);
    EXPECT_EQ(assembler.takeFrame(), QByteArray(FrameFormat::blockBytes, 'b'));
}
