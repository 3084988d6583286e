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
