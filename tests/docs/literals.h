#pragma once

#include <QString>
#include <QStringList>

/// The string literals of a C++ source in their order, as the compiler sees them: those that stand side by
/// side are one, escapes are resolved. Raw literals and what stands in comments are left out.
[[nodiscard]] QStringList stringLiterals(const QString &source);

/// Those among them that are the first argument of tr().
[[nodiscard]] QStringList translatedLiterals(const QString &source);

/// What of a text stands verbatim in every instance of it: the pieces between its placeholders (…, %1, %d)
/// and line ends, from their first letter or digit to their last. Pieces without a letter are left out.
[[nodiscard]] QStringList fixedPieces(const QString &text);
