#pragma once

#include "tests/simulator/bytes.h"
#include "tests/support/workingfolder.h"

#include "simulator/firmware/firmware.h"
#include "simulator/geometry.h"

/// A detector's firmware on the bench: written to and read from directly, at a time of the test's choosing.
class DetectorBench
{
public:
    DetectorBench() { firmware.setSynchronous(true); }

    /// Writes, waits out the latency and takes everything that has arrived; image data as that many bytes
    /// 'i'.
    QByteArray exchange(const QByteArray &bytes)
    {
        firmware.write(bytes, now);
        now += std::chrono::milliseconds(16);
        return takeAll();
    }

    QByteArray takeAll()
    {
        QByteArray result;
        while (true) {
            const auto chunk = queue.take(queue.available(now), simulator::frameBytes, now);
            if (chunk.length == 0)
                return result;
            result += chunk.isImage ? QByteArray(chunk.length, 'i') : chunk.bytes;
            if (chunk.isImage)
                lastImage = chunk;
        }
    }

    /// Starts an acquisition and takes its echo.
    void start() { EXPECT_EQ(exchange(frame(3, 0xA0)), hex("FF BB 03 A0 0D EB")); }

    /// Bytes of image data that one block request brings at once.
    qsizetype request(int number)
    {
        firmware.write(frame(0, number), now);
        return takeAll().size();
    }

    WorkingFolder folder;
    simulator::Settings settings;
    simulator::Nanoseconds now = std::chrono::seconds(100);
    simulator::Firmware firmware{QStringLiteral("QV1K"), QStringLiteral("./eeprom.ini"), settings};
    simulator::SendQueue &queue = firmware.sendQueue();
    simulator::SendQueue::Chunk lastImage;
};
