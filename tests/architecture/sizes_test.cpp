#include "tests/architecture/sizes.h"

#include <gtest/gtest.h>

namespace {

/// A function whose signature, braces and body take so many lines.
QString functionOf(int lines, const QString &signature, const QString &indent = {})
{
    const auto around = static_cast<int>(signature.count(u'\n')) + 3;
    QString text = indent + signature + u'\n' + indent + QStringLiteral("{\n");
    for (int n = around; n < lines; ++n)
        text += indent + QStringLiteral("    step();\n");
    return text + indent + QStringLiteral("}\n");
}

QList<Finding> foundIn(const QString &text)
{
    return longFunctions({sourceFile(QStringLiteral("a/b.cpp"), text)});
}

Finding of61(int line)
{
    return {QStringLiteral("a/b.cpp"), line,
            QStringLiteral("a function has at most 60 lines, this one has 61")};
}

TEST(LongFunctions, sixty_lines_are_fine_and_one_more_is_not)
{
    const QString signature = QStringLiteral("void Window::show(int a)");
    EXPECT_EQ(foundIn(functionOf(60, signature)), QList<Finding>());
    EXPECT_EQ(foundIn(QStringLiteral("\n") + functionOf(61, signature)), QList<Finding>{of61(2)});
}

TEST(LongFunctions, every_signature_is_seen)
{
    for (const QString &signature :
         {QStringLiteral("TEST_F(Window, shows_what_it_is_given)"),
          QStringLiteral("template <typename T>\nT sum(T a, T b)"),
          QStringLiteral("Window::Window(int a)\n    : m_a(a)\n    , m_b{a}"),
          QStringLiteral("QList<int> find(const QString &name,\n                int count)"),
          QStringLiteral("struct Size sizeOf(int a) noexcept")}) {
        SCOPED_TRACE(qPrintable(signature));
        EXPECT_EQ(foundIn(functionOf(60, signature)), QList<Finding>());
        EXPECT_EQ(foundIn(functionOf(61, signature)), QList<Finding>{of61(1)});
    }
}

TEST(LongFunctions, a_function_in_its_class_is_seen_and_the_class_is_not)
{
    const auto classOf = [](int lines) {
        return QStringLiteral("class Window final : public QWidget\n{\npublic:\n") +
               functionOf(lines, QStringLiteral("void show()"), QStringLiteral("    ")) +
               QStringLiteral("};\n");
    };
    EXPECT_EQ(foundIn(classOf(60)), QList<Finding>());
    EXPECT_EQ(foundIn(classOf(61)), QList<Finding>{of61(4)});
}

TEST(LongFunctions, nothing_else_with_braces_is_a_function)
{
    const QString many = QStringLiteral("    {1, 2},\n").repeated(80);
    EXPECT_EQ(foundIn(QStringLiteral("constexpr Pair pairs[] = {\n") + many + QStringLiteral("};\n")),
              QList<Finding>());
    EXPECT_EQ(foundIn(QStringLiteral("const auto show = [](int a) {\n") + many + QStringLiteral("};\n")),
              QList<Finding>());
    EXPECT_EQ(foundIn(QStringLiteral("struct Pair\n{\n") + many + QStringLiteral("};\n")), QList<Finding>());
    EXPECT_EQ(foundIn(QStringLiteral("namespace a {\n") + many + QStringLiteral("}\n")), QList<Finding>());
    EXPECT_EQ(foundIn(QStringLiteral("const char *text = R\"(\nvoid show()\n{\n") + many +
                      QStringLiteral("}\n)\";\n")),
              QList<Finding>());
}

TEST(LongFunctions, a_lambda_counts_towards_its_function)
{
    const QString lambda = QStringLiteral("    run([] {\n") +
                           QStringLiteral("        step();\n").repeated(56) + QStringLiteral("    });\n");
    EXPECT_EQ(foundIn(QStringLiteral("void show()\n{\n") + lambda + QStringLiteral("}\n")),
              QList<Finding>{of61(1)});
}

TEST(LongFunctions, a_block_in_a_function_is_no_function)
{
    const QString block = QStringLiteral("    {\n") + QStringLiteral("        step();\n").repeated(55) +
                          QStringLiteral("    }\n");
    EXPECT_EQ(foundIn(QStringLiteral("void show()\n{\n") + block + QStringLiteral("}\n")), QList<Finding>());
    EXPECT_EQ(
        foundIn(QStringLiteral("void show()\n{\n    step(1,\n         2);\n") + block + QStringLiteral("}\n"))
            .size(),
        1);
}

TEST(LongFiles, four_hundred_lines_are_fine_and_one_more_is_not)
{
    const auto fileOf = [](int lines) {
        return SourceTree{sourceFile(QStringLiteral("a/b.sh"), QStringLiteral("true\n").repeated(lines))};
    };
    EXPECT_EQ(longFiles(fileOf(400)), QList<Finding>());
    EXPECT_EQ(longFiles(fileOf(401)),
              (QList<Finding>{{QStringLiteral("a/b.sh"), 401,
                               QStringLiteral("a file has at most 400 lines, this one has 401")}}));
}

} // namespace
