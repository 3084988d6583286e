#include "device/protocol/currentrange.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

TEST(CurrentRange, the_four_gears_have_their_range_code_and_base_time)
{
    const int expected[4][3] = {{150, 0, 16600}, {50, 0, 50000}, {10, 3, 130000}, {1, 6, 400000}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(CurrentRange::gears[i].nanoamperes, expected[i][0]);
        EXPECT_EQ(CurrentRange::gears[i].pcRangeIndex, expected[i][1]);
        EXPECT_EQ(CurrentRange::gears[i].integrationTime, expected[i][2]);
    }
}

TEST(CurrentRange, the_timing_of_150_nA_is_known_value_by_value)
{
    EXPECT_EQ(CurrentRange::timingSequence(16600),
              QList<int>({158104400, 1000, 1000, 612800, 306400, 2000, 1000, 149200, 4000, 1000, 1000, 32300,
                          6000, 1000, 300, 16600, 15400, 21700}));
}

TEST(CurrentRange, the_timing_of_the_other_gears_follows_the_same_formulas)
{
    for (const CurrentRange::Gear &gear : CurrentRange::gears) {
        const int t = gear.integrationTime;
        const int a = t + 15700;
        const int b = 4 * a + 20000;
        const int c = 4 * b + 16000;
        const QList<int> sequence = CurrentRange::timingSequence(t);
        ASSERT_EQ(sequence.size(), 18);
        EXPECT_EQ(sequence[0], 258 * c + 2000);
        EXPECT_EQ(sequence[3], c);
        EXPECT_EQ(sequence[4], c / 2);
        EXPECT_EQ(sequence[7], b);
        EXPECT_EQ(sequence[11], a);
        EXPECT_EQ(sequence[15], t);
    }
}

TEST(CurrentRange, sums_beyond_32_bits_wrap)
{
    QRandomGenerator random(1);
    for (int i = 0; i < 10'000; ++i) {
        const auto t = static_cast<qint32>(random.generate());
        const qint64 a = qint64{t} + 15700;
        const qint64 b = 4 * a + 20000;
        const qint64 c = 4 * b + 16000;
        const QList<int> sequence = CurrentRange::timingSequence(t);
        ASSERT_EQ(sequence[0], static_cast<qint32>(258 * c + 2000)) << t;
        ASSERT_EQ(sequence[3], static_cast<qint32>(c)) << t;
        ASSERT_EQ(sequence[4], static_cast<qint32>(c) / 2) << t;
        ASSERT_EQ(sequence[7], static_cast<qint32>(b)) << t;
        ASSERT_EQ(sequence[11], static_cast<qint32>(a)) << t;
    }
}

TEST(CurrentRange, the_detector_receives_80_percent_of_the_two_integration_times)
{
    const QList<int> full = CurrentRange::timingSequence(400000);
    const QList<int> wire = CurrentRange::toWire(full);
    ASSERT_EQ(wire.size(), 18);
    EXPECT_EQ(wire[15], 320000);
    EXPECT_EQ(wire[17], 17360);
    for (const int same : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 16})
        EXPECT_EQ(wire[same], full[same]) << same;
}
