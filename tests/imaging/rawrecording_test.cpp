#include "imaging/rawrecording.h"
#include "tests/imaging/recording.h"

#include <gtest/gtest.h>

namespace {

/// Two raw frames that were recorded, the second of them cut short on the cable.
class RawRecordingTest : public testing::Test
{
protected:
    RawRecordingTest()
    {
        recording.pipeline.startSaving({.raw = true}, {.serial = "QV1K-7"});
        for (const QByteArray &frame : frames)
            recording.pipeline.onReadReady(frame);
    }

    void change(const QString &file, const QByteArray &before, const QByteArray &after) const
    {
        recording.folder.write(file, recording.folder.read(file).replace(before, after));
    }

    /// What is told of a recording whose index was changed.
    [[nodiscard]] QString toldOfIndex(const QByteArray &before, const QByteArray &after) const
    {
        change(index, before, after);
        return RawRecording(path).problem();
    }

    const std::array<QByteArray, 2> frames{Frames::useful(1), Frames::useful(2).first(5000)};
    Recording recording{2};
    QString path = "save/T/T.raw";
    QString index = RecordingFiles::description(path);
};

} // namespace

TEST_F(RawRecordingTest, gives_back_every_frame_as_it_came)
{
    for (const QString &name : {path, index}) {
        RawRecording read(name);
        ASSERT_EQ(read.problem(), QString());
        ASSERT_EQ(read.frameCount(), 2);
        for (int n = 0; n < 2; ++n) {
            const RawRecording::Frame frame = read.read(n);
            EXPECT_EQ(frame.problem, QString());
            EXPECT_EQ(frame.number, n + 1);
            EXPECT_TRUE(frame.time.isValid());
            EXPECT_TRUE(frame.bytes == frames.at(static_cast<std::size_t>(n)));
        }
        EXPECT_EQ(read.description()["detector"]["serial_number"], "QV1K-7");
    }
}

TEST_F(RawRecordingTest, tells_of_one_flipped_bit_and_gives_the_other_frames)
{
    QByteArray bytes = recording.folder.read(path);
    bytes[100] = static_cast<char>(bytes[100] ^ 1);
    recording.folder.write(path, bytes);
    RawRecording read(path);
    EXPECT_EQ(read.read(0).problem, path + ": frame 1 is damaged: its checksum differs");
    EXPECT_EQ(read.read(1).problem, QString());
}

TEST_F(RawRecordingTest, tells_of_a_frame_that_is_cut_off)
{
    recording.folder.write(path, recording.folder.read(path).chopped(1));
    RawRecording read(path);
    EXPECT_EQ(read.read(0).problem, QString());
    EXPECT_EQ(read.read(1).problem, path + ": frame 2 is cut off");
}

TEST_F(RawRecordingTest, tells_of_a_missing_file)
{
    EXPECT_TRUE(RawRecording("no.raw").problem().startsWith("no.raw.json cannot be read: "));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(RawRecording(path).problem().startsWith(path + " cannot be read: "));
}

TEST_F(RawRecordingTest, tells_of_an_index_that_is_damaged)
{
    EXPECT_EQ(toldOfIndex("\"number\": 2", "\"number\": -2"), index + ": the entry of frame 2 is damaged");
    EXPECT_EQ(toldOfIndex("\"crc32\"", "\"crc\""), index + ": the entry of frame 1 is damaged");
    EXPECT_EQ(toldOfIndex("\"frames\"", "\"pages\""), index + " is no index of raw frames: no frames");
    const QString told = toldOfIndex("{", "");
    EXPECT_TRUE(told.startsWith(index + " is no index of raw frames: ")) << qPrintable(told);
    EXPECT_FALSE(told.endsWith("no frames")) << "that it is no JSON";
}

TEST_F(RawRecordingTest, tells_of_a_number_in_the_index_that_cannot_be_one)
{
    const QByteArray whole = recording.folder.read(index);
    for (const QByteArray entry : {"\"number\": 2", "\"offset\": 4194304", "\"bytes\": 5000"}) {
        const QByteArray name = entry.left(entry.indexOf(' ') + 1);
        for (const QByteArray number : {"-1", "9007199254740994", "1.5", "\"2\""}) {
            EXPECT_EQ(toldOfIndex(entry, name + number), index + ": the entry of frame 2 is damaged")
                << entry.constData() << ' ' << number.constData();
            recording.folder.write(index, whole);
        }
    }
}

TEST(RawChecksum, is_that_of_zip)
{
    EXPECT_EQ(RawRecording::checksum("123456789"), 0xCBF43926U);
    EXPECT_EQ(RawRecording::checksum({}), 0U);
}
