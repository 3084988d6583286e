// Names that lead elsewhere: links and devices, as systems with links have them.

#include "imaging/outputfile.h"
#include "imaging/recorder.h"
#include "tests/support/debugoutput.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QDir>

TEST(OutputFile, a_link_leads_to_the_file_that_is_replaced)
{
    const WorkingFolder folder;
    QDir().mkdir("elsewhere");
    folder.write("elsewhere/b.csv", "before");
    ASSERT_TRUE(QFile::link(folder.filePath("elsewhere/b.csv"), "a.csv"));
    OutputFile file("a.csv");
    file.write("whole");
    EXPECT_EQ(file.finish(), QString());
    EXPECT_EQ(folder.read("elsewhere/b.csv"), "whole");
    EXPECT_TRUE(QFileInfo("a.csv").isSymLink());
    EXPECT_EQ(QDir("elsewhere").entryList(QDir::Files), QStringList("b.csv"));
}

TEST(OutputFile, a_device_is_written_itself)
{
    const WorkingFolder folder;
    ASSERT_TRUE(QFile::link("/dev/null", "a.csv"));
    OutputFile file("a.csv");
    file.write("text");
    EXPECT_EQ(file.finish(), QString());
    EXPECT_TRUE(QFileInfo::exists("/dev/null"));
    EXPECT_TRUE(QFileInfo("a.csv").isSymLink());
}

TEST(OutputFile, a_device_that_has_nothing_to_bring_to_the_disk_is_no_failure)
{
    const WorkingFolder folder;
    const RecordingFiles files{".", "T"};
    QDir().mkpath(files.folder());
    ASSERT_TRUE(QFile::link("/dev/null", files.parameters()));
    const DebugOutput output;
    {
        Recorder recorder(files.root, files.name);
        recorder.start({.data = true});
        recorder.writeParameters("text");
        EXPECT_TRUE(recorder.stop());
    }
    EXPECT_EQ(output.messages().filter("文件落盘失败"), QStringList());
}
