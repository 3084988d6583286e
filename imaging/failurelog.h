#pragma once

#include <QString>

/// How every failure of a file reads: what happened, to which file, for what reason.
[[nodiscard]] QString failureLine(const QString &what, const QString &path, const QString &reason);

/// Puts one line into the log and, by the log or without it, on the debug output.
void reportFailure(const QString &line);
