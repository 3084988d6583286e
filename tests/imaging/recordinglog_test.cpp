#include "tests/imaging/recording.h"
#include "tests/support/logfile.h"

#include <gtest/gtest.h>

namespace {

/// A recording with the program's log in the same working folder.
struct LoggedRecording : Recording
{
    explicit LoggedRecording(int frames) : Recording(frames) { LogManager::createInstance(); }
    ~LoggedRecording() { LogManager::destroyInstance(); }
    Q_DISABLE_COPY_MOVE(LoggedRecording)

    /// The messages, once there are that many behind the first, which is the log's own.
    [[nodiscard]] QStringList lines(int count) const
    {
        QStringList all;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                all = logMessages(QString::fromUtf8(folder.read(logName()))).mid(1);
                return all.size() >= count;
            },
            15000));
        return all;
    }
};

} // namespace

TEST(RecordingLog, tells_folder_forms_frames_and_where_they_come_from_and_then_that_it_is_complete)
{
    LoggedRecording recording(2);
    recording.pipeline.setProvenance("驱动库：/a%1.so（模拟数据）");
    recording.pipeline.startSaving(true, true, true);
    recording.feed(2);
    EXPECT_EQ(recording.lines(2),
              QStringList({"开始保存：" + recording.stored.folder() +
                               "，数据、图片、视频，目标 2 帧，驱动库：/a%1.so（模拟数据）",
                           "保存完成：" + recording.stored.folder() + "，已存 2 / 2 帧，失败文件 0 个"}));
}

TEST(RecordingLog, tells_that_it_was_ended_early_also_without_a_frame)
{
    LoggedRecording recording(5);
    recording.pipeline.startSaving(false, true, false);
    recording.feed(1);
    recording.pipeline.stopSaving();
    recording.pipeline.setSaveFrameTotal(0);
    recording.pipeline.startSaving(false, false, true);
    recording.pipeline.stopSaving();
    EXPECT_EQ(recording.lines(4),
              QStringList({"开始保存：" + recording.stored.folder() + "，图片，目标 5 帧",
                           "保存中止：" + recording.stored.folder() + "，已存 1 / 5 帧，失败文件 0 个",
                           "开始保存：" + recording.stored.folder() + "，视频，目标 0 帧",
                           "保存中止：" + recording.stored.folder() + "，已存 0 / 0 帧，失败文件 0 个"}));
}

TEST(RecordingLog, tells_the_forms_that_are_one_file_of_all_frames)
{
    LoggedRecording recording(1);
    recording.pipeline.startSaving({.tiff = true, .npy = true, .raw = true}, {});
    recording.feed(1);
    EXPECT_EQ(recording.lines(2).first(),
              "开始保存：" + recording.stored.folder() + "，TIFF、NumPy、原始帧，目标 1 帧");
}

TEST(RecordingLog, counts_the_files_that_failed)
{
    LoggedRecording recording(1);
    QDir(recording.folder.path()).mkpath("save/T/T_data1.csv");
    recording.pipeline.startSaving(true, true, false);
    recording.feed(1);
    EXPECT_EQ(recording.lines(3).last(),
              "保存完成：" + recording.stored.folder() + "，已存 1 / 1 帧，失败文件 1 个");
}

TEST(RecordingLog, says_nothing_where_nothing_is_recorded)
{
    LoggedRecording recording(1);
    recording.pipeline.startSaving(false, false, false);
    recording.feed(1);
    recording.pipeline.stopSaving();
    LogManager::destroyInstance();
    EXPECT_FALSE(recording.folder.read(logName()).contains("保存"));
}
