#include "tests/docs/links.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QDirIterator>

namespace {

/// Every document of the project; what the build and the program leave behind is none.
QStringList documents()
{
    const QDir root(QStringLiteral(QV1K_SOURCE_TREE));
    QStringList paths;
    QDirIterator files(root.path(), {"*.md"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = root.relativeFilePath(files.next());
        if (!path.startsWith(QLatin1String("build/")) && !path.startsWith(QLatin1String("workspace/")))
            paths << path;
    }
    return paths;
}

} // namespace

TEST(Links, every_link_in_every_document_leads_somewhere)
{
    const QStringList all = documents();
    EXPECT_GT(all.size(), 15);
    for (const QString &document : all) {
        for (const QString &target : Links::broken(QStringLiteral(QV1K_SOURCE_TREE), document))
            ADD_FAILURE() << qPrintable(document) << " leads to " << qPrintable(target);
    }
}

TEST(Links, a_file_an_anchor_and_a_picture_that_are_not_there_are_found)
{
    const WorkingFolder folder;
    folder.write(QStringLiteral("a.md"), "# Head, one\n[x](#head-one) [x](#two) [x](b.md) [x](c.md#d)\n"
                                         "![x](e.png) [x](b.md#b) [x](b.md#c) [x](https://f)\n`[x](g)`\n");
    folder.write(QStringLiteral("b.md"), "# B\n```\n# C\n```\n");
    EXPECT_EQ(Links::broken(folder.path(), QStringLiteral("a.md")),
              QStringList({"#two", "c.md#d", "e.png", "b.md#c"}));
}

TEST(Links, anchors_are_small_and_numbered_when_they_come_again)
{
    EXPECT_EQ(Links::anchors(QStringLiteral("# A b: c/d\n## `E`_f\n### A b cd\n")),
              QStringList({"a-b-cd", "e_f", "a-b-cd-1"}));
}

TEST(Links, text_may_go_on_in_the_next_line)
{
    EXPECT_EQ(Links::targets(QStringLiteral("[a\nb](c#d)")), QStringList({"c#d"}));
}
