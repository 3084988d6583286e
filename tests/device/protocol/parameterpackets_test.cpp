#include "device/protocol/parameterpackets.h"

#include "device/protocol/timing.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace ParameterPacket;

TEST(AdcFrame, the_example_of_A_only_20_bit_off_25_carries_01B6)
{
    EXPECT_EQ(spacedHex(setAdc({})), "FF AA 01 01 0D EB 01 B6 B7");
}

TEST(ModeFrame, carries_00_for_the_1k_mode_and_10_for_the_256_mode)
{
    EXPECT_EQ(spacedHex(setMode(true)), "FF AA 01 00 0D EB 00 00");
    EXPECT_EQ(spacedHex(setMode(false)), "FF AA 01 00 0D EB 10 10");
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
    EXPECT_EQ(spacedHex(setVoltages({voltageCode(1.5)})), "FF AA 01 02 0D EB 89 99 22");
}

TEST(Voltages, plus_20_V_makes_three_bytes_and_below_minus_20_V_the_sign_is_dropped)
{
    EXPECT_EQ(spacedHex(setVoltages({voltageCode(20.0)})), "FF AA 01 02 0D EB 01 00 00 01");
    EXPECT_EQ(spacedHex(setVoltages({voltageCode(-21.0)})), "FF AA 01 02 0D EB 06 66 6C");
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
    EXPECT_EQ(spacedHex(setVoltages({voltageCode(-20.0)})), "FF AA 01 02 0D EB 00 00 00");
    EXPECT_EQ(spacedHex(setVoltages({voltageCode(15.0)})), "FF AA 01 02 0D EB E0 00 E0");
    EXPECT_EQ(spacedHex(setVoltages({voltageCode(-15.0)})), "FF AA 01 02 0D EB 20 00 20");
    EXPECT_EQ(spacedHex(setVoltages({voltageCode(19.9999)})), "FF AA 01 02 0D EB FF FF FE");
    EXPECT_EQ(spacedHex(setVoltages({voltageCode(-20.001)})), "FF AA 01 02 0D EB 00 01 01");
}

TEST(TimingFrame, four_bytes_a_value_and_the_magnitude_of_negative_ones)
{
    EXPECT_EQ(spacedHex(setTiming({13280, 1})), "FF AA 01 10 0D EB 00 00 33 E0 00 00 00 01 14");
    EXPECT_EQ(spacedHex(setTiming({-1000})), "FF AA 01 10 0D EB 00 00 03 E8 EB");
    EXPECT_EQ(spacedHex(setTiming({0x7FFFFFFF})), "FF AA 01 10 0D EB 7F FF FF FF 7C");
}

TEST(TimingFrame, the_largest_and_smallest_values_are_these_bytes)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    EXPECT_EQ(spacedHex(setTiming({lowest})), "FF AA 01 10 0D EB 80 00 00 00 80");
    EXPECT_EQ(spacedHex(setTiming({-1})), "FF AA 01 10 0D EB 00 00 00 01 01");
    EXPECT_EQ(spacedHex(setTiming({Timing::toWire(&Timing::adcIntA, 0x7FFFFFFF)})),
              "FF AA 01 10 0D EB 66 66 66 65 97");
    EXPECT_EQ(spacedHex(setTiming({Timing::toWire(&Timing::adcIntB, lowest)})),
              "FF AA 01 10 0D EB 66 66 66 66 98");
}

TEST(EepromWords, are_formatted_as_signed_numbers_so_that_the_upper_half_is_sent_as_its_magnitude)
{
    EXPECT_EQ(spacedHex(sendEeprom({0x7FFFFFFFu})), "FF AA 01 EE 0D EB 7F FF FF FF 7C");
    EXPECT_EQ(spacedHex(sendEeprom({0x80000000u})), "FF AA 01 EE 0D EB 80 00 00 00 80");
    EXPECT_EQ(spacedHex(sendEeprom({0xFFFFFFFFu})), "FF AA 01 EE 0D EB 00 00 00 01 01");
}

TEST(Lists, are_sent_as_long_as_they_are)
{
    EXPECT_EQ(spacedHex(setVoltages({})), "FF AA 01 02 0D EB 00");
    EXPECT_EQ(spacedHex(setTiming({})), "FF AA 01 10 0D EB 00");
    EXPECT_EQ(spacedHex(sendEeprom({})), "FF AA 01 EE 0D EB 00");
    EXPECT_EQ(setVoltages(QList<int>(40, 1)).size(), 6 + 80 + 1);
    EXPECT_EQ(setTiming(QList<int>(19, 1)).size(), 6 + 76 + 1);
    EXPECT_EQ(sendEeprom(QList<quint32>(33, 1)).size(), 6 + 132 + 1);
}
