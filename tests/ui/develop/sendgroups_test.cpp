// The buttons that send a whole group of fields.

#include "tests/support/commandbytes.h"
#include "tests/ui/develop/linkeddialog.h"

namespace {

/// A parameter frame as it stands on the wire, with its checksum.
QByteArray frame(const char *code, const QByteArray &payloadHex)
{
    return hexText(parameterFrame(hex(code).at(0), hex(payloadHex)));
}

QString invalid(int number)
{
    return QStringLiteral("LineEdit %1 contains invalid data.").arg(number);
}

QStringList invalid(int first, int count)
{
    QStringList lines;
    for (int number = first; number < first + count; ++number)
        lines << invalid(number);
    return lines;
}

QStringList repeated(const char *text, int count)
{
    return QStringList(count, QString::fromLatin1(text));
}

class DevelopGroups : public LinkedDialog
{
protected:
    /// The warnings about fields that a click brought up, besides the frame that it sent.
    QByteArray sentBy(const char *button)
    {
        const DebugOutput debug;
        QByteArray sent = LinkedDialog::sentBy(button);
        warnings = debug.messages().filter(QStringLiteral("LineEdit"));
        return sent;
    }

    QStringList warnings;
};

} // namespace

TEST_F(DevelopGroups, sixteen_voltages_go_out_in_the_order_of_their_fields)
{
    dialog.setTexts(1, {"-20", "-15", "-10", "-5", "-1", "-0.5", "0", "0.5", "1.5", "3.3", "5", "7.25", "10",
                        "12", "15", "19.9"});
    EXPECT_EQ(sentBy("pushButton_set_voltage"), frame("02", "0000"
                                                            "2000"
                                                            "4000"
                                                            "6000"
                                                            "7999"
                                                            "7CCC"
                                                            "8000"
                                                            "8333"
                                                            "8999"
                                                            "951E"
                                                            "A000"
                                                            "AE66"
                                                            "C000"
                                                            "CCCC"
                                                            "E000"
                                                            "FF5C"));
    EXPECT_TRUE(warnings.isEmpty());
}

TEST_F(DevelopGroups, a_voltage_of_exactly_20_volts_takes_three_bytes)
{
    dialog.setTexts(1, repeated("0", 16));
    dialog.setText(2, QStringLiteral("20"));
    EXPECT_EQ(sentBy("pushButton_set_voltage"), frame("02", "8000"
                                                            "010000" +
                                                                QByteArray("8000").repeated(14)));
}

TEST_F(DevelopGroups, a_voltage_below_minus_20_volts_loses_its_sign)
{
    dialog.setTexts(1, repeated("0", 16));
    dialog.setText(16, QStringLiteral("-30"));
    EXPECT_EQ(sentBy("pushButton_set_voltage"), frame("02", QByteArray("8000").repeated(15) + "4000"));
}

TEST_F(DevelopGroups, voltages_that_do_not_parse_are_left_out_and_the_later_ones_move_up)
{
    dialog.setTexts(1, repeated("0", 16));
    dialog.setText(1, QStringLiteral("15"));
    dialog.setText(8, QString());
    dialog.setText(9, QStringLiteral("1,5"));
    dialog.setText(10, QStringLiteral("-15"));
    EXPECT_EQ(sentBy("pushButton_set_voltage"),
              frame("02", "E000" + QByteArray("8000").repeated(6) + "2000" + QByteArray("8000").repeated(6)));
    EXPECT_EQ(warnings, QStringList({invalid(8), invalid(9)}));
}

TEST_F(DevelopGroups, with_no_voltage_at_all_the_bare_head_and_a_checksum_of_0_go_out)
{
    EXPECT_EQ(sentBy("pushButton_set_voltage"), "FFAA01020DEB00");
    EXPECT_EQ(warnings, invalid(1, 16));
}

TEST_F(DevelopGroups, voltages_far_outside_the_range_are_sent_all_the_same)
{
    dialog.setTexts(1, {"1e300", "-1e300", "inf", "nan"});
    EXPECT_EQ(sentBy("pushButton_set_voltage"), frame("02", "7FFFFFFF"
                                                            "80000000"
                                                            "7FFFFFFF"
                                                            "0000"));
    EXPECT_EQ(warnings, invalid(5, 12));
}

TEST_F(DevelopGroups, the_default_timing_goes_out_with_the_two_integration_times_at_80_percent)
{
    EXPECT_EQ(sentBy("pushButton_set_time"), frame("10", "096C7510"
                                                         "000003E8"
                                                         "000003E8"
                                                         "000959C0"
                                                         "0004ACE0"
                                                         "000003E8"
                                                         "000003E8"
                                                         "00024AB8"
                                                         "00000BB8"
                                                         "000003E8"
                                                         "000003E8"
                                                         "00008214"
                                                         "00001388"
                                                         "000003E8"
                                                         "0000012C"
                                                         "000033E0"
                                                         "00004010"
                                                         "000043D0"));
    EXPECT_TRUE(warnings.isEmpty());
    EXPECT_EQ(dialog.text(32), QStringLiteral("16600"));
    EXPECT_EQ(dialog.text(34), QStringLiteral("21700"));
}

TEST_F(DevelopGroups, timing_values_that_do_not_parse_are_left_out)
{
    dialog.setTexts(17, repeated("1", 18));
    dialog.setText(20, QStringLiteral("12.5"));
    dialog.setText(25, QStringLiteral("0x10"));
    dialog.setText(32, QString());
    dialog.setText(34, QStringLiteral("2147483648"));
    EXPECT_EQ(sentBy("pushButton_set_time"), frame("10", QByteArray("00000001").repeated(14)));
    EXPECT_EQ(warnings, QStringList({invalid(20), invalid(25), invalid(32), invalid(34)}));
}

TEST_F(DevelopGroups, an_integration_time_is_still_scaled_when_a_field_before_it_is_left_out)
{
    dialog.setTexts(17, repeated("100", 18));
    dialog.setText(31, QString());
    EXPECT_EQ(sentBy("pushButton_set_time"), frame("10", QByteArray("00000064").repeated(14) + "00000050"
                                                                                               "00000064"
                                                                                               "00000050"));
}

TEST_F(DevelopGroups, odd_integration_times_are_truncated)
{
    dialog.setTexts(17, repeated("0", 18));
    dialog.setText(32, QStringLiteral("13"));    // 10.4
    dialog.setText(34, QStringLiteral("16601")); // 13280.8
    EXPECT_EQ(sentBy("pushButton_set_time"), frame("10", QByteArray("00000000").repeated(15) + "0000000A"
                                                                                               "00000000"
                                                                                               "000033E0"));
}

TEST_F(DevelopGroups, negative_timing_values_lose_their_sign)
{
    dialog.setTexts(17, repeated("0", 18));
    dialog.setText(17, QStringLiteral("-4000"));
    dialog.setText(18, QStringLiteral("-2147483648"));
    dialog.setText(33, QStringLiteral("-1"));
    EXPECT_EQ(sentBy("pushButton_set_time"), frame("10", "00000FA0"
                                                         "80000000" +
                                                             QByteArray("00000000").repeated(14) +
                                                             "00000001"
                                                             "00000000"));
}

TEST_F(DevelopGroups, with_no_timing_at_all_the_bare_head_and_a_checksum_of_0_go_out)
{
    dialog.setTexts(17, repeated("", 18));
    EXPECT_EQ(sentBy("pushButton_set_time"), "FFAA01100DEB00");
    EXPECT_EQ(warnings, invalid(17, 18));
}

TEST_F(DevelopGroups, thirty_two_eeprom_words_go_out_in_the_order_of_their_fields)
{
    QByteArray payload;
    for (int number = 35; number <= 66; ++number) {
        const int word = number * 0x01020304;
        dialog.setText(number, QString::number(word));
        payload += QByteArray::number(word, 16).rightJustified(8, '0').toUpper();
    }
    EXPECT_EQ(sentBy("pushButton_send_eep"), frame("EE", payload));
}

TEST_F(DevelopGroups, eeprom_words_of_the_upper_half_are_formatted_as_signed_numbers)
{
    dialog.setTexts(35, {"2147483647", "2147483648", "4294967295"});
    EXPECT_EQ(sentBy("pushButton_send_eep"), frame("EE", "7FFFFFFF"
                                                         "80000000"
                                                         "00000001"));
    EXPECT_EQ(warnings, invalid(38, 29));
}

TEST_F(DevelopGroups, eeprom_words_that_do_not_parse_are_left_out)
{
    dialog.setTexts(35, repeated("2", 32));
    dialog.setText(40, QStringLiteral("-1"));
    dialog.setText(50, QStringLiteral("4294967296"));
    dialog.setText(51, QStringLiteral("FF"));
    dialog.setText(66, QStringLiteral("7"));
    EXPECT_EQ(sentBy("pushButton_send_eep"), frame("EE", QByteArray("00000002").repeated(28) + "00000007"));
    EXPECT_EQ(warnings, QStringList({invalid(40), invalid(50), invalid(51)}));
}

TEST_F(DevelopGroups, with_no_eeprom_word_at_all_the_bare_head_and_a_checksum_of_0_go_out)
{
    EXPECT_EQ(sentBy("pushButton_send_eep"), "FFAA01EE0DEB00");
    EXPECT_EQ(warnings, invalid(35, 32));
}

TEST_F(DevelopGroups, a_field_that_is_not_there_is_passed_over_in_silence)
{
    dialog.setTexts(1, repeated("0", 16));
    delete dialog.field(3);
    EXPECT_EQ(sentBy("pushButton_set_voltage"), frame("02", QByteArray("8000").repeated(15)));
    EXPECT_TRUE(warnings.isEmpty());
    dialog.window().findChild<QLabel *>(QStringLiteral("label_3"))->setBuddy(nullptr);
}

TEST_F(DevelopGroups, blanks_around_a_number_do_not_matter)
{
    dialog.setTexts(17, repeated(" 5 ", 18));
    EXPECT_EQ(sentBy("pushButton_set_time"), frame("10", QByteArray("00000005").repeated(15) + "00000004"
                                                                                               "00000005"
                                                                                               "00000004"));
}
