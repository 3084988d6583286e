#include "tests/ui/inspector/inspectedframes.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numeric>

using namespace InspectedFrames;
using testing::Each;
using testing::ElementsAre;
using Place = FrameStatistics::Outliers::Place;

namespace {

/// Every number of an inspection.
std::vector<double> numbers(const Inspection &inspection)
{
    std::vector<double> all{inspection.current,
                            inspection.summary.minimum,
                            inspection.summary.mean,
                            inspection.summary.maximum,
                            inspection.summary.deviation,
                            inspection.histogram.ends.lowest,
                            inspection.histogram.ends.highest,
                            inspection.noise.value().temporal,
                            inspection.noise.value().spatial};
    all.insert(all.end(), inspection.rowProfile.begin(), inspection.rowProfile.end());
    all.insert(all.end(), inspection.columnProfile.begin(), inspection.columnProfile.end());
    return all;
}

std::size_t counted(const Inspection::Histogram &histogram)
{
    return std::reduce(histogram.counts.begin(), histogram.counts.end());
}

} // namespace

TEST(Inspections, of_a_region_are_about_its_pixels_and_the_profiles_about_the_picked_one)
{
    const std::vector<double> frame = places();
    const Inspection told = Inspections::inspect(frame, {}, {{100, 20, 3, 2}, 7, 500});
    EXPECT_EQ(told.current, 7.05);
    EXPECT_EQ(told.summary.count, 6U);
    EXPECT_EQ(told.summary.minimum, 100.002);
    EXPECT_EQ(told.summary.maximum, 102.0021);
    EXPECT_THAT(told.rowProfile, ElementsAre(7.002, 7.0021));
    EXPECT_THAT(told.columnProfile, ElementsAre(100.05, 101.05, 102.05));
    EXPECT_FALSE(told.noise);
    EXPECT_EQ(counted(told.histogram), 6U);
}

TEST(Inspections, name_the_pixels_that_stand_out_by_their_place_in_the_frame)
{
    std::vector<double> frame = flat(80);
    at(frame, 700, 300) = 150;
    at(frame, 701, 310) = 0;
    const Inspection told = Inspections::inspect(frame, {}, {{690, 295, 30, 40}, 0, 0});
    EXPECT_THAT(told.outliers.firstHot, ElementsAre(Place{700, 300}));
    EXPECT_THAT(told.outliers.firstDead, ElementsAre(Place{701, 310}));
}

TEST(Inspections, of_two_frames_tell_the_noise_of_the_region)
{
    const std::vector<double> before = flat(10);
    std::vector<double> frame = before;
    at(frame, 5, 5) = 12;
    const Inspection told = Inspections::inspect(frame, before, {{5, 5, 1, 2}, 0, 0});
    EXPECT_DOUBLE_EQ(told.noise.value().temporal, std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(told.noise.value().spatial, 0);
}

TEST(Inspections, of_dark_flat_and_saturated_frames_hold_finite_numbers_only)
{
    for (const double current : {0.0, 75.0, 150.6023}) {
        const std::vector<double> frame = flat(current);
        const Inspection told = Inspections::inspect(frame, frame, {Inspections::wholeFrame(), 0, 0});
        EXPECT_THAT(numbers(told), Each(testing::Truly([](double number) { return std::isfinite(number); })));
        EXPECT_EQ(told.summary.mean, current);
        EXPECT_EQ(told.summary.deviation, 0);
        EXPECT_LT(told.histogram.ends.lowest, told.histogram.ends.highest);
        EXPECT_EQ(counted(told.histogram), frame.size());
        EXPECT_EQ(told.summary.clippedBelow, current == 0 ? frame.size() : 0);
        EXPECT_EQ(told.summary.clippedAbove, current > 150 ? frame.size() : 0);
    }
}

TEST(Inspections, a_histogram_shows_the_measuring_range_when_the_currents_fill_it_or_reach_its_end)
{
    const auto ends = [](double lowest, double highest) {
        const FrameStatistics::Interval found =
            Inspections::histogramEnds({.minimum = 1, .maximum = 150.6}, {lowest, highest}, {0, 150});
        return std::pair(found.lowest, found.highest);
    };
    EXPECT_EQ(ends(10, 120), std::pair(-3.0, 153.6));
    EXPECT_EQ(ends(140, 150.6), std::pair(-3.0, 153.6));
    EXPECT_EQ(ends(70, 74), std::pair(69.0, 75.0));
    const auto [lowest, highest] = ends(70, 70);
    EXPECT_LT(lowest, 70);
    EXPECT_GT(highest, 70);
}

TEST(Inspections, a_hot_and_a_dead_pixel_do_not_hide_how_the_others_spread)
{
    std::vector<double> frame = flat(80);
    for (std::size_t i = 0; i < frame.size(); i += 2)
        frame[i] = 80.5;
    at(frame, 3, 3) = 150;
    at(frame, 9, 9) = 0;
    const Inspection told = Inspections::inspect(frame, {}, {Inspections::wholeFrame(), 0, 0});
    EXPECT_GT(told.histogram.ends.lowest, 79);
    EXPECT_LT(told.histogram.ends.highest, 82);
    EXPECT_EQ(told.histogram.beyond, 2U);
    EXPECT_EQ(counted(told.histogram), frame.size() - 2);
}

TEST(Inspections, every_part_of_a_histogram_holds_as_many_steps_of_the_converter)
{
    const double step = 25000.0 / 166 / 1048576;
    std::vector<double> frame = flat(0);
    for (std::size_t i = 0; i < frame.size(); ++i) // as currents are: rounded to four decimals
        frame[i] = std::round(static_cast<double>(4000 + i % 1000) * step * 10000) / 10000;
    const Inspection told = Inspections::inspect(frame, {}, {Inspections::wholeFrame(), 0, 0});
    std::vector<std::size_t> filled = told.histogram.counts;
    std::erase(filled, 0U);
    ASSERT_GT(filled.size(), 100U);
    ASSERT_LE(told.histogram.counts.size(), static_cast<std::size_t>(Inspections::mostBins));
    // But for the outer two, which the currents end in, and the 576 steps that the last pixels repeat.
    for (std::size_t i = 2; i + 1 < filled.size(); ++i)
        EXPECT_NEAR(static_cast<double>(filled[i]), static_cast<double>(filled[1]), 10) << i;
}
