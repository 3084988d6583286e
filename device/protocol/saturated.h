#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

/// Truncation toward zero of a value that may lie outside the 32-bit range, whose ends it then takes; 0 for
/// what is no number.
[[nodiscard]] inline int saturatedToInt(double value)
{
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, lowest, highest));
}
