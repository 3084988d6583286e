// The parameter read-back.

#include "tests/ui/develop/linkeddialog.h"

namespace {

/// What a device would answer: 256 bytes.
struct Reply
{
    QByteArray mode = "00";
    QByteArray adc = "01B6";
    QByteArray voltages = QByteArray("8000").repeated(16);
    QByteArray timing = QByteArray("00000000").repeated(18);

    [[nodiscard]] QByteArray bytes() const
    {
        return hex((mode + adc + voltages + timing).leftJustified(512, 'F'));
    }
};

class DevelopParameters : public LinkedDialog
{
protected:
    void readBack(const Reply &reply)
    {
        replyWith(reply.bytes());
        sentBy("pushButton_parm_readback");
    }
};

} // namespace

TEST_F(DevelopParameters, the_button_asks_for_256_bytes)
{
    replyWith(Reply().bytes());
    EXPECT_EQ(sentBy("pushButton_parm_readback"), "FFAA02000DEB");
    EXPECT_EQ(fake.waiting(), 0);
}

TEST_F(DevelopParameters, mode_0_is_the_full_array_and_everything_else_the_small_one)
{
    readBack({.mode = "10"});
    EXPECT_TRUE(dialog.radio("radioButton_256")->isChecked());
    readBack({.mode = "00"});
    EXPECT_TRUE(dialog.radio("radioButton_1k")->isChecked());
    readBack({.mode = "01"});
    EXPECT_TRUE(dialog.radio("radioButton_256")->isChecked());
}

TEST_F(DevelopParameters, the_adc_word_sets_the_four_lists)
{
    const QList<std::pair<QByteArray, QStringList>> words{
        {"01B6", {"A only", "20 bit", "off", "25"}}, {"00B6", {"A/B", "20 bit", "off", "25"}},
        {"03B6", {"A+B", "20 bit", "off", "25"}},    {"07B6", {"(A+B)/2", "20 bit", "off", "25"}},
        {"0749", {"(A+B)/2", "16 bit", "on", "7"}},  {"0100", {"A only", "16 bit", "off", "4"}},
        {"F9B6", {"A only", "20 bit", "off", "25"}},
    };
    for (const auto &[word, expected] : words) {
        readBack({.adc = word});
        EXPECT_EQ(DialogFields::chosen(dialog.window()), expected) << word.constData();
    }
}

TEST_F(DevelopParameters, what_is_read_back_is_sent_as_the_same_word)
{
    for (int operation = 0; operation < 4; ++operation) {
        for (int range = 0; range < 7; ++range) {
            dialog.list("comboBox_ope")->setCurrentIndex(operation);
            dialog.list("comboBox_pcrange")->setCurrentIndex(range);
            replyWith(hex("FFBB01010DEB"));
            const QByteArray sent = sentBy("pushButton_set_adc");
            readBack({.adc = sent.mid(12, 4)});
            replyWith(hex("FFBB01010DEB"));
            EXPECT_EQ(sentBy("pushButton_set_adc"), sent);
        }
    }
}

TEST_F(DevelopParameters, the_voltages_are_shown_with_three_decimals)
{
    readBack({.voltages = QByteArray("0000"
                                     "4000"
                                     "8000"
                                     "E000"
                                     "FFFF"
                                     "8999") +
                          QByteArray("8001").repeated(10)});
    EXPECT_EQ(dialog.texts(1, 7),
              QStringList({"-20.000", "-10.000", "0.000", "15.000", "19.999", "1.500", "0.001"}));
    EXPECT_EQ(dialog.text(16), QStringLiteral("0.001"));
}

TEST_F(DevelopParameters, the_timing_is_shown_in_decimal_with_the_integration_times_at_their_full_value)
{
    readBack({.timing = QByteArray("096C7510") + QByteArray("000003E8").repeated(14) +
                        "000033E0"
                        "00004010"
                        "000043D0"});
    EXPECT_EQ(dialog.texts(17, 18), QStringList({"158102800"}) + QStringList(14, QStringLiteral("1000")) +
                                        QStringList({"16600", "16400", "21700"}));
}

TEST_F(DevelopParameters, a_timing_word_of_80000000_or_above_is_shown_as_0)
{
    readBack({.timing = QByteArray("7FFFFFFF"
                                   "80000000"
                                   "FFFFFFFF") +
                        QByteArray("00000000").repeated(12) +
                        "80000000"
                        "00000000"
                        "FFFFFFFF"});
    EXPECT_EQ(dialog.texts(17, 3), QStringList({"2147483647", "0", "0"}));
    EXPECT_EQ(dialog.text(32), QStringLiteral("0"));
    EXPECT_EQ(dialog.text(34), QStringLiteral("0"));
}

TEST_F(DevelopParameters, an_odd_integration_time_is_truncated)
{
    readBack({.timing = QByteArray("00000000").repeated(15) + "00000001"
                                                              "00000000"
                                                              "00000003"});
    EXPECT_EQ(dialog.text(32), QStringLiteral("1"));
    EXPECT_EQ(dialog.text(34), QStringLiteral("3"));
}

TEST_F(DevelopParameters, every_decoded_value_is_traced)
{
    const DebugOutput debug;
    readBack({.mode = "10",
              .adc = "01B6",
              .voltages = QByteArray("8999") + QByteArray("8000").repeated(15),
              .timing = QByteArray("00000000").repeated(17) + "000043D0"});
    QStringList expected{QStringLiteral("第一个参数 (1 字节):16"), QStringLiteral("第二个参数 (2 字节):438"),
                         QStringLiteral("bin = 110110110"), QStringLiteral("电压参数1(2 字节):35225")};
    for (int number = 2; number <= 16; ++number)
        expected << QStringLiteral("电压参数%1(2 字节):32768").arg(number);
    for (int number = 17; number <= 33; ++number)
        expected << QStringLiteral("时序参数%1(4 字节):0").arg(number);
    expected << QStringLiteral("时序参数34(4 字节):17360");
    QStringList traced = debug.messages();
    traced.removeIf([](const QString &line) { return line.startsWith(QStringLiteral("串口")); });
    EXPECT_EQ(traced, expected);
}

TEST_F(DevelopParameters, a_short_reply_leaves_everything_as_it_is)
{
    const DebugOutput debug;
    const QStringList before = dialog.texts(1, 66);
    Reply reply{.mode = "10", .adc = "0749"};
    replyWithWrongLength(reply.bytes().left(255));
    sentBy("pushButton_parm_readback");
    EXPECT_TRUE(debug.messages().contains(QStringLiteral("接收到的数据长度不足 256 字节，实际长度为:510")));
    EXPECT_EQ(dialog.texts(1, 66), before);
    EXPECT_TRUE(dialog.radio("radioButton_1k")->isChecked());
    EXPECT_EQ(DialogFields::chosen(dialog.window()), QStringList({"A only", "20 bit", "off", "25"}));
}

TEST_F(DevelopParameters, an_empty_reply_is_told_with_its_length)
{
    const DebugOutput debug;
    fake.setReadResult(d2xx::Status::IoError);
    sentBy("pushButton_parm_readback");
    EXPECT_TRUE(debug.messages().contains(QStringLiteral("接收到的数据长度不足 256 字节，实际长度为:0")));
}

TEST_F(DevelopParameters, a_long_reply_is_accepted_and_its_leading_bytes_count)
{
    replyWithWrongLength(Reply{.mode = "10"}.bytes() + QByteArray(5, '\x22'));
    sentBy("pushButton_parm_readback");
    EXPECT_TRUE(dialog.radio("radioButton_256")->isChecked());
    EXPECT_EQ(dialog.text(16), QStringLiteral("0.000"));
}

TEST_F(DevelopParameters, a_reply_in_two_pieces_is_put_together)
{
    const QByteArray reply = Reply{.mode = "10"}.bytes();
    replyInPieces(reply.left(100), reply.mid(100));
    sentBy("pushButton_parm_readback");
    EXPECT_TRUE(dialog.radio("radioButton_256")->isChecked());
}

TEST_F(DevelopParameters, the_eeprom_fields_are_not_touched)
{
    dialog.setText(35, QStringLiteral("mine"));
    readBack({});
    EXPECT_EQ(dialog.text(35), QStringLiteral("mine"));
    EXPECT_EQ(dialog.text(66), QString());
}
