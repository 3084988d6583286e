#include "tests/tools/acquirerun.h"

#include <QFileInfo>

namespace {

/// qv1k-acquire in a folder of its own, where the maker's library may lie beside it.
class MakersLibrary : public Acquire
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(QStringLiteral("program")));
        ASSERT_TRUE(QFile::copy(QStringLiteral(QV1K_ACQUIRE), QStringLiteral("program/qv1k-acquire.exe")));
        program = folder.filePath(QStringLiteral("program/qv1k-acquire.exe"));
        detector("");
    }

    static bool layIn(const QString &place)
    {
        return QFile::copy(QStringLiteral(QV1K_MAKERS_LIBRARY), place + QStringLiteral("/FTD2XX.dll"));
    }

    void acquire() { run({QStringLiteral("--output"), QStringLiteral("out")}); }

    void expectUsed(const QString &file) const
    {
        EXPECT_EQ(exitCode, 0) << qPrintable(errors);
        EXPECT_TRUE(log().contains(QStringLiteral("驱动库：") + QFileInfo(file).canonicalFilePath() +
                                   QStringLiteral("（非模拟数据）")))
            << qPrintable(log());
        EXPECT_FALSE(output.contains(QStringLiteral("Virtual detector"))) << qPrintable(output);
        EXPECT_TRUE(output.contains(QStringLiteral("frame    1"))) << qPrintable(output);
    }
};

} // namespace

TEST_F(MakersLibrary, is_found_beside_the_program_and_used_by_its_absolute_path)
{
    ASSERT_TRUE(layIn(QStringLiteral("program")));
    acquire();
    expectUsed(QStringLiteral("program/FTD2XX.dll"));
}

TEST_F(MakersLibrary, beside_the_program_is_used_before_one_in_the_working_folder)
{
    ASSERT_TRUE(layIn(QStringLiteral("program")));
    folder.write(QStringLiteral("FTD2XX.dll"), "not a library");
    acquire();
    expectUsed(QStringLiteral("program/FTD2XX.dll"));
}

TEST_F(MakersLibrary, in_the_working_folder_is_used_where_there_is_no_other)
{
    ASSERT_TRUE(layIn(QStringLiteral(".")));
    acquire();
    expectUsed(QStringLiteral("FTD2XX.dll"));
}

TEST_F(MakersLibrary, that_is_nowhere_is_told_with_the_folders_that_were_searched)
{
    acquire();
    expectFailure(QStringLiteral("no driver library: FTD2XX.dll was not found in "));
    EXPECT_TRUE(errors.contains(QFileInfo(program).path())) << qPrintable(errors);
}

TEST_F(MakersLibrary, that_is_no_library_is_told_with_its_path)
{
    folder.write(QStringLiteral("program/FTD2XX.dll"), "not a library");
    acquire();
    expectFailure(QStringLiteral("no driver library: "));
    EXPECT_TRUE(QDir::fromNativeSeparators(errors).contains(QStringLiteral("program/FTD2XX.dll")))
        << qPrintable(errors);
}
