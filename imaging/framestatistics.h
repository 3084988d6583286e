#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// Figures of a frame of currents, or of a region of one: what they are, how they spread, how noisy they are
/// and which pixels stand out.
///
/// Currents are in nanoamperes, finite, row by row. Free functions, any thread; none keeps what it was given.
/// Every result is finite.
namespace FrameStatistics {

/// A rectangle of a frame.
struct Region
{
    int firstRow = 0;
    int firstColumn = 0;
    int rows = 0;
    int columns = 0;

    bool operator==(const Region &) const = default;
};

/// The currents of `region`, row by row. `frame` has rows of `width` currents, and the region lies within it.
/// Seen in the frame itself where the region takes whole rows, otherwise copied to `room`.
[[nodiscard]] std::span<const double> cropped(std::span<const double> frame, int width, const Region &region,
                                              std::vector<double> &room);

/// What a pixel can tell: at an end and beyond, it is clipped.
struct MeasuringRange
{
    double lowest = 0;
    double highest = 150;
};

/// How currents spread.
struct Summary
{
    std::size_t count = 0;
    double minimum = 0;
    double mean = 0;
    double maximum = 0;
    double deviation = 0;         ///< standard deviation, sqrt(sum (x - mean)^2 / count)
    std::size_t clippedBelow = 0; ///< currents at the lower end of the measuring range, or below
    std::size_t clippedAbove = 0; ///< the same of the upper end
};

/// All zero when there are no currents.
[[nodiscard]] Summary summary(std::span<const double> currents, const MeasuringRange &range);

/// How many currents are in each of `bins` equal parts from `lowest` to `highest`, which is above it. What is
/// outside counts in the first or the last part.
[[nodiscard]] std::vector<std::size_t> histogram(std::span<const double> currents, double lowest,
                                                 double highest, int bins);

/// From one current to another.
struct Interval
{
    double lowest = 0;
    double highest = 0;
};

/// Where nearly all of the currents are: at most `outside` of them, a share, are below and as many above. As
/// near as some parts of a thousand of it, and within `all`, which holds every current.
[[nodiscard]] Interval bulk(std::span<const double> currents, const Interval &all, double outside);

/// Noise by the way of EMVA Standard 1288, release 4.0, with two frames A and B of the same scene; n pixels,
/// means a and b, and divisors n throughout.
struct Noise
{
    /// Of a pixel from frame to frame: s_t = sqrt(1/2 * sum ((A - B) - (a - b))^2 / n), the root of the
    /// temporal variance, averaged over the pixels. That the light as a whole changes does not count.
    double temporal = 0;
    /// From pixel to pixel, once the noise in time is averaged out: s_s = sqrt(s^2 - s_t^2 / 2), where s^2 is
    /// the variance over the pixels of (A + B) / 2. 0 where rounding or chance takes it below. It holds the
    /// scene, too: of the dark frame it is the dark signal's nonuniformity (DSNU), and of an even light it
    /// tells how the pixels' sensitivity differs (PRNU).
    double spatial = 0;
};

/// None with fewer than two pixels. Both frames have the same size.
[[nodiscard]] std::optional<Noise> noise(std::span<const double> a, std::span<const double> b);

/// Pixels that stand out from what is around them.
struct Outliers
{
    /// A pixel.
    struct Place
    {
        int row = 0;
        int column = 0;

        bool operator==(const Place &) const = default;
    };

    static constexpr std::size_t listed = 8; ///< places are told of so many of each

    std::size_t hot = 0;
    std::size_t dead = 0;
    std::vector<Place> firstHot; ///< row by row
    std::vector<Place> firstDead;
};

/// Threshold of outliers(): the largest of these three.
struct OutlierRule
{
    double deviations = 6; ///< times 1.4826 * MAD, the standard deviation of what differs by chance
    double share = 0.1;    ///< of the neighbour that it is compared with
    double least = 0.01;   ///< nA; read noise stays below
};

/// Candidates for hot and dead pixels. A pixel is hot when it is above three of its four neighbours (left,
/// right, above, below) by more than the threshold, and dead when it is below three of them by more: straight
/// edges of the scene are neither, and a pixel beside one that stands out is judged by the others. MAD is the
/// median over the pixels of |x - m|, m being the median of the neighbours of x, which is the mean of the
/// middle two. At an edge the neighbour across the pixel counts twice; a single row or column has its own two
/// twice. A single pixel is none. `columns` is above 0.
[[nodiscard]] Outliers outliers(std::span<const double> currents, int columns, const OutlierRule &rule = {});

} // namespace FrameStatistics
