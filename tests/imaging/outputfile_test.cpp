#include "imaging/outputfile.h"
#include "tests/support/limitedwriting.h"
#include "tests/support/systemreason.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QDir>

namespace {

QStringList filesHere()
{
    return QDir().entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

} // namespace

TEST(OutputFile, stands_beside_its_name_until_it_is_whole)
{
    const WorkingFolder folder;
    folder.write("a.csv", "before");
    OutputFile file("a.csv");
    file.write("whole");
    EXPECT_EQ(filesHere(), QStringList({"a.csv", "a.csv.part"}));
    EXPECT_EQ(folder.read("a.csv"), "before");
    EXPECT_EQ(file.finish(), QString());
    EXPECT_EQ(filesHere(), QStringList("a.csv"));
    EXPECT_EQ(folder.read("a.csv"), "whole");
}

TEST(OutputFile, what_was_not_finished_is_removed_and_what_was_there_stays)
{
    const WorkingFolder folder;
    folder.write("a.csv", "before");
    {
        OutputFile file("a.csv");
        file.write("half");
    }
    {
        const FileSizeLimit limit(3);
        OutputFile file("a.csv");
        file.write("too much");
        EXPECT_TRUE(file.finish().contains(systemReason(SystemFailure::FileTooLarge)));
    }
    EXPECT_EQ(filesHere(), QStringList("a.csv"));
    EXPECT_EQ(folder.read("a.csv"), "before");
}

TEST(OutputFile, one_that_keeps_its_ending_and_has_none_is_a_part_all_the_same)
{
    const WorkingFolder folder;
    EXPECT_EQ(PartFile("a.mp4", PartFile::Ending::PartKeepsLast).partPath(), "a.part.mp4");
    EXPECT_EQ(PartFile("movie", PartFile::Ending::PartKeepsLast).partPath(), "movie.part");
}

TEST(OutputFile, a_rest_of_a_run_that_was_killed_is_written_over)
{
    const WorkingFolder folder;
    folder.write("a.csv.part", "rest of a run that was killed");
    OutputFile file("a.csv");
    file.write("new");
    EXPECT_EQ(file.finish(), QString());
    EXPECT_EQ(filesHere(), QStringList("a.csv"));
    EXPECT_EQ(folder.read("a.csv"), "new");
}

TEST(OutputFile, a_folder_under_its_name_is_told_when_it_is_opened_and_stays)
{
    const WorkingFolder folder;
    QDir().mkdir("a.csv");
    OutputFile file("a.csv");
    file.write("text");
    const QString failure = file.finish();
    EXPECT_TRUE(failure.startsWith("文件打开失败：a.csv（")) << qPrintable(failure);
    EXPECT_TRUE(failure.contains(systemReason(SystemFailure::IsAFolder))) << qPrintable(failure);
    EXPECT_EQ(filesHere(), QStringList());
}

TEST(OutputFile, a_folder_that_came_under_its_name_meanwhile_is_told_when_it_is_renamed)
{
    const WorkingFolder folder;
    OutputFile file("a.csv");
    file.write("text");
    QDir().mkdir("a.csv");
    const QString failure = file.finish();
    EXPECT_TRUE(failure.startsWith("文件改名失败：a.csv（")) << qPrintable(failure);
    EXPECT_TRUE(QDir("a.csv").exists());
}

TEST(OutputFile, one_that_must_not_be_written_stays_although_its_folder_would_let_it_be_replaced)
{
    const WorkingFolder folder;
    for (const char *name : {"open", "locked"})
        QDir().mkdir(name);
    folder.write("open/a.csv", "kept");
    ASSERT_TRUE(QFile::setPermissions("open/a.csv", QFile::ReadOwner | QFile::ReadOther));
    ASSERT_TRUE(QFile::setPermissions("open", QFile::Permissions(0x7777)));
    {
        const ReadOnlyFolder asUserWithoutRights(folder.filePath("locked"));
        OutputFile file(folder.filePath("open/a.csv"));
        file.write("lost");
        EXPECT_TRUE(file.finish().contains(systemReason(SystemFailure::NoAccess)));
    }
    EXPECT_EQ(folder.read("open/a.csv"), "kept");
}
