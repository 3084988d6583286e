#pragma once

#include <QString>

#include <vector>

/// Where the ticks of an axis are, and what stands at them. Free functions, any thread.
namespace PlotScale {

/// From where to where an axis goes; the end is above the begin.
struct Span
{
    double begin = 0;
    double end = 1;
};

/// The numbers from `span` that are whole multiples of 1, 2 or 5 times a power of ten, `most` at most and in
/// their order. `most` is 2 or more.
[[nodiscard]] std::vector<double> ticks(const Span &span, int most);

/// The tick as it is written, with as many decimals as the distance to the next tick needs.
[[nodiscard]] QString text(double tick, double distance);

/// Holds all values and a little more, so that no curve lies on the frame; equal ones lie in the middle.
/// `values` may be empty.
[[nodiscard]] Span around(const std::vector<double> &values);

} // namespace PlotScale
