#include "device/protocol/adcselection.h"

#include <gtest/gtest.h>

#include <array>

using DataFormat = AdcSelection::DataFormat;
using Operation = AdcSelection::Operation;
using PcRange = AdcSelection::PcRange;
using TestMode = AdcSelection::TestMode;

namespace {

constexpr std::array operations{Operation::AOnly, Operation::AOrB, Operation::Sum, Operation::Mean};
constexpr std::array pcRanges{PcRange::Pc4,  PcRange::Pc7,  PcRange::Pc10, PcRange::Pc13,
                              PcRange::Pc16, PcRange::Pc19, PcRange::Pc25};

} // namespace

TEST(AdcWord, the_example_of_A_only_20_bit_off_25_is_01B6)
{
    EXPECT_EQ((AdcSelection{Operation::AOnly, DataFormat::Bits20, TestMode::Off, PcRange::Pc25}.word()),
              0x01B6);
}

TEST(AdcWord, each_selection_sets_its_bits)
{
    EXPECT_EQ(AdcSelection{.operation = Operation::AOnly}.word() >> 8, 0b001);
    EXPECT_EQ(AdcSelection{.operation = Operation::AOrB}.word() >> 8, 0b000);
    EXPECT_EQ(AdcSelection{.operation = Operation::Sum}.word() >> 8, 0b011);
    EXPECT_EQ(AdcSelection{.operation = Operation::Mean}.word() >> 8, 0b111);
    EXPECT_EQ(AdcSelection{.dataFormat = DataFormat::Bits20}.word() >> 7 & 1, 1);
    EXPECT_EQ(AdcSelection{.dataFormat = DataFormat::Bits16}.word() >> 7 & 1, 0);
    EXPECT_EQ(AdcSelection{.testMode = TestMode::Off}.word() >> 6 & 1, 0);
    EXPECT_EQ(AdcSelection{.testMode = TestMode::On}.word() >> 6 & 1, 1);
    int code = 0;
    for (const PcRange range : pcRanges) {
        EXPECT_EQ(AdcSelection{.pcRange = range}.word() & 7, code);
        EXPECT_EQ(AdcSelection{.pcRange = range}.word() >> 3 & 7, code);
        ++code;
    }
}

TEST(AdcWord, all_112_words_survive_the_way_there_and_back)
{
    for (const Operation operation : operations)
        for (const DataFormat dataFormat : {DataFormat::Bits20, DataFormat::Bits16})
            for (const TestMode testMode : {TestMode::Off, TestMode::On})
                for (const PcRange pcRange : pcRanges) {
                    const AdcSelection selection{operation, dataFormat, testMode, pcRange};
                    EXPECT_EQ(AdcSelection::ofWord(selection.word()), selection);
                    EXPECT_EQ(selection.word() & 0xF800, 0);
                }
}

TEST(AdcWord, operation_bits_10_and_9_decide_between_the_two_sums)
{
    EXPECT_EQ(AdcSelection::ofWord(0b011 << 8).operation, Operation::Sum);
    EXPECT_EQ(AdcSelection::ofWord(0b111 << 8).operation, Operation::Mean);
    EXPECT_EQ(AdcSelection::ofWord(0b101 << 8).operation, Operation::AOnly);
    EXPECT_EQ(AdcSelection::ofWord(0b100 << 8).operation, Operation::AOrB);
}

TEST(AdcWord, a_range_code_of_7_reads_as_25_pC)
{
    EXPECT_EQ(AdcSelection::ofWord(0b111111).pcRange, PcRange::Pc25);
}
