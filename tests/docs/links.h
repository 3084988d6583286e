#pragma once

#include <QString>
#include <QStringList>

/// Links of Markdown documents. Pure functions but for brokenLinks().
namespace Links {

/// Where links and pictures of a document lead, as written. Code holds none.
[[nodiscard]] QStringList targets(const QString &text);

/// The anchors of its headings: small letters, without punctuation, blanks as "-"; the second of the same
/// gets "-1" behind it, and so on.
[[nodiscard]] QStringList anchors(const QString &text);

/// What leads nowhere in a document below `root`: a file or folder that is not there, an anchor that the
/// document does not have. Other addresses than files are not looked at.
[[nodiscard]] QStringList broken(const QString &root, const QString &document);

} // namespace Links
