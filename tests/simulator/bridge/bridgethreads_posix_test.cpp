// What other threads do while image data is being made: of a recording that is a pipe, which holds up whoever
// opens it.

#include "tests/simulator/bytes.h"
#include "tests/support/workingfolder.h"

#include "simulator/bridge/bridge.h"
#include "simulator/geometry.h"

#include <QFile>
#include <QTest>

#include <sys/stat.h>

#include <thread>

using simulator::blockBytes;
using simulator::Status;

namespace {

/// A detector that replays a recording, started and asked for two blocks.
class PipedRecording : public testing::Test
{
protected:
    PipedRecording()
    {
        folder.write(QStringLiteral("frames.raw"), QByteArray(simulator::frameBytes, '\x11'));
        folder.write(QStringLiteral("virtual-detector.ini"),
                     "Pacing=none\nScene=replay\nReplayFile=" + pipe.toUtf8() + '\n');
        bridge = std::make_unique<simulator::Bridge>(clock, folder.path());
        EXPECT_EQ(bridge->openEx("QV1K", 1, &handle), Status::Ok);
        EXPECT_EQ(bridge->setBitMode(handle, 0xFF, 0x40), Status::Ok);
        send(frame(3, 0xA0));
        EXPECT_EQ(read(6), hex("FF BB 03 A0 0D EB"));
        send(frame(0, 0) + frame(0, 1));
        EXPECT_TRUE(QFile::remove(pipe));
        EXPECT_EQ(mkfifo(pipe.toUtf8().constData(), 0600), 0);
    }

    void send(const QByteArray &bytes)
    {
        quint32 written = 0;
        EXPECT_EQ(bridge->write(handle, bytes.constData(), static_cast<quint32>(bytes.size()), &written),
                  Status::Ok);
    }

    QByteArray read(qsizetype length)
    {
        QByteArray bytes(length, '\x5A');
        quint32 count = 0;
        EXPECT_EQ(bridge->read(handle, bytes.data(), static_cast<quint32>(length), &count), Status::Ok);
        return bytes.left(count);
    }

    [[nodiscard]] quint32 waiting()
    {
        quint32 rx = 0;
        quint32 other = 0;
        EXPECT_EQ(bridge->getStatus(handle, &rx, &other, &other), Status::Ok);
        return rx;
    }

    /// Lets go on who opens the recording, which is empty by now.
    void release() const
    {
        QFile end(pipe);
        EXPECT_TRUE(end.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    }

    WorkingFolder folder;
    const QString pipe = folder.filePath(QStringLiteral("frames.raw"));
    simulator::SteadyClock clock;
    std::unique_ptr<simulator::Bridge> bridge;
    simulator::Handle handle = nullptr;
};

} // namespace

TEST_F(PipedRecording, a_purge_in_the_middle_of_a_read_leaves_it_what_it_took)
{
    QByteArray brought;
    std::thread reader([&] { brought = read(2 * blockBytes); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return waiting() == blockBytes; }, 20000))
        << "the first block is taken";
    EXPECT_EQ(bridge->purge(handle, 3), Status::Ok);
    EXPECT_EQ(waiting(), 0U);
    release();
    reader.join();
    EXPECT_EQ(brought, QByteArray(blockBytes, '\0'));
}

TEST_F(PipedRecording, a_close_in_the_middle_of_a_read_leaves_it_what_it_took)
{
    QByteArray brought;
    std::thread reader([&] { brought = read(2 * blockBytes); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return waiting() == blockBytes; }, 20000))
        << "the first block is taken";
    EXPECT_EQ(bridge->close(handle), Status::Ok);
    release();
    reader.join();
    EXPECT_EQ(brought, QByteArray(blockBytes, '\0'));
}
