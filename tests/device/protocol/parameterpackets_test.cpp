#include "device/protocol/parameterpackets.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include <cmath>
#include <limits>

using namespace ParameterPacket;

namespace {

QByteArray hex(const QByteArray &bytes)
{
    return bytes.toHex(' ').toUpper();
}

} // namespace

TEST(AdcWord, the_example_of_A_only_20_bit_off_25_is_01B6)
{
    EXPECT_EQ(adcWord({0, 0, 0, 0}), 0x01B6);
    EXPECT_EQ(hex(setAdc({0, 0, 0, 0})), "FF AA 01 01 0D EB 01 B6 B7");
}

TEST(AdcWord, each_selection_sets_its_bits)
{
    const int operations[] = {0b001, 0b000, 0b011, 0b111};
    for (int operation = 0; operation < 4; ++operation)
        EXPECT_EQ(adcWord({operation, 0, 0, 0}) >> 8, operations[operation]);
    EXPECT_EQ(adcWord({0, 0, 0, 0}) >> 7 & 1, 1);
    EXPECT_EQ(adcWord({0, 1, 0, 0}) >> 7 & 1, 0);
    EXPECT_EQ(adcWord({0, 0, 0, 0}) >> 6 & 1, 0);
    EXPECT_EQ(adcWord({0, 0, 1, 0}) >> 6 & 1, 1);
    for (int range = 0; range < 7; ++range) {
        EXPECT_EQ(adcWord({0, 0, 0, range}) & 7, 6 - range);
        EXPECT_EQ(adcWord({0, 0, 0, range}) >> 3 & 7, 6 - range);
    }
}

TEST(AdcWord, indexes_out_of_range_fall_back)
{
    for (const int odd : {-1, 4, 7, 100}) {
        EXPECT_EQ(adcWord({odd, 0, 0, 0}) >> 8, 0b001) << odd;
        EXPECT_EQ(adcWord({0, odd, 0, 0}) >> 7 & 1, 0) << odd;
        EXPECT_EQ(adcWord({0, 0, odd, 0}) >> 6 & 1, 0) << odd;
    }
    for (const int odd : {-1, 7, 100})
        EXPECT_EQ(adcWord({0, 0, 0, odd}) & 0b111111, 0b110110) << odd;
}

TEST(AdcWord, all_112_words_survive_the_way_there_and_back)
{
    for (int operation = 0; operation < 4; ++operation)
        for (int dataFormat = 0; dataFormat < 2; ++dataFormat)
            for (int testMode = 0; testMode < 2; ++testMode)
                for (int range = 0; range < 7; ++range) {
                    const AdcSelection selection{operation, dataFormat, testMode, range};
                    EXPECT_EQ(adcSelection(adcWord(selection)), selection);
                    EXPECT_EQ(adcWord(selection) & 0xF800, 0);
                }
}

TEST(AdcWord, operation_bits_10_and_9_decide_between_the_two_sums)
{
    EXPECT_EQ(adcSelection(0b011 << 8).operation, 2);
    EXPECT_EQ(adcSelection(0b111 << 8).operation, 3);
    EXPECT_EQ(adcSelection(0b101 << 8).operation, 0);
    EXPECT_EQ(adcSelection(0b100 << 8).operation, 1);
}

TEST(ModeFrame, carries_00_for_the_1k_mode_and_10_for_the_256_mode)
{
    EXPECT_EQ(hex(setMode(true)), "FF AA 01 00 0D EB 00 00");
    EXPECT_EQ(hex(setMode(false)), "FF AA 01 00 0D EB 10 10");
}

TEST(Voltages, the_span_of_40_V_maps_onto_65536_truncated_toward_zero)
{
    EXPECT_EQ(voltageCode(-20.0), 0);
    EXPECT_EQ(voltageCode(0.0), 32768);
    EXPECT_EQ(voltageCode(1.5), 35225);
    EXPECT_EQ(voltageCode(15.0), 57344);
    EXPECT_EQ(voltageCode(-15.0), 8192);
    EXPECT_EQ(voltageCode(20.0), 65536);
    EXPECT_EQ(voltageCode(-20.0001), 0);
    EXPECT_EQ(voltageCode(-21.0), -1638);
}

TEST(Voltages, values_beyond_any_integer_do_not_overflow)
{
    EXPECT_EQ(voltageCode(1e300), std::numeric_limits<int>::max());
    EXPECT_EQ(voltageCode(-1e300), std::numeric_limits<int>::min());
    EXPECT_EQ(voltageCode(std::nan("")), 0);
}

TEST(Voltages, a_VCOM_of_one_and_a_half_volts_is_sent_as_8999)
{
    EXPECT_EQ(hex(setVoltages({voltageCode(1.5)})), "FF AA 01 02 0D EB 89 99 22");
}

TEST(Voltages, plus_20_V_makes_three_bytes_and_below_minus_20_V_the_sign_is_dropped)
{
    EXPECT_EQ(hex(setVoltages({voltageCode(20.0)})), "FF AA 01 02 0D EB 01 00 00 01");
    EXPECT_EQ(hex(setVoltages({voltageCode(-21.0)})), "FF AA 01 02 0D EB 06 66 6C");
}

TEST(Voltages, every_code_comes_back_and_shown_with_three_decimals_it_is_at_most_one_code_less)
{
    for (int raw = 0; raw < 65536; ++raw) {
        const double volts = voltageValue(raw);
        ASSERT_EQ(voltageCode(volts), raw);
        const int again = voltageCode(QString::number(volts, 'f', 3).toDouble());
        ASSERT_TRUE(again == raw || again == raw - 1) << raw;
    }
}

TEST(Voltages, every_voltage_of_a_tenth_of_a_millivolt_comes_back_within_one_code)
{
    for (int step = -200'000; step < 200'000; ++step) {
        const double volts = step / 10'000.0;
        const double back = voltageValue(voltageCode(volts));
        ASSERT_LE(back, volts + 1e-9);
        ASSERT_GT(back, volts - 40.0 / 65536);
    }
}

TEST(Voltages, the_limits_of_the_scale_and_of_the_page_are_these_bytes)
{
    EXPECT_EQ(hex(setVoltages({voltageCode(-20.0)})), "FF AA 01 02 0D EB 00 00 00");
    EXPECT_EQ(hex(setVoltages({voltageCode(15.0)})), "FF AA 01 02 0D EB E0 00 E0");
    EXPECT_EQ(hex(setVoltages({voltageCode(-15.0)})), "FF AA 01 02 0D EB 20 00 20");
    EXPECT_EQ(hex(setVoltages({voltageCode(19.9999)})), "FF AA 01 02 0D EB FF FF FE");
    EXPECT_EQ(hex(setVoltages({voltageCode(-20.001)})), "FF AA 01 02 0D EB 00 01 01");
}

TEST(Timing, the_two_integration_times_are_scaled_and_no_other)
{
    EXPECT_EQ(timingToWire(32, 16600), 13280);
    EXPECT_EQ(timingToWire(34, 21700), 17360);
    EXPECT_EQ(timingFromWire(32, 13280), 16600);
    for (int field = 17; field <= 34; ++field) {
        if (field == 32 || field == 34)
            continue;
        EXPECT_EQ(timingToWire(field, 16600), 16600) << field;
        EXPECT_EQ(timingFromWire(field, 13280), 13280) << field;
    }
}

TEST(Timing, scaling_truncates_toward_zero)
{
    EXPECT_EQ(timingToWire(32, 1), 0);
    EXPECT_EQ(timingToWire(32, 4), 3);
    EXPECT_EQ(timingToWire(32, -4), -3);
    EXPECT_EQ(timingFromWire(34, 1), 1);
    EXPECT_EQ(timingFromWire(34, 3), 3);
}

TEST(Timing, values_that_overflow_when_scaled_back_are_clamped)
{
    EXPECT_EQ(timingFromWire(32, std::numeric_limits<int>::max()), std::numeric_limits<int>::max());
    EXPECT_EQ(timingFromWire(32, std::numeric_limits<int>::min()), std::numeric_limits<int>::min());
}

TEST(Timing, four_bytes_a_value_and_the_magnitude_of_negative_ones)
{
    EXPECT_EQ(hex(setTiming({13280, 1})), "FF AA 01 10 0D EB 00 00 33 E0 00 00 00 01 14");
    EXPECT_EQ(hex(setTiming({-1000})), "FF AA 01 10 0D EB 00 00 03 E8 EB");
    EXPECT_EQ(hex(setTiming({0x7FFFFFFF})), "FF AA 01 10 0D EB 7F FF FF FF 7C");
}

TEST(Timing, the_largest_and_smallest_values_are_these_bytes)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    EXPECT_EQ(hex(setTiming({lowest})), "FF AA 01 10 0D EB 80 00 00 00 80");
    EXPECT_EQ(hex(setTiming({-1})), "FF AA 01 10 0D EB 00 00 00 01 01");
    EXPECT_EQ(hex(setTiming({timingToWire(32, 0x7FFFFFFF)})), "FF AA 01 10 0D EB 66 66 66 65 97");
    EXPECT_EQ(hex(setTiming({timingToWire(34, lowest)})), "FF AA 01 10 0D EB 66 66 66 66 98");
}

TEST(Timing, a_scaled_value_comes_back_by_no_more_than_two_less)
{
    QRandomGenerator random(4);
    for (int i = 0; i < 100'000; ++i) {
        const int value = int(random.generate() & 0x7FFFFFFF);
        const int back = timingFromWire(32, timingToWire(32, value));
        ASSERT_LE(back, value);
        ASSERT_GE(back, value - 2);
    }
}

TEST(EepromWords, are_formatted_as_signed_numbers_so_that_the_upper_half_is_sent_as_its_magnitude)
{
    EXPECT_EQ(hex(sendEeprom({0x7FFFFFFFu})), "FF AA 01 EE 0D EB 7F FF FF FF 7C");
    EXPECT_EQ(hex(sendEeprom({0x80000000u})), "FF AA 01 EE 0D EB 80 00 00 00 80");
    EXPECT_EQ(hex(sendEeprom({0xFFFFFFFFu})), "FF AA 01 EE 0D EB 00 00 00 01 01");
}

TEST(Lists, are_sent_as_long_as_they_are)
{
    EXPECT_EQ(hex(setVoltages({})), "FF AA 01 02 0D EB 00");
    EXPECT_EQ(hex(setTiming({})), "FF AA 01 10 0D EB 00");
    EXPECT_EQ(hex(sendEeprom({})), "FF AA 01 EE 0D EB 00");
    EXPECT_EQ(setVoltages(QList<int>(40, 1)).size(), 6 + 80 + 1);
    EXPECT_EQ(setTiming(QList<int>(19, 1)).size(), 6 + 76 + 1);
    EXPECT_EQ(sendEeprom(QList<quint32>(33, 1)).size(), 6 + 132 + 1);
}
