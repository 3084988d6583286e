#pragma once

#include <QString>

#include <functional>

/// A frame of numbers as text, a number a pixel: what recordings and references are stored as.
namespace CsvFrame {

/// Reads a file and hands each number on, row by row: 1024 lines of 1024 finite numbers with commas between
/// them. Returns the first fault in one line, or an empty text. One line at a time is in memory.
[[nodiscard]] QString read(const QString &path, const std::function<void(double)> &take);

} // namespace CsvFrame
