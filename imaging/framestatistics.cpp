#include "imaging/framestatistics.h"

#include <algorithm>
#include <cmath>

namespace FrameStatistics {

namespace {

constexpr double deviationPerMad = 1.4826; ///< of a normal distribution

/// Of equal values it is that value, to the last bit.
double meanOf(std::span<const double> values)
{
    const double first = values.front();
    double above = 0;
    for (const double value : values)
        above += value - first;
    return first + above / static_cast<double>(values.size());
}

/// The second smallest and the second largest of a pixel's neighbours.
struct Middle
{
    double lower;
    double upper;

    [[nodiscard]] double median() const { return (lower + upper) / 2; }
};

/// An area of at least two pixels, and what is around each of them.
class Area
{
public:
    Area(std::span<const double> currents, int columns)
        : m_currents(currents), m_columns(static_cast<std::size_t>(columns)),
          m_rows(currents.size() / m_columns)
    {
    }

    /// Calls `see` with index, current and neighbours of every pixel.
    template <typename See>
    void each(const See &see) const
    {
        for (std::size_t row = 0; row < m_rows; ++row) {
            const std::size_t begin = row * m_columns;
            const auto [above, below] = besides(row, m_rows);
            const double *current = m_currents.data() + begin;
            const double *up = m_currents.data() + above * m_columns;
            const double *down = m_currents.data() + below * m_columns;
            const auto seeEdge = [&](std::size_t column) {
                const auto [left, right] = besides(column, m_columns);
                const double l = m_columns > 1 ? current[left] : up[column];
                const double r = m_columns > 1 ? current[right] : down[column];
                const double u = m_rows > 1 ? up[column] : l;
                const double d = m_rows > 1 ? down[column] : r;
                see(begin + column, current[column], middle(l, r, u, d));
            };
            seeEdge(0);
            // Nearly all pixels: without a branch, so that the loop becomes vector instructions.
            if (m_rows > 1) {
                for (std::size_t column = 1; column + 1 < m_columns; ++column)
                    see(begin + column, current[column],
                        middle(current[column - 1], current[column + 1], up[column], down[column]));
            } else {
                for (std::size_t column = 1; column + 1 < m_columns; ++column)
                    seeEdge(column);
            }
            if (m_columns > 1)
                seeEdge(m_columns - 1);
        }
    }

private:
    struct Pair
    {
        std::size_t before;
        std::size_t after;
    };

    /// Reflected at the ends; of a single one, itself.
    static Pair besides(std::size_t index, std::size_t count)
    {
        if (count == 1)
            return {0, 0};
        return {index == 0 ? 1 : index - 1, index + 1 == count ? index - 1 : index + 1};
    }

    static Middle middle(double l, double r, double u, double d)
    {
        const double largerLower = std::max(std::min(l, r), std::min(u, d));
        const double smallerUpper = std::min(std::max(l, r), std::max(u, d));
        return {std::min(largerLower, smallerUpper), std::max(largerLower, smallerUpper)};
    }

    std::span<const double> m_currents;
    std::size_t m_columns;
    std::size_t m_rows;
};

/// 1.4826 * MAD, see outliers().
double chanceDeviation(const Area &area, std::size_t pixels)
{
    std::vector<double> differences(pixels);
    area.each([&](std::size_t index, double current, const Middle &around) {
        differences[index] = std::abs(current - around.median());
    });
    const auto half = differences.begin() + static_cast<std::ptrdiff_t>(pixels / 2);
    std::nth_element(differences.begin(), half, differences.end());
    double median = *half;
    if (pixels % 2 == 0)
        median = (median + *std::max_element(differences.begin(), half)) / 2;
    return deviationPerMad * median;
}

void count(std::size_t &number, std::vector<Outliers::Place> &first, const Outliers::Place &place)
{
    ++number;
    if (first.size() < Outliers::listed)
        first.push_back(place);
}

} // namespace

std::span<const double> cropped(std::span<const double> frame, int width, const Region &region,
                                std::vector<double> &room)
{
    const auto stride = static_cast<std::size_t>(width);
    const auto columns = static_cast<std::size_t>(region.columns);
    const auto rows = static_cast<std::size_t>(region.rows);
    const std::size_t begin =
        static_cast<std::size_t>(region.firstRow) * stride + static_cast<std::size_t>(region.firstColumn);
    if (columns == stride)
        return frame.subspan(begin, rows * columns);
    room.resize(rows * columns);
    for (std::size_t row = 0; row < rows; ++row)
        std::ranges::copy(frame.subspan(begin + row * stride, columns),
                          room.begin() + static_cast<std::ptrdiff_t>(row * columns));
    return room;
}

Summary summary(std::span<const double> currents, const MeasuringRange &range)
{
    if (currents.empty())
        return {};
    Summary result{.count = currents.size(), .minimum = currents.front(), .maximum = currents.front()};
    for (const double current : currents) {
        result.minimum = std::min(result.minimum, current);
        result.maximum = std::max(result.maximum, current);
        result.clippedBelow += current <= range.lowest ? 1 : 0;
        result.clippedAbove += current >= range.highest ? 1 : 0;
    }
    result.mean = meanOf(currents);
    double squares = 0;
    for (const double current : currents)
        squares += (current - result.mean) * (current - result.mean);
    result.deviation = std::sqrt(squares / static_cast<double>(currents.size()));
    return result;
}

std::vector<std::size_t> histogram(std::span<const double> currents, double lowest, double highest, int bins)
{
    std::vector<std::size_t> counts(static_cast<std::size_t>(bins));
    const double scale = bins / (highest - lowest);
    for (const double current : currents) {
        const double bin = std::clamp((current - lowest) * scale, 0.0, bins - 1.0);
        ++counts[static_cast<std::size_t>(bin)];
    }
    return counts;
}

Interval bulk(std::span<const double> currents, const Interval &all, double outside)
{
    constexpr int parts = 1024;
    constexpr int rounds = 3; // one current of 1e6 times the others leaves those some hundred parts
    const auto most = static_cast<std::size_t>(outside * static_cast<double>(currents.size()));
    Interval found = all;
    for (int round = 0; round < rounds && found.lowest < found.highest; ++round) {
        const std::vector<std::size_t> counts = histogram(currents, found.lowest, found.highest, parts);
        const auto skipped = [most](auto begin, auto end) {
            std::size_t passed = 0;
            return std::find_if(begin, end, [&](std::size_t count) { return (passed += count) > most; }) -
                   begin;
        };
        const double width = (found.highest - found.lowest) / parts;
        const Interval before = found;
        found.lowest += width * static_cast<double>(skipped(counts.begin(), counts.end()));
        found.highest -= width * static_cast<double>(skipped(counts.rbegin(), counts.rend()));
        // Rounded, the ends could pass each other where all lie in one part.
        if (found.lowest >= found.highest)
            return before;
    }
    return found;
}

std::optional<Noise> noise(std::span<const double> a, std::span<const double> b)
{
    if (a.size() < 2)
        return std::nullopt;
    const double meanA = meanOf(a);
    const double meanB = meanOf(b);
    double differences = 0;
    double means = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double difference = (a[i] - meanA) - (b[i] - meanB);
        const double mean = ((a[i] - meanA) + (b[i] - meanB)) / 2;
        differences += difference * difference;
        means += mean * mean;
    }
    const auto number = static_cast<double>(a.size());
    const double temporalVariance = differences / number / 2;
    const double spatialVariance = means / number - temporalVariance / 2;
    return Noise{.temporal = std::sqrt(temporalVariance),
                 .spatial = std::sqrt(std::max(0.0, spatialVariance))};
}

Outliers outliers(std::span<const double> currents, int columns, const OutlierRule &rule)
{
    Outliers found;
    if (currents.size() < 2)
        return found;
    const Area area(currents, columns);
    const double fixed = std::max(rule.deviations * chanceDeviation(area, currents.size()), rule.least);
    const auto width = static_cast<std::size_t>(columns);
    area.each([&](std::size_t index, double current, const Middle &around) {
        const bool isHot = current - around.upper > std::max(fixed, rule.share * around.upper);
        const bool isDead = around.lower - current > std::max(fixed, rule.share * around.lower);
        if (!isHot && !isDead)
            return;
        const Outliers::Place place{static_cast<int>(index / width), static_cast<int>(index % width)};
        if (isHot)
            count(found.hot, found.firstHot, place);
        else
            count(found.dead, found.firstDead, place);
    });
    return found;
}

} // namespace FrameStatistics
