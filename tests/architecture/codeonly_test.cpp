#include "tests/architecture/codeonly.h"

#include <gtest/gtest.h>

namespace {

QString blanked(const char *text)
{
    return codeOnly(QString::fromUtf8(text));
}

TEST(CodeOnly, comments_are_blank)
{
    EXPECT_EQ(blanked("a(); // int(b)\nc();"), QStringLiteral("a();          \nc();"));
    EXPECT_EQ(blanked("a /* b\n{ */ c"), QStringLiteral("a     \n     c"));
}

TEST(CodeOnly, literals_keep_their_marks_alone)
{
    EXPECT_EQ(blanked(R"(f("a \" // b", 'c', '\'') )"), QStringLiteral(R"(f("         ", ' ', '  ') )"));
}

TEST(CodeOnly, a_raw_literal_is_blank_from_its_r_to_its_end)
{
    EXPECT_EQ(blanked("f(R\"x(\n{\n)\" )x\") // y"), QStringLiteral("f(    \n \n      )     "));
}

TEST(CodeOnly, marks_that_part_digits_begin_no_literal)
{
    EXPECT_EQ(blanked("1'000'000 + b"), QStringLiteral("1'000'000 + b"));
    EXPECT_EQ(blanked("a / b"), QStringLiteral("a / b"));
}

} // namespace
