#pragma once

#include <QString>

#include <exception>

/// How every failure of a file reads: what happened, to which file, for what reason.
[[nodiscard]] QString failureLine(const QString &what, const QString &path, const QString &reason);

/// Puts one line into the log and, by the log or without it, on the debug output. Any thread.
void reportFailure(const QString &line);

/// What an exception says of itself.
[[nodiscard]] QString reasonOf(const std::exception &exception);

/// Does what returns the line of a failed file, or nothing; an exception out of it is such a failure of the
/// file at `path`.
template <typename Job>
[[nodiscard]] QString guardedFile(const QString &path, Job job)
{
    try {
        return job();
    } catch (const std::exception &exception) {
        return failureLine(QStringLiteral("文件写入异常"), path, reasonOf(exception));
    }
}
