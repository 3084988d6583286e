#include "tests/architecture/layers.h"

#include <gtest/gtest.h>

namespace {

/// Three floors: roof links hall and hands it on, hall links cellar for itself alone.
Layers house(const char *more = "")
{
    return Layers(
        QLatin1String("folder roof top\nsource roof top/roof.cpp\nlinks roof hall\npasses roof hall\n"
                      "folder hall middle\nsource hall middle/hall.cpp\nlinks hall cellar\n"
                      "folder cellar low\nsource cellar low/cellar.cpp\nsource cellar low/cellar.h\n") +
        QLatin1String(more));
}

const SourceFile cellar = sourceFile("low/cellar.h", "");
const SourceFile hall = sourceFile("middle/hall.h", "");
const SourceFile roof = sourceFile("top/roof.h", "");

QList<Finding> against(const SourceFile &includer)
{
    return includesAgainstLinks({includer, cellar, hall, roof}, house());
}

QList<Finding> told(const SourceFile &includer, const char *sentence)
{
    return {{includer.path, 2,
             QStringLiteral("an include follows the link list, and ") + QLatin1String(sentence)}};
}

TEST(Layers, what_a_target_links_may_be_included)
{
    EXPECT_EQ(against(sourceFile("top/roof.cpp", "\n#include \"middle/hall.h\"\n")), QList<Finding>());
    EXPECT_EQ(against(sourceFile("top/roof.cpp", "\n#include \"top/roof.h\"\n")), QList<Finding>());
    EXPECT_EQ(against(sourceFile("middle/hall.cpp", "\n#include \"low/cellar.h\"\n")), QList<Finding>());
}

TEST(Layers, an_include_against_the_link_list_is_told)
{
    const SourceFile upwards = sourceFile("low/cellar.cpp", "\n#include \"top/roof.h\"\n");
    EXPECT_EQ(against(upwards), told(upwards, "cellar does not link roof, the home of top/roof.h"));
    const SourceFile unlistedHeader = sourceFile("low/lamp.h", "\n#include \"middle/hall.h\"\n");
    EXPECT_EQ(against(unlistedHeader),
              told(unlistedHeader, "cellar does not link hall, the home of middle/hall.h"));
    const SourceFile roomBelow = sourceFile("low/shelf/box.h", "\n#include \"middle/hall.h\"\n");
    EXPECT_EQ(against(roomBelow), told(roomBelow, "cellar does not link hall, the home of middle/hall.h"));
}

TEST(Layers, what_is_linked_for_itself_alone_is_not_handed_on)
{
    const SourceFile past = sourceFile("top/roof.cpp", "\n#include \"low/cellar.h\"\n");
    EXPECT_EQ(against(past), told(past, "roof does not link cellar, the home of low/cellar.h"));
    EXPECT_EQ(includesAgainstLinks({past, cellar}, house("passes hall cellar\n")), QList<Finding>());
}

TEST(Layers, a_file_of_two_targets_is_held_against_both)
{
    const SourceFile shared = sourceFile("middle/shared.cpp", "\n#include \"low/cellar.h\"\n");
    const char *facts = "source hall middle/shared.cpp\nsource roof middle/shared.cpp\n";
    EXPECT_EQ(includesAgainstLinks({shared, cellar}, house(facts)),
              told(shared, "roof does not link cellar, the home of low/cellar.h"));
}

TEST(Layers, a_header_that_no_list_names_needs_one_target_of_its_folder)
{
    const SourceFile header = sourceFile("middle/lamp.h", "\n#include \"low/cellar.h\"\n");
    EXPECT_EQ(includesAgainstLinks({header, cellar}, house("folder attic middle\n")), QList<Finding>());
}

TEST(Layers, a_circle_of_targets_is_told)
{
    EXPECT_EQ(targetCircles(house()), QList<Finding>());
    EXPECT_EQ(targetCircles(house("links cellar roof\n")),
              (QList<Finding>{
                  {QStringLiteral("CMakeLists.txt"), 1,
                   QStringLiteral("no target links itself in the end: cellar -> roof -> hall -> cellar")}}));
}

TEST(Layers, a_circle_of_folders_is_told_though_no_file_includes_itself)
{
    const SourceFile down = sourceFile("top/roof.cpp", "#include \"low/cellar.h\"\n");
    EXPECT_EQ(folderCircles({down, cellar, roof}), QList<Finding>());
    EXPECT_EQ(folderCircles({down, cellar, roof, sourceFile("low/cellar.cpp", "#include \"top/roof.h\"\n")}),
              (QList<Finding>{{QStringLiteral("low"), 1,
                               QStringLiteral("no folder uses itself in the end: low -> top -> low")}}));
}

} // namespace
