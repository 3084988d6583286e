#include "tools/commandline/commandtexts.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QRegularExpression>
#include <QSet>

using CommandTable::Command;
using CommandTable::Option;

namespace {

QString pageAsRead()
{
    return CommandTexts::manualPage(QStringLiteral("7.8.9")).remove(u'\\');
}

/// The lines below that heading, up to the next one.
QString below(const QString &heading)
{
    static const QRegularExpression next(QStringLiteral("^\\.S[HS] "), QRegularExpression::MultilineOption);
    const QString begin = u'\n' + heading + u'\n';
    const QString page = pageAsRead();
    const qsizetype found = page.indexOf(begin);
    return found < 0 ? QString() : page.mid(found + begin.size()).section(next, 0, 0);
}

void expectOption(const QString &told, const Option &option)
{
    for (const QString &name : CommandTexts::namesOf(option))
        EXPECT_TRUE(told.contains(name)) << qPrintable(name);
    if (option.value != nullptr) {
        EXPECT_TRUE(told.contains(QLatin1String(option.value))) << option.names;
    }
    const QString text = QLatin1String(option.text) + u'\n';
    EXPECT_EQ(told.count(text), 1) << option.text;
}

QString usageOf(const char *name)
{
    for (const Command &command : CommandTable::commands()) {
        if (command.name == QLatin1String(name))
            return CommandTexts::help(command, false).section(u'\n', 0, 0);
    }
    return {};
}

} // namespace

TEST(ManualPage, tells_every_option_and_paragraph_of_every_command_in_its_chapter)
{
    for (const Command &command : CommandTable::commands()) {
        SCOPED_TRACE(command.name);
        const QString chapter = below(QStringLiteral(".SS %1").arg(QLatin1String(command.name)));
        EXPECT_TRUE(chapter.startsWith(QLatin1String(command.text)));
        for (const Option &option : command.options)
            expectOption(chapter, option);
        for (const CommandTable::Section &section : command.sections) {
            EXPECT_TRUE(chapter.contains(QLatin1String(section.heading) + QStringLiteral(":\n")));
            EXPECT_TRUE(chapter.contains(QLatin1String(section.text)));
        }
        EXPECT_TRUE(chapter.contains(QLatin1String(CommandTable::exitStatus(command).text)));
        EXPECT_TRUE(below(QStringLiteral(".SH EXAMPLES")).contains(QLatin1String(command.example) + u'\n'));
        EXPECT_TRUE(below(QStringLiteral(".SH SYNOPSIS"))
                        .contains(QStringLiteral(".B qv1k-acquire %1\n").arg(QLatin1String(command.name))));
    }
}

TEST(ManualPage, tells_once_what_every_command_takes_but_not_what_help_alone_tells)
{
    const QString common = below(QStringLiteral(".SS Every command"));
    for (const Option &option : CommandTable::commonOptions()) {
        if (option.isForHelp)
            EXPECT_FALSE(common.contains(QLatin1String(option.names))) << option.names;
        else
            expectOption(common, option);
    }
}

TEST(ManualPage, has_hyphens_that_can_be_typed_and_no_text_that_is_taken_for_a_request)
{
    const QSet<QString> requests{QStringLiteral("SH"), QStringLiteral("SS"), QStringLiteral("TP"),
                                 QStringLiteral("PP"), QStringLiteral("B"),  QStringLiteral("BI"),
                                 QStringLiteral("BR"), QStringLiteral("I"),  QStringLiteral("RI"),
                                 QStringLiteral("br"), QStringLiteral("nf"), QStringLiteral("fi")};
    const QString ownHyphen = QStringLiteral("photodiode-array"); // prose: not to be typed
    QStringList lines = CommandTexts::manualPage(QStringLiteral("7.8.9")).remove(ownHyphen).split(u'\n');
    EXPECT_EQ(lines.takeFirst(), QStringLiteral(".TH QV1K-ACQUIRE 1 \"\" \"QV1K 7.8.9\" \"User Commands\""));
    static const QRegularExpression bareHyphen(QStringLiteral("(?<!\\\\)-"));
    for (const QString &line : lines) {
        EXPECT_FALSE(line.contains(bareHyphen)) << qPrintable(line);
        EXPECT_FALSE(line.startsWith(u'\'')) << qPrintable(line);
        if (line.startsWith(u'.')) {
            EXPECT_TRUE(requests.contains(line.mid(1).section(u' ', 0, 0))) << qPrintable(line);
        }
    }
}

TEST(Help, tells_what_a_command_cannot_do_without_in_its_first_line)
{
    EXPECT_EQ(usageOf("calibrate"),
              QStringLiteral("Usage: qv1k-acquire calibrate dark|bright --to <file> [options]"));
    EXPECT_EQ(usageOf("replay"), QStringLiteral("Usage: qv1k-acquire replay file [options]"));
    EXPECT_EQ(usageOf("list"), QStringLiteral("Usage: qv1k-acquire list [options]"));
}

TEST(Help, tells_each_option_and_argument_with_its_value)
{
    for (const Command &command : CommandTable::commands()) {
        SCOPED_TRACE(command.name);
        const QString text = CommandTexts::help(command, false);
        const QString options = text.section(QStringLiteral("\nOptions:\n"), 1);
        for (const Option &option : CommandTexts::optionsOf(command)) {
            const QStringList names = CommandTexts::namesOf(option);
            QStringList left;
            if (!names.isEmpty())
                left << names.join(QStringLiteral(", "));
            if (option.value != nullptr)
                left << QString::fromLatin1(names.isEmpty() ? "%1" : "<%1>").arg(QLatin1String(option.value));
            const QString row = QStringLiteral("  %1  ").arg(left.join(u' '));
            EXPECT_EQ(options.contains(row), !option.isForHelp) << qPrintable(row);
        }
        for (const QString &line : text.split(u'\n'))
            EXPECT_LT(line.size(), 100) << qPrintable(line);
    }
}

TEST(TextsOfTheBuild, a_text_that_there_is_not_is_an_error)
{
    for (const char *kind : {"man", "bash", "nothing"}) {
        const bool isThere = kind != QLatin1String("nothing");
        QProcess process;
        process.start(QStringLiteral(QV1K_ACQUIRE_TEXTS), {QString::fromLatin1(kind), QStringLiteral("1.0")});
        ASSERT_TRUE(process.waitForFinished()) << qPrintable(process.errorString());
        EXPECT_EQ(process.exitCode(), isThere ? 0 : 1) << kind;
        EXPECT_EQ(process.readAllStandardOutput().isEmpty(), !isThere) << kind;
    }
}
