#include "tests/ftdi/bridge/bedtest.h"
#include "tests/ftdi/bridge/streamlines.h"

#include <future>

using d2xx::Status;
using Clock = std::chrono::steady_clock;

namespace {

/// The library on a bridge whose lines stream.
class Stream : public BedTest
{
protected:
    void stream(std::uint64_t length)
    {
        bridge = &bed.plugIn(port, {}, std::make_unique<StreamLines>(length));
        ASSERT_EQ(open(), Status::Ok);
        ASSERT_EQ(f.setLatencyTimer(handle, 2), Status::Ok);
        ASSERT_EQ(f.setUsbParameters(handle, 65536, 65536), Status::Ok);
        ASSERT_EQ(f.setTimeouts(handle, 10, 10), Status::Ok);
    }
    static int microseconds(Clock::duration time)
    {
        return static_cast<int>(std::chrono::duration_cast<std::chrono::microseconds>(time).count());
    }
};

} // namespace

TEST_F(Stream, two_hundred_mebibytes_arrive_whole_and_in_order)
{
    constexpr std::uint64_t total = std::uint64_t{200} * 1024 * 1024;
    const auto begin = Clock::now();
    stream(total);
    std::uint64_t place = 0;
    bool isRight = true;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            for (int i = 0; i < 100 && read(131072) == Status::Ok; ++i) {
                for (const std::uint8_t byte : received)
                    isRight = isRight && byte == StreamLines::byteAt(place++);
            }
            return place >= total;
        },
        patienceMs));
    const std::chrono::duration<double> seconds = Clock::now() - begin;
    RecordProperty("megabytes_per_second",
                   static_cast<int>(static_cast<double>(total) / 1e6 / seconds.count()));
    EXPECT_TRUE(isRight);
    EXPECT_EQ(place, total);
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Stream, each_command_has_its_reply)
{
    stream(0);
    ASSERT_EQ(f.setTimeouts(handle, patienceMs, patienceMs), Status::Ok);
    std::vector<int> times;
    for (int i = 0; i < 200; ++i) {
        std::array<std::uint8_t, 6> command{};
        std::uint32_t written = 0;
        const auto begin = Clock::now();
        ASSERT_EQ(f.write(handle, command.data(), command.size(), &written), Status::Ok);
        ASSERT_EQ(read(6), Status::Ok);
        ASSERT_EQ(received.size(), 6U);
        times.push_back(microseconds(Clock::now() - begin));
    }
    std::sort(times.begin(), times.end());
    RecordProperty("median_microseconds", times[times.size() / 2]);
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Stream, an_unplug_ends_a_read_that_waits)
{
    stream(0);
    ASSERT_EQ(f.setTimeouts(handle, 0, 0), Status::Ok);
    Clock::time_point end;
    auto reading = std::async(std::launch::async, [&] {
        const Status status = read(1);
        end = Clock::now();
        return status;
    });
    const auto begin = Clock::now();
    unplug();
    EXPECT_EQ(reading.get(), Status::IoError);
    RecordProperty("unplug_microseconds", microseconds(end - begin));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Stream, a_full_queue_hides_no_unplug)
{
    stream(std::uint64_t{80} * 1024 * 1024);
    constexpr std::uint32_t capacity = 64U * 1024 * 1024;
    ASSERT_TRUE(waitForQueued(capacity));
    unplug();
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return f.setTimeouts(handle, 0, 0) == Status::IoError; }, patienceMs));
    std::uint64_t place = 0;
    bool isRight = true;
    while (read(1'000'000) == Status::Ok) {
        for (const std::uint8_t byte : received)
            isRight = isRight && byte == StreamLines::byteAt(place++);
    }
    EXPECT_GE(place, capacity);
    EXPECT_TRUE(isRight);
    EXPECT_EQ(f.close(handle), Status::Ok);
}
