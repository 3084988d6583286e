#include "imaging/pixelmath.h"
#include "tests/imaging/straightforward/straightforward.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

std::vector<double> doublesOfAllKinds()
{
    std::vector<double> values{0.0, -0.0, 0.5, 1.5, 2.5, -0.5, -1.5, -2.5, infinity, -infinity, notANumber};
    for (const double edge : {0.5, 1.0, 2147483647.0, 2147483648.0, 2147483649.0, 4503599627370495.5,
                              4503599627370496.0, 9007199254740992.0, 1e300, 1e-300}) {
        for (const double value : {edge, std::nextafter(edge, 0), std::nextafter(edge, infinity)}) {
            values.push_back(value);
            values.push_back(-value);
        }
    }
    QRandomGenerator random(1);
    for (int i = 0; i < 2'000'000; ++i) {
        values.push_back(std::bit_cast<double>(random.generate64()));         // any magnitude
        values.push_back((random.generateDouble() - 0.5) * 1e10);             // around 32 bits
        values.push_back(static_cast<double>(random.bounded(1 << 30)) + 0.5); // halves
        values.push_back(
            std::nextafter(static_cast<double>(random.bounded(1 << 30)) + 0.5, 0.0)); // nearly halves
    }
    return values;
}

quint64 bits(double value)
{
    return std::bit_cast<quint64>(value);
}

/// The standard library's std::round() where it is right: not every one is, next to a half.
double rounded(double value)
{
    const double whole = std::trunc(value);
    return std::abs(value - whole) < 0.5 ? whole : whole + std::copysign(1.0, value); // the rest is exact
}

} // namespace

TEST(PixelMath, rounding_is_to_the_nearest_and_halves_away_from_zero_for_every_kind_of_double)
{
    for (const double value : doublesOfAllKinds()) {
        if (std::isnan(value))
            ASSERT_TRUE(std::isnan(PixelMath::roundHalfAway(value)));
        else if (std::isinf(value))
            ASSERT_EQ(PixelMath::roundHalfAway(value), value);
        else
            ASSERT_EQ(bits(PixelMath::roundHalfAway(value)), bits(rounded(value))) << value;
    }
}

TEST(PixelMath, truncation_goes_toward_zero_and_what_does_not_fit_has_only_the_sign_bit)
{
    EXPECT_EQ(PixelMath::truncated(-1.9), -1);
    EXPECT_EQ(PixelMath::truncated(127.5), 127);
    EXPECT_EQ(PixelMath::truncated(2147483647.9), 2147483647);
    EXPECT_EQ(PixelMath::truncated(2147483648.0), std::numeric_limits<int>::min());
    EXPECT_EQ(PixelMath::truncated(-2147483648.9), std::numeric_limits<int>::min());
    EXPECT_EQ(PixelMath::truncated(notANumber), std::numeric_limits<int>::min());
    for (const double value : doublesOfAllKinds())
        ASSERT_EQ(PixelMath::truncated(value), Straightforward::truncated(value)) << value;
}

TEST(PixelMath, a_sample_of_4096_or_less_or_with_the_top_bit_set_has_no_current)
{
    for (const qint32 sample : {0, 1, 4095, 4096, -1, -4096, std::numeric_limits<qint32>::min()})
        EXPECT_EQ(bits(PixelMath::current(sample, 25, 166)), bits(0.0)) << sample;
    EXPECT_GT(PixelMath::current(4096 + 4, 25, 166), 0.0);
}

TEST(PixelMath, a_full_scale_sample_is_150_6024_nanoamperes)
{
    EXPECT_EQ(PixelMath::current(4096 + 1048576, 25, 166), 150.6024);
}

TEST(PixelMath, currents_have_four_decimals)
{
    EXPECT_EQ(PixelMath::current(4097, 25, 166), 0.0001); // one count is 0.000144 nA
    EXPECT_EQ(PixelMath::current(4098, 25, 166), 0.0003); // 0.000287
    EXPECT_EQ(PixelMath::current(4099, 25, 166), 0.0004); // 0.000431
}

TEST(PixelMath, a_level_is_the_truncated_share_of_the_range)
{
    EXPECT_EQ(PixelMath::plainLevel(0, 150), 0);
    EXPECT_EQ(PixelMath::plainLevel(37.5, 150), 63);                             // 63.75
    EXPECT_EQ(PixelMath::plainLevel(PixelMath::scaled(37.5, 2, 150), 150), 127); // 127.5
    EXPECT_EQ(PixelMath::plainLevel(150, 150), 255);
    EXPECT_EQ(PixelMath::plainLevel(300, 150), 510);
    EXPECT_EQ(PixelMath::plainLevel(PixelMath::scaled(300, 1, 150), 150), 255);
}

TEST(PixelMath, the_calibrated_level_is_the_position_between_the_references)
{
    EXPECT_EQ(PixelMath::calibratedLevel(20, 10, 30), 127);
    EXPECT_EQ(PixelMath::calibratedLevel(30, 10, 30), 255);
    EXPECT_EQ(PixelMath::calibratedLevel(31, 10, 30), 255);
    EXPECT_EQ(PixelMath::calibratedLevel(10, 10, 30), 0);
    EXPECT_EQ(PixelMath::calibratedLevel(9, 10, 30), 0);
}

TEST(PixelMath, equal_references_are_black_and_a_bright_reference_below_the_dark_one_is_white)
{
    EXPECT_EQ(PixelMath::calibratedLevel(20, 10, 10) & 0xFF, 0);
    EXPECT_EQ(PixelMath::calibratedLevel(10, 10, 10) & 0xFF, 0);
    EXPECT_EQ(PixelMath::calibratedLevel(5, 10, 10) & 0xFF, 0);
    EXPECT_EQ(PixelMath::calibratedLevel(20, 10, 5), 255);
    EXPECT_EQ(PixelMath::calibratedLevel(10, 10, 5), 255);
}
