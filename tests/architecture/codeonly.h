#pragma once

#include <QString>

/// The text with comments and what literals hold replaced by blanks, every line and column where it was.
[[nodiscard]] QString codeOnly(const QString &text);
