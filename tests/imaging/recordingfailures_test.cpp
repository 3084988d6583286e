#include "log/logmanager.h"
#include "tests/imaging/recording.h"
#include "tests/support/debugoutput.h"
#include "tests/support/limitedwriting.h"
#include "tests/support/logfile.h"
#include "tests/support/systemreason.h"

#include <gtest/gtest.h>

// Folders and files are made unusable in ways that hold for every user, the administrator included: a file
// stands where a folder should be, or tests/support/limitedwriting.h has a way.

namespace {

/// A disk that is full under one file of a recording.
class FullDiskUnder
{
public:
    FullDiskUnder(const Recording &recording, const QString &file)
        : m_isMade(QDir(recording.folder.path()).mkdir("save/T")),
          m_file(recording.folder.filePath("save/T/" + file))
    {
        EXPECT_TRUE(m_isMade);
    }

private:
    bool m_isMade;
    FullFile m_file;
};

int linesWith(const DebugOutput &output, const QString &text)
{
    return static_cast<int>(output.messages().filter(text).size());
}

int linesWith(const DebugOutput &output, SystemFailure failure)
{
    return linesWith(output, systemReason(failure));
}

} // namespace

TEST(RecordingFailures, a_missing_save_folder_loses_every_file_with_a_line_each_and_goes_on_counting)
{
    Recording recording(2);
    recording.pipeline.setLogPath(recording.folder.filePath("missing"));
    const DebugOutput output;
    recording.pipeline.startSaving(true, true, true);
    EXPECT_TRUE(recording.pipeline.isSaving());
    recording.pipeline.writeParameterFile("text");
    recording.feed(2);
    EXPECT_FALSE(recording.pipeline.isSaving());
    EXPECT_EQ(recording.progress(), (QList<int>{1, 2}));
    EXPECT_EQ(recording.pipeline.failedFiles(), 2 * 3 + 1 + 1);
    EXPECT_EQ(output.messages().size(), 2 * 3 + 1 + 1);
    for (const char *name : {"T_data1.csv", "T_data_gray1.csv", "T_pic1.png", "T_data2.csv",
                             "T_data_gray2.csv", "T_pic2.png", "output_video.mp4", "SetParameterData.txt"})
        EXPECT_EQ(linesWith(output, recording.folder.filePath("missing/T/") + name), 1) << name;
    EXPECT_EQ(linesWith(output, SystemFailure::NoSuchFolder), 8);
    EXPECT_FALSE(QDir(recording.folder.filePath("missing")).exists());
}

TEST(RecordingFailures, a_file_where_the_recording_folder_should_be_loses_every_file_with_a_line_each)
{
    Recording recording(1);
    recording.folder.write("save/T", "a file");
    const DebugOutput output;
    recording.pipeline.startSaving(true, true, true);
    recording.feed(1);
    EXPECT_EQ(recording.progress(), QList<int>{1});
    EXPECT_EQ(recording.pipeline.failedFiles(), 4);
    EXPECT_EQ(output.messages().size(), 4);
    EXPECT_EQ(linesWith(output, SystemFailure::NotAFolder), 4);
    EXPECT_EQ(recording.folder.read("save/T"), "a file");
}

TEST(RecordingFailures, a_folder_where_a_file_should_be_loses_that_file_alone)
{
    Recording recording(2);
    QDir(recording.folder.path()).mkpath("save/T/T_data_gray1.csv");
    const DebugOutput output;
    recording.pipeline.startSaving(true, true, true);
    recording.feed(2);
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains("save/T/T_data_gray1.csv"));
    EXPECT_TRUE(output.contains(systemReason(SystemFailure::IsAFolder)));
    EXPECT_EQ(recording.files().size(), 2 * 3 + 1 - 1);
}

TEST(RecordingFailures, a_full_disk_under_any_file_leaves_one_line_with_the_reason)
{
    for (const char *file : {"T_data1.csv", "T_data_gray1.csv", "T_pic1.png"}) {
        SCOPED_TRACE(file);
        Recording recording(1);
        const FullDiskUnder disk(recording, file);
        const DebugOutput output;
        recording.pipeline.startSaving(true, true, false);
        recording.feed(1);
        EXPECT_EQ(recording.progress(), QList<int>{1});
        EXPECT_EQ(recording.pipeline.failedFiles(), 1);
        ASSERT_EQ(output.messages().size(), 1);
        EXPECT_TRUE(output.contains(file));
        EXPECT_TRUE(output.contains(systemReason(SystemFailure::DiskFull)));
    }
}

TEST(RecordingFailures, a_full_disk_under_the_parameter_file_leaves_one_line)
{
    Recording recording(1);
    const FullDiskUnder disk(recording, "SetParameterData.txt");
    const DebugOutput output;
    recording.pipeline.startSaving(true, false, false);
    recording.pipeline.writeParameterFile("Vss: 1 V\n");
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains("SetParameterData.txt"));
    EXPECT_TRUE(output.contains(systemReason(SystemFailure::DiskFull)));
}

TEST(RecordingFailures, a_full_disk_under_the_video_leaves_one_line_however_many_frames)
{
    Recording recording(3);
    const FileSizeLimit limit(0);
    const DebugOutput output;
    recording.pipeline.startSaving(false, false, true);
    recording.feed(3);
    EXPECT_EQ(recording.progress(), (QList<int>{1, 2, 3}));
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains("save/T/output_video.mp4"));
    EXPECT_TRUE(output.contains(systemReason(SystemFailure::FileTooLarge)));
}

TEST(RecordingFailures, a_disk_that_fills_up_loses_the_large_files_with_a_line_each)
{
    Recording recording(2);
    recording.pipeline.setContrastRatio(1.0); // pictures with detail, which take some room
    const DebugOutput output;
    recording.pipeline.startSaving(true, true, true);
    {
        const FileSizeLimit limit(200'000);
        recording.pipeline.writeParameterFile("Vss: 1 V\n");
        recording.feed(2);
    }
    EXPECT_EQ(recording.progress(), (QList<int>{1, 2}));
    EXPECT_EQ(recording.pipeline.failedFiles(), 2 * 3 + 1);
    EXPECT_EQ(output.messages().size(), 2 * 3 + 1);
    EXPECT_EQ(linesWith(output, SystemFailure::FileTooLarge), 2 * 3 + 1);
    EXPECT_EQ(linesWith(output, "output_video.mp4"), 1);
    EXPECT_EQ(recording.files(), QStringList("SetParameterData.txt")) << "nothing that is cut";
    EXPECT_EQ(recording.folder.read("save/T/SetParameterData.txt"), "Vss: 1 V\n");
}

TEST(RecordingFailures, a_read_only_folder_loses_every_file_with_a_line_each)
{
    Recording recording(1);
    QDir(recording.folder.path()).mkdir("save/T");
    const ReadOnlyFolder readOnly(recording.folder.filePath("save/T"));
    const DebugOutput output;
    recording.pipeline.startSaving(true, true, true);
    recording.pipeline.writeParameterFile("text");
    recording.feed(1);
    EXPECT_EQ(recording.progress(), QList<int>{1});
    EXPECT_EQ(recording.pipeline.failedFiles(), 5);
    EXPECT_EQ(output.messages().size(), 5);
    EXPECT_EQ(linesWith(output, SystemFailure::NoAccess), 5);
    EXPECT_TRUE(recording.files().isEmpty());
}

TEST(RecordingFailures, a_read_only_save_path_loses_every_file_with_a_line_each)
{
    Recording recording(1);
    const ReadOnlyFolder readOnly(recording.folder.filePath("save"));
    const DebugOutput output;
    recording.pipeline.startSaving(true, true, false);
    recording.feed(1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 3);
    EXPECT_EQ(linesWith(output, SystemFailure::NoSuchFolder), 3);
    EXPECT_FALSE(QDir(recording.folder.filePath("save/T")).exists());
}

TEST(RecordingFailures, a_video_that_did_not_open_is_told_at_once_and_only_once)
{
    Recording recording(3);
    QDir(recording.folder.path()).mkpath("save/T/output_video.mp4");
    const DebugOutput output;
    recording.pipeline.startSaving(false, true, true);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains("save/T/output_video.mp4"));
    EXPECT_TRUE(output.contains(systemReason(SystemFailure::IsAFolder)));
    recording.feed(3);
    EXPECT_EQ(output.messages().size(), 1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    EXPECT_EQ(recording.files().size(), 3);
}

TEST(RecordingFailures, a_frame_that_the_video_does_not_take_is_found_when_it_closes)
{
    Recording recording(2);
    const DebugOutput output;
    recording.pipeline.startSaving(false, false, true);
    recording.feed(1);
    recording.pipeline.saveFrame(QImage());
    EXPECT_EQ(recording.progress(), (QList<int>{1, 2}));
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    EXPECT_EQ(output.messages().size(), 1);
}

TEST(RecordingFailures, the_count_starts_anew_with_each_recording)
{
    Recording recording(1);
    const DebugOutput output;
    recording.pipeline.setLogPath("no/such");
    recording.pipeline.startSaving(false, true, false);
    recording.feed(1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    recording.pipeline.setLogPath(recording.stored.root);
    recording.pipeline.startSaving(false, true, false);
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
    recording.feed(1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
}

TEST(RecordingFailures, with_a_log_the_line_stands_there_once_and_is_repeated_once_on_the_debug_output)
{
    Recording recording(1);
    const DebugOutput output;
    LogManager::createInstance();
    recording.pipeline.setLogPath("no/such");
    recording.pipeline.startSaving(true, false, false);
    recording.feed(1);
    LogManager::destroyInstance(); // after the lines are written
    const QString log = QString::fromUtf8(recording.folder.read(logName()));
    EXPECT_EQ(log.count("no/such/T/T_data1.csv"), 1);
    EXPECT_EQ(log.count("no/such/T/T_data_gray1.csv"), 1);
    EXPECT_EQ(log.count(systemReason(SystemFailure::NoSuchFolder)), 2);
}
