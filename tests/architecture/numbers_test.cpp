#include "tests/architecture/numbers.h"

#include <gtest/gtest.h>

namespace {

SourceTree line(const char *text, const char *path = "a/b.cpp")
{
    return {sourceFile(QString::fromUtf8(path), QString::fromUtf8(text))};
}

TEST(Casts, of_another_style_are_told)
{
    for (const char *text :
         {"x = int(y);", "f(qsizetype(y), 1);", "return double(a) / b;", "quint32(x) + 1", "std::size_t(n)",
          "size_t(n)", "a[uchar(c)]", "DWORD(x)", "!bool(x)", "int(a * b)", "x = (int)y;", "f((double)a)",
          "return (const char *)p;", "int n = -(qint64)x;"}) {
        EXPECT_EQ(castsOfAnotherStyle(line(text)),
                  (QList<Finding>{{QStringLiteral("a/b.cpp"), 1,
                                   QStringLiteral("a number is converted by static_cast<T>(x)")}}))
            << text;
    }
}

TEST(Casts, what_only_looks_like_one_is_fine)
{
    for (const char *text :
         {"static_cast<int>(x)", "qsizetype{4} * n", "std::function<int(int)> f;", "int (*f)(int);",
          "operator bool() const;", "void set(int) const;", "void f(int, double) override", "sizeof(int) * n",
          "print(x);", "// int(x)", "\"int(x)\"", "using Open = DWORD(QV1K_CALL *)(void *);", "if (x) (y)++;",
          "int n(x);", "for (int n = 0; n < 3; ++n)"}) {
        EXPECT_EQ(castsOfAnotherStyle(line(text)), QList<Finding>()) << text;
    }
}

TEST(Integers, of_the_standard_carry_its_name)
{
    const QString sentence = QStringLiteral("the standard's integers are named with std::");
    for (const char *text : {"size_t n = 0;", "f(uint32_t a)", "::uint8_t b;", "int64_t c;"}) {
        EXPECT_EQ(integersOfAnotherStyle(line(text)),
                  (QList<Finding>{{QStringLiteral("a/b.cpp"), 1, sentence}}))
            << text;
    }
    EXPECT_EQ(integersOfAnotherStyle(line("std::size_t n; my_size_t m;")), QList<Finding>());
}

TEST(Integers, unsigned_is_not_written_alone)
{
    EXPECT_EQ(
        integersOfAnotherStyle(line("unsigned n = 0;")),
        (QList<Finding>{{QStringLiteral("a/b.cpp"), 1, QStringLiteral("unsigned is not written alone")}}));
    EXPECT_EQ(integersOfAnotherStyle(line("unsigned int n; unsigned long m; unsigned char c;")),
              QList<Finding>());
}

TEST(Integers, of_a_width_have_one_name_in_a_file)
{
    const QString sentence =
        QStringLiteral("one file has one name for an integer of 32 bits: quint32 or std::uint32_t");
    EXPECT_EQ(integersOfAnotherStyle(line("quint8 m;\nstd::uint32_t n;")),
              (QList<Finding>{{QStringLiteral("a/b.cpp"), 2, sentence}}));
    EXPECT_EQ(integersOfAnotherStyle(line("std::uint8_t m;\nstd::uint32_t n;")), QList<Finding>());
    EXPECT_EQ(integersOfAnotherStyle(line("quint8 m;\nquint32 n;")), QList<Finding>());
}

} // namespace
