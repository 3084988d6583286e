#include "tests/docs/literals.h"

#include <gtest/gtest.h>

namespace {

QStringList literals(const char *source)
{
    return stringLiterals(QString::fromUtf8(source));
}

} // namespace

TEST(Literals, those_side_by_side_are_one)
{
    EXPECT_EQ(literals("f(\"a \"\n  \"b\", \"c\");"), QStringList({"a b", "c"}));
}

TEST(Literals, comments_includes_and_raw_literals_hold_none)
{
    EXPECT_EQ(literals("#include \"a\"\n// \"b\"\n/* \"c\" */ R\"(d \"e\")\" '\"' \"f\""),
              QStringList({"f"}));
}

TEST(Literals, escapes_are_resolved)
{
    EXPECT_EQ(literals(R"("a\nb \"c\"")"), QStringList({"a\nb \"c\""}));
}

TEST(Literals, those_of_tr_are_told_apart)
{
    EXPECT_EQ(translatedLiterals(QStringLiteral("tr(\"a\"), b(\"c\"), QObject::tr(\"d\" \"e\")")),
              QStringList({"a", "de"}));
}

TEST(Literals, pieces_stand_between_placeholders)
{
    EXPECT_EQ(fixedPieces(QStringLiteral("，已存 %1 / %2 帧，失败文件 %3 个")),
              QStringList({"已存", "帧，失败文件", "个"}));
    EXPECT_EQ(fixedPieces(QStringLiteral("a b: … (…).\nc")), QStringList({"a b", "c"}));
    EXPECT_EQ(fixedPieces(QStringLiteral(" = 12")), QStringList());
}
