#include "imaging/exactarithmetic.h"

// Compiled by tests with options under which it must not compile.
