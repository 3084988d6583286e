#pragma once

#include <QtGlobal>

namespace simulator {

/// A well-mixed 64-bit value of `x` (SplitMix64): the same on every machine, unlike the distributions of the
/// standard library.
[[nodiscard]] constexpr quint64 mixed(quint64 x)
{
    x += 0x9E3779B97F4A7C15U;
    x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27U)) * 0x94D049BB133111EBU;
    return x ^ (x >> 31U);
}

/// A random number of its own for each pair.
[[nodiscard]] constexpr quint64 mixed(quint64 a, quint64 b)
{
    return mixed(mixed(a) ^ b);
}

/// 0 <= result < 1
[[nodiscard]] constexpr double uniform(quint64 random)
{
    return static_cast<double>(random >> 11U) * 0x1.0p-53;
}

} // namespace simulator
