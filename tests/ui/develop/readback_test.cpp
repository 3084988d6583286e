// Version and EEPROM read-backs.

#include "tests/ui/develop/linkeddialog.h"

#include <QElapsedTimer>

namespace {

class DevelopReadback : public LinkedDialog
{
protected:
    /// A reply of 129 bytes: these words, then zeros.
    static QByteArray eeprom(const QByteArray &wordsHex) { return hex(wordsHex.leftJustified(258, '0')); }
};

} // namespace

TEST_F(DevelopReadback, the_version_button_asks_and_shows_five_numbers)
{
    replyWith(hex("0102034599"));
    EXPECT_EQ(sentBy("pushButton_ver_readback"), "FFAA02FA0DEB");
    EXPECT_EQ(dialog.version(), QStringLiteral("1.2.3.4.5"));
}

TEST_F(DevelopReadback, the_numbers_of_the_version_are_decimal_and_not_padded)
{
    replyWith(hex("00FF10A0FF"));
    sentBy("pushButton_ver_readback");
    EXPECT_EQ(dialog.version(), QStringLiteral("0.255.16.10.0"));
}

TEST_F(DevelopReadback, the_version_reply_is_traced)
{
    const DebugOutput debug;
    replyWith(hex("0102034599"));
    sentBy("pushButton_ver_readback");
    EXPECT_TRUE(debug.messages().contains(QStringLiteral("接收到的数据:0102034599")));
}

TEST_F(DevelopReadback, a_version_reply_in_two_pieces_is_put_together)
{
    replyInPieces(hex("010203"), hex("4599"));
    sentBy("pushButton_ver_readback");
    EXPECT_EQ(dialog.version(), QStringLiteral("1.2.3.4.5"));
}

TEST_F(DevelopReadback, a_version_reply_that_is_too_long_is_refused_like_one_that_is_too_short)
{
    for (const auto &[reply, length] :
         {std::pair(hex("01020345"), 8), std::pair(hex("010203459900"), 12), std::pair(hex("00"), 2)}) {
        fake.setReadResult(d2xx::Status::Ok);
        const DebugOutput debug;
        replyWithWrongLength(reply);
        sentBy("pushButton_ver_readback");
        EXPECT_TRUE(debug.messages().contains(
            QStringLiteral("接收到的数据长度不符合预期，实际长度为:%1").arg(length)));
        EXPECT_EQ(dialog.version(), QStringLiteral("00.00.00.00"));
    }
}

TEST_F(DevelopReadback, what_an_earlier_command_left_behind_spoils_the_reply)
{
    replyWithWrongLength(hex("FFBB03E00DEB") + hex("0102034599"));
    const DebugOutput debug;
    sentBy("pushButton_ver_readback");
    EXPECT_TRUE(debug.messages().contains(QStringLiteral("接收到的数据长度不符合预期，实际长度为:22")));
    EXPECT_EQ(dialog.version(), QStringLiteral("00.00.00.00"));
}

TEST_F(DevelopReadback, a_silent_device_is_given_up_after_five_seconds)
{
    fake.setOnWrite({});
    const DebugOutput debug;
    QElapsedTimer timer;
    timer.start();
    sentBy("pushButton_ver_readback");
    EXPECT_GE(timer.elapsed(), 5000);
    EXPECT_LT(timer.elapsed(), 9000);
    EXPECT_TRUE(debug.messages().contains(QStringLiteral("接收到的数据:")));
    EXPECT_TRUE(debug.messages().contains(QStringLiteral("接收到的数据长度不符合预期，实际长度为:0")));
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("wait_for_read 接收数据超时")));
}

TEST_F(DevelopReadback, the_eeprom_button_asks_and_shows_32_words)
{
    QByteArray words;
    QStringList expected;
    for (int i = 0; i < 32; ++i) {
        words += QByteArray::number(i * 65537 + 16, 16).rightJustified(8, '0');
        expected << QString::number(i * 65537 + 16);
    }
    replyWith(eeprom(words));
    EXPECT_EQ(sentBy("pushButton_eep_readback"), "FFAA02EE0DEB");
    EXPECT_EQ(dialog.texts(35, 32), expected);
}

TEST_F(DevelopReadback, the_last_byte_of_the_eeprom_reply_means_nothing)
{
    QByteArray reply(129, '\0');
    reply[128] = '\x7F';
    replyWith(reply);
    sentBy("pushButton_eep_readback");
    EXPECT_EQ(dialog.texts(35, 32), QStringList(32, QStringLiteral("0")));
}

TEST_F(DevelopReadback, an_eeprom_word_of_80000000_or_above_is_shown_as_0)
{
    replyWith(eeprom("7FFFFFFF80000000FFFFFFFF00000001"));
    sentBy("pushButton_eep_readback");
    EXPECT_EQ(dialog.texts(35, 5), QStringList({"2147483647", "0", "0", "1", "0"}));
}

TEST_F(DevelopReadback, the_eeprom_reply_is_traced)
{
    const DebugOutput debug;
    replyWith(eeprom("0000ABCD"));
    sentBy("pushButton_eep_readback");
    EXPECT_TRUE(debug.messages().contains(QStringLiteral("接收到的数据:0000ABCD") + QString(250, u'0')));
}

TEST_F(DevelopReadback, a_short_eeprom_reply_leaves_the_fields_as_they_are)
{
    const DebugOutput debug;
    dialog.setText(35, QStringLiteral("mine"));
    replyWithWrongLength(eeprom("00000001").left(128));
    sentBy("pushButton_eep_readback");
    EXPECT_TRUE(debug.messages().contains(QStringLiteral("接收到的数据长度不足 129 字节，实际长度为:256")));
    EXPECT_EQ(dialog.text(35), QStringLiteral("mine"));
    EXPECT_EQ(dialog.text(36), QString());
}

TEST_F(DevelopReadback, a_long_eeprom_reply_is_accepted_and_its_leading_bytes_count)
{
    replyWithWrongLength(eeprom("00000001") + QByteArray(3, '\x11'));
    sentBy("pushButton_eep_readback");
    EXPECT_EQ(dialog.texts(35, 32), QStringList({"1"}) + QStringList(31, QStringLiteral("0")));
}

TEST_F(DevelopReadback, no_read_back_touches_the_fields_of_the_others)
{
    const QStringList before = dialog.texts(1, 34);
    replyWith(eeprom("00000001"));
    sentBy("pushButton_eep_readback");
    EXPECT_EQ(dialog.texts(1, 34), before);
}
