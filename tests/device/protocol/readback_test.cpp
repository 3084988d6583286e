#include "device/protocol/readback.h"

#include "device/protocol/commandframes.h"
#include "device/protocol/parameterpackets.h"
#include "device/protocol/timing.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

using namespace ParameterPacket;

namespace {

/// What stands between head and checksum of a parameter frame.
QByteArray payload(const QByteArray &frame)
{
    return frame.mid(6, frame.size() - 7);
}

/// A parameter read-back as the detector sends it after having received these.
QByteArray replyFor(bool is1k, const AdcSelection &adc, const QList<int> &voltages, const QList<int> &timing)
{
    QByteArray bytes = payload(setMode(is1k)) + payload(setAdc(adc)) + payload(setVoltages(voltages)) +
                       payload(setTiming(timing));
    bytes.append(Readback::parameterBytes - bytes.size(), '\0');
    return bytes.toHex().toUpper();
}

} // namespace

TEST(ParameterReadback, what_was_sent_is_what_is_read_for_random_valid_parameters)
{
    QRandomGenerator random(1);
    for (int round = 0; round < 200; ++round) {
        const AdcSelection adc{static_cast<AdcSelection::Operation>(random.bounded(4)),
                               static_cast<AdcSelection::DataFormat>(random.bounded(2)),
                               static_cast<AdcSelection::TestMode>(random.bounded(2)),
                               static_cast<AdcSelection::PcRange>(random.bounded(7))};
        QList<int> voltages;
        for (int i = 0; i < voltageCount; ++i)
            voltages << random.bounded(65536);
        QList<int> timing;
        for (int i = 0; i < Timing::count; ++i)
            timing << static_cast<int>(random.generate() & 0x7FFFFFFF);
        const bool is1k = random.bounded(2) == 0;

        const auto read = Readback::parameters(replyFor(is1k, adc, voltages, timing));
        ASSERT_TRUE(read);
        EXPECT_EQ(read->mode == 0, is1k);
        EXPECT_EQ(read->adcWord, adc.word());
        EXPECT_EQ(read->adc, adc);
        EXPECT_EQ(read->voltageCodes, voltages);
        EXPECT_EQ(read->timingWords, timing);
    }
}

TEST(ParameterReadback, integration_times_that_are_multiples_of_five_survive_the_scaling_there_and_back)
{
    for (int value = 0; value <= 1'000'000; value += 5) {
        ASSERT_EQ(Timing::toWire(&Timing::adcIntA, value), value / 5 * 4);
        ASSERT_EQ(Timing::fromWire(&Timing::adcIntA, Timing::toWire(&Timing::adcIntA, value)), value);
    }
}

TEST(ParameterReadback, any_mode_but_0_is_the_256_mode)
{
    QByteArray bytes(Readback::parameterBytes, '\0');
    EXPECT_EQ(Readback::parameters(bytes.toHex())->mode, 0);
    bytes[0] = static_cast<char>(0x10);
    EXPECT_EQ(Readback::parameters(bytes.toHex())->mode, 0x10);
    bytes[0] = static_cast<char>(0xFF);
    EXPECT_EQ(Readback::parameters(bytes.toHex())->mode, 0xFF);
}

TEST(ParameterReadback, a_short_reply_is_refused_and_a_long_one_read_as_far_as_it_goes)
{
    const QByteArray full(2 * Readback::parameterBytes, '0');
    EXPECT_FALSE(Readback::parameters({}));
    EXPECT_FALSE(Readback::parameters(full.chopped(1)));
    EXPECT_TRUE(Readback::parameters(full));
    EXPECT_EQ(Readback::parameters(full + "FFFF")->timingWords, QList<int>(Timing::count, 0));
}

TEST(ParameterReadback, a_timing_word_with_the_top_bit_set_reads_as_0)
{
    QByteArray bytes(Readback::parameterBytes, '\0');
    bytes.replace(35, 12, QByteArray::fromHex("7FFFFFFF80000000FFFFFFFF"));
    const QList<int> words = Readback::parameters(bytes.toHex().toUpper())->timingWords;
    EXPECT_EQ(words.mid(0, 3), QList<int>({0x7FFFFFFF, 0, 0}));
}

TEST(EepromReadback, words_come_in_order_most_significant_byte_first)
{
    QByteArray bytes;
    for (int i = 0; i < eepromCount; ++i)
        bytes += CommandFrame::hexBytes(i * 1000001, 4);
    bytes += static_cast<char>(0x55);
    const auto words = Readback::eeprom(bytes.toHex().toUpper());
    ASSERT_TRUE(words);
    ASSERT_EQ(words->size(), eepromCount);
    for (int i = 0; i < eepromCount; ++i)
        EXPECT_EQ(words->at(i), i * 1000001);
}

TEST(EepromReadback, what_was_sent_is_what_is_read_for_random_words_and_the_magnitude_for_the_upper_half)
{
    QRandomGenerator random(2);
    for (int round = 0; round < 200; ++round) {
        QList<quint32> words;
        QList<int> expected;
        for (int i = 0; i < eepromCount; ++i) {
            const quint32 word = random.generate();
            words << word;
            expected << static_cast<int>(word > 0x80000000U ? 0U - word : word % 0x80000000U);
        }
        const QByteArray reply = (payload(sendEeprom(words)) + '\0').toHex().toUpper();
        ASSERT_EQ(Readback::eeprom(reply), expected);
    }
}

TEST(EepromReadback, words_of_80000000_and_above_read_as_0)
{
    QByteArray bytes = QByteArray::fromHex("7FFFFFFF80000000FFFFFFFF") + QByteArray(117, '\0');
    EXPECT_EQ(Readback::eeprom(bytes.toHex().toUpper())->mid(0, 3), QList<int>({0x7FFFFFFF, 0, 0}));
}

TEST(EepromReadback, a_short_reply_is_refused_and_a_long_one_accepted)
{
    const QByteArray full(2 * Readback::eepromBytes, '0');
    EXPECT_FALSE(Readback::eeprom(full.chopped(1)));
    EXPECT_TRUE(Readback::eeprom(full));
    EXPECT_TRUE(Readback::eeprom(full + "00"));
}

TEST(VersionReadback, three_bytes_and_two_nibbles_are_joined_by_dots)
{
    EXPECT_EQ(Readback::version("0102034500"), QStringLiteral("1.2.3.4.5"));
    EXPECT_EQ(Readback::version("FF00100FFF"), QStringLiteral("255.0.16.0.15"));
}

TEST(VersionReadback, only_a_reply_of_exactly_five_bytes_counts)
{
    EXPECT_FALSE(Readback::version(""));
    EXPECT_FALSE(Readback::version("01020345"));
    EXPECT_FALSE(Readback::version("010203450"));
    EXPECT_FALSE(Readback::version("010203450000"));
}
