#include "tools/commandline/commandtexts.h"

namespace CommandTexts {

namespace {

using CommandTable::Command;
using CommandTable::Option;

constexpr qsizetype lineLength = 79;
constexpr qsizetype columnGap = 2;

const QString lineEnd = QStringLiteral("\n");

/// Words in lines of that length, each but the first behind `indent` blanks.
QString wrapped(const QString &text, qsizetype indent, qsizetype length)
{
    QString lines;
    qsizetype used = 0;
    for (const QString &word : text.split(u' ')) {
        if (used > 0 && used + 1 + word.size() > length) {
            lines += lineEnd + QString(indent, u' ');
            used = 0;
        } else if (used > 0) {
            lines += u' ';
            ++used;
        }
        lines += word;
        used += word.size();
    }
    return lines;
}

/// "-h, --help", "--library <name>", "dark|bright".
QString leftOf(const Option &option)
{
    const QStringList names = namesOf(option);
    if (names.isEmpty())
        return QString::fromLatin1(option.value);
    const QString all = names.join(QStringLiteral(", "));
    return option.value == nullptr ? all : all + QStringLiteral(" <%1>").arg(QLatin1String(option.value));
}

using Rows = QList<std::pair<QString, QString>>;

QString columns(const Rows &rows)
{
    qsizetype width = 0;
    for (const auto &[left, right] : rows)
        width = qMax(width, left.size() + columnGap);
    QString lines;
    for (const auto &[left, right] : rows)
        lines += QString(columnGap, u' ') + left.leftJustified(width) +
                 wrapped(right, columnGap + width, lineLength - columnGap - width) + lineEnd;
    return lines;
}

QString section(const CommandTable::Section &section)
{
    return lineEnd + QLatin1String(section.heading) + QStringLiteral(":\n") + QLatin1String(section.text) +
           lineEnd;
}

QString usage(const Command &command, bool isImplied)
{
    QString line = QStringLiteral("Usage: qv1k-acquire");
    if (isImplied)
        return line + QStringLiteral(" [options]\n       qv1k-acquire <command> [options]\n");
    line += u' ' + QLatin1String(command.name);
    for (const Option &option : command.options) {
        if (namesOf(option).isEmpty())
            line += u' ' + QLatin1String(option.value);
        else if (option.isRequired)
            line += QStringLiteral(" --%1 <%2>").arg(keyOf(option), QLatin1String(option.value));
    }
    return line + QStringLiteral(" [options]\n");
}

} // namespace

QString help(const Command &command, bool isImplied)
{
    QString text =
        usage(command, isImplied) + wrapped(QString::fromUtf8(command.text), 0, lineLength) + lineEnd;
    for (const CommandTable::Section &paragraph : command.sections)
        text += section(paragraph);
    text += section(CommandTable::exitStatus(command));
    if (isImplied) {
        Rows rows;
        for (const Command &each : CommandTable::commands())
            rows.append({QString::fromLatin1(each.name), QString::fromUtf8(each.summary)});
        text += QStringLiteral("\nCommands (each has its own --help; without one it is %1):\n")
                    .arg(QLatin1String(command.name)) +
                columns(rows);
    }
    Rows rows;
    for (const Option &option : optionsOf(command)) {
        if (!option.isForHelp)
            rows.append({leftOf(option), QString::fromUtf8(option.text)});
    }
    return text + QStringLiteral("\nOptions:\n") + columns(rows) +
           QStringLiteral("\nExample:\n  %1\n").arg(QLatin1String(command.example));
}

std::vector<Option> optionsOf(const Command &command)
{
    const auto common = CommandTable::commonOptions();
    std::vector<Option> options(common.begin(), common.end());
    options.insert(options.end(), command.options.begin(), command.options.end());
    return options;
}

QStringList namesOf(const Option &option)
{
    const QString names = QString::fromLatin1(option.names);
    return names.startsWith(u'-') ? names.split(u',') : QStringList();
}

QString keyOf(const Option &option)
{
    for (const QString &name : namesOf(option)) {
        if (name.startsWith(QStringLiteral("--")))
            return name.mid(2);
    }
    return QString::fromLatin1(option.names);
}

QStringList choicesOf(const Option &option)
{
    const QString value = QString::fromLatin1(option.value);
    if (value.contains(u'|'))
        return value.split(u'|');
    QStringList numbers;
    if (const QStringList ends = value.split(u'-'); ends.size() == 2) {
        for (int number = ends[0].toInt(); number <= ends[1].toInt(); ++number)
            numbers << QString::number(number);
    }
    return numbers;
}

} // namespace CommandTexts
