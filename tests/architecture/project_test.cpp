#include "tests/architecture/includes.h"
#include "tests/architecture/layers.h"
#include "tests/architecture/numbers.h"
#include "tests/architecture/sizes.h"

#include <gtest/gtest.h>

#include <QFile>

namespace {

/// The rules, held against the project itself.
class Project : public testing::Test
{
protected:
    static const SourceTree &tree()
    {
        static const SourceTree sources = readSourceTree(QStringLiteral(QV1K_SOURCE_TREE));
        return sources;
    }
    static Layers layers()
    {
        QFile facts(QStringLiteral(QV1K_TARGETS_FILE));
        EXPECT_TRUE(facts.open(QIODevice::ReadOnly));
        return Layers(QString::fromUtf8(facts.readAll()));
    }
    static void expectNone(const QList<Finding> &findings)
    {
        for (const Finding &finding : findings)
            ADD_FAILURE() << finding;
    }
};

TEST_F(Project, is_found_with_its_targets)
{
    EXPECT_GT(tree().size(), 100);
    EXPECT_GT(layers().links().size(), 20);
}

TEST_F(Project, has_no_long_file)
{
    expectNone(longFiles(tree()));
}

TEST_F(Project, has_no_long_function)
{
    expectNone(longFunctions(tree()));
}

TEST_F(Project, no_file_includes_itself_in_the_end)
{
    expectNone(includeCircles(tree()));
}

TEST_F(Project, no_target_links_itself_in_the_end)
{
    expectNone(targetCircles(layers()));
}

TEST_F(Project, includes_go_by_the_path_from_the_root)
{
    expectNone(includesBesideThePath(tree()));
}

TEST_F(Project, includes_follow_the_link_lists)
{
    expectNone(includesAgainstLinks(tree(), layers()));
}

TEST_F(Project, no_folder_uses_itself_in_the_end)
{
    expectNone(folderCircles(tree()));
}

TEST_F(Project, casts_have_one_style)
{
    expectNone(castsOfAnotherStyle(tree()));
}

TEST_F(Project, integers_have_one_style)
{
    expectNone(integersOfAnotherStyle(tree()));
}

} // namespace
