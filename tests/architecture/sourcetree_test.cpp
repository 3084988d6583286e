#include "tests/architecture/sourcetree.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

namespace {

TEST(SourceTree, holds_the_sources_and_nothing_else)
{
    const WorkingFolder folder;
    for (const char *name : {"a/b", "build/x", "workspace", ".hidden", "a/build"})
        ASSERT_TRUE(QDir(folder.path()).mkpath(QLatin1String(name)));
    for (const char *name : {"a/b/one.cpp", "a/one.h", "a/one.ui", "a/build/make.sh", "CMakeLists.txt",
                             "a/b/x.cmake", "one.md", "build/x/moc.cpp", "workspace/one.h", ".hidden/one.h"})
        folder.write(QLatin1String(name), "1\n2\n");

    QStringList paths;
    for (const SourceFile &file : readSourceTree(folder.path())) {
        EXPECT_EQ(file.lines, (QStringList{QStringLiteral("1"), QStringLiteral("2")}));
        paths.append(file.path);
    }
    EXPECT_EQ(paths.join(u' '),
              QStringLiteral("CMakeLists.txt a/b/one.cpp a/b/x.cmake a/build/make.sh a/one.h"));
}

} // namespace
