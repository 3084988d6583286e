#include "tests/simulator/bytes.h"
#include "tests/support/workingfolder.h"

#include "simulator/sensor/testpatterns.h"

#include <QLibrary>
#include <QTest>

#include <array>
#include <atomic>

namespace {

/// The shared library, known by its C names only.
class Library
{
public:
    template <typename... Arguments>
    quint32 call(const char *name, Arguments... arguments)
    {
        using Function = quint32 (*)(Arguments...);
        const auto function = reinterpret_cast<Function>(m_library.resolve(name));
        if (function == nullptr) {
            ADD_FAILURE() << name << " is missing: " << qPrintable(m_library.errorString());
            return ~0U;
        }
        return function(arguments...);
    }

    [[nodiscard]] QFunctionPointer resolve(const char *name) { return m_library.resolve(name); }

private:
    QLibrary m_library{QStringLiteral(QV1K_VIRTUAL_LIBRARY)};
};

class VirtualLibrary : public testing::Test
{
protected:
    void open()
    {
        std::array<char, 5> serialNumber{"QV1K"};
        void *key = serialNumber.data();
        ASSERT_EQ(library.call("FT_OpenEx", key, quint32{1}, &handle), 0U);
        EXPECT_EQ(library.call("FT_ResetDevice", handle), 0U);
        EXPECT_EQ(library.call("FT_SetBitMode", handle, quint8{0xFF}, quint8{0x40}), 0U);
        EXPECT_EQ(library.call("FT_SetLatencyTimer", handle, quint8{2}), 0U);
        EXPECT_EQ(library.call("FT_SetUSBParameters", handle, quint32{65536}, quint32{65536}), 0U);
        EXPECT_EQ(library.call("FT_SetFlowControl", handle, quint16{0x0100}, quint8{0}, quint8{0}), 0U);
        EXPECT_EQ(library.call("FT_Purge", handle, quint32{3}), 0U);
        EXPECT_EQ(library.call("FT_SetTimeouts", handle, quint32{5000}, quint32{10}), 0U);
    }

    void send(QByteArray bytes)
    {
        quint32 written = 0;
        void *buffer = bytes.data();
        EXPECT_EQ(library.call("FT_Write", handle, buffer, static_cast<quint32>(bytes.size()), &written), 0U);
        EXPECT_EQ(written, bytes.size());
    }

    QByteArray receive(qsizetype length)
    {
        QByteArray bytes(length, '\0');
        quint32 count = 0;
        void *buffer = bytes.data();
        EXPECT_EQ(library.call("FT_Read", handle, buffer, static_cast<quint32>(length), &count), 0U);
        return bytes.left(count);
    }

    WorkingFolder folder;
    Library library;
    void *handle = nullptr;
};

} // namespace

TEST_F(VirtualLibrary, exports_every_call)
{
    for (const char *name : {"FT_CreateDeviceInfoList", "FT_GetDeviceInfoList", "FT_OpenEx", "FT_Close",
                             "FT_ResetDevice", "FT_SetBitMode", "FT_SetLatencyTimer", "FT_SetUSBParameters",
                             "FT_SetFlowControl", "FT_Purge", "FT_SetTimeouts", "FT_GetStatus", "FT_Read",
                             "FT_Write", "QV1K_SetDeviceEventCallback", "QV1K_IsSimulated"})
        EXPECT_NE(library.resolve(name), nullptr) << name;
}

TEST_F(VirtualLibrary, lists_the_detector_in_records_of_104_bytes)
{
    quint32 count = 0;
    ASSERT_EQ(library.call("FT_CreateDeviceInfoList", &count), 0U);
    ASSERT_EQ(count, 1U);
    QByteArray record(104, '\x5A');
    void *records = record.data();
    ASSERT_EQ(library.call("FT_GetDeviceInfoList", records, &count), 0U);
    EXPECT_STREQ(record.constData() + 16, "QV1K");
    EXPECT_STREQ(record.constData() + 32, "QV1K virtual detector");
    EXPECT_EQ(record.right(8), QByteArray(8, '\0'));
}

TEST_F(VirtualLibrary, streams_two_frames_from_open_to_close)
{
    folder.write(QStringLiteral("virtual-detector.ini"), "Pacing=none\n");
    open();
    send(frame(3, 0xCF));
    EXPECT_EQ(receive(6), hex("FF BB 03 CF 0D EB"));
    send(frame(3, 0xAA));
    EXPECT_EQ(receive(6), hex("FF BB 03 AA 01 EB"));
    send(frame(3, 0xA0));
    EXPECT_EQ(receive(6), hex("FF BB 03 A0 0D EB"));
    for (quint64 image = 0; image < 2; ++image) {
        QByteArray raw;
        for (int block = 0; block < 32; ++block) {
            send(frame(0, block));
            raw += receive(131072);
        }
        ASSERT_EQ(raw.size(), 4194304);
        for (qsizetype i = 0; i < 1048576; ++i)
            ASSERT_EQ(sampleAt(raw, i), simulator::counterSample(image, i)) << i;
    }
    send(frame(3, 0xA1));
    EXPECT_EQ(receive(6), hex("FF BB 03 A1 0D EB"));
    quint32 rx = 1;
    quint32 tx = 1;
    quint32 events = 1;
    EXPECT_EQ(library.call("FT_GetStatus", handle, &rx, &tx, &events), 0U);
    EXPECT_EQ(rx, 0U);
    EXPECT_EQ(library.call("FT_Close", handle), 0U);
    EXPECT_EQ(library.call("FT_Close", handle), 1U);
}

TEST_F(VirtualLibrary, keeps_to_the_frame_rate_of_its_timing)
{
    open();
    send(frame(3, 0xA0));
    EXPECT_EQ(receive(6).size(), 6);
    QElapsedTimer timer;
    timer.start();
    for (int image = 0; image < 3; ++image) {
        for (int block = 0; block < 32; ++block) {
            send(frame(0, block));
            ASSERT_EQ(receive(131072).size(), 131072);
        }
    }
    EXPECT_GE(timer.elapsed(), 2 * 158 - 5) << "the first frame is due at the start";
    EXPECT_EQ(library.call("FT_Close", handle), 0U);
}

TEST_F(VirtualLibrary, refuses_null_pointers_and_wild_handles)
{
    void *null = nullptr;
    void *wild = this;
    EXPECT_EQ(library.call("FT_OpenEx", null, quint32{1}, &handle), 6U);
    EXPECT_EQ(library.call("FT_OpenEx", wild, quint32{1}, static_cast<void **>(nullptr)), 6U);
    EXPECT_EQ(library.call("FT_Close", wild), 1U);
    EXPECT_EQ(library.call("FT_Close", null), 1U);
}

TEST_F(VirtualLibrary, reports_that_the_cable_was_pulled)
{
    using Callback = void (*)(void *, int);
    const auto set =
        reinterpret_cast<void (*)(Callback, void *)>(library.resolve("QV1K_SetDeviceEventCallback"));
    ASSERT_NE(set, nullptr);
    std::atomic<int> told{-1};
    set([](void *context, int arrived) { *static_cast<std::atomic<int> *>(context) = arrived; }, &told);
    folder.write(QStringLiteral("virtual-detector.ini"), "Attached=false\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return told == 0; }, 10000));
    set(nullptr, nullptr);
    quint32 count = 1;
    EXPECT_EQ(library.call("FT_CreateDeviceInfoList", &count), 0U);
    EXPECT_EQ(count, 0U);
}
