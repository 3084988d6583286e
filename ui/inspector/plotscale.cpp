#include "ui/inspector/plotscale.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace PlotScale {

namespace {

constexpr double margin = 0.06;    ///< of the values' span, on either side
constexpr double leastSpan = 0.02; ///< nA; converter steps are no hills

std::vector<double> multiples(const Span &span, double step)
{
    std::vector<double> found;
    const double first = std::ceil(span.begin / step);
    const double last = std::floor(span.end / step);
    for (double i = first; i <= last; ++i)
        found.push_back(i * step);
    return found;
}

} // namespace

std::vector<double> ticks(const Span &span, int most)
{
    constexpr std::array steps{1.0, 2.0, 5.0};
    const double smallest = (span.end - span.begin) / most;
    for (double power = std::pow(10.0, std::floor(std::log10(smallest)));; power *= 10) {
        for (const double factor : steps) {
            const double step = factor * power;
            if (std::floor(span.end / step) - std::ceil(span.begin / step) < most)
                return multiples(span, step);
        }
    }
}

QString text(double tick, double distance)
{
    const int decimals = std::clamp(static_cast<int>(std::ceil(-std::log10(distance) - 1e-9)), 0, 9);
    // Not "-0".
    return QString::number(std::abs(tick) < distance / 2 ? 0.0 : tick, 'f', decimals);
}

Span around(const std::vector<double> &values)
{
    if (values.empty())
        return {};
    const auto [lowest, highest] = std::ranges::minmax(values);
    const double missing = std::max(0.0, leastSpan - (highest - lowest)) / 2;
    const double room = missing + margin * (highest - lowest);
    return {lowest - room, highest + room};
}

} // namespace PlotScale
