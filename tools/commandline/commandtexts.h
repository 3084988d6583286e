#pragma once

#include "tools/commandline/commandtable.h"

#include <QString>
#include <QStringList>

#include <vector>

/// What is told of the command line, from its table.
namespace CommandTexts {

/// What --help says behind a command; `isImplied` when none was typed.
[[nodiscard]] QString help(const CommandTable::Command &command, bool isImplied);

/// The manual page of them all, as troff.
[[nodiscard]] QString manualPage(const QString &version);

/// The program's completion, for bash to read.
[[nodiscard]] QString bashCompletion();

// What those are made of.

/// The common options and the command's own, in the order in which they are told.
[[nodiscard]] std::vector<CommandTable::Option> optionsOf(const CommandTable::Command &command);

/// "--frames", "-h": what is typed for it; empty for an argument without a name.
[[nodiscard]] QStringList namesOf(const CommandTable::Option &option);

/// By what the program knows it: the first long name without dashes, or the argument's own.
[[nodiscard]] QString keyOf(const CommandTable::Option &option);

/// The values that there are, where they can be listed: "a|b", "1-5".
[[nodiscard]] QStringList choicesOf(const CommandTable::Option &option);

} // namespace CommandTexts
