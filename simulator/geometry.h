#pragma once

#include <QtGlobal>

/// What a frame is made of, on the sensor and on the wire.
namespace simulator {

inline constexpr int sensorWidth = 1024;
inline constexpr int sensorHeight = 1024;
inline constexpr qsizetype sensorPixels = qsizetype{sensorWidth} * sensorHeight;

inline constexpr qsizetype sampleBytes = 4; ///< most significant first
inline constexpr qsizetype blockBytes = 131072;
inline constexpr int blocksPerFrame = 32;
inline constexpr qsizetype frameBytes = blockBytes * blocksPerFrame;

static_assert(frameBytes == sensorPixels * sampleBytes);
static_assert(blockBytes % (sensorWidth * sampleBytes) == 0, "a block is a number of whole rows");

} // namespace simulator
