#include "tests/imaging/recording.h"
#include "tests/support/debugoutput.h"
#include "tests/support/systemreason.h"

#include <gtest/gtest.h>

TEST(RecordingFailures, a_video_torn_while_it_was_written_is_found_when_it_closes)
{
    Recording recording(2);
    const DebugOutput output;
    recording.pipeline.startSaving(false, false, true);
    recording.feed(1);
    ASSERT_TRUE(QFile::remove(recording.folder.filePath("save/T/output_video.part.mp4")));
    recording.feed(1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains("save/T/output_video.mp4"));
    EXPECT_TRUE(output.contains(systemReason(SystemFailure::NoSuchFolder)));
}
