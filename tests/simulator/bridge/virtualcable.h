#pragma once

#include "tests/simulator/bytes.h"
#include "tests/simulator/manualclock.h"
#include "tests/support/workingfolder.h"

#include "simulator/bridge/bridge.h"
#include "simulator/geometry.h"

#include <gtest/gtest.h>

/// A host's end of the cable to the virtual detector, on a clock of its own.
class VirtualCable
{
public:
    explicit VirtualCable(const QByteArray &settings = {})
    {
        if (!settings.isEmpty())
            folder.write(QStringLiteral("virtual-detector.ini"), settings);
        bridge = std::make_unique<simulator::Bridge>(clock, folder.path());
    }

    /// Writes the settings file; the next call on the bridge sees it.
    void change(const QByteArray &settings)
    {
        folder.write(QStringLiteral("virtual-detector.ini"), settings);
        clock.advance(std::chrono::milliseconds(200));
    }

    /// Opens and sets up the bridge as the program does.
    void open(const char *serialNumber = "QV1K")
    {
        ASSERT_EQ(bridge->openEx(serialNumber, 1, &handle), simulator::Status::Ok);
        ASSERT_EQ(bridge->setBitMode(handle, 0xFF, 0x40), simulator::Status::Ok);
        ASSERT_EQ(bridge->setLatencyTimer(handle, 2), simulator::Status::Ok);
        ASSERT_EQ(bridge->setTimeouts(handle, 10, 10), simulator::Status::Ok);
    }

    simulator::Status send(const QByteArray &bytes)
    {
        quint32 written = 0;
        const auto result =
            bridge->write(handle, bytes.constData(), static_cast<quint32>(bytes.size()), &written);
        EXPECT_EQ(written, result == simulator::Status::Ok ? static_cast<quint32>(bytes.size()) : 0);
        return result;
    }

    /// What one read brings; `status` keeps its result.
    QByteArray receive(qsizetype length)
    {
        QByteArray bytes(length, '\x5A');
        quint32 count = 0;
        status = bridge->read(handle, bytes.data(), static_cast<quint32>(length), &count);
        return bytes.left(count);
    }

    QByteArray exchange(const QByteArray &bytes, qsizetype length)
    {
        EXPECT_EQ(send(bytes), simulator::Status::Ok);
        return receive(length);
    }

    void start() { ASSERT_EQ(exchange(frame(3, 0xA0), 6), hex("FF BB 03 A0 0D EB")); }
    void halt() { ASSERT_EQ(exchange(frame(3, 0xA1), 6), hex("FF BB 03 A1 0D EB")); }

    /// One frame by the block handshake.
    QByteArray receiveFrame()
    {
        QByteArray bytes;
        for (int block = 0; block < simulator::blocksPerFrame; ++block)
            bytes += exchange(frame(0, block), simulator::blockBytes);
        EXPECT_EQ(bytes.size(), simulator::frameBytes);
        return bytes;
    }

    [[nodiscard]] quint32 waiting()
    {
        quint32 rx = 0;
        quint32 tx = 0;
        quint32 events = 0;
        EXPECT_EQ(bridge->getStatus(handle, &rx, &tx, &events), simulator::Status::Ok);
        return rx;
    }

    [[nodiscard]] QStringList serialNumbers()
    {
        quint32 count = 0;
        EXPECT_EQ(bridge->createDeviceInfoList(&count), simulator::Status::Ok);
        std::vector<simulator::DeviceRecord> records(count + 1);
        EXPECT_EQ(bridge->getDeviceInfoList(records.data(), &count), simulator::Status::Ok);
        QStringList result;
        for (quint32 i = 0; i < count; ++i)
            result << QString::fromUtf8(records[i].serialNumber);
        return result;
    }

    WorkingFolder folder;
    ManualClock clock;
    std::unique_ptr<simulator::Bridge> bridge;
    simulator::Handle handle = nullptr;
    simulator::Status status = simulator::Status::Ok;
};
