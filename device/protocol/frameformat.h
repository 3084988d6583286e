#pragma once

#include <QtGlobal>

/// The shape of an image frame on the cable: the detector's geometry and the blocks of the handshake.
namespace FrameFormat {

inline constexpr int side = 1024; ///< pixels a row, and rows
inline constexpr int pixels = side * side;
inline constexpr int bytesPerPixel = 4; ///< most significant first

inline constexpr qsizetype blockBytes = 131072; ///< between two acknowledgements
inline constexpr int blocksPerFrame = 32;
inline constexpr qsizetype frameBytes = 4194304;

static_assert(frameBytes == blockBytes * blocksPerFrame);
static_assert(frameBytes == qsizetype{pixels} * bytesPerPixel);

} // namespace FrameFormat
