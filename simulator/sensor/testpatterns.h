#pragma once

#include "simulator/sensor/samples.h"

#include <QtGlobal>

#include <span>

namespace simulator {

/// The patterns 1 to 5 that the detector sends in place of its sensor's samples.
enum class TestPattern {
    None = 0,
    HorizontalRamp = 1, ///< offset + 1025 x column
    VerticalRamp = 2,   ///< offset + 1025 x row
    Checkerboard = 3,   ///< squares of 64 pixels, offset and largest sample in turn, the first one dark
    Flat = 4,           ///< offset + half of full scale
    Counter = 5         ///< counterSample(): each frame and pixel can be told apart
};

/// Sample of the counter pattern: 4096 + (pixel + frame x 4099) modulo 2^20. Frames count from 0 at each
/// start of acquisition.
[[nodiscard]] constexpr quint32 counterSample(quint64 frame, qint64 pixel)
{
    return quint32{sampleOffset} +
           ((static_cast<quint32>(pixel) + static_cast<quint32>(frame) * 4099U) & (quint32{fullScale} - 1U));
}

/// Writes the samples of `samples.size() / 4` pixels from `firstPixel` on, most significant byte first.
void writeTestPattern(TestPattern pattern, quint64 frame, qsizetype firstPixel, std::span<uchar> samples);

} // namespace simulator
