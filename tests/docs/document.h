#pragma once

#include <QString>
#include <QStringList>

/// What of a Markdown document is held against the program. Only as much of the notation is known as the
/// documents use. Pure functions but for those that read.
namespace Document {

/// A document by its path from the project's root; fails the test when it cannot be read.
[[nodiscard]] QString read(const QString &path);

/// The lines between ```info and ```, of all such blocks in their order, without empty ones.
[[nodiscard]] QStringList blockLines(const QString &text, const QString &info);

/// The text without its code: blocks between ``` marks, indented blocks, and what stands between ` marks.
[[nodiscard]] QString withoutCode(const QString &text);

/// The section below the first heading of that text, down to the next of its level or above.
[[nodiscard]] QString section(const QString &text, const QString &heading);

/// The cells of every row of every table but the headings.
[[nodiscard]] QList<QStringList> tableRows(const QString &text);

/// Parts of a line that two or more spaces keep apart.
[[nodiscard]] QStringList columns(const QString &line);

/// Words parted by spaces; what stands in quotation marks is one word, without the marks.
[[nodiscard]] QStringList words(const QString &text);

/// Bytes as in "[00] [01 B6 ×2]": hexadecimal, a group in brackets as often as its ×n says.
[[nodiscard]] QByteArray bytes(const QString &text);

} // namespace Document
