#include "tests/imaging/recording.h"
#include "tests/imaging/video.h"

#include <gtest/gtest.h>

#include <QDateTime>

TEST(Recording, a_single_frame_is_told_once_and_ends_the_recording)
{
    Recording recording(1);
    recording.pipeline.startSaving(false, true, false);
    recording.feed(3);
    EXPECT_EQ(recording.progress(), QList<int>{1});
    EXPECT_FALSE(recording.pipeline.isSaving());
    EXPECT_EQ(recording.files(), QStringList{"T_pic1.png"});
}

TEST(Recording, it_still_runs_while_its_last_frame_is_told)
{
    Recording recording(1);
    bool running = false;
    bool complete = false;
    QObject::connect(&recording.pipeline, &ProcessImage::saveMessage, [&] {
        running = recording.pipeline.isSaving();
        complete = recording.folder.read("save/T/T_data1.csv").endsWith('\n');
    });
    recording.pipeline.startSaving(true, false, false);
    recording.feed(1);
    EXPECT_TRUE(running);
    EXPECT_TRUE(complete);
}

TEST(Recording, nothing_is_stored_before_it_is_started)
{
    Recording recording;
    recording.feed(2);
    EXPECT_TRUE(recording.progress().isEmpty());
    EXPECT_TRUE(QDir(recording.folder.filePath("save")).isEmpty());
}

TEST(Recording, a_stop_half_way_keeps_what_is_stored_and_closes_the_video)
{
    Recording recording(5);
    recording.pipeline.startSaving(true, true, true);
    recording.feed(2);
    EXPECT_TRUE(recording.pipeline.isSaving());
    EXPECT_TRUE(recording.pipeline.stopSaving());
    EXPECT_FALSE(recording.pipeline.isSaving());
    EXPECT_FALSE(recording.pipeline.stopSaving());
    EXPECT_EQ(Video(recording.stored.video()).frames(), 2);
    recording.feed(2);
    EXPECT_EQ(recording.progress(), (QList<int>{1, 2}));
    EXPECT_EQ(recording.files().size(), 2 * 3 + 1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
}

TEST(Recording, a_stop_while_idle_changes_nothing)
{
    Recording recording;
    EXPECT_FALSE(recording.pipeline.stopSaving());
    EXPECT_FALSE(recording.pipeline.isSaving());
    EXPECT_TRUE(QDir(recording.folder.filePath("save")).isEmpty());
}

TEST(Recording, a_stop_from_within_the_progress_signal_ends_it)
{
    Recording recording(3);
    QObject::connect(&recording.pipeline, &ProcessImage::saveMessage,
                     [&] { recording.pipeline.stopSaving(); });
    recording.pipeline.startSaving(false, true, true);
    recording.feed(2);
    EXPECT_EQ(recording.progress(), QList<int>{1});
    EXPECT_EQ(Video(recording.stored.video()).frames(), 1);
}

TEST(Recording, a_video_stopped_before_its_first_frame_is_no_failure)
{
    Recording recording(3);
    recording.pipeline.startSaving(false, false, true);
    EXPECT_TRUE(recording.pipeline.stopSaving());
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
}

TEST(Recording, a_pipeline_that_goes_away_closes_its_video)
{
    WorkingFolder folder;
    {
        ProcessImage pipeline;
        pipeline.setLogPath(folder.path());
        pipeline.setTimeStamp("T");
        pipeline.startSaving(false, false, true);
        pipeline.onReadReady(Frames::useful(1));
    }
    EXPECT_EQ(Video(folder.filePath("T/output_video.mp4")).frames(), 1);
}

TEST(Recording, a_second_recording_counts_from_one_again)
{
    Recording recording(2);
    for (const char *name : {"A", "B"}) {
        recording.pipeline.setTimeStamp(name);
        recording.pipeline.startSaving(false, true, true);
        recording.feed(2);
    }
    EXPECT_EQ(recording.progress(), (QList<int>{1, 2, 1, 2}));
    for (const char *name : {"A", "B"}) {
        EXPECT_TRUE(QFile::exists(recording.folder.filePath(QString("save/%1/%1_pic2.png").arg(name))));
        EXPECT_EQ(Video(recording.folder.filePath(QString("save/%1/output_video.mp4").arg(name))).frames(),
                  2);
    }
}

TEST(Recording, the_same_name_twice_overwrites_the_files_of_the_same_numbers)
{
    Recording recording(3);
    recording.pipeline.startSaving(true, true, true);
    recording.feed(3);
    const QByteArray third = recording.folder.read("save/T/T_data3.csv");
    recording.pipeline.setSaveFrameTotal(1);
    recording.pipeline.startSaving(true, true, true);
    recording.pipeline.onReadReady(Frames::flat(Frames::sampleOf(5)));
    EXPECT_TRUE(recording.folder.read("save/T/T_data1.csv").startsWith("5,5,5,"));
    EXPECT_EQ(recording.folder.read("save/T/T_data1.csv").size(), 2 * 1024 * 1024);
    EXPECT_EQ(QImage(recording.folder.filePath("save/T/T_pic1.png")).constBits()[0], 255);
    EXPECT_TRUE(recording.folder.read("save/T/T_data3.csv") == third);
    EXPECT_EQ(Video(recording.stored.video()).frames(), 1);
}

TEST(Recording, a_start_while_one_runs_closes_its_video_and_begins_anew)
{
    Recording recording(5);
    recording.pipeline.startSaving(false, false, true);
    recording.feed(2);
    recording.pipeline.setTimeStamp("U");
    recording.pipeline.startSaving(false, true, false);
    recording.feed(1);
    EXPECT_EQ(Video(recording.stored.video()).frames(), 2);
    EXPECT_EQ(recording.progress(), (QList<int>{1, 2, 1}));
    EXPECT_TRUE(QFile::exists(recording.folder.filePath("save/U/U_pic1.png")));
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
}

TEST(Recording, a_start_with_no_form_ends_a_running_one)
{
    Recording recording(5);
    recording.pipeline.startSaving(false, false, true);
    recording.feed(1);
    recording.pipeline.startSaving(false, false, false);
    EXPECT_FALSE(recording.pipeline.isSaving());
    EXPECT_EQ(Video(recording.stored.video()).frames(), 1);
}

TEST(Recording, a_total_that_is_never_reached_records_until_it_is_stopped)
{
    Recording recording(0);
    recording.pipeline.startSaving(false, true, false);
    recording.feed(3);
    EXPECT_TRUE(recording.pipeline.isSaving());
    EXPECT_TRUE(recording.pipeline.stopSaving());
    EXPECT_EQ(recording.files().size(), 3);
}

TEST(Recording, an_empty_save_path_is_ignored)
{
    Recording recording;
    recording.pipeline.setLogPath(QString());
    recording.pipeline.startSaving(false, true, false);
    recording.feed(1);
    EXPECT_EQ(recording.files(), QStringList{"T_pic1.png"});
}

TEST(Recording, without_a_save_path_it_lies_under_the_log_folder_and_has_the_time_for_a_name)
{
    const WorkingFolder folder;
    QDir(folder.path()).mkdir("Logs");
    ProcessImage pipeline;
    pipeline.setSaveFrameTotal(1);
    pipeline.startSaving(false, true, false);
    pipeline.onReadReady(Frames::useful(1));
    QStringList names = QDir(folder.filePath("Logs")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    names.removeAll("calib");
    ASSERT_EQ(names.size(), 1);
    EXPECT_TRUE(QDateTime::fromString(names[0], "yyyyMMdd_hhmmss").isValid());
    EXPECT_TRUE(QFile::exists(folder.filePath("Logs/" + names[0] + "/" + names[0] + "_pic1.png")));
}

TEST(Recording, the_picture_goes_out_before_its_files_are_written)
{
    Recording recording;
    bool written = true;
    QObject::connect(&recording.pipeline, &ProcessImage::sendImagetoMain,
                     [&] { written = !recording.files().isEmpty(); });
    recording.pipeline.startSaving(false, true, false);
    recording.feed(1);
    EXPECT_FALSE(written);
    EXPECT_EQ(recording.files(), QStringList{"T_pic1.png"});
}
