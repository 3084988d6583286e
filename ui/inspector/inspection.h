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
        FrameStatistics::Interval ends; ///< nA
        std::vector<std::size_t> counts;
        std::size_t beyond = 0; ///< currents below and above the ends, which are in no part
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

inline constexpr int mostBins = 256; ///< of a histogram

/// The frame as the pipeline makes it. Takes some 50 ms for all of it; any thread.
/// `previous` is the frame before, or empty.
[[nodiscard]] Inspection inspect(std::span<const double> frame, std::span<const double> previous,
                                 const Inquiry &inquiry);

/// From where to where a histogram goes: over all currents and the measuring range when nearly all of them
/// (`bulk`) fill a good part of it or reach its upper end, else over those nearly all and a little more, so
/// that a hot pixel does not hide the rest. The end is above the begin.
[[nodiscard]] FrameStatistics::Interval histogramEnds(const FrameStatistics::Summary &summary,
                                                      const FrameStatistics::Interval &bulk,
                                                      const FrameStatistics::MeasuringRange &range);

/// Parts of equal width that hold all from `ends`, mostBins at most. Each is some steps of the converter wide
/// and begins between two of them, so that none holds more of them than its neighbours.
struct Bins
{
    FrameStatistics::Interval ends; ///< nA
    int count = 0;
};
[[nodiscard]] Bins binsFor(const FrameStatistics::Interval &ends);

/// All of a frame.
[[nodiscard]] FrameStatistics::Region wholeFrame();

} // namespace Inspections
