#include "tests/simulator/bytes.h"
#include "tests/support/workingfolder.h"

#include "simulator/bridge/bridge.h"
#include "simulator/geometry.h"

#include <atomic>
#include <optional>
#include <thread>

using simulator::blockBytes;
using simulator::Handle;
using simulator::Status;

namespace {

/// The machine's clock, which says when somebody waits by it.
class NotingClock final : public simulator::Clock
{
public:
    /// With patience a wait ends only when it is woken, whatever its deadline, or fails after that long.
    explicit NotingClock(std::optional<simulator::Nanoseconds> patience = {}) : m_patience(patience) {}

    [[nodiscard]] simulator::Nanoseconds now() const override { return m_clock.now(); }
    void wait(std::unique_lock<std::mutex> &lock, std::condition_variable &wake,
              simulator::Nanoseconds deadline) override
    {
        // Whoever sees this and then takes the lock meets one who waits.
        m_isWaitedFor = true;
        m_isWaitedFor.notify_all();
        if (!m_patience)
            m_clock.wait(lock, wake, deadline);
        else
            EXPECT_EQ(wake.wait_for(lock, *m_patience), std::cv_status::no_timeout) << "nobody woke it";
    }

    void waitUntilSomebodyWaits() const { m_isWaitedFor.wait(false); }

private:
    simulator::SteadyClock m_clock;
    const std::optional<simulator::Nanoseconds> m_patience;
    std::atomic<bool> m_isWaitedFor{false};
};

} // namespace

TEST(BridgeThreads, a_read_that_waits_holds_up_no_write_and_is_woken_by_its_reply)
{
    WorkingFolder folder;
    NotingClock clock;
    simulator::Bridge bridge(clock, folder.path());
    Handle handle = nullptr;
    ASSERT_EQ(bridge.openEx("QV1K", 1, &handle), Status::Ok);
    bridge.setTimeouts(handle, 20000, 10);
    QByteArray reply(5, '\0');
    quint32 count = 0;
    std::thread reader([&] { bridge.read(handle, reply.data(), 5, &count); });
    clock.waitUntilSomebodyWaits();
    const QByteArray query = frame(2, 0xFA);
    quint32 written = 0;
    EXPECT_EQ(bridge.write(handle, query.constData(), 6, &written), Status::Ok);
    reader.join();
    EXPECT_EQ(count, 5U);
    EXPECT_EQ(reply, hex("01 02 03 45 00"));
}

TEST(BridgeThreads, closing_wakes_and_ends_a_read_that_waits_without_limit)
{
    WorkingFolder folder;
    NotingClock clock(std::chrono::seconds(20));
    simulator::Bridge bridge(clock, folder.path());
    Handle handle = nullptr;
    ASSERT_EQ(bridge.openEx("QV1K", 1, &handle), Status::Ok);
    std::atomic<Status> status{Status::Ok};
    std::thread reader([&] {
        char byte = 0;
        quint32 count = 0;
        status = bridge.read(handle, &byte, 1, &count);
    });
    clock.waitUntilSomebodyWaits();
    EXPECT_EQ(bridge.close(handle), Status::Ok);
    reader.join();
    EXPECT_EQ(status, Status::InvalidHandle);
}

TEST(BridgeThreads, two_threads_may_read_write_and_look_at_once)
{
    WorkingFolder folder;
    folder.write(QStringLiteral("virtual-detector.ini"), "Pacing=none\n");
    simulator::SteadyClock clock;
    simulator::Bridge bridge(clock, folder.path());
    Handle handle = nullptr;
    ASSERT_EQ(bridge.openEx("QV1K", 1, &handle), Status::Ok);
    bridge.setBitMode(handle, 0xFF, 0x40);
    bridge.setTimeouts(handle, 100, 10);
    const auto send = [&](const QByteArray &bytes) {
        quint32 written = 0;
        bridge.write(handle, bytes.constData(), static_cast<quint32>(bytes.size()), &written);
    };
    send(frame(3, 0xA0));
    QByteArray buffer(blockBytes, '\0');
    quint32 count = 0;
    bridge.read(handle, buffer.data(), 6, &count);
    ASSERT_EQ(count, 6U);
    std::atomic<bool> done{false};
    std::thread watcher([&] {
        quint32 a = 0;
        quint32 b = 0;
        quint32 c = 0;
        while (!done) {
            bridge.getStatus(handle, &a, &b, &c);
            send(frame(2, 0x10)); // not answered while it streams
        }
    });
    qsizetype total = 0;
    for (int block = 0; block < 64; ++block) {
        send(frame(0, block % 32));
        bridge.read(handle, buffer.data(), quint32{blockBytes}, &count);
        total += count;
    }
    done = true;
    watcher.join();
    EXPECT_EQ(total, 64 * blockBytes);
}
