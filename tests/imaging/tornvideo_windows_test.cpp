#include "tests/imaging/recording.h"
#include "tests/support/debugoutput.h"

#include <gtest/gtest.h>

TEST(RecordingFailures, a_video_cannot_be_taken_away_while_it_is_written)
{
    Recording recording(2);
    const DebugOutput output;
    recording.pipeline.startSaving(false, false, true);
    recording.feed(1);
    EXPECT_FALSE(QFile::remove(recording.folder.filePath("save/T/output_video.part.mp4")));
    recording.feed(1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
    EXPECT_EQ(output.messages(), QStringList());
    EXPECT_EQ(recording.files(), QStringList("output_video.mp4"));
}
