#pragma once

#include "d2xx/functions.h"

/// Where the exported calls of a library go that stands in for a driver library: the library defines it.
/// Called at each call, from every thread.
[[nodiscard]] d2xx::Functions &providerCalls();
