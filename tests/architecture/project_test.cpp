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

TEST_F(Project, IsFoundWithItsTargets)
{
    EXPECT_GT(tree().size(), 100);
    EXPECT_GT(layers().links().size(), 20);
}

TEST_F(Project, HasNoLongFile)
{
    expectNone(longFiles(tree()));
}

TEST_F(Project, HasNoLongFunction)
{
    expectNone(longFunctions(tree()));
}

TEST_F(Project, NoFileIncludesItselfInTheEnd)
{
    expectNone(includeCircles(tree()));
}

TEST_F(Project, NoTargetLinksItselfInTheEnd)
{
    expectNone(targetCircles(layers()));
}

TEST_F(Project, IncludesGoByThePathFromTheRoot)
{
    expectNone(includesBesideThePath(tree()));
}

TEST_F(Project, IncludesFollowTheLinkLists)
{
    expectNone(includesAgainstLinks(tree(), layers()));
}

TEST_F(Project, NoFolderUsesItselfInTheEnd)
{
    expectNone(folderCircles(tree()));
}

TEST_F(Project, CastsHaveOneStyle)
{
    expectNone(castsOfAnotherStyle(tree()));
}

TEST_F(Project, IntegersHaveOneStyle)
{
    expectNone(integersOfAnotherStyle(tree()));
}

} // namespace
