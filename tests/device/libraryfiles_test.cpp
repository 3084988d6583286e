#include "device/libraryfiles.h"

#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace {

/// Something of this program, whose file is known.
void here() {}

} // namespace

TEST(LibraryFiles, code_is_known_by_the_file_that_it_came_from)
{
    EXPECT_EQ(LibraryFiles::fileOf(reinterpret_cast<const void *>(&here)),
              QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath());
}

TEST(LibraryFiles, code_that_no_file_holds_has_none)
{
    const int onTheStack = 0;
    EXPECT_EQ(LibraryFiles::fileOf(&onTheStack), QString());
}

#ifdef Q_OS_WIN

TEST(LibraryFiles, a_bare_name_is_looked_for_in_the_programs_the_systems_and_the_working_folder)
{
    const WorkingFolder folder;
    folder.write(QStringLiteral("Own.dll"), "x");
    EXPECT_EQ(LibraryFiles::toLoad(QStringLiteral("Own.dll")),
              QDir::currentPath() + QStringLiteral("/Own.dll"));
    EXPECT_EQ(LibraryFiles::toLoad(QStringLiteral("Own")), QDir::currentPath() + QStringLiteral("/Own.dll"));
    // One of the same name in the working folder does not stand in for the system's.
    folder.write(QStringLiteral("kernel32.dll"), "x");
    EXPECT_EQ(LibraryFiles::toLoad(QStringLiteral("kernel32.dll")),
              LibraryFiles::searchedFolders().at(1) + QStringLiteral("/kernel32.dll"));
}

TEST(LibraryFiles, a_path_is_made_absolute_from_the_working_folder)
{
    const WorkingFolder folder;
    ASSERT_TRUE(QDir().mkpath(QStringLiteral("drivers")));
    folder.write(QStringLiteral("drivers/Own.dll"), "x");
    const QString file = QDir::currentPath() + QStringLiteral("/drivers/Own.dll");
    EXPECT_EQ(LibraryFiles::toLoad(QStringLiteral("drivers/Own.dll")), file);
    EXPECT_EQ(LibraryFiles::toLoad(QStringLiteral(".\\drivers\\Own.dll")), file);
    EXPECT_EQ(LibraryFiles::toLoad(file), file);
}

TEST(LibraryFiles, what_is_nowhere_is_not_handed_to_the_systems_own_search)
{
    const WorkingFolder folder;
    EXPECT_EQ(LibraryFiles::toLoad(QStringLiteral("nowhere.dll")), QString());
    EXPECT_EQ(LibraryFiles::toLoad(QStringLiteral("drivers/nowhere.dll")), QString());
}

#else

TEST(LibraryFiles, a_name_is_left_to_the_linkers_search)
{
    EXPECT_EQ(LibraryFiles::toLoad(LibraryFiles::makersName()), LibraryFiles::makersName());
    EXPECT_TRUE(LibraryFiles::searchedFolders().isEmpty());
}

#endif
