#pragma once

#include <QByteArrayView>
#include <QImage>

#include <span>

/// What a recording stores of one frame: seen, not kept.
struct RecordedFrame
{
    const QImage &picture;            ///< 1024 x 1024, 8-bit grey
    std::span<const double> currents; ///< nA, row by row
    std::span<const int> grayLevels;  ///< row by row
    QByteArrayView raw = {};          ///< as it came over the cable
    qint64 time = 0;                  ///< when the pipeline took it, in milliseconds since 1970, UTC
};
