#pragma once

#include <QString>

#include <memory>
#include <span>

/// Writes one number a pixel as text: lines of 1024 values, "," between them, "\n" after each line. The same
/// bytes that a QTextStream with its default settings would write.
///
/// Formats on OpenCV's workers, or on the calling thread alone when that is one of them, into a buffer that
/// is kept (16 MiB at most; only what the text takes is touched). Blocks for the disk. One thread at a time.
class CsvWriter
{
public:
    /// Replaces the file. `values` are up to 1024 x 1024; an unfinished last line is left out.
    /// Returns an empty text, or a line that says which file failed and why.
    [[nodiscard]] QString write(const QString &path, std::span<const double> values);
    [[nodiscard]] QString write(const QString &path, std::span<const int> values);

private:
    template <typename Number>
    QString writeLines(const QString &path, std::span<const Number> values);

    std::unique_ptr<char[]> m_text;
};
