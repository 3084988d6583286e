#include "device/framebuffers.h"
#include "device/protocol/frameformat.h"

#include <gtest/gtest.h>

#include <QSet>

TEST(FrameBuffers, a_frame_that_is_through_and_let_go_of_becomes_the_next_buffer)
{
    FrameBuffers buffers;
    QByteArray frame = buffers.take(0);
    EXPECT_GE(frame.capacity(), FrameFormat::frameBytes);
    frame.resize(FrameFormat::frameBytes);
    const char *place = frame.constData();
    buffers.lend(frame);
    frame.clear();

    const QByteArray other = buffers.take(0); // not through yet
    EXPECT_NE(other.constData(), place);
    const QByteArray again = buffers.take(1);
    EXPECT_EQ(again.constData(), place);
    EXPECT_EQ(again.size(), 0);
    EXPECT_GE(again.capacity(), FrameFormat::frameBytes);
}

TEST(FrameBuffers, a_frame_that_somebody_keeps_is_left_to_them)
{
    FrameBuffers buffers;
    QByteArray kept = buffers.take(0);
    kept.append("kept");
    buffers.lend(kept);
    QByteArray next = buffers.take(1);
    next.append("next");
    EXPECT_EQ(kept, "kept");
    kept[0] = 'K';
    EXPECT_EQ(next, "next");
}

TEST(FrameBuffers, at_most_as_many_buffers_exist_as_frames_wait)
{
    FrameBuffers buffers;
    QSet<const char *> places;
    for (int frame = 0; frame < 100; ++frame) {
        QByteArray buffer = buffers.take(qMax(0, frame - 2)); // two frames wait
        buffer.resize(FrameFormat::frameBytes);
        places.insert(buffer.constData());
        buffers.lend(buffer);
    }
    EXPECT_EQ(places.size(), 3);
    EXPECT_EQ(buffers.lentCount(), 100);
}
