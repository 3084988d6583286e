#include "imaging/framestatistics.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

using namespace FrameStatistics;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int columns = 96;
constexpr int rows = 80;
constexpr MeasuringRange measured{0, 150};
using Place = Outliers::Place;

/// A slope of light with noise, cut off at 0 and full scale as a detector's currents are.
std::vector<double> noisy(quint32 seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> chance(0, 0.8);
    std::vector<double> frame;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            frame.push_back(std::clamp(2.0 * row + 0.1 * column - 5 + chance(random), 0.0, 150.602));
    return frame;
}

std::size_t at(int row, int column)
{
    return static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column);
}

/// A noisy frame in which some pixels do not do what the light does.
std::vector<double> withDefects(quint32 seed)
{
    std::vector<double> frame = noisy(seed);
    frame[at(0, 0)] = 150;
    frame[at(30, 0)] = 0;
    frame[at(40, 50)] = 0;
    frame[at(40, 51)] = 0; // side by side
    frame[at(rows - 1, columns - 1)] = 12;
    frame[at(7, 20)] = 140;
    for (int column = 1; column < columns; column += 9)
        frame[at(50, column)] += 60; // more than are listed
    return frame;
}

double slowMedian(std::vector<double> values)
{
    std::ranges::sort(values);
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

double slowVariance(const std::vector<double> &values)
{
    const double mean = std::reduce(values.begin(), values.end()) / static_cast<double>(values.size());
    double sum = 0;
    for (const double value : values)
        sum += (value - mean) * (value - mean);
    return sum / static_cast<double>(values.size());
}

/// The neighbours of a pixel, sorted.
std::vector<double> slowNeighbours(const std::vector<double> &frame, int row, int column)
{
    const auto mirrored = [](int index, int count) {
        return index < 0 ? 1 : index == count ? count - 2 : index;
    };
    std::vector<double> around{
        frame[at(row, mirrored(column - 1, columns))], frame[at(row, mirrored(column + 1, columns))],
        frame[at(mirrored(row - 1, rows), column)], frame[at(mirrored(row + 1, rows), column)]};
    std::ranges::sort(around);
    return around;
}

/// In the words of the header.
Outliers slowOutliers(const std::vector<double> &frame)
{
    std::vector<double> differences;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            differences.push_back(
                std::abs(frame[at(row, column)] - slowMedian(slowNeighbours(frame, row, column))));
    const double chance = 6 * 1.4826 * slowMedian(differences);
    Outliers found;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const std::vector<double> around = slowNeighbours(frame, row, column);
            const double current = frame[at(row, column)];
            const auto above = [&](double neighbour) {
                return current > neighbour + std::max({chance, 0.1 * neighbour, 0.01});
            };
            const auto below = [&](double neighbour) {
                return current < neighbour - std::max({chance, 0.1 * neighbour, 0.01});
            };
            if (std::ranges::count_if(around, above) >= 3 && ++found.hot <= 8)
                found.firstHot.push_back({row, column});
            if (std::ranges::count_if(around, below) >= 3 && ++found.dead <= 8)
                found.firstDead.push_back({row, column});
        }
    }
    return found;
}

/// What numpy makes of two frames, line by line.
QByteArrayList numpyLines(const std::vector<double> &a, const std::vector<double> &b, int bins)
{
    QFile file(QStringLiteral("frames"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    for (const auto *frame : {&a, &b})
        file.write(reinterpret_cast<const char *>(frame->data()),
                   static_cast<qint64>(frame->size()) * qint64{sizeof(double)});
    file.close();
    QProcess python;
    python.start(QStringLiteral(QV1K_TEST_DATA "/../framestatistics_numpy.py"),
                 {file.fileName(), QString::number(rows), QString::number(columns),
                  QString::number(measured.lowest), QString::number(measured.highest),
                  QString::number(bins)});
    EXPECT_TRUE(python.waitForFinished(60'000)) << qPrintable(python.errorString());
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().constData();
    return python.readAllStandardOutput().trimmed().split('\n');
}

/// The same numbers from the functions under test.
std::vector<double> ownNumbers(const std::vector<double> &a, const std::vector<double> &b, int bins)
{
    const Summary all = summary(a, measured);
    std::vector<double> numbers{all.minimum,
                                all.mean,
                                all.maximum,
                                all.deviation,
                                static_cast<double>(all.clippedBelow),
                                static_cast<double>(all.clippedAbove)};
    for (const std::size_t count : histogram(a, all.minimum, all.maximum, bins))
        numbers.push_back(static_cast<double>(count));
    const Noise both = noise(a, b).value();
    numbers.insert(numbers.end(), {both.temporal, both.spatial});
    const Outliers found = outliers(a, columns);
    const auto add = [&](std::size_t count, const std::vector<Place> &places) {
        numbers.push_back(static_cast<double>(count));
        for (const Place &place : places)
            numbers.insert(numbers.end(), {1.0 * place.row, 1.0 * place.column});
    };
    add(found.hot, found.firstHot);
    add(found.dead, found.firstDead);
    return numbers;
}

} // namespace

TEST(FrameStatistics, are_those_of_numpy)
{
    const std::vector<double> a = withDefects(1);
    const std::vector<double> b = noisy(2);
    const int bins = 40;
    const QByteArrayList told = numpyLines(a, b, bins).join(' ').split(' ');
    const std::vector<double> own = ownNumbers(a, b, bins);
    ASSERT_EQ(told.size(), static_cast<qsizetype>(own.size()));
    for (std::size_t i = 0; i < own.size(); ++i)
        EXPECT_NEAR(told[static_cast<qsizetype>(i)].toDouble(), own[i], 1e-9) << i;
}

TEST(FrameStatistics, summary_counts_what_is_clipped_at_either_end)
{
    const std::vector<double> currents{0, 0, 1, 149.9999, 150, 150.6023};
    const Summary result = summary(currents, measured);
    EXPECT_EQ(result.count, 6U);
    EXPECT_EQ(result.clippedBelow, 2U);
    EXPECT_EQ(result.clippedAbove, 2U);
    EXPECT_EQ(result.minimum, 0);
    EXPECT_EQ(result.maximum, 150.6023);
    EXPECT_DOUBLE_EQ(result.mean, 451.6022 / 6);
    EXPECT_DOUBLE_EQ(result.deviation, std::sqrt(slowVariance(currents)));
}

TEST(FrameStatistics, of_a_constant_area_nothing_deviates)
{
    const std::vector<double> constant(999, 0.1);
    const Summary result = summary(constant, measured);
    EXPECT_EQ(result.mean, 0.1);
    EXPECT_EQ(result.deviation, 0);
    const Noise none = noise(constant, constant).value();
    EXPECT_EQ(none.temporal, 0);
    EXPECT_EQ(none.spatial, 0);
    EXPECT_EQ(outliers(constant, 27).hot, 0U);
    EXPECT_EQ(outliers(constant, 27).dead, 0U);
}

TEST(FrameStatistics, of_no_pixel_and_of_one_are_finite)
{
    const std::vector<double> one{3};
    EXPECT_EQ(summary({}, measured).count, 0U);
    EXPECT_EQ(summary({}, measured).mean, 0);
    EXPECT_EQ(summary(one, measured).deviation, 0);
    EXPECT_FALSE(noise(one, one));
    EXPECT_FALSE(noise({}, {}));
    EXPECT_EQ(outliers(one, 1).hot + outliers(one, 1).dead, 0U);
}

TEST(FrameStatistics, histogram_counts_every_current_once_and_the_ends_in_the_outer_parts)
{
    EXPECT_THAT(histogram(std::vector<double>{0, 0.9, 1, 2.5, 4}, 0, 4, 4), ElementsAre(2, 1, 1, 1));
    EXPECT_THAT(histogram(std::vector<double>{-7, 9}, 0, 4, 4), ElementsAre(1, 0, 0, 1));
    const std::vector<double> frame = noisy(3);
    const std::vector<std::size_t> counts = histogram(frame, 0, 150.602, 256);
    EXPECT_EQ(std::reduce(counts.begin(), counts.end()), frame.size());
}

TEST(FrameStatistics, bulk_leaves_out_the_share_at_either_end)
{
    std::vector<double> currents(10'000);
    std::iota(currents.begin(), currents.end(), 0.0);
    const Interval most = bulk(currents, {0, 9999}, 0.01);
    EXPECT_NEAR(most.lowest, 100, 10);
    EXPECT_NEAR(most.highest, 9899, 10);
    currents[77] = 1e9;
    const Interval same = bulk(currents, {0, 1e9}, 0.01);
    EXPECT_NEAR(same.lowest, 100, 11) << "as near as some parts of a thousand";
    EXPECT_NEAR(same.highest, 9900, 11);
    const Interval one = bulk(std::vector<double>{4, 4}, {4, 4}, 0.01);
    EXPECT_EQ(one.lowest, 4);
    EXPECT_EQ(one.highest, 4);
}

TEST(FrameStatistics, bulk_of_neighbouring_numbers_keeps_its_ends_in_order)
{
    const double next = std::nextafter(1.0, 2.0);
    const Interval ends = bulk(std::vector<double>{1, 1, 1, next}, {1, next}, 0.3);
    EXPECT_EQ(ends.lowest, 1);
    EXPECT_EQ(ends.highest, next);
}

TEST(FrameStatistics, noise_is_told_apart_in_time_and_space)
{
    std::mt19937 random(4);
    std::normal_distribution<double> inTime(0, 0.5);
    std::normal_distribution<double> inSpace(0, 2);
    std::vector<double> a;
    std::vector<double> b;
    for (int i = 0; i < 40'000; ++i) {
        const double pixel = 70 + inSpace(random);
        a.push_back(pixel + inTime(random));
        b.push_back(pixel + inTime(random) + 9); // the light changed as a whole
    }
    const Noise both = noise(a, b).value();
    // Five times what such an estimate is off by: s / sqrt(2 n).
    EXPECT_NEAR(both.temporal, 0.5, 0.009);
    EXPECT_NEAR(both.spatial, 2, 0.036);
}

TEST(FrameStatistics, noise_in_time_alone_leaves_nothing_in_space_and_no_root_of_less)
{
    const Noise both = noise(std::vector<double>{1, 2, 1, 2}, std::vector<double>{2, 1, 2, 1}).value();
    EXPECT_DOUBLE_EQ(both.temporal, std::sqrt(0.5));
    EXPECT_EQ(both.spatial, 0);
}

TEST(FrameStatistics, outliers_are_those_of_the_words_that_define_them)
{
    for (const quint32 seed : {5U, 6U, 7U}) {
        const std::vector<double> frame = withDefects(seed);
        const Outliers found = outliers(frame, columns);
        const Outliers slow = slowOutliers(frame);
        EXPECT_EQ(found.hot, slow.hot);
        EXPECT_EQ(found.dead, slow.dead);
        EXPECT_EQ(found.firstHot, slow.firstHot);
        EXPECT_EQ(found.firstDead, slow.firstDead);
        EXPECT_EQ(found.hot, 13U);
        EXPECT_THAT(found.firstDead,
                    ElementsAre(Place{30, 0}, Place{40, 50}, Place{40, 51}, Place{rows - 1, columns - 1}));
        EXPECT_EQ(found.firstHot.size(), Outliers::listed);
    }
}

TEST(FrameStatistics, an_edge_of_the_scene_is_no_outlier_but_where_it_meets_the_border)
{
    const auto lit = [](bool (*isLit)(int row, int column)) {
        std::vector<double> frame;
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column)
                frame.push_back(isLit(row, column) ? 140.0 : 3.0);
        return outliers(frame, columns);
    };
    const Outliers corner = lit([](int row, int column) { return row > 20 && column > 30; });
    EXPECT_EQ(corner.hot + corner.dead, 0U);
    const Outliers stripes = lit([](int row, int) { return row % 2 == 0; });
    EXPECT_EQ(stripes.hot + stripes.dead, 0U);
    const Outliers slanting = lit([](int row, int column) { return column > row; });
    EXPECT_THAT(slanting.firstHot, ElementsAre(Place{0, 1}));
    EXPECT_THAT(slanting.firstDead, ElementsAre(Place{rows - 1, rows - 1}));
}

TEST(FrameStatistics, a_single_row_or_column_is_judged_by_its_own)
{
    std::vector<double> line(30, 5);
    line[3] = 90;
    line[6] = 0;
    EXPECT_THAT(outliers(line, 30).firstHot, ElementsAre(Place{0, 3}));
    EXPECT_THAT(outliers(line, 30).firstDead, ElementsAre(Place{0, 6}));
    EXPECT_THAT(outliers(line, 1).firstHot, ElementsAre(Place{3, 0}));
    EXPECT_THAT(outliers(line, 1).firstDead, ElementsAre(Place{6, 0}));
}

TEST(FrameStatistics, a_dead_pixel_in_a_saturated_frame_and_a_hot_one_in_the_dark_are_found)
{
    std::vector<double> full(static_cast<std::size_t>(rows * columns), 150.6023);
    full[at(3, 4)] = 0;
    EXPECT_THAT(outliers(full, columns).firstDead, ElementsAre(Place{3, 4}));
    EXPECT_THAT(outliers(full, columns).firstHot, IsEmpty());
    std::vector<double> dark(full.size(), 0);
    dark[at(3, 4)] = 0.2;
    EXPECT_THAT(outliers(dark, columns).firstHot, ElementsAre(Place{3, 4}));
    EXPECT_THAT(outliers(dark, columns).firstDead, IsEmpty());
}

TEST(FrameStatistics, a_region_is_cut_out_row_by_row_and_whole_rows_are_not_copied)
{
    const std::vector<double> frame{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    std::vector<double> room;
    EXPECT_THAT(cropped(frame, 4, {1, 1, 2, 2}, room), ElementsAre(6, 7, 10, 11));
    EXPECT_THAT(cropped(frame, 4, {2, 3, 1, 1}, room), ElementsAre(12));
    const std::span<const double> whole = cropped(frame, 4, {1, 0, 2, 4}, room);
    EXPECT_EQ(whole.data(), frame.data() + 4);
    EXPECT_EQ(whole.size(), 8U);
}
