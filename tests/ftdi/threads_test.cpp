#include "d2xx/arguments.h"
#include "ftdi/bulkreader.h"
#include "ftdi/opendevice.h"

#include "tests/ftdi/threadedlibusb.h"
#include "tests/support/patience.h"

#include <gtest/gtest.h>

#include <QTest>

#include <limits>
#include <thread>

using d2xx::Status;

namespace {

constexpr int withoutEnd = std::numeric_limits<int>::max();

/// A bridge whose bulk data comes through libusb, and whose chip takes everything.
class BulkPort : public ftdi::UsbPort
{
public:
    bool reset() override { return true; }
    bool setBitMode(std::uint8_t /*mask*/, std::uint8_t /*mode*/) override { return true; }
    bool setLatencyTimer(std::uint8_t /*milliseconds*/) override { return true; }
    bool setFlowControl(std::uint16_t /*flow*/, std::uint8_t /*xOn*/, std::uint8_t /*xOff*/) override
    {
        return true;
    }
    bool purge(bool /*received*/, bool /*sent*/) override { return true; }
    void setTransferSizes(std::size_t in, std::size_t /*out*/) override { m_inSize = in; }

    std::optional<std::span<const std::uint8_t>> read(std::chrono::milliseconds patience) override
    {
        m_reader.setTransferSize(m_inSize);
        return m_reader.read(patience);
    }
    bool isGone() override { return m_reader.isGone(); }
    [[nodiscard]] bool isPluggedIn() const override { return true; } // a transfer tells otherwise
    [[nodiscard]] std::string ending() const override { return m_reader.ending(); }
    [[nodiscard]] std::uint32_t losses() const override { return m_reader.losses(); }
    void stopReading() override { m_reader.stop(); }
    std::optional<std::size_t> write(std::span<const std::uint8_t> bytes,
                                     std::chrono::milliseconds /*patience*/) override
    {
        return bytes.size();
    }

private:
    std::atomic<std::size_t> m_inSize{ThreadedLibusb::packetSize};
    ftdi::BulkReader m_reader{{nullptr, nullptr, 0x81, ThreadedLibusb::packetSize}};
};

/// A program's calls, the reader's thread and the thread on which transfers end, all at once.
class StreamingBridge : public testing::Test
{
protected:
    /// What the program does beside reading, until it is told to stop.
    [[nodiscard]] static std::jthread askedAllTheTime(ftdi::OpenDevice &device)
    {
        return std::jthread([&device](const std::stop_token &stop) {
            const std::array<char, 3> bytes{};
            while (!stop.stop_requested()) {
                std::uint32_t a = 0;
                std::uint32_t b = 0;
                std::uint32_t c = 0;
                static_cast<void>(device.queued(&a, &b, &c));
                static_cast<void>(device.losses(&a));
                static_cast<void>(device.ending());
                static_cast<void>(device.write(bytes.data(), bytes.size(), &a));
            }
        });
    }

    /// Reads so many bytes; how many of them do not count upwards from the one before.
    [[nodiscard]] static int brokenOf(ftdi::OpenDevice &device, std::size_t total)
    {
        std::array<std::uint8_t, 4096> buffer{};
        std::uint8_t expected = 0;
        int broken = 0;
        for (std::size_t done = 0; done < total;) {
            std::uint32_t count = 0;
            const auto wanted = static_cast<std::uint32_t>(std::min(buffer.size(), total - done));
            if (device.read(buffer.data(), wanted, &count) != Status::Ok)
                return -1;
            for (std::uint32_t i = 0; i < count; ++i, ++expected)
                broken += buffer[i] == expected ? 0 : 1;
            done += count;
        }
        return broken;
    }

    [[nodiscard]] static std::unique_ptr<ftdi::OpenDevice> opened()
    {
        return std::make_unique<ftdi::OpenDevice>(std::make_unique<BulkPort>(), std::size_t{64} * 1024);
    }

    ThreadedLibusb usb;
};

} // namespace

TEST_F(StreamingBridge, brings_every_byte_in_order_while_other_threads_ask_and_write)
{
    const auto device = opened();
    ASSERT_EQ(device->setTransferSizes(4096, 4096), Status::Ok);
    const auto asking = askedAllTheTime(*device);
    usb.stream(withoutEnd);
    EXPECT_EQ(brokenOf(*device, std::size_t{2} * 1024 * 1024), 0);
}

TEST_F(StreamingBridge, can_be_closed_at_any_moment_and_leaves_nothing_behind)
{
    usb.stream(withoutEnd);
    for (std::size_t round = 0; round < 50; ++round) {
        auto device = opened();
        const auto asking = askedAllTheTime(*device);
        EXPECT_NE(brokenOf(*device, 1 + round * 1000), -1);
        device->close();
    }
    EXPECT_EQ(usb.allocated(), 0);
}

TEST_F(StreamingBridge, a_read_that_waits_ends_when_it_is_closed)
{
    for (int round = 0; round < 20; ++round) {
        const auto device = opened(); // without a time-out it waits for ever
        std::jthread waiting([&device] { EXPECT_EQ(brokenOf(*device, 1), -1); });
        device->close();
    }
    EXPECT_EQ(usb.allocated(), 0);
}

TEST_F(StreamingBridge, can_be_purged_and_reset_while_it_is_read)
{
    const auto device = opened();
    ASSERT_EQ(device->setTimeouts(10, 10), Status::Ok);
    usb.stream(withoutEnd);
    const auto asking = askedAllTheTime(*device);
    for (int round = 0; round < 20; ++round) {
        EXPECT_NE(brokenOf(*device, 5000), -1);
        EXPECT_EQ(device->purge(d2xx::purgeBoth), Status::Ok);
        EXPECT_EQ(device->reset(), Status::Ok);
    }
}

TEST_F(StreamingBridge, that_is_unplugged_ends_every_call)
{
    const auto device = opened();
    const auto asking = askedAllTheTime(*device);
    usb.stream(withoutEnd);
    std::jthread purging([&device] {
        while (device->purge(d2xx::purgeBoth) == Status::Ok) {
        }
    });
    EXPECT_NE(brokenOf(*device, 100'000), -1);
    usb.unplug();
    EXPECT_EQ(brokenOf(*device, std::numeric_limits<std::size_t>::max()), -1);
    EXPECT_EQ(device->status(), Status::IoError);
    EXPECT_EQ(device->ending(), "The bridge was unplugged.");
}

TEST_F(StreamingBridge, transfers_that_come_back_after_the_closing_are_freed_then)
{
    usb.keepCancelled(true);
    auto device = opened();
    usb.stream(1);
    EXPECT_EQ(brokenOf(*device, 1), 0);
    device.reset();
    EXPECT_GT(usb.allocated(), 0);
    usb.keepCancelled(false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return usb.allocated() == 0; }, patienceMs));
}
