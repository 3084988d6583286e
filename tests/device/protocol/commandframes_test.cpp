#include "device/protocol/commandframes.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

TEST(CommandFrames, every_fixed_frame_has_its_exact_bytes)
{
    EXPECT_EQ(spacedHex(CommandFrame::startAcquisition()), "FF AA 03 A0 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::haltAcquisition()), "FF AA 03 A1 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::readinessQuery()), "FF AA 03 AA 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::levelQuery()), "FF AA 02 10 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::versionReadback()), "FF AA 02 FA 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::parameterReadback()), "FF AA 02 00 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::eepromReadback()), "FF AA 02 EE 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::eepromWrite()), "FF AA 03 E0 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::eepromRead()), "FF AA 03 E1 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::eepromInit()), "FF AA 03 EF 0D EB");
}

TEST(CommandFrames, the_fifth_test_pattern_is_CF_and_the_others_run_from_C0)
{
    EXPECT_EQ(spacedHex(CommandFrame::testPattern(1)), "FF AA 03 C0 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::testPattern(2)), "FF AA 03 C1 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::testPattern(3)), "FF AA 03 C2 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::testPattern(4)), "FF AA 03 C3 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::testPattern(5)), "FF AA 03 CF 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::testPattern(6)), "FF AA 03 CF 0D EB");
}

TEST(CommandFrames, a_block_request_carries_its_counter_in_one_byte)
{
    EXPECT_EQ(spacedHex(CommandFrame::blockRequest(0)), "FF AA 00 00 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::blockRequest(1)), "FF AA 00 01 0D EB");
    EXPECT_EQ(spacedHex(CommandFrame::blockRequest(31)), "FF AA 00 1F 0D EB");
}

TEST(CommandFrames, hexadecimal_bytes_are_padded_to_their_width)
{
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(0, 1)), "00");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(0x89, 2)), "00 89");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(13280, 4)), "00 00 33 E0");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(0x7FFFFFFF, 4)), "7F FF FF FF");
}

TEST(CommandFrames, a_value_too_large_for_its_width_makes_the_field_longer)
{
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(65536, 2)), "01 00 00");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(0x123456, 2)), "12 34 56");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(256, 1)), "01 00");
}

TEST(CommandFrames, a_longer_text_of_odd_length_gets_its_leading_digit_as_a_byte_of_its_own)
{
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(0x10000, 2)), "01 00 00");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(0xABCDE, 2)), "0A BC DE");
}

TEST(CommandFrames, the_sign_of_a_negative_value_is_dropped_and_its_magnitude_sent)
{
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(-0x1234, 2)), "12 34");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(-1, 2)), "00 01");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(-1, 4)), "00 00 00 01");
    EXPECT_EQ(spacedHex(CommandFrame::hexBytes(std::numeric_limits<int>::min(), 4)), "80 00 00 00");
}

TEST(CommandFrames, the_checksum_is_the_plain_sum_of_the_payload_bytes)
{
    EXPECT_EQ(CommandFrame::checksum({}), static_cast<char>(0));
    EXPECT_EQ(CommandFrame::checksum(QByteArray::fromHex("01B6")), static_cast<char>(0xB7));
    EXPECT_EQ(CommandFrame::checksum(QByteArray(2, static_cast<char>(0xFF))), static_cast<char>(0xFE));
    EXPECT_EQ(CommandFrame::checksum(QByteArray(256, static_cast<char>(0x01))), static_cast<char>(0));
}

TEST(CommandFrames, a_parameter_frame_keeps_the_end_mark_in_its_head)
{
    EXPECT_EQ(spacedHex(CommandFrame::parameters(static_cast<char>(0x10), QByteArray::fromHex("0102"))),
              "FF AA 01 10 0D EB 01 02 03");
    EXPECT_EQ(spacedHex(CommandFrame::parameters(static_cast<char>(0xEE), {})), "FF AA 01 EE 0D EB 00");
}

TEST(Acknowledgements, an_echo_must_stand_at_the_start_of_the_reply)
{
    const QByteArray start = CommandFrame::startAcquisition();
    EXPECT_TRUE(AckFrame::echoes("FFBB03A00DEB", start));
    EXPECT_TRUE(AckFrame::echoes("FFBB03A00DEB00", start));
    EXPECT_FALSE(AckFrame::echoes("00FFBB03A00DEB", start));
    EXPECT_FALSE(AckFrame::echoes("FFBB03A10DEB", start));
    EXPECT_FALSE(AckFrame::echoes("FFBB03A00D", start));
    EXPECT_FALSE(AckFrame::echoes("", start));
}

TEST(Acknowledgements, each_test_pattern_has_its_own_echo)
{
    const char *echoes[] = {"FFBB03C00DEB", "FFBB03C10DEB", "FFBB03C20DEB", "FFBB03C30DEB", "FFBB03CF0DEB"};
    for (int pattern = 1; pattern <= 5; ++pattern)
        for (int other = 1; other <= 5; ++other)
            EXPECT_EQ(AckFrame::echoes(echoes[other - 1], CommandFrame::testPattern(pattern)),
                      pattern == other);
}

TEST(Acknowledgements, a_parameter_acknowledgement_counts_anywhere_in_the_reply_even_off_a_byte_boundary)
{
    EXPECT_TRUE(AckFrame::acknowledgesParameters("FFBB01100DEB"));
    EXPECT_TRUE(AckFrame::acknowledgesParameters("0000FFBB0110"));
    EXPECT_TRUE(AckFrame::acknowledgesParameters("0FFBB01100DE"));
    EXPECT_FALSE(AckFrame::acknowledgesParameters("FFBB03100DEB"));
    EXPECT_FALSE(AckFrame::acknowledgesParameters(""));
}

TEST(Acknowledgements, a_reply_that_was_left_over_from_another_command_is_told_by_its_head)
{
    const QByteArray download = CommandFrame::parameters(0x10, "1");
    const QByteArray query = CommandFrame::readinessQuery();
    const QByteArray level = CommandFrame::levelQuery();
    EXPECT_TRUE(AckFrame::answersAnother("FFBB03A10DEB", query));
    EXPECT_TRUE(AckFrame::answersAnother("FFBB03A10DEB", level));
    EXPECT_TRUE(AckFrame::answersAnother("FFBB03A10DEB", download));
    EXPECT_TRUE(AckFrame::answersAnother("FFBB01100DEB", query));
    EXPECT_TRUE(AckFrame::answersAnother("570210000DEB", query)) << "a charge";
    EXPECT_FALSE(AckFrame::answersAnother("FFBB03AA00EB", query));
    EXPECT_FALSE(AckFrame::answersAnother("FFBB03AA01EB00", query)) << "too long, and its own";
    EXPECT_FALSE(AckFrame::answersAnother("570210000DEB", level));
    EXPECT_FALSE(AckFrame::answersAnother("FFBB01000DEB", download)) << "its code is not looked at";
    EXPECT_FALSE(AckFrame::answersAnother("FFBB7F100DEB", download)) << "a refusal";
    EXPECT_FALSE(AckFrame::answersAnother("000000000100", query)) << "nobody's";
    EXPECT_FALSE(AckFrame::answersAnother("", query));
}

TEST(Acknowledgements, readiness_is_bit_0_of_the_fifth_byte)
{
    EXPECT_TRUE(AckFrame::isReady("FFBB03AA01EB"));
    EXPECT_TRUE(AckFrame::isReady("FFBB03AA0DEB"));
    EXPECT_FALSE(AckFrame::isReady("FFBB03AA00EB"));
    EXPECT_FALSE(AckFrame::isReady("FFBB03AAFEEB"));
    EXPECT_FALSE(AckFrame::isReady("FFBB03AA01")) << "five bytes are no reply";
    EXPECT_FALSE(AckFrame::isReady("FFBB03AA"));
    EXPECT_FALSE(AckFrame::isReady(""));
}

TEST(Acknowledgements, the_level_is_the_first_byte)
{
    EXPECT_EQ(AckFrame::level("640210000DEB"), 100);
    EXPECT_EQ(AckFrame::level("13"), 19);
    EXPECT_EQ(AckFrame::level(""), 0);
}
