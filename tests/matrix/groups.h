#pragma once

#include "tests/matrix/cell.h"

/// The parts of the table, each in a file of its own.
[[nodiscard]] Group downloadGroup();
[[nodiscard]] Group commandGroup();
