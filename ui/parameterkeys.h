#pragma once

#include "device/parameters/parameterkeys.h" // IWYU pragma: export
