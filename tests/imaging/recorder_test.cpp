#include "imaging/recorder.h"
#include "tests/imaging/pictures.h"
#include "tests/imaging/video.h"
#include "tests/support/debugoutput.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QDir>

#include <vector>

namespace {

constexpr RecordingForms dataOnly{.data = true};
constexpr RecordingForms pictureOnly{.picture = true};
constexpr RecordingForms videoOnly{.video = true};
constexpr RecordingForms everyForm{.data = true, .picture = true, .video = true};

/// A recorder below an empty working folder, and one frame to store.
class RecorderTest : public testing::Test
{
protected:
    void store(int frames = 1)
    {
        for (int n = 0; n < frames; ++n)
            recorder.store({picture, currents, grayLevels});
    }

    [[nodiscard]] QStringList stored() const
    {
        return QDir(files.folder()).entryList(QDir::Files, QDir::Name);
    }

    WorkingFolder folder;
    RecordingFiles files{".", "T"};
    Recorder recorder{files.root, files.name};
    QImage picture = TestPictures::random(1);
    std::vector<double> currents = std::vector<double>(1024 * 1024, 12.5);
    std::vector<int> grayLevels = std::vector<int>(1024 * 1024, 21);
};

} // namespace

TEST_F(RecorderTest, a_frame_is_stored_in_every_form_under_its_number)
{
    recorder.start(everyForm);
    store(2);
    EXPECT_EQ(recorder.storedFrames(), 2);
    EXPECT_TRUE(recorder.stop());
    EXPECT_EQ(stored(), QStringList({"T_data1.csv", "T_data2.csv", "T_data_gray1.csv", "T_data_gray2.csv",
                                     "T_pic1.png", "T_pic2.png", "output_video.mp4"}));
    EXPECT_TRUE(folder.read(files.data(1)) == (QByteArray("12.5,").repeated(1023) + "12.5\n").repeated(1024));
    EXPECT_TRUE(folder.read(files.grayData(2)) == (QByteArray("21,").repeated(1023) + "21\n").repeated(1024));
    EXPECT_EQ(QImage(files.picture(2)), picture);
    EXPECT_EQ(Video(files.video()).frames(), 2);
    EXPECT_EQ(recorder.failedFiles(), 0);
}

TEST_F(RecorderTest, nothing_runs_at_first_or_without_a_form)
{
    EXPECT_FALSE(recorder.isRunning());
    EXPECT_EQ(recorder.frameTotal(), 5);
    recorder.start({});
    EXPECT_FALSE(recorder.isRunning());
    EXPECT_FALSE(recorder.stop());
    EXPECT_FALSE(QDir(files.folder()).exists());
}

TEST_F(RecorderTest, it_runs_until_it_is_told_that_its_last_frame_is_through)
{
    recorder.setFrameTotal(2);
    recorder.start(pictureOnly);
    store();
    recorder.endWhenComplete();
    EXPECT_TRUE(recorder.isRunning());
    store();
    EXPECT_TRUE(recorder.isRunning());
    recorder.endWhenComplete();
    EXPECT_FALSE(recorder.isRunning());
    EXPECT_EQ(recorder.storedFrames(), 2);
}

TEST_F(RecorderTest, a_stop_counts_from_the_start_again)
{
    recorder.start(pictureOnly);
    store();
    EXPECT_TRUE(recorder.stop());
    EXPECT_FALSE(recorder.stop());
    EXPECT_EQ(recorder.storedFrames(), 0);
}

TEST_F(RecorderTest, another_name_or_folder_holds_for_the_next_recording)
{
    QDir().mkpath("other/U");
    recorder.start({.data = true, .picture = true, .video = true});
    store();
    recorder.setRoot("other");
    recorder.setName("U");
    store();
    recorder.writeParameters("text");
    EXPECT_TRUE(recorder.stop());
    EXPECT_EQ(stored(), QStringList({"SetParameterData.txt", "T_data1.csv", "T_data2.csv", "T_data_gray1.csv",
                                     "T_data_gray2.csv", "T_pic1.png", "T_pic2.png", "output_video.mp4"}));
    EXPECT_EQ(Video(files.video()).frames(), 2);
    EXPECT_TRUE(QDir("other/U").isEmpty());

    recorder.start(pictureOnly);
    store();
    recorder.writeParameters("text");
    EXPECT_EQ(QDir("other/U").entryList(QDir::Files), QStringList({"SetParameterData.txt", "U_pic1.png"}));
    EXPECT_EQ(recorder.failedFiles(), 0);
}

TEST_F(RecorderTest, parameters_belong_to_the_next_recording_while_none_runs)
{
    QDir().mkpath("other/U");
    recorder.setRoot("other");
    recorder.setName("U");
    recorder.writeParameters("text");
    EXPECT_EQ(folder.read("other/U/SetParameterData.txt"), "text");
    EXPECT_EQ(recorder.failedFiles(), 0);
}

TEST_F(RecorderTest, what_became_of_it_is_told_after_its_end_too)
{
    recorder.setFrameTotal(3);
    recorder.start(pictureOnly);
    EXPECT_FALSE(recorder.result().complete());
    store(2);
    EXPECT_TRUE(recorder.stop());
    EXPECT_EQ(recorder.result().stored, 2);
    EXPECT_EQ(recorder.result().wanted, 3);
    EXPECT_FALSE(recorder.result().complete());
    recorder.start(pictureOnly);
    EXPECT_EQ(recorder.result().stored, 0);
    store(3);
    recorder.endWhenComplete();
    EXPECT_TRUE(recorder.result().complete());
}

TEST_F(RecorderTest, an_exception_is_the_failure_of_its_file_and_the_others_are_stored)
{
    const DebugOutput output;
    recorder.start(everyForm);
    const QImage tooWide(1'200'000, 1, QImage::Format_Grayscale8); // more than a PNG takes
    EXPECT_NO_THROW(recorder.store({tooWide, currents, grayLevels}));
    EXPECT_EQ(recorder.failedFiles(), 1);
    EXPECT_EQ(output.messages().filter("T_pic1.png").filter("文件写入异常").size(), 1);
    store();
    EXPECT_TRUE(recorder.stop());
    EXPECT_TRUE(stored().contains("T_data1.csv"));
    EXPECT_TRUE(stored().contains("T_pic2.png"));
    EXPECT_TRUE(stored().filter(".part").isEmpty());
}

TEST_F(RecorderTest, an_empty_folder_is_ignored)
{
    recorder.setRoot(QString());
    recorder.start(pictureOnly);
    store();
    EXPECT_EQ(stored(), QStringList("T_pic1.png"));
}

TEST_F(RecorderTest, one_that_goes_away_closes_its_video)
{
    {
        Recorder leaving(files.root, files.name);
        leaving.start(videoOnly);
        leaving.store({picture, currents, grayLevels});
    }
    EXPECT_EQ(Video(files.video()).frames(), 1);
}

TEST_F(RecorderTest, failures_are_told_and_counted_from_each_start)
{
    const DebugOutput output;
    recorder.setName("no/such");
    recorder.start(dataOnly);
    store();
    recorder.writeParameters("text");
    EXPECT_EQ(recorder.failedFiles(), 3);
    EXPECT_EQ(output.messages().size(), 3);
    EXPECT_TRUE(recorder.isRunning());
    recorder.setName(files.name);
    recorder.start(dataOnly);
    EXPECT_EQ(recorder.failedFiles(), 0);
}

TEST_F(RecorderTest, a_video_is_judged_when_it_ends)
{
    const DebugOutput output;
    recorder.start(videoOnly);
    store();
    recorder.store({QImage(), currents, grayLevels});
    EXPECT_EQ(recorder.failedFiles(), 0);
    EXPECT_TRUE(recorder.stop());
    EXPECT_EQ(recorder.failedFiles(), 1);
    EXPECT_TRUE(output.contains("1 / 2 frames"));
}
