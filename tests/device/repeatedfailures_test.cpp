#include "device/repeatedfailures.h"

#include <gtest/gtest.h>

namespace {

/// Ten failures, each told, at 1000 ms.
class FailuresInARow : public testing::Test
{
protected:
    FailuresInARow()
    {
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(reads.failed(1000), QStringLiteral("串口线程接收数据失败"));
    }

    RepeatedFailures reads{QStringLiteral("串口线程接收数据失败")};
};

} // namespace

TEST_F(FailuresInARow, are_told_each_up_to_the_tenth_and_then_by_number_every_ten_seconds)
{
    EXPECT_EQ(reads.failed(1100), QString());
    EXPECT_EQ(reads.failed(10999), QString());
    EXPECT_EQ(reads.failed(11000), QStringLiteral("串口线程接收数据失败 3 次"));
    EXPECT_EQ(reads.failed(20999), QString());
    EXPECT_EQ(reads.failed(21000), QStringLiteral("串口线程接收数据失败 2 次"));
}

TEST_F(FailuresInARow, are_worth_a_pause_from_the_eleventh_on)
{
    EXPECT_FALSE(reads.arePersistent());
    (void)reads.failed(1100);
    EXPECT_TRUE(reads.arePersistent());
}

TEST_F(FailuresInARow, end_with_a_read_that_succeeds_which_tells_the_rest)
{
    (void)reads.failed(1100);
    (void)reads.failed(1200);
    EXPECT_EQ(reads.succeeded(), QStringLiteral("串口线程接收数据失败 2 次"));
    EXPECT_EQ(reads.succeeded(), QString());
    EXPECT_FALSE(reads.arePersistent());
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(reads.failed(1300), QStringLiteral("串口线程接收数据失败"));
    EXPECT_EQ(reads.failed(1400), QString());
}

TEST_F(FailuresInARow, tell_also_a_single_one_that_was_not_told)
{
    (void)reads.failed(1100);
    EXPECT_EQ(reads.succeeded(), QStringLiteral("串口线程接收数据失败 1 次"));
}
