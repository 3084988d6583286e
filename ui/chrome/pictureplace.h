#pragma once

#include "device/protocol/frameformat.h"

#include <QPoint>
#include <QSizeF>

#include <cmath>

/// The pixel of a frame that is shown at a place of a picture of it; with a place beside the picture, a pixel
/// that the frame does not have. `size` is the picture's, not empty.
[[nodiscard]] inline QPoint framePixelAt(QPointF place, QSizeF size)
{
    constexpr double range = FrameFormat::side;
    return {static_cast<int>(std::floor(place.x() / size.width() * range)),
            static_cast<int>(std::floor(place.y() / size.height() * range))};
}

/// The last pixel of a frame, rightwards and downwards, of which a pixel of a picture of it shows something.
[[nodiscard]] inline QPoint lastFramePixelUnder(QPoint pixel, QSizeF size)
{
    constexpr double range = FrameFormat::side;
    return {static_cast<int>(std::ceil((pixel.x() + 1) / size.width() * range)) - 1,
            static_cast<int>(std::ceil((pixel.y() + 1) / size.height() * range)) - 1};
}
