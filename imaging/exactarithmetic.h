#pragma once

#include <cfloat>
#include <limits>

// Refuses to compile where the arithmetic of double is not that of IEEE 754, operation by operation: the
// numbers that come out would still look right. Included by every file whose results are exact to the last
// bit. Not everything leaves a mark to look for: fused multiply-add does not, which the build switches off,
// nor with Clang the single parts of -ffast-math.

#if defined(__FAST_MATH__) || defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) ||               \
    defined(__NO_SIGNED_ZEROS__) || defined(_M_FP_FAST)
#error "Photocurrents are exact to the last bit: compile without -ffast-math and what it is made of."
#endif

#if defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__ != 0
#error "Photocurrents are exact to the last bit: compile without -ffinite-math-only, NaN and infinity occur."
#endif

static_assert(
    FLT_EVAL_METHOD == 0,
    "Photocurrents are exact to the last bit: compile for SSE2, x87 rounds to more bits than a double.");
static_assert(std::numeric_limits<double>::is_iec559,
              "Photocurrents are exact to the last bit: double must be the 64-bit format of IEEE 754.");
