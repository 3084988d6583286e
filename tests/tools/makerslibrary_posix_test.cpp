#include "tests/tools/acquirerun.h"

#include <QFileInfo>

namespace {

/// qv1k-acquire where the system finds the maker's library in a folder of the test's.
class MakersLibrary : public Acquire
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkdir(QStringLiteral("installed")));
        environment.insert(QStringLiteral("LD_LIBRARY_PATH"), folder.filePath(QStringLiteral("installed")));
        detector("");
    }

    const QString library = QStringLiteral("installed/libftd2xx.so");
};

} // namespace

TEST_F(MakersLibrary, is_used_unasked_where_it_is_installed)
{
    ASSERT_TRUE(QFile::copy(QStringLiteral(QV1K_NOTING_LIBRARY), library));
    run({QStringLiteral("--output"), QStringLiteral("out")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_TRUE(log().contains(QStringLiteral("驱动库：") + QFileInfo(library).canonicalFilePath() +
                               QStringLiteral("（非模拟数据）")))
        << qPrintable(log());
}

TEST_F(MakersLibrary, that_is_broken_is_told_with_the_folders_where_the_other_was_looked_for)
{
    folder.write(library, "not a library");
    ASSERT_TRUE(QDir().mkdir(QStringLiteral("program")));
    program = folder.filePath(QStringLiteral("program/qv1k-acquire"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(QV1K_ACQUIRE), program));
    run({QStringLiteral("--output"), QStringLiteral("out")});
    expectFailure(QStringLiteral("libftd2xx.so"));
    expectFailure(QStringLiteral("libd2xx_ftdi.so was not found in ") + QFileInfo(program).canonicalPath());
}
