#pragma once

#include "d2xx/arguments.h"
#include "device/d2xxlibrary.h"
#include "tests/ftdi/bridge/byteslines.h"
#include "tests/ftdi/bridge/usbbed.h"
#include "tests/support/patience.h"

#include <gmock/gmock.h>

#include <QTest>

/// The shared library on an emulated USB with one bridge, on whose lines the test puts bytes.
class BedTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(UsbBed::isAtHand()) << "start it by ctest, which loads umockdev's library first";
        ASSERT_TRUE(library.driver->isUsable()) << qPrintable(library.problem);
    }

    void plugIn(const UsbBed::Identity &identity = {})
    {
        auto ofBridge = std::make_unique<BytesLines>();
        lines = ofBridge.get();
        bridge = &bed.plugIn(port, identity, std::move(ofBridge));
    }
    void unplug()
    {
        bed.unplug(port);
        bridge = nullptr;
    }
    std::vector<d2xx::DeviceRecord> list()
    {
        std::uint32_t count = 0;
        EXPECT_EQ(f.createDeviceInfoList(&count), d2xx::Status::Ok);
        std::vector<d2xx::DeviceRecord> records(count);
        EXPECT_EQ(f.getDeviceInfoList(records.data(), &count), d2xx::Status::Ok);
        return records;
    }
    d2xx::Status open(const char *serialNumber = "QV1K")
    {
        return f.openEx(const_cast<char *>(serialNumber), d2xx::openBySerialNumber, &handle);
    }
    d2xx::Status queued(std::uint32_t &bytes)
    {
        std::uint32_t other = 0;
        return f.getStatus(handle, &bytes, &other, &other);
    }
    [[nodiscard]] bool waitForQueued(std::uint32_t wanted)
    {
        std::uint32_t bytes = 0;
        return QTest::qWaitFor([&] { return queued(bytes) == d2xx::Status::Ok && bytes >= wanted; },
                               patienceMs);
    }
    d2xx::Status read(std::uint32_t length)
    {
        received.assign(length, 0);
        std::uint32_t count = 0;
        const d2xx::Status status = f.read(handle, received.data(), length, &count);
        received.resize(count);
        return status;
    }
    /// Why that one is gone; without a handle, why none was opened.
    std::string problem(d2xx::Handle of = nullptr)
    {
        std::array<char, 1000> text{};
        EXPECT_EQ(f.tellProblem(of, text.data(), static_cast<std::uint32_t>(text.size())), d2xx::Status::Ok);
        return text.data();
    }
    void put(const BytesLines::Bytes &bytes)
    {
        bridge->onChip([&](EmulatedChip &) { lines->put(bytes); });
    }

    static constexpr int port = 1;
    UsbBed bed;
    const D2xxLibrary library = D2xxLibrary::load(QStringLiteral(QV1K_FTDI_LIBRARY));
    const d2xx::Functions &f = library.driver->functions();
    EmulatedBridge *bridge = nullptr;
    BytesLines *lines = nullptr;
    d2xx::Handle handle = nullptr;
    BytesLines::Bytes received;
};
