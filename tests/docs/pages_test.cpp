// The HTML pages that lie beside the program.

#include "tests/docs/document.h"
#include "tests/docs/links.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace {

const QDir &folder()
{
    static const QDir pages(QStringLiteral(QV1K_MANUAL_PAGES));
    return pages;
}

QString page(const QString &name)
{
    QFile file(folder().filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    return QString::fromUtf8(file.readAll());
}

QStringList attributes(const QString &html, const QString &name)
{
    const QRegularExpression attribute(QStringLiteral(" %1=\"([^\"]*)\"").arg(name));
    QStringList values;
    for (auto matches = attribute.globalMatch(html); matches.hasNext();)
        values << matches.next().captured(1);
    return values;
}

} // namespace

TEST(Pages, headings_have_the_anchors_that_links_in_the_documents_expect)
{
    EXPECT_EQ(attributes(page(QStringLiteral("manual.html")), QStringLiteral("id")),
              Links::anchors(Document::read(QStringLiteral("docs/manual.md"))));
}

TEST(Pages, every_link_leads_to_a_page_that_is_there)
{
    const QStringList pages = folder().entryList({"*.html"});
    EXPECT_GE(pages.size(), 4);
    for (const QString &name : pages) {
        for (const QString &target : attributes(page(name), QStringLiteral("href"))) {
            const QString file = target.section(u'#', 0, 0);
            const QString there = file.isEmpty() ? name : file;
            ASSERT_TRUE(folder().exists(there)) << qPrintable(name) << " leads to " << qPrintable(target);
            const QStringList anchors = attributes(page(there), QStringLiteral("id"));
            EXPECT_TRUE(!target.contains(u'#') || anchors.contains(target.section(u'#', 1)))
                << qPrintable(name) << " leads to " << qPrintable(target);
        }
    }
}

TEST(Pages, every_picture_is_there_and_shown)
{
    QStringList shown = attributes(page(QStringLiteral("manual.html")), QStringLiteral("src"));
    QStringList there;
    for (const QString &name : QDir(folder().filePath(QStringLiteral("images"))).entryList(QDir::Files))
        there << QStringLiteral("images/") + name;
    shown.sort();
    EXPECT_GT(there.size(), 1);
    EXPECT_EQ(shown, there);
}

TEST(Pages, tables_and_Chinese_texts_arrive_whole)
{
    const QString html = page(QStringLiteral("manual.html"));
    EXPECT_TRUE(html.contains(QStringLiteral("<td><code>日志线程开启</code></td>")));
    EXPECT_TRUE(html.contains(QStringLiteral("<meta charset=\"utf-8\">")));
    EXPECT_FALSE(html.contains(QStringLiteral("|---")));
}
