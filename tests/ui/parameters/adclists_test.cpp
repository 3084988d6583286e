#include "device/parameters/adclists.h"

#include <gtest/gtest.h>

using AdcLists::selection;

TEST(AdcLists, stand_in_the_order_that_settings_files_keep)
{
    EXPECT_EQ(selection({0, 0, 0, 0}),
              (AdcSelection{AdcSelection::Operation::AOnly, AdcSelection::DataFormat::Bits20,
                            AdcSelection::TestMode::Off, AdcSelection::PcRange::Pc25}));
    EXPECT_EQ(selection({3, 1, 1, 6}),
              (AdcSelection{AdcSelection::Operation::Mean, AdcSelection::DataFormat::Bits16,
                            AdcSelection::TestMode::On, AdcSelection::PcRange::Pc4}));
    for (int range = 0; range < 7; ++range)
        EXPECT_EQ(selection({.pcRange = range}).word() & 7, 6 - range);
}

TEST(AdcLists, places_out_of_range_fall_back)
{
    for (const int odd : {-1, 4, 7, 100}) {
        EXPECT_EQ(selection({.operation = odd}).operation, AdcSelection::Operation::AOnly) << odd;
        EXPECT_EQ(selection({.dataFormat = odd}).dataFormat, AdcSelection::DataFormat::Bits16) << odd;
        EXPECT_EQ(selection({.testMode = odd}).testMode, AdcSelection::TestMode::Off) << odd;
    }
    for (const int odd : {-1, 7, 100})
        EXPECT_EQ(selection({.pcRange = odd}).pcRange, AdcSelection::PcRange::Pc25) << odd;
}

TEST(AdcLists, every_choice_is_found_where_it_stands)
{
    for (int operation = 0; operation < 4; ++operation)
        for (int dataFormat = 0; dataFormat < 2; ++dataFormat)
            for (int testMode = 0; testMode < 2; ++testMode)
                for (int pcRange = 0; pcRange < 7; ++pcRange) {
                    const AdcLists::Indexes indexes{operation, dataFormat, testMode, pcRange};
                    EXPECT_EQ(AdcLists::indexes(selection(indexes)), indexes);
                }
}
