// Stands in for a call of the system's library: what is flushed, on which thread, and how long that takes.

#include "imaging/recorder.h"
#include "tests/imaging/flushing.h"
#include "tests/imaging/pictures.h"
#include "tests/support/debugoutput.h"
#include "tests/support/systemreason.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QStringList>
#include <QTest>
#include <QThread>

#include <atomic>
#include <vector>

namespace {

QMutex mutex;
QStringList flushedPaths;
std::atomic<bool> held{false};
std::atomic<bool> failing{false};
std::atomic<bool> onCallersThread{false};

QStringList flushed()
{
    const QMutexLocker lock(&mutex);
    return flushedPaths;
}

} // namespace

bool bringToDisk(const QString &path)
{
    if (QThread::currentThread() == QCoreApplication::instance()->thread())
        onCallersThread = true;
    while (held)
        QThread::yieldCurrentThread();
    const QMutexLocker lock(&mutex);
    flushedPaths << path;
    return !failing;
}

namespace {

class Flush : public testing::Test
{
protected:
    Flush()
    {
        flushedPaths.clear();
        held = failing = onCallersThread = false;
        QDir().mkdir("root");
    }

    void record(Recorder &recorder, const QString &name)
    {
        recorder.setName(name);
        recorder.start(
            {.data = true, .picture = true, .video = true, .tiff = true, .npy = true, .raw = true});
        recorder.writeParameters("text");
        recorder.store({picture, currents, grayLevels});
        EXPECT_TRUE(recorder.stop());
    }

    [[nodiscard]] QStringList filesOf(const QString &name) const
    {
        QStringList paths;
        for (const char *file : {"/%1_data1.csv", "/%1_data_gray1.csv", "/%1_pic1.png", "/output_video.mp4",
                                 "/%1.tif", "/%1.tif.json", "/%1.npy", "/%1.npy.json", "/%1.raw",
                                 "/%1.raw.json", "/SetParameterData.txt", ""})
            paths << folder.filePath("root/" + name) + QString::fromLatin1(file).replace("%1", name);
        return paths << folder.filePath("root");
    }

    WorkingFolder folder;
    FlushingReplaced flushing;
    QImage picture = TestPictures::random(1);
    std::vector<double> currents = std::vector<double>(1024 * 1024, 12.5);
    std::vector<int> grayLevels = std::vector<int>(1024 * 1024, 21);
};

} // namespace

TEST_F(Flush, every_file_of_a_recording_and_its_folder_are_flushed_at_its_end_on_another_thread)
{
    {
        Recorder recorder("root", "T");
        record(recorder, "T");
    }
    EXPECT_EQ(flushed(), filesOf("T"));
    EXPECT_FALSE(onCallersThread);
}

TEST_F(Flush, nobody_waits_for_a_slow_disk_and_recordings_are_flushed_in_their_order)
{
    held = true;
    {
        Recorder recorder("root", "T");
        record(recorder, "A");
        record(recorder, "B");
        EXPECT_TRUE(flushed().isEmpty());
        held = false;
    }
    EXPECT_EQ(flushed(), filesOf("A") + filesOf("B")) << "the recorder's own end waits";
}

TEST_F(Flush, what_cannot_be_flushed_is_told)
{
    const DebugOutput output;
    failing = true;
    {
        Recorder recorder("root", "T");
        record(recorder, "T");
    }
    EXPECT_EQ(output.messages().filter("文件落盘失败").size(), 13);
    EXPECT_TRUE(output.contains("root/T/T_data1.csv（" + systemReason(SystemFailure::DeviceFault)));
}

TEST_F(Flush, what_is_missing_is_left_out)
{
    QDir().mkpath("root/T/T_data1.csv"); // a folder in the file's place
    const DebugOutput output;
    {
        Recorder recorder("root", "T");
        record(recorder, "T");
        EXPECT_EQ(recorder.failedFiles(), 1);
    }
    EXPECT_EQ(output.messages().size(), 1);
}
