#include "tests/architecture/includes.h"

#include <gtest/gtest.h>

namespace {

QList<Finding> noFile(const char *name)
{
    return {{QStringLiteral("a/one.cpp"), 2,
             QStringLiteral(
                 "an include in quotation marks goes by the path from the project's root, and there is no %1")
                 .arg(QLatin1String(name))}};
}

TEST(Includes, go_by_the_path_from_the_root)
{
    const SourceFile two = sourceFile("a/two.h", "");
    EXPECT_EQ(includesBesideThePath({sourceFile("a/one.cpp", "\n#include \"a/two.h\"\n"), two}),
              QList<Finding>());
    EXPECT_EQ(includesBesideThePath({sourceFile("a/one.cpp", "\n#include \"two.h\"\n"), two}),
              noFile("two.h"));
    EXPECT_EQ(includesBesideThePath({sourceFile("a/one.cpp", "\n#include \"../a/two.h\"\n"), two}),
              noFile("../a/two.h"));
    EXPECT_EQ(includesBesideThePath({sourceFile("a/one.cpp", "\n#include \"a/three.h\"\n"), two}),
              noFile("a/three.h"));
}

TEST(Includes, of_the_project_stand_in_quotation_marks)
{
    EXPECT_EQ(includesBesideThePath({sourceFile("a/one.cpp", "#include <a/two.h>\n#include <QString>\n"),
                                     sourceFile("a/two.h", "")}),
              (QList<Finding>{{QStringLiteral("a/one.cpp"), 1,
                               QStringLiteral("the project's own a/two.h is included in quotation marks")}}));
}

TEST(Includes, of_what_the_build_generates_have_no_folder)
{
    EXPECT_EQ(
        includesBesideThePath({sourceFile("a/one.cpp", "#include \"ui_window.h\"\n#include \"one.moc\"\n")}),
        QList<Finding>());
}

TEST(Includes, in_comments_and_literals_are_none)
{
    EXPECT_EQ(
        includesBesideThePath({sourceFile("a/one.cpp", "// #include \"two.h\"\n/*\n#include \"two.h\"\n*/\n"
                                                       "f(R\"(\n#include \"two.h\"\n)\");\n")}),
        QList<Finding>());
}

TEST(IncludeCircles, are_told)
{
    const SourceFile one = sourceFile("a/one.h", "#include \"b/two.h\"\n");
    const SourceFile two = sourceFile("b/two.h", "#include \"b/three.h\"\n");
    EXPECT_EQ(includeCircles({one, two, sourceFile("b/three.h", "#include <QString>\n")}), QList<Finding>());
    EXPECT_EQ(includeCircles({one, two, sourceFile("b/three.h", "#include \"a/one.h\"\n")}),
              (QList<Finding>{
                  {QStringLiteral("a/one.h"), 1,
                   QStringLiteral(
                       "no file includes itself in the end: a/one.h -> b/two.h -> b/three.h -> a/one.h")}}));
}

} // namespace
