#pragma once

#include "tests/architecture/finding.h"
#include "tests/architecture/sourcetree.h"

constexpr int mostLinesOfAFile = 400;
constexpr int mostLinesOfAFunction = 60;

/// Files of more lines than a file may have.
[[nodiscard]] QList<Finding> longFiles(const SourceTree &tree);

/// Functions of more lines than a function may have, from the first line of the signature to the closing
/// brace. They are found by the look that the formatter gives them: the opening brace alone on a line, the
/// closing one below it. A lambda's brace ends a line, so a lambda counts towards the function that it stands
/// in.
[[nodiscard]] QList<Finding> longFunctions(const SourceTree &tree);
