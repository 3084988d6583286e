#include "tools/commandline/commandline.h"

#include "tools/commandline/commandtexts.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

using CommandTable::Command;
using CommandTable::Option;

const QString optionMark = QStringLiteral("--");

void print(const QString &text)
{
    std::fputs(qUtf8Printable(text), stdout);
}

std::optional<Option> optionNamed(const Command &command, const QString &name)
{
    for (const Option &option : CommandTexts::optionsOf(command)) {
        if (CommandTexts::namesOf(option).contains(name))
            return option;
    }
    return {};
}

/// "--name=value" as two arguments, so that a value may be empty. What stands behind an option that takes a
/// value is that, whatever it looks like.
std::vector<std::string> separated(const Command &command, const QStringList &arguments)
{
    std::vector<std::string> separate;
    bool areOptions = true;
    bool isValue = false;
    for (const QString &argument : arguments) {
        if (std::exchange(isValue, false)) {
            separate.push_back(argument.toStdString());
            continue;
        }
        areOptions = areOptions && argument != optionMark;
        const qsizetype equals = argument.indexOf(u'=');
        const std::optional<Option> option = areOptions && argument.startsWith(optionMark) && equals > 0
                                                 ? optionNamed(command, argument.left(equals))
                                                 : std::nullopt;
        if (!option) {
            const auto whole = areOptions ? optionNamed(command, argument) : std::nullopt;
            isValue = whole && whole->value != nullptr;
            separate.push_back(argument.toStdString());
            continue;
        }
        if (option->value == nullptr)
            CommandLine::refuse(QStringLiteral("Unexpected value after '%1'.").arg(argument.left(equals)));
        separate.push_back(argument.left(equals).toStdString());
        separate.push_back(argument.mid(equals + 1).toStdString());
    }
    return separate;
}

QString inWords(const QStringList &choices)
{
    return choices.mid(0, choices.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" or ") +
           choices.constLast();
}

} // namespace

CommandLine::CommandLine(const QStringList &arguments) : m_command(&CommandTable::commands().front())
{
    const auto all = CommandTable::commands();
    const auto named = std::find_if(all.begin(), all.end(), [&](const Command &command) {
        return arguments.value(1) == QLatin1String(command.name);
    });
    const bool isImplied = named == all.end();
    if (!isImplied)
        m_command = &*named;
    read(arguments.mid(isImplied ? 1 : 2));
    if (isSet(QStringLiteral("help")) || isSet(QStringLiteral("help-all"))) {
        print(CommandTexts::help(*m_command, isImplied));
        std::exit(ExitStatus::complete);
    }
    if (isSet(QStringLiteral("version"))) {
        print(QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion() + u'\n');
        std::exit(ExitStatus::complete);
    }
    refuseOtherChoices();
}

void CommandLine::read(const QStringList &arguments)
{
    CLI::App parser;
    parser.set_help_flag();
    parser.allow_extras();
    const std::vector<Option> options = CommandTexts::optionsOf(*m_command);
    QHash<QString, std::string> texts;
    QHash<QString, CLI::Option *> parsed;
    for (const Option &option : options) {
        const QString key = CommandTexts::keyOf(option);
        parsed[key] = option.value == nullptr ? parser.add_flag(option.names)
                                              : parser.add_option(option.names, texts[key])->take_last();
    }
    std::vector<std::string> reversed = separated(*m_command, arguments);
    std::reverse(reversed.begin(), reversed.end());
    try {
        parser.parse(reversed);
    } catch (const CLI::ArgumentMismatch &) {
        refuse(QStringLiteral("Missing value after '%1'.").arg(arguments.constLast()));
    } catch (const CLI::ParseError &error) {
        refuse(QString::fromStdString(error.what()));
    }
    for (auto option = parsed.cbegin(); option != parsed.cend(); ++option) {
        if (option.value()->count() > 0)
            m_values[option.key()] = QString::fromStdString(option.value()->results().back());
    }
    QStringList left;
    for (const std::string &argument : parser.remaining())
        left << QString::fromStdString(argument);
    refuseUnknown(left);
}

/// Unknown options first: what stands behind one may be its value.
void CommandLine::refuseUnknown(const QStringList &left) const
{
    QStringList unknown;
    for (const QString &argument : left) {
        if (argument == optionMark)
            break;
        if (argument.startsWith(u'-') && argument.size() > 1)
            unknown << argument.mid(argument.startsWith(optionMark) ? 2 : 1).section(u'=', 0, 0);
    }
    if (unknown.size() == 1)
        refuse(QStringLiteral("Unknown option '%1'.").arg(unknown.constFirst()));
    if (!unknown.isEmpty())
        refuse(QStringLiteral("Unknown options: %1.").arg(unknown.join(QStringLiteral(", "))));
    // Help and version are given whatever else stands there.
    if (isSet(QStringLiteral("help")) || isSet(QStringLiteral("help-all")) ||
        isSet(QStringLiteral("version")))
        return;
    for (const QString &argument : left) {
        if (argument != optionMark)
            refuse(QStringLiteral("unexpected argument \"%1\"").arg(argument));
    }
}

void CommandLine::refuseOtherChoices() const
{
    const QString command = QString::fromLatin1(m_command->name);
    for (const Option &option : CommandTexts::optionsOf(*m_command)) {
        const QString key = CommandTexts::keyOf(option);
        const bool isNamed = !CommandTexts::namesOf(option).isEmpty();
        const bool isChoice = QLatin1String(option.value).contains(u'|');
        const QStringList choices = CommandTexts::choicesOf(option);
        if (option.isRequired && !isSet(key))
            refuse(QStringLiteral("%1 needs %2")
                       .arg(command, isNamed    ? optionMark + key
                                     : isChoice ? inWords(choices)
                                                : QStringLiteral("a ") + QLatin1String(option.value)));
        if (isSet(key) && isChoice && !choices.contains(value(key)))
            refuse(QStringLiteral("%1 takes %2, not \"%3\"")
                       .arg(isNamed ? optionMark + key : command, inWords(choices), value(key)));
    }
}

QString CommandLine::value(const QString &option) const
{
    if (isSet(option))
        return m_values[option];
    for (const Option &row : m_command->options) {
        if (CommandTexts::keyOf(row) == option && row.otherwise != nullptr)
            return QString::fromLatin1(row.otherwise);
    }
    return {};
}

int CommandLine::number(const QString &option, int lowest, int highest) const
{
    bool ok = false;
    const int given = value(option).toInt(&ok);
    if (!ok || given < lowest || given > highest)
        refuse(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\"")
                   .arg(option)
                   .arg(lowest)
                   .arg(highest)
                   .arg(value(option)));
    return given;
}

std::optional<double> CommandLine::volts(const QString &option, double lowest, double highest,
                                         int decimals) const
{
    if (!isSet(option))
        return {};
    bool ok = false;
    const double given = value(option).toDouble(&ok);
    const bool isFine = ok && given >= lowest && given <= highest && // not a number is neither
                        QString::number(given, 'f', decimals).toDouble() == given;
    if (!isFine)
        refuse(QStringLiteral("--%1 takes volts from %2 to %3 with %4 decimals at most, not \"%5\"")
                   .arg(option)
                   .arg(lowest)
                   .arg(highest)
                   .arg(decimals)
                   .arg(value(option)));
    return given;
}

void CommandLine::refuse(const QString &message)
{
    std::fprintf(stderr, "qv1k-acquire: %s (--help lists the options)\n", qUtf8Printable(message));
    std::exit(ExitStatus::wrongUsage);
}
