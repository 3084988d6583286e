#include "device/protocol/timing.h"

#include "device/protocol/currentrange.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include <limits>

namespace {

Timing defaults()
{
    return {.frameHead = 1000,
            .frameTail = 1000,
            .outGap = 1000,
            .outpCkGap = 1000,
            .ckpMuxGap = 1000,
            .adcStartDelay = 300,
            .adcIntA = 16600,
            .adcIntB = 21700};
}

qint32 anyInt(QRandomGenerator &random)
{
    return static_cast<qint32>(random.generate());
}

Timing anyTiming(QRandomGenerator &random)
{
    Timing timing;
    for (const Timing::Field field : Timing::fields)
        timing.*field = anyInt(random);
    return timing;
}

/// The same rules with room to spare, brought back to 32 bits only at the end.
struct Wide
{
    explicit Wide(const Timing &in)
    {
        ckGap = 2 * qint64{in.outpCkGap} + in.outGap;
        muxGap = ckGap + 2 * qint64{in.ckpMuxGap};
        const qint64 rest = in.adcIntB - muxGap;
        muxHigh = rest + in.adcIntA;
        ckHigh = 2 * qint64{in.ckpMuxGap} + 3 * muxGap + 4 * muxHigh;
        clkCycle = 2 * qint64{in.outpCkGap} + 3 * ckGap + 4 * ckHigh + in.outGap;
        framePeriod = clkCycle * 258 + in.frameTail + in.frameHead;
        adcEndDelay = rest - in.adcStartDelay;
    }
    qint64 ckGap, muxGap, muxHigh, ckHigh, clkCycle, framePeriod, adcEndDelay;
};

qint32 wrapped(qint64 value)
{
    return static_cast<qint32>(value);
}

} // namespace

TEST(CalculatedTiming, the_default_inputs_give_the_default_timing)
{
    const Timing results = defaults().calculated();
    EXPECT_EQ(results.muxCknGap, 1000);
    EXPECT_EQ(results.ckOutnGap, 1000);
    EXPECT_EQ(results.ckGap, 3000);
    EXPECT_EQ(results.muxGap, 5000);
    EXPECT_EQ(results.muxHigh, 33300);
    EXPECT_EQ(results.ckHigh, 150200);
    EXPECT_EQ(results.clkCycle, 612800);
    EXPECT_EQ(results.clkHigh, 306400);
    EXPECT_EQ(results.framePeriod, 158104400);
    EXPECT_EQ(results.adcEndDelay, 16400);
}

TEST(CalculatedTiming, with_nothing_given_everything_is_0)
{
    const Timing results = Timing().calculated();
    EXPECT_EQ(results.framePeriod, 0);
    EXPECT_EQ(results.clkCycle, 0);
    EXPECT_EQ(results.adcEndDelay, 0);
}

TEST(CalculatedTiming, the_clock_cycle_is_a_multiple_of_four_and_its_half_is_exact)
{
    QRandomGenerator random(3);
    for (int i = 0; i < 1000; ++i) {
        const Timing results = anyTiming(random).calculated();
        ASSERT_EQ(results.clkCycle % 4, 0);
        ASSERT_EQ(qint64{results.clkHigh} * 2, results.clkCycle);
    }
}

TEST(CalculatedTiming, a_negative_clock_cycle_is_halved_as_well)
{
    Timing inputs = defaults();
    inputs.adcIntA = -1'000'000;
    const Timing results = inputs.calculated();
    EXPECT_LT(results.clkCycle, 0);
    EXPECT_EQ(results.clkHigh, results.clkCycle / 2);
}

TEST(CalculatedTiming, an_integration_time_below_the_gap_gives_negative_values)
{
    Timing inputs = defaults();
    inputs.adcIntB = 1000;
    inputs.adcIntA = 0;
    const Timing results = inputs.calculated();
    EXPECT_EQ(results.muxHigh, -4000);
    EXPECT_EQ(results.adcEndDelay, -4300);
    EXPECT_EQ(results.ckHigh, 2000 + 15000 - 16000);
}

TEST(CalculatedTiming, sums_wrap_at_32_bits)
{
    constexpr qint32 highest = std::numeric_limits<qint32>::max();
    EXPECT_EQ((Timing{.outpCkGap = highest}.calculated().ckGap), -2);
    EXPECT_EQ((Timing{.frameHead = highest, .frameTail = 1}.calculated().framePeriod),
              std::numeric_limits<qint32>::min());
    EXPECT_EQ((Timing{.adcStartDelay = std::numeric_limits<qint32>::min()}.calculated().adcEndDelay),
              std::numeric_limits<qint32>::min());
}

TEST(CalculatedTiming, any_inputs_give_the_exact_values_brought_back_to_32_bits)
{
    QRandomGenerator random(1);
    for (int i = 0; i < 20000; ++i) {
        const Timing in = anyTiming(random);
        const Wide wide(in);
        const Timing results = in.calculated();
        ASSERT_EQ(results.ckGap, wrapped(wide.ckGap));
        ASSERT_EQ(results.muxGap, wrapped(wide.muxGap));
        ASSERT_EQ(results.muxHigh, wrapped(wide.muxHigh));
        ASSERT_EQ(results.ckHigh, wrapped(wide.ckHigh));
        ASSERT_EQ(results.clkCycle, wrapped(wide.clkCycle));
        ASSERT_EQ(results.clkHigh, wrapped(wide.clkCycle) / 2);
        ASSERT_EQ(results.framePeriod, wrapped(wide.framePeriod));
        ASSERT_EQ(results.adcEndDelay, wrapped(wide.adcEndDelay));
        ASSERT_EQ(results.ckOutnGap, in.outpCkGap);
        ASSERT_EQ(results.muxCknGap, in.ckpMuxGap);
    }
}

// The operator's page has formulas of its own, in the integration time alone.
TEST(CalculatedTiming, it_agrees_with_the_timing_sequence_of_the_current_ranges)
{
    QList<int> times;
    for (const auto &gear : CurrentRange::gears)
        times << gear.integrationTime;
    QRandomGenerator random(2);
    for (int i = 0; i < 1000; ++i)
        times << random.bounded(498'000); // the frame period still fits
    for (int i = 0; i < 1000; ++i)
        times << anyInt(random); // it wraps
    for (const int time : times) {
        const Timing timing = Timing::ofRange(time);
        ASSERT_EQ(timing.calculated(), timing) << "T = " << time;
    }
}

TEST(CalculatedTiming, leaves_the_eight_inputs_as_they_are)
{
    QRandomGenerator random(5);
    const Timing in = anyTiming(random);
    const Timing results = in.calculated();
    for (const Timing::Field field :
         {&Timing::frameHead, &Timing::frameTail, &Timing::outGap, &Timing::outpCkGap, &Timing::ckpMuxGap,
          &Timing::adcStartDelay, &Timing::adcIntA, &Timing::adcIntB})
        EXPECT_EQ(results.*field, in.*field);
    int changed = 0;
    for (const Timing::Field field : Timing::derived)
        changed += results.*field != in.*field ? 1 : 0;
    EXPECT_EQ(changed, 10);
}

TEST(TimingOfARange, for_150_nA_is_known_value_by_value)
{
    const Timing expected{158104400, 1000, 1000,  612800, 306400, 2000, 1000,  149200, 4000,
                          1000,      1000, 32300, 6000,   1000,   300,  16600, 15400,  21700};
    EXPECT_EQ(Timing::ofRange(16600), expected);
}

TEST(TimingOfARange, follows_the_same_formulas_in_the_other_ranges)
{
    for (const CurrentRange::Gear &gear : CurrentRange::gears) {
        const int t = gear.integrationTime;
        const int a = t + 15700;
        const int b = 4 * a + 20000;
        const int c = 4 * b + 16000;
        const Timing expected{258 * c + 2000, 1000, 1000, c,    c / 2, 2000, 1000, b,     4000,
                              1000,           1000, a,    6000, 1000,  300,  t,    15400, 21700};
        EXPECT_EQ(Timing::ofRange(t), expected);
    }
}

TEST(TimingOfARange, wraps_sums_beyond_32_bits)
{
    QRandomGenerator random(1);
    for (int i = 0; i < 10'000; ++i) {
        const auto t = anyInt(random);
        const qint64 a = qint64{t} + 15700;
        const qint64 b = 4 * a + 20000;
        const qint64 c = 4 * b + 16000;
        const Timing timing = Timing::ofRange(t);
        ASSERT_EQ(timing.framePeriod, wrapped(258 * c + 2000)) << t;
        ASSERT_EQ(timing.clkCycle, wrapped(c)) << t;
        ASSERT_EQ(timing.clkHigh, wrapped(c) / 2) << t;
        ASSERT_EQ(timing.ckHigh, wrapped(b)) << t;
        ASSERT_EQ(timing.muxHigh, wrapped(a)) << t;
    }
}

TEST(TimingOnTheWire, has_the_eighteen_values_in_their_order)
{
    Timing timing;
    int value = 0;
    for (const Timing::Field field : Timing::fields)
        timing.*field = 10 * value++;
    const Timing expected{0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120, 130, 140, 150, 160, 170};
    EXPECT_EQ(timing, expected);
}

TEST(TimingOnTheWire, is_80_percent_of_the_two_integration_times)
{
    const QList<qint32> wire = Timing::ofRange(400000).toWire();
    ASSERT_EQ(wire.size(), 18);
    EXPECT_EQ(wire[15], 320000);
    EXPECT_EQ(wire[17], 17360);
    const Timing full = Timing::ofRange(400000);
    for (const int same : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 16})
        EXPECT_EQ(wire[same], full.*Timing::fields.at(static_cast<std::size_t>(same))) << same;
}

TEST(TimingOnTheWire, scales_the_two_integration_times_and_no_other)
{
    EXPECT_EQ(Timing::toWire(&Timing::adcIntA, 16600), 13280);
    EXPECT_EQ(Timing::toWire(&Timing::adcIntB, 21700), 17360);
    EXPECT_EQ(Timing::fromWire(&Timing::adcIntA, 13280), 16600);
    for (const Timing::Field field : Timing::fields) {
        if (field == &Timing::adcIntA || field == &Timing::adcIntB)
            continue;
        EXPECT_EQ(Timing::toWire(field, 16600), 16600);
        EXPECT_EQ(Timing::fromWire(field, 13280), 13280);
    }
}

TEST(TimingOnTheWire, truncates_toward_zero)
{
    EXPECT_EQ(Timing::toWire(&Timing::adcIntA, 1), 0);
    EXPECT_EQ(Timing::toWire(&Timing::adcIntA, 4), 3);
    EXPECT_EQ(Timing::toWire(&Timing::adcIntA, -4), -3);
    EXPECT_EQ(Timing::fromWire(&Timing::adcIntB, 1), 1);
    EXPECT_EQ(Timing::fromWire(&Timing::adcIntB, 3), 3);
}

TEST(TimingOnTheWire, values_that_overflow_when_scaled_back_are_clamped)
{
    constexpr qint32 highest = std::numeric_limits<qint32>::max();
    constexpr qint32 lowest = std::numeric_limits<qint32>::min();
    EXPECT_EQ(Timing::fromWire(&Timing::adcIntA, highest), highest);
    EXPECT_EQ(Timing::fromWire(&Timing::adcIntA, lowest), lowest);
}

TEST(TimingOnTheWire, a_scaled_value_comes_back_by_no_more_than_two_less)
{
    QRandomGenerator random(4);
    for (int i = 0; i < 100'000; ++i) {
        const auto value = static_cast<qint32>(random.generate() & 0x7FFFFFFF);
        const qint32 back = Timing::fromWire(&Timing::adcIntA, Timing::toWire(&Timing::adcIntA, value));
        ASSERT_LE(back, value);
        ASSERT_GE(back, value - 2);
    }
}
