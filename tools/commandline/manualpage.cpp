#include "tools/commandline/commandtexts.h"

namespace CommandTexts {

namespace {

using CommandTable::Command;
using CommandTable::Option;

/// As troff takes it: every hyphen is one that can be typed, and no line begins with a request.
QString plain(const QString &text)
{
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\e")).replace(u'-', QStringLiteral("\\-"));
    const bool isRequest = escaped.startsWith(u'.') || escaped.startsWith(u'\'');
    return isRequest ? QStringLiteral("\\&") + escaped : escaped;
}

QString plain(const char *text)
{
    return plain(QString::fromUtf8(text));
}

QString heading(const char *request, const QString &text)
{
    return QStringLiteral(".%1 %2\n").arg(QLatin1String(request), text);
}

/// Lines as they stand.
QString lines(const CommandTable::Section &section)
{
    QString text = QStringLiteral(".nf\n");
    for (const QString &line : QString::fromUtf8(section.text).split(u'\n'))
        text += plain(line) + u'\n';
    return text + QStringLiteral(".fi\n");
}

QString entry(const Option &option)
{
    const QStringList names = namesOf(option);
    QString text = QStringLiteral(".TP\n");
    if (names.isEmpty())
        text += QStringLiteral(".I %1\n").arg(plain(option.value));
    else if (option.value == nullptr)
        text += QStringLiteral(".B %1\n").arg(plain(names.join(QStringLiteral(", "))));
    else
        text += QStringLiteral(".BI \"%1 \" %2\n")
                    .arg(plain(names.join(QStringLiteral(", "))), plain(option.value));
    return text + plain(option.text) + u'\n';
}

QString entries(std::span<const Option> options)
{
    QString text;
    for (const Option &option : options) {
        if (!option.isForHelp)
            text += entry(option);
    }
    return text;
}

QString synopsis()
{
    QString text = QStringLiteral(".B qv1k\\-acquire\n.RI [ options ]\n");
    for (const Command &command : CommandTable::commands())
        text += QStringLiteral(".br\n.B qv1k\\-acquire %1\n.RI [ options ]\n").arg(plain(command.name));
    return text;
}

QString chapter(const Command &command)
{
    QString text =
        heading("SS", plain(command.name)) + plain(command.text) + u'\n' + entries(command.options);
    std::vector<CommandTable::Section> sections(command.sections.begin(), command.sections.end());
    sections.push_back(CommandTable::exitStatus(command));
    for (const CommandTable::Section &section : sections)
        text += QStringLiteral(".PP\n%1:\n").arg(plain(section.heading)) + lines(section);
    return text;
}

} // namespace

QString manualPage(const QString &version)
{
    QString text = QStringLiteral(".TH QV1K-ACQUIRE 1 \"\" \"QV1K %1\" \"User Commands\"\n").arg(version) +
                   heading("SH", QStringLiteral("NAME")) +
                   QStringLiteral("qv1k\\-acquire \\- a photodiode-array detector without a window\n") +
                   heading("SH", QStringLiteral("SYNOPSIS")) + synopsis() +
                   heading("SH", QStringLiteral("DESCRIPTION")) +
                   QStringLiteral("Operates a detector from the command line. Without a command it is %1.\n")
                       .arg(plain(CommandTable::commands().front().name)) +
                   heading("SH", QStringLiteral("COMMANDS"));
    for (const Command &command : CommandTable::commands())
        text += chapter(command);
    text += heading("SS", QStringLiteral("Every command")) + entries(CommandTable::commonOptions()) +
            heading("SH", QStringLiteral("EXAMPLES")) + QStringLiteral(".nf\n");
    for (const Command &command : CommandTable::commands())
        text += plain(command.example) + u'\n';
    return text + QStringLiteral(".fi\n") + heading("SH", QStringLiteral("SEE ALSO")) +
           QStringLiteral(".BR qv1k (1),\n.BR qv1k\\-start (1)\n");
}

} // namespace CommandTexts
