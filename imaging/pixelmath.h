#pragma once

#include "imaging/exactarithmetic.h"

#include <QtGlobal>

#include <cmath>
#include <limits>

/// The arithmetic of one pixel. Only operations that IEEE 754 defines exactly, in the order that defines the
/// result, and no branches, so that loops over them become vector instructions with the same results.
namespace PixelMath {

inline constexpr qint32 sampleOffset = 4096;
inline constexpr double countsPerFullScale = 1048576.0;
inline constexpr double decimals = 10000.0; ///< a current is a whole number of ten-thousandths of 1 nA
inline constexpr double nanoPerMicro = 1000.0;

/// std::round(), halves away from zero, for every double.
Q_ALWAYS_INLINE double roundHalfAway(double x)
{
    // Above 2^52 every double is whole. Below, adding it leaves the nearest whole number, halves to even;
    // a half that went down is put up again.
    constexpr double whole = 4503599627370496.0;
    const double magnitude = std::fabs(x);
    const double nearest = (magnitude + whole) - whole;
    const double away = magnitude - nearest == 0.5 ? nearest + 1.0 : nearest;
    return std::copysign(magnitude < whole ? away : magnitude, x);
}

/// Truncated toward zero; -2^31 for what does not fit, NaN included.
Q_ALWAYS_INLINE qint32 truncated(double x)
{
    constexpr double lowest = std::numeric_limits<qint32>::min();
    const bool fits = (x > lowest - 1.0) & (x < -lowest);
    return static_cast<qint32>(fits ? x : lowest);
}

/// Photocurrent in nA. A sample with the top bit set is negative here and counts 0, like all below the
/// offset.
Q_ALWAYS_INLINE double current(qint32 sample, double gainNumerator, double gainDenominator)
{
    const qint32 counts = sample > sampleOffset ? sample - sampleOffset : 0;
    const double scaledCurrent =
        counts / countsPerFullScale * gainNumerator / gainDenominator * nanoPerMicro * decimals;
    return roundHalfAway(scaledCurrent) / decimals;
}

Q_ALWAYS_INLINE qint32 plainLevel(double current, double rangeMax)
{
    return truncated(current / rangeMax * 255);
}

/// The current as the picture shows it, at most `rangeMax`.
Q_ALWAYS_INLINE double scaled(double current, double contrastRatio, double rangeMax)
{
    const double product = current * contrastRatio;
    return product > rangeMax ? rangeMax : product;
}

/// Position between the references. Equal references give NaN and so a level whose low byte is 0; a bright
/// reference below the dark one gives 255.
Q_ALWAYS_INLINE qint32 calibratedLevel(double current, double dark, double bright)
{
    const double span = bright - dark;
    const double above = current - dark;
    const double limited = above > span ? span : above;
    return truncated((above < 0 ? 0.0 : limited) / span * 255);
}

} // namespace PixelMath
