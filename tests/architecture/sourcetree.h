#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A file of the project as the rules see it.
struct SourceFile
{
    QString path; ///< from the project's root
    QStringList lines;
    QStringList code; ///< the same lines, comments and the insides of literals blank; empty unless it is C++
};

using SourceTree = QList<SourceFile>;

/// Every source (.cpp, .h), script (.sh) and CMake file below a folder, sorted by path. Hidden folders and
/// what the build and the program leave behind (`build`, `workspace`) are passed over.
[[nodiscard]] SourceTree readSourceTree(const QString &root);

[[nodiscard]] SourceFile sourceFile(const QString &path, const QString &text);
/// The same of literals in UTF-8.
[[nodiscard]] inline SourceFile sourceFile(const char *path, const char *text)
{
    return sourceFile(QString::fromUtf8(path), QString::fromUtf8(text));
}
