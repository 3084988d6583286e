#pragma once

/// Numbers as a QTextStream writes them by default: a double with up to six significant digits in smart
/// notation, exact halves away from zero; the machine's locale does not matter.
namespace CsvNumber {

inline constexpr int maxChars = 16; ///< room that append() needs, also for a short number

/// Writes the number at `out` and returns the end of it.
[[nodiscard]] char *append(char *out, double value);
[[nodiscard]] char *append(char *out, int value);

} // namespace CsvNumber
