#include "ui/inspector/inspection.h"

#include "device/protocol/frameformat.h"
#include "imaging/pixelkernel.h"

#include <algorithm>

namespace Inspections {

namespace {

constexpr int side = FrameFormat::side;
constexpr double goodPart = 0.25;
constexpr double leastSpan = 0.002; ///< nA; some steps of the converter

std::size_t indexOf(int row, int column)
{
    return static_cast<std::size_t>(row) * side + static_cast<std::size_t>(column);
}

/// From places in the region to those in the frame.
void shift(std::vector<FrameStatistics::Outliers::Place> &places, const FrameStatistics::Region &region)
{
    for (FrameStatistics::Outliers::Place &place : places) {
        place.row += region.firstRow;
        place.column += region.firstColumn;
    }
}

void addProfiles(Inspection &result, std::span<const double> frame)
{
    const Inquiry &asked = result.inquiry;
    for (int i = 0; i < asked.region.columns; ++i)
        result.rowProfile.push_back(frame[indexOf(asked.row, asked.region.firstColumn + i)]);
    for (int i = 0; i < asked.region.rows; ++i)
        result.columnProfile.push_back(frame[indexOf(asked.region.firstRow + i, asked.column)]);
}

} // namespace

Inspection::Histogram histogramEnds(const FrameStatistics::Summary &summary,
                                    const FrameStatistics::MeasuringRange &range)
{
    const double span = summary.maximum - summary.minimum;
    if (span > goodPart * (range.highest - range.lowest) || summary.maximum >= range.highest)
        return {std::min(summary.minimum, range.lowest), std::max(summary.maximum, range.highest), {}};
    const double missing = std::max(0.0, leastSpan - span) / 2;
    return {summary.minimum - missing, summary.maximum + missing, {}};
}

FrameStatistics::Region wholeFrame()
{
    return {0, 0, side, side};
}

Inspection inspect(std::span<const double> frame, std::span<const double> previous, const Inquiry &inquiry)
{
    Inspection result;
    result.inquiry = inquiry;
    result.current = frame[indexOf(inquiry.row, inquiry.column)];
    result.range = {0, static_cast<double>(PixelKernel::Mapping().rangeMax)};

    std::vector<double> room;
    const auto currents = FrameStatistics::cropped(frame, side, inquiry.region, room);
    result.summary = FrameStatistics::summary(currents, result.range);
    result.histogram = histogramEnds(result.summary, result.range);
    result.histogram.counts = FrameStatistics::histogram(currents, result.histogram.lowest,
                                                         result.histogram.highest, histogramBins);
    result.outliers = FrameStatistics::outliers(currents, inquiry.region.columns);
    shift(result.outliers.firstHot, inquiry.region);
    shift(result.outliers.firstDead, inquiry.region);
    addProfiles(result, frame);
    if (previous.size() == frame.size()) {
        std::vector<double> previousRoom;
        result.noise = FrameStatistics::noise(
            currents, FrameStatistics::cropped(previous, side, inquiry.region, previousRoom));
    }
    return result;
}

} // namespace Inspections
