#include "tests/docs/document.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

TEST(Document, lines_of_a_block_are_those_of_its_kind_alone)
{
    const QString text = QStringLiteral("a\n```sent\nb\n\n```\nc\n```\nd\n```\n```sent\ne\n```\n");
    EXPECT_EQ(Document::blockLines(text, QStringLiteral("sent")), QStringList({"b", "e"}));
}

TEST(Document, code_is_taken_out_of_a_text)
{
    const QString text = QStringLiteral("a `b` c\n```\nd\n```\n    e\nf");
    EXPECT_EQ(Document::withoutCode(text), QStringLiteral("a  c\nf"));
}

TEST(Document, a_section_ends_before_the_next_heading_of_its_level)
{
    const QString text = QStringLiteral("# A\n## B\nx\n### C\ny\n## D\nz");
    EXPECT_EQ(Document::section(text, QStringLiteral("B")), QStringLiteral("x\n### C\ny"));
    EXPECT_NONFATAL_FAILURE((void)Document::section(QStringLiteral("# A\nx"), QStringLiteral("B")),
                            "no section");
}

TEST(Document, rows_of_a_table_are_told_without_its_head)
{
    const auto rows = Document::tableRows(QStringLiteral("| h | i |\n|---|---|\n| a | |\n| b | c |\n"));
    EXPECT_EQ(rows, QList<QStringList>({{"a", ""}, {"b", "c"}}));
}

TEST(Document, words_may_stand_in_quotation_marks)
{
    EXPECT_EQ(Document::words(QStringLiteral("adc \"A only\" 25")), QStringList({"adc", "A only", "25"}));
}

TEST(Document, bytes_may_be_repeated)
{
    EXPECT_EQ(Document::bytes(QStringLiteral("FF [01 B6 ×2] [00]")), QByteArray::fromHex("FF01B601B600"));
}

TEST(Document, what_is_no_byte_is_told)
{
    EXPECT_NONFATAL_FAILURE((void)Document::bytes(QStringLiteral("FF 0G")), "not bytes");
}
