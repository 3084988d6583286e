#include "process/userfolder.h"

#include "tests/support/limitedwriting.h"
#include "tests/support/systemreason.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

TEST(UserFolder, the_virtual_detector_has_a_folder_of_its_own_beside_the_other)
{
    const QFileInfo real(UserFolder::path(false));
    const QFileInfo simulated(UserFolder::path(true));
    EXPECT_TRUE(real.isAbsolute()) << qPrintable(real.filePath());
    EXPECT_EQ(real.path(), simulated.path());
    EXPECT_NE(real.fileName(), simulated.fileName());
}

TEST(UserFolder, is_made_with_what_is_above_it_and_holds_nothing_at_first)
{
    const WorkingFolder home;
    const QString folder = home.filePath(QStringLiteral("Documents/QV1K"));
    EXPECT_EQ(UserFolder::prepare(folder, false), QString());
    EXPECT_TRUE(QFileInfo(folder).isDir());
    EXPECT_TRUE(QDir(folder).isEmpty());
}

TEST(UserFolder, of_the_virtual_detector_holds_the_setting_that_chooses_it)
{
    const WorkingFolder home;
    EXPECT_EQ(UserFolder::prepare(home.filePath(QStringLiteral("探测器")), true), QString());
    EXPECT_EQ(home.read(QStringLiteral("探测器/config.ini")), "[General]\nD2xxLibrary=virtual\n");
}

TEST(UserFolder, leaves_settings_alone_that_are_there)
{
    const WorkingFolder home;
    home.write(QStringLiteral("config.ini"), "[General]\nDebugMode=true\n");
    EXPECT_EQ(UserFolder::prepare(home.path(), true), QString());
    EXPECT_EQ(home.read(QStringLiteral("config.ini")), "[General]\nDebugMode=true\n");
}

TEST(UserFolder, that_cannot_be_made_is_told_with_its_path)
{
    const WorkingFolder home;
    home.write(QStringLiteral("Documents"), "a file in its place");
    const QString problem = UserFolder::prepare(home.filePath(QStringLiteral("Documents/QV1K")), false);
    EXPECT_TRUE(problem.contains(QDir::toNativeSeparators(home.filePath(QStringLiteral("Documents/QV1K")))))
        << qPrintable(problem);
}

TEST(UserFolder, whose_settings_find_no_room_is_told_and_prepared_once_there_is_some)
{
    const WorkingFolder home;
    {
        const FileSizeLimit disk(10);
        const QString problem = UserFolder::prepare(home.path(), true);
        EXPECT_TRUE(problem.contains(QStringLiteral("config.ini"))) << qPrintable(problem);
        EXPECT_TRUE(problem.contains(systemReason(SystemFailure::FileTooLarge))) << qPrintable(problem);
    }
    EXPECT_EQ(UserFolder::prepare(home.path(), true), QString());
    EXPECT_EQ(home.read(QStringLiteral("config.ini")), "[General]\nD2xxLibrary=virtual\n");
}

TEST(UserFolder, is_told_to_be_missing_where_there_is_no_folder_for_documents)
{
    EXPECT_FALSE(UserFolder::prepare({}, false).isEmpty());
    EXPECT_FALSE(UserFolder::prepare({}, true).isEmpty());
}
