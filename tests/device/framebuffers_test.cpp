#include "device/framebuffers.h"
#include "device/protocol/frameformat.h"

#include <gtest/gtest.h>

#include <QSet>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

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

/// Nothing but the buffer itself may order the two: that is what ThreadSanitizer looks at.
TEST(FrameBuffers, a_frame_that_another_thread_has_read_becomes_the_next_buffer_after_that)
{
    FrameBuffers buffers;
    QByteArray frame = buffers.take(0);
    frame.resize(FrameFormat::frameBytes, 'x');
    const char *place = frame.constData();
    buffers.lend(frame);
    std::atomic<bool> isLetGo{false};
    std::vector<char> seen;
    std::thread reader([&isLetGo, &seen, kept = std::move(frame)]() mutable {
        seen.assign(kept.cbegin(), kept.cend());
        kept.clear();
        isLetGo.store(true, std::memory_order_relaxed);
    });
    while (!isLetGo.load(std::memory_order_relaxed))
        std::this_thread::yield();
    QByteArray again = buffers.take(1);
    again.append("next");
    EXPECT_EQ(again.constData(), place);
    reader.join();
    EXPECT_EQ(std::count(seen.begin(), seen.end(), 'x'), FrameFormat::frameBytes);
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
