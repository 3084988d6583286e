#pragma once

#include "ftdi/opendevice.h"

#include "tests/ftdi/fakeusb.h"
#include "tests/ftdi/numbered.h"
#include "tests/support/patience.h"

#include <gmock/gmock.h>

#include <QTest>

/// An open bridge with a small queue, and the chip that the test drives by hand.
class OpenBridge : public testing::Test
{
protected:
    [[nodiscard]] std::uint32_t queued() const
    {
        std::uint32_t rx = 0;
        std::uint32_t tx = 0;
        std::uint32_t events = 0;
        EXPECT_EQ(device.queued(&rx, &tx, &events), d2xx::Status::Ok);
        return rx;
    }
    [[nodiscard]] bool waitForQueued(std::uint32_t bytes) const
    {
        return QTest::qWaitFor([&] { return queued() == bytes; }, patienceMs);
    }
    [[nodiscard]] bool waitForStatus(d2xx::Status status) const
    {
        return QTest::qWaitFor([&] { return device.status() == status; }, patienceMs);
    }
    /// In forty pieces, the twelfth of which is half in the queue then. Returns all of it.
    FakeChip::Bytes deliverMoreThanFits()
    {
        FakeChip::Bytes all;
        for (std::uint8_t i = 0; i < 40; ++i) {
            const auto piece = numbered(90, i);
            chip->deliver(piece);
            all.insert(all.end(), piece.begin(), piece.end());
        }
        EXPECT_TRUE(waitForQueued(queueSize));
        return all;
    }
    d2xx::Status read(std::uint32_t length)
    {
        received.assign(length, 0);
        std::uint32_t count = 0;
        const d2xx::Status status = device.read(received.data(), length, &count);
        received.resize(count);
        return status;
    }
    d2xx::Status write(const FakeChip::Bytes &bytes)
    {
        return device.write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written);
    }

    static constexpr std::size_t queueSize = 1000;
    std::shared_ptr<FakeChip> chip = std::make_shared<FakeChip>();
    ftdi::OpenDevice device{std::make_unique<FakePort>(chip), queueSize};
    FakeChip::Bytes received;
    std::uint32_t written = 0;
};
