#pragma once

#include "imaging/framestatistics.h"

#include <optional>
#include <span>
#include <vector>

/// What is asked of a frame. A pixel is named by row and column of the frame, as its current is read out.
struct Inquiry
{
    FrameStatistics::Region region; ///< within the frame
    int row = 0;                    ///< of the picked pixel, in the region or not
    int column = 0;

    bool operator==(const Inquiry &) const = default;
};

/// What a frame says of it.
struct Inspection
{
    /// How often each current occurs.
    struct Histogram
    {
        double lowest = 0; ///< nA
        double highest = 0;
        std::vector<std::size_t> counts;
    };

    Inquiry inquiry;
    double current = 0; ///< of the picked pixel, nA
    FrameStatistics::MeasuringRange range;
    FrameStatistics::Summary summary;
    std::optional<FrameStatistics::Noise> noise; ///< none without a frame before
    FrameStatistics::Outliers outliers;          ///< places are those of the frame
    Histogram histogram;
    std::vector<double> rowProfile;    ///< the picked pixel's row, over the region's columns
    std::vector<double> columnProfile; ///< the picked pixel's column, over the region's rows
};

namespace Inspections {

inline constexpr int histogramBins = 256;

/// The frame as the pipeline makes it. Takes some 50 ms for all of it; any thread.
/// `previous` is the frame before, or empty.
[[nodiscard]] Inspection inspect(std::span<const double> frame, std::span<const double> previous,
                                 const Inquiry &inquiry);

/// From where to where a histogram goes: over the whole measuring range when the currents fill a good part of
/// it or leave it, else over the currents. The end is above the begin.
[[nodiscard]] Inspection::Histogram histogramEnds(const FrameStatistics::Summary &summary,
                                                  const FrameStatistics::MeasuringRange &range);

/// All of a frame.
[[nodiscard]] FrameStatistics::Region wholeFrame();

} // namespace Inspections
