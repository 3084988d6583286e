#pragma once

#include "tests/architecture/finding.h"
#include "tests/architecture/sourcetree.h"

/// Conversions between numbers that are not written as static_cast<T>(x): T(x), (T)x. A constant that only
/// becomes wider may be written T{x}.
[[nodiscard]] QList<Finding> castsOfAnotherStyle(const SourceTree &tree);

/// Integers that are not named in the project's one way: std::size_t, not size_t; unsigned int, not unsigned;
/// in one file quint32 and the like or std::uint32_t and the like (where Qt may not be used), not both.
[[nodiscard]] QList<Finding> integersOfAnotherStyle(const SourceTree &tree);
