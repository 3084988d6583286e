#include "tests/architecture/codeonly.h"

#include <gtest/gtest.h>

namespace {

QString blanked(const char *text)
{
    return codeOnly(QString::fromUtf8(text));
}

TEST(CodeOnly, CommentsAreBlank)
{
    EXPECT_EQ(blanked("a(); // int(b)\nc();"), QStringLiteral("a();          \nc();"));
    EXPECT_EQ(blanked("a /* b\n{ */ c"), QStringLiteral("a     \n     c"));
}

TEST(CodeOnly, LiteralsKeepTheirMarksAlone)
{
    EXPECT_EQ(blanked(R"(f("a \" // b", 'c', '\'') )"), QStringLiteral(R"(f("         ", ' ', '  ') )"));
}

TEST(CodeOnly, ARawLiteralIsBlankFromItsRToItsEnd)
{
    EXPECT_EQ(blanked("f(R\"x(\n{\n)\" )x\") // y"), QStringLiteral("f(    \n \n      )     "));
}

TEST(CodeOnly, MarksThatPartDigitsBeginNoLiteral)
{
    EXPECT_EQ(blanked("1'000'000 + b"), QStringLiteral("1'000'000 + b"));
    EXPECT_EQ(blanked("a / b"), QStringLiteral("a / b"));
}

} // namespace
