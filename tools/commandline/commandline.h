#pragma once

#include "tools/commandline/commandtable.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// The exit statuses of qv1k-acquire. A process that a signal asked to end ends by that signal.
namespace ExitStatus {
inline constexpr int complete = 0;   ///< all frames came and every file is complete
inline constexpr int failed = 1;     ///< they did not; standard error tells why in one line
inline constexpr int wrongUsage = 2; ///< the arguments do not say what is wanted; no detector was opened
} // namespace ExitStatus

/// What was typed behind the program's name, held against the table of commands.
///
/// Where there is nothing to run, or something is wrong with it, that is printed and the process ends, with
/// ExitStatus::complete after help and version, else with ExitStatus::wrongUsage. The last of several values
/// of an option counts.
class CommandLine
{
public:
    /// Reads the arguments, the program's name first. Without a command in front the first command is meant.
    explicit CommandLine(const QStringList &arguments);

    [[nodiscard]] const CommandTable::Command &command() const { return *m_command; }

    /// Options go by the first of their long names, without dashes.
    [[nodiscard]] bool isSet(const QString &option) const { return m_values.contains(option); }

    /// What was given, or what the table says for an option that was not.
    [[nodiscard]] QString value(const QString &option) const;

    /// The value as a whole number from `lowest` to `highest`; refuses anything else.
    [[nodiscard]] int number(const QString &option, int lowest, int highest) const;

    /// The value as volts from `lowest` to `highest` with so many decimals at most, none when it was not
    /// given; refuses anything else.
    [[nodiscard]] std::optional<double> volts(const QString &option, double lowest, double highest,
                                              int decimals) const;

    /// Says what is wrong and ends the process.
    [[noreturn]] static void refuse(const QString &message);

private:
    void read(const QStringList &arguments);
    void refuseUnknown(const QStringList &left) const;
    void refuseOtherChoices() const;

    const CommandTable::Command *m_command;
    QHash<QString, QString> m_values;
};
