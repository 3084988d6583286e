#include "tests/simulator/firmware/detectorbench.h"

#include <gtest/gtest.h>

namespace {

/// 256 bytes: what the read-back gives after power-up.
QByteArray powerUpParameters()
{
    QByteArray bytes = hex("00 01B6 8000 8000 8000 8000 8000 8000 E000 2000"
                           "8000 8000 8000 8000 8000 8000 8333 4000");
    bytes += words({158104400, 1000, 1000, 612800, 306400, 2000, 1000, 149200, 4000, 1000, 1000, 32300, 6000,
                    1000, 300, 13280, 15400, 17360});
    return bytes.leftJustified(256, '\0');
}

} // namespace

struct EchoCase
{
    const char *name;
    int code;
};

class ControlEcho : public testing::TestWithParam<EchoCase>
{
};

TEST_P(ControlEcho, is_the_frame_with_bb_in_place_of_aa)
{
    DetectorBench bench;
    QByteArray expected = frame(3, GetParam().code);
    expected[1] = '\xBB';
    EXPECT_EQ(bench.exchange(frame(3, GetParam().code)).toHex(' '), expected.toHex(' '));
}

INSTANTIATE_TEST_SUITE_P(Firmware, ControlEcho,
                         testing::Values(EchoCase{"start", 0xA0}, EchoCase{"halt_when_idle", 0xA1},
                                         EchoCase{"pattern_1", 0xC0}, EchoCase{"pattern_2", 0xC1},
                                         EchoCase{"pattern_3", 0xC2}, EchoCase{"pattern_4", 0xC3},
                                         EchoCase{"pattern_5", 0xCF}, EchoCase{"eeprom_write", 0xE0},
                                         EchoCase{"eeprom_read", 0xE1}, EchoCase{"eeprom_init", 0xEF}),
                         [](const auto &test) { return test.param.name; });

TEST(Firmware, a_ready_detector_says_so_in_the_fifth_byte)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(frame(3, 0xAA)), hex("FF BB 03 AA 01 EB"));
}

TEST(Firmware, the_level_reply_begins_with_the_battery_level)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(frame(2, 0x10)), hex("57 02 10 00 0D EB"));
    bench.settings.batteryLevel = 19;
    EXPECT_EQ(bench.exchange(frame(2, 0x10)), hex("13 02 10 00 0D EB"));
}

TEST(Firmware, the_version_is_five_bytes)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(frame(2, 0xFA)), hex("01 02 03 45 00"));
}

TEST(Firmware, the_parameters_after_power_up_are_those_of_the_150_na_range)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(frame(2, 0x00)).toHex(), powerUpParameters().toHex());
}

TEST(Firmware, the_eeprom_after_power_up_is_empty_with_its_checksum)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(frame(2, 0xEE)), QByteArray(129, '\0'));
}

TEST(Firmware, the_mode_is_acknowledged_and_read_back)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(hex("FF AA 01 00 0D EB 10 10")), hex("FF BB 01 00 0D EB"));
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), powerUpParameters().replace(0, 1, hex("10")));
}

TEST(Firmware, the_adc_word_is_acknowledged_and_read_back)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(hex("FF AA 01 01 0D EB 07 3F 46")), hex("FF BB 01 01 0D EB"));
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), powerUpParameters().replace(1, 2, hex("07 3F")));
}

TEST(Firmware, all_sixteen_voltages_are_acknowledged_and_read_back)
{
    DetectorBench bench;
    QByteArray voltages;
    for (int i = 0; i < 32; ++i)
        voltages.append(static_cast<char>(200 + i));
    EXPECT_EQ(bench.exchange(parameterFrame(0x02, voltages)), hex("FF BB 01 02 0D EB"));
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), powerUpParameters().replace(3, 32, voltages));
}

TEST(Firmware, all_eighteen_timing_words_are_acknowledged_and_read_back)
{
    DetectorBench bench;
    QByteArray timing;
    for (quint32 i = 0; i < 18; ++i)
        timing += words({0xFFFFFF00U + i});
    EXPECT_EQ(bench.exchange(parameterFrame(0x10, timing)), hex("FF BB 01 10 0D EB"));
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), powerUpParameters().replace(35, 72, timing));
}

TEST(Firmware, fewer_fields_than_a_group_has_change_its_first_ones)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(parameterFrame(0x02, hex("89 99"))), hex("FF BB 01 02 0D EB"));
    EXPECT_EQ(bench.exchange(parameterFrame(0x10, words({7, 8}))), hex("FF BB 01 10 0D EB"));
    const QByteArray expected = powerUpParameters().replace(3, 2, hex("89 99")).replace(35, 8, words({7, 8}));
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), expected);
}

TEST(Firmware, an_empty_group_is_acknowledged_and_changes_nothing)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(hex("FF AA 01 02 0D EB 00")), hex("FF BB 01 02 0D EB"));
    EXPECT_EQ(bench.exchange(hex("FF AA 01 10 0D EB 00")), hex("FF BB 01 10 0D EB"));
    EXPECT_EQ(bench.exchange(hex("FF AA 01 EE 0D EB 00")), hex("FF BB 01 EE 0D EB"));
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), powerUpParameters());
}

TEST(Firmware, a_wrong_checksum_is_not_acknowledged_and_changes_nothing)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(hex("FF AA 01 01 0D EB 07 3F 47")), QByteArray());
    EXPECT_EQ(bench.exchange(hex("FF AA 01 00 0D EB 10 11")), QByteArray());
    EXPECT_EQ(bench.exchange(hex("FF AA 01 02 0D EB 01")), QByteArray()) << "empty group, sum not 0";
    EXPECT_EQ(bench.exchange(hex("FF AA 01 02 0D EB")), QByteArray()) << "no checksum at all";
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), powerUpParameters());
}

TEST(Firmware, a_checksum_above_255_counts_modulo_256)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(hex("FF AA 01 02 0D EB FF FF FE")), hex("FF BB 01 02 0D EB"));
}

TEST(Firmware, a_payload_of_a_wrong_length_is_not_acknowledged_and_changes_nothing)
{
    DetectorBench bench;
    for (const auto &[code, length] : {std::pair{0x00, 0},
                                       {0x00, 2},
                                       {0x01, 0},
                                       {0x01, 1},
                                       {0x01, 3},
                                       {0x02, 1},
                                       {0x02, 33},
                                       {0x02, 34},
                                       {0x10, 2},
                                       {0x10, 71},
                                       {0x10, 76},
                                       {0xEE, 3},
                                       {0xEE, 130},
                                       {0xEE, 132}})
        EXPECT_EQ(bench.exchange(parameterFrame(code, QByteArray(length, '\x11'))), QByteArray())
            << code << ' ' << length;
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), powerUpParameters());
    EXPECT_EQ(bench.exchange(frame(2, 0xEE)), QByteArray(129, '\0'));
}

TEST(Firmware, a_voltage_of_three_bytes_makes_a_frame_that_is_not_acknowledged)
{
    DetectorBench bench;
    const QByteArray voltages = QByteArray(30, '\x11') + hex("01 00 00"); // +20 V in the last field
    EXPECT_EQ(bench.exchange(parameterFrame(0x02, voltages)), QByteArray());
}

TEST(Firmware, an_unknown_code_is_not_answered)
{
    DetectorBench bench;
    for (const auto &[frameClass, code] :
         {std::pair{2, 0x01}, {2, 0xA0}, {3, 0x00}, {3, 0xC4}, {3, 0xCE}, {3, 0x10}, {4, 0xA0}, {0xFF, 0}})
        EXPECT_EQ(bench.exchange(frame(frameClass, code)), QByteArray()) << frameClass << ' ' << code;
    EXPECT_EQ(bench.exchange(parameterFrame(0x03, hex("00"))), QByteArray());
    EXPECT_FALSE(bench.firmware.isStreaming());
}

TEST(Firmware, commands_glued_into_one_write_are_answered_in_order)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(frame(2, 0x10) + frame(2, 0xFA) + frame(3, 0xAA)),
              hex("57 02 10 00 0D EB  01 02 03 45 00  FF BB 03 AA 01 EB"));
}

TEST(Firmware, a_command_split_over_writes_is_answered_when_it_is_complete)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(hex("FF AA 02")), QByteArray());
    EXPECT_EQ(bench.exchange(hex("FA 0D EB")), hex("01 02 03 45 00"));
}

TEST(Firmware, while_it_streams_only_the_halt_is_answered)
{
    DetectorBench bench;
    bench.start();
    for (const auto &[frameClass, code] :
         {std::pair{2, 0x00}, {2, 0x10}, {2, 0xEE}, {2, 0xFA}, {3, 0xA0}, {3, 0xAA}, {3, 0xC0}, {3, 0xE0}})
        EXPECT_EQ(bench.exchange(frame(frameClass, code)), QByteArray()) << frameClass << ' ' << code;
    EXPECT_EQ(bench.exchange(parameterFrame(0x01, hex("07 3F"))), QByteArray());
    EXPECT_EQ(bench.exchange(frame(3, 0xA1)), hex("FF BB 03 A1 0D EB"));
    EXPECT_EQ(bench.exchange(frame(2, 0x00)), powerUpParameters()) << "nothing was changed";
}

TEST(Firmware, the_eeprom_words_sent_are_read_back_with_the_sum_of_their_bytes)
{
    DetectorBench bench;
    EXPECT_EQ(bench.exchange(parameterFrame(0xEE, words({0x80000001, 2}))), hex("FF BB 01 EE 0D EB"));
    const QByteArray expected = words({0x80000001, 2}).leftJustified(128, '\0') + hex("83");
    EXPECT_EQ(bench.exchange(frame(2, 0xEE)), expected);
}

TEST(Firmware, an_eeprom_read_brings_back_what_was_last_written)
{
    DetectorBench bench;
    bench.exchange(parameterFrame(0xEE, words({11})));
    bench.exchange(frame(3, 0xE0));
    bench.exchange(parameterFrame(0xEE, words({22})));
    EXPECT_EQ(sampleAt(bench.exchange(frame(2, 0xEE)), 0), 22U);
    bench.exchange(frame(3, 0xE1));
    EXPECT_EQ(sampleAt(bench.exchange(frame(2, 0xEE)), 0), 11U);
}

TEST(Firmware, an_eeprom_init_clears_the_working_copy_and_leaves_the_stored_one)
{
    DetectorBench bench;
    bench.exchange(parameterFrame(0xEE, words({11})));
    bench.exchange(frame(3, 0xE0));
    bench.exchange(frame(3, 0xEF));
    EXPECT_EQ(sampleAt(bench.exchange(frame(2, 0xEE)), 0), 0U);
    bench.exchange(frame(3, 0xE1));
    EXPECT_EQ(sampleAt(bench.exchange(frame(2, 0xEE)), 0), 11U);
}
