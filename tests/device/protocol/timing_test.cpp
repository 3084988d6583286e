#include "device/protocol/currentrange.h"
#include "device/protocol/timing.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include <limits>

using TimingCalculator::calculate;
using TimingCalculator::Inputs;
using TimingCalculator::Results;

namespace {

Inputs defaults()
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

/// The same rules with room to spare, brought back to 32 bits only at the end.
struct Wide
{
    explicit Wide(const Inputs &in)
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

TEST(TimingCalculator, the_default_inputs_give_the_default_timing)
{
    const Results results = calculate(defaults());
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

TEST(TimingCalculator, with_nothing_given_everything_is_0)
{
    const Results results = calculate({});
    EXPECT_EQ(results.framePeriod, 0);
    EXPECT_EQ(results.clkCycle, 0);
    EXPECT_EQ(results.adcEndDelay, 0);
}

TEST(TimingCalculator, the_clock_cycle_is_a_multiple_of_four_and_its_half_is_exact)
{
    QRandomGenerator random(3);
    for (int i = 0; i < 1000; ++i) {
        const Results results = calculate({.outGap = anyInt(random),
                                           .outpCkGap = anyInt(random),
                                           .ckpMuxGap = anyInt(random),
                                           .adcIntA = anyInt(random),
                                           .adcIntB = anyInt(random)});
        ASSERT_EQ(results.clkCycle % 4, 0);
        ASSERT_EQ(qint64{results.clkHigh} * 2, results.clkCycle);
    }
}

TEST(TimingCalculator, a_negative_clock_cycle_is_halved_as_well)
{
    Inputs inputs = defaults();
    inputs.adcIntA = -1'000'000;
    const Results results = calculate(inputs);
    EXPECT_LT(results.clkCycle, 0);
    EXPECT_EQ(results.clkHigh, results.clkCycle / 2);
}

TEST(TimingCalculator, an_integration_time_below_the_gap_gives_negative_values)
{
    Inputs inputs = defaults();
    inputs.adcIntB = 1000;
    inputs.adcIntA = 0;
    const Results results = calculate(inputs);
    EXPECT_EQ(results.muxHigh, -4000);
    EXPECT_EQ(results.adcEndDelay, -4300);
    EXPECT_EQ(results.ckHigh, 2000 + 15000 - 16000);
}

TEST(TimingCalculator, sums_wrap_at_32_bits)
{
    constexpr qint32 highest = std::numeric_limits<qint32>::max();
    EXPECT_EQ(calculate({.outpCkGap = highest}).ckGap, -2);
    EXPECT_EQ(calculate({.frameHead = highest, .frameTail = 1}).framePeriod,
              std::numeric_limits<qint32>::min());
    EXPECT_EQ(calculate({.adcStartDelay = std::numeric_limits<qint32>::min()}).adcEndDelay,
              std::numeric_limits<qint32>::min());
}

TEST(TimingCalculator, any_inputs_give_the_exact_values_brought_back_to_32_bits)
{
    QRandomGenerator random(1);
    for (int i = 0; i < 20000; ++i) {
        const Inputs in{anyInt(random), anyInt(random), anyInt(random), anyInt(random),
                        anyInt(random), anyInt(random), anyInt(random), anyInt(random)};
        const Wide wide(in);
        const Results results = calculate(in);
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
TEST(TimingCalculator, it_agrees_with_the_timing_sequence_of_the_current_ranges)
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
        const QList<int> t = CurrentRange::timingSequence(time);
        const Results results = calculate({.frameHead = t.at(1),
                                           .frameTail = t.at(2),
                                           .outGap = t.at(5),
                                           .outpCkGap = t.at(6),
                                           .ckpMuxGap = t.at(10),
                                           .adcStartDelay = t.at(14),
                                           .adcIntA = t.at(15),
                                           .adcIntB = t.at(17)});
        const QList<int> calculated{results.framePeriod, t.at(1),           t.at(2),  results.clkCycle,
                                    results.clkHigh,     t.at(5),           t.at(6),  results.ckHigh,
                                    results.ckGap,       results.ckOutnGap, t.at(10), results.muxHigh,
                                    results.muxGap,      results.muxCknGap, t.at(14), t.at(15),
                                    results.adcEndDelay, t.at(17)};
        ASSERT_EQ(calculated, t) << "T = " << time;
    }
}
