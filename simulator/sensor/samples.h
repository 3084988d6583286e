#pragma once

#include <QtGlobal>

namespace simulator {

inline constexpr qint32 sampleOffset = 4096;
inline constexpr qint32 fullScale = 1 << 20;
/// The largest sample: offset and 20 bits.
inline constexpr qint32 largestSample = sampleOffset + fullScale - 1;

} // namespace simulator
