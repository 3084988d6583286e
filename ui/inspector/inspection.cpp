#include "ui/inspector/inspection.h"

#include "device/protocol/frameformat.h"
#include "imaging/pixelkernel.h"
#include "imaging/pixelmath.h"

#include <algorithm>
#include <cmath>

namespace Inspections {

namespace {

constexpr int side = FrameFormat::side;
constexpr double goodPart = 0.25;
constexpr double leastSpan = 0.002; ///< nA; some steps of the converter
constexpr double margin = 0.25;
constexpr double besideRange = 0.02; ///< so that its ends are seen
constexpr double outside = 0.0005;   ///< may be beyond a histogram's ends, on either side

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

FrameStatistics::Interval histogramEnds(const FrameStatistics::Summary &summary,
                                        const FrameStatistics::Interval &bulk,
                                        const FrameStatistics::MeasuringRange &range)
{
    const double span = bulk.highest - bulk.lowest;
    const double wholeSpan = range.highest - range.lowest;
    if (span > goodPart * wholeSpan || bulk.highest >= range.highest)
        return {std::min(summary.minimum, range.lowest) - besideRange * wholeSpan,
                std::max(summary.maximum, range.highest) + besideRange * wholeSpan};
    const double room = std::max(margin * span, (leastSpan - span) / 2);
    return {bulk.lowest - room, bulk.highest + room};
}

Bins binsFor(const FrameStatistics::Interval &ends)
{
    constexpr PixelKernel::Mapping mapping;
    constexpr double step = PixelMath::nanoPerMicro * mapping.gainNumerator / mapping.gainDenominator /
                            PixelMath::countsPerFullScale;
    const double begin = (std::floor(ends.lowest / step) - 0.5) * step;
    const double width = step * std::ceil((ends.highest - begin) / step / mostBins);
    const int count = static_cast<int>(std::ceil((ends.highest - begin) / width));
    return {{begin, begin + count * width}, count};
}

namespace {

Inspection::Histogram histogramOf(std::span<const double> currents, const Inspection &inspection)
{
    const FrameStatistics::Summary &summary = inspection.summary;
    const FrameStatistics::Interval bulk =
        FrameStatistics::bulk(currents, {summary.minimum, summary.maximum}, outside);
    Inspection::Histogram result;
    const Bins bins = binsFor(histogramEnds(summary, bulk, inspection.range));
    result.ends = bins.ends;
    const auto &[lowest, highest] = result.ends;
    result.counts = FrameStatistics::histogram(currents, lowest, highest, bins.count);
    for (const double current : currents) {
        if (current >= lowest && current <= highest)
            continue;
        ++result.beyond;
        --(current < lowest ? result.counts.front() : result.counts.back());
    }
    return result;
}

} // namespace

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
    result.histogram = histogramOf(currents, result);
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
