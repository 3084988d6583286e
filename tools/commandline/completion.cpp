#include "tools/commandline/commandtexts.h"

namespace CommandTexts {

namespace {

using CommandTable::Command;
using CommandTable::Option;

/// What completes the value of an option; empty when nothing can.
QString completionOf(const Option &option)
{
    const QString value = QString::fromLatin1(option.value);
    if (value == QLatin1String(CommandTable::folder))
        return QStringLiteral("-d");
    if (value == QLatin1String(CommandTable::file))
        return QStringLiteral("-f");
    const QStringList choices = choicesOf(option);
    return choices.isEmpty() ? QString() : QStringLiteral("-W '%1'").arg(choices.join(u' '));
}

QString caseOf(const Command &command)
{
    QStringList words;
    QString values;
    for (const Option &option : optionsOf(command)) {
        const QStringList names = namesOf(option);
        if (names.isEmpty())
            words << choicesOf(option);
        else if (!option.isForHelp)
            words << QStringLiteral("--") + keyOf(option);
        if (option.value != nullptr && !names.isEmpty())
            values += QStringLiteral("        %1) how=(%2) ;;\n").arg(names.join(u'|'), completionOf(option));
    }
    return QStringLiteral("    %1)\n        how=(-W '%2')\n        case $previous in\n%3        esac ;;\n")
        .arg(QLatin1String(command.name), words.join(u' '), values);
}

} // namespace

QString bashCompletion()
{
    QStringList names;
    QString cases;
    for (const Command &command : CommandTable::commands()) {
        names << QString::fromLatin1(command.name);
        cases += caseOf(command);
    }
    return QStringLiteral(
               "# bash completion for qv1k-acquire\n"
               "_qv1k_acquire() {\n"
               "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}\n"
               "    local command=%1 how=()\n"
               "    case ${COMP_WORDS[1]} in\n"
               "    %2) [ \"$COMP_CWORD\" -eq 1 ] || command=${COMP_WORDS[1]} ;;\n"
               "    esac\n"
               "    case $command in\n"
               "%3"
               "    esac\n"
               "    COMPREPLY=()\n"
               "    [ ${#how[@]} -gt 0 ] || return 0\n"
               "    [ \"${how[0]}\" = -W ] || compopt -o filenames 2>/dev/null\n"
               "    mapfile -t COMPREPLY < <(compgen \"${how[@]}\" -- \"$current\")\n"
               "    [ \"$COMP_CWORD\" -ne 1 ] || mapfile -t -O ${#COMPREPLY[@]} COMPREPLY "
               "< <(compgen -W '%4' -- \"$current\")\n"
               "}\n"
               "complete -F _qv1k_acquire qv1k-acquire\n")
        .arg(names.constFirst(), names.join(u'|'), cases, names.join(u' '));
}

} // namespace CommandTexts
