#include "device/conversations.h"

#include "tests/support/linkfixture.h"

#include <QElapsedTimer>

namespace {

/// The open device of a hand-driven driver library that answers what it is told to, and nothing else.
class Conversations : public LinkFixture
{
protected:
    Conversations() { link().openDevice(QStringLiteral("QV1K")); }

    [[nodiscard]] QByteArray written() const { return fake.writtenHex(); }
};

} // namespace

TEST_F(Conversations, the_battery_level_is_the_first_byte_of_the_answer)
{
    fake.answer(hex("FFAA02100DEB"), hex("570210000DEB"));
    EXPECT_EQ(Conversation::batteryLevel(link()), 87);
    EXPECT_EQ(written(), "FFAA02100DEB");
}

TEST_F(Conversations, without_an_answer_there_is_no_battery_level_after_half_a_second)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(Conversation::batteryLevel(link()), std::nullopt);
    EXPECT_GE(timer.elapsed(), 500);
    EXPECT_LT(timer.elapsed(), 1900);
}

TEST_F(Conversations, a_battery_level_is_read_from_an_answer_that_is_too_long)
{
    fake.answer(hex("FFAA02100DEB"), hex("130210000DEB00"));
    EXPECT_EQ(Conversation::batteryLevel(link()), 19);
}

TEST_F(Conversations, a_test_pattern_counts_as_selected_when_its_own_command_is_echoed)
{
    fake.answer(hex("FFAA03C10DEB"), hex("FFBB03C10DEB"));
    fake.answer(hex("FFAA03CF0DEB"), hex("FFBB03C00DEB"));
    EXPECT_TRUE(Conversation::selectTestPattern(link(), 2));
    EXPECT_FALSE(Conversation::selectTestPattern(link(), 5));
    EXPECT_EQ(written(), "FFAA03C10DEBFFAA03CF0DEB");
}

TEST_F(Conversations, the_detector_is_ready_when_bit_0_of_the_fifth_byte_is_set)
{
    fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03AA01EB"));
    EXPECT_TRUE(Conversation::isReady(link()));
    fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03AA02EB"));
    EXPECT_FALSE(Conversation::isReady(link()));
}

TEST_F(Conversations, a_ready_detector_is_not_waited_for)
{
    fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03AA01EB"));
    EXPECT_TRUE(Conversation::waitUntilReady(link(), [] { return false; }));
    EXPECT_EQ(written(), "FFAA03AA0DEB");
}

TEST_F(Conversations, a_busy_detector_is_asked_again_after_each_rest_until_it_is_ready)
{
    fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03AA00EB"));
    int rests = 0;
    EXPECT_TRUE(Conversation::waitUntilReady(link(), [&] {
        if (++rests == 2)
            fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03AA01EB"));
        return true;
    }));
    EXPECT_EQ(rests, 2);
    EXPECT_EQ(written(), "FFAA03AA0DEBFFAA03AA0DEBFFAA03AA0DEB");
}

TEST_F(Conversations, an_echo_that_was_left_over_says_nothing_of_readiness_and_nothing_of_the_charge)
{
    fake.push(hex("FFBB03A10DEB"));
    int rests = 0;
    EXPECT_TRUE(Conversation::waitUntilReady(link(), [&] {
        fake.push(hex("FFBB03AA00EB")); // what came behind the echo, to be dropped
        fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03AA01EB"));
        return ++rests < 3;
    }));
    EXPECT_EQ(rests, 1);
    EXPECT_EQ(fake.waiting(), 0);
    fake.push(hex("FFBB03A10DEB"));
    EXPECT_EQ(Conversation::batteryLevel(link()), std::nullopt);
}

TEST_F(Conversations, a_detector_that_always_answers_readiness_under_another_head_is_believed_the_second_time)
{
    fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03A10DEB"));
    int rests = 0;
    EXPECT_TRUE(Conversation::waitUntilReady(link(), [&] { return ++rests < 3; }));
    EXPECT_EQ(rests, 1);
}

TEST_F(Conversations, of_a_reply_that_is_nobodys_the_fifth_byte_alone_tells_readiness)
{
    fake.answer(hex("FFAA03AA0DEB"), hex("000000000100"));
    EXPECT_TRUE(Conversation::waitUntilReady(link(), [] { return false; }));
    EXPECT_TRUE(link().isSettled());
}

TEST_F(Conversations, the_wait_for_readiness_ends_at_once_when_it_is_not_to_go_on)
{
    fake.answer(hex("FFAA03AA0DEB"), hex("FFBB03AA00EB"));
    EXPECT_FALSE(Conversation::waitUntilReady(link(), [] { return false; }));
    EXPECT_EQ(written(), "FFAA03AA0DEB");
}

TEST_F(Conversations, a_start_counts_when_its_echo_stands_at_the_beginning_of_the_reply)
{
    fake.answer(hex("FFAA03A00DEB"), hex("FFBB03A00DEB"));
    EXPECT_TRUE(Conversation::start(link()));
    fake.answer(hex("FFAA03A00DEB"), hex("00FFBB03A00D"));
    EXPECT_FALSE(Conversation::start(link()));
}

TEST_F(Conversations, receiving_begins_with_the_request_for_block_0)
{
    Conversation::beginReceiving(link());
    EXPECT_EQ(written(), "FFAA00000DEB");
}

TEST_F(Conversations, the_echo_of_the_halt_is_taken_and_logged_and_nothing_is_written)
{
    fake.push(hex("FFBB03A10DEB"));
    Conversation::confirmHalt(link());
    EXPECT_EQ(written(), "");
    EXPECT_FALSE(link().mayBeStreaming());
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("下位机停止成功")));
}

TEST_F(Conversations, a_halt_that_is_not_confirmed_is_repeated_when_the_next_query_meets_silence)
{
    Conversation::confirmHalt(link());
    EXPECT_TRUE(link().mayBeStreaming());
    EXPECT_FALSE(Conversation::waitUntilReady(link(), [] { return false; }));
    EXPECT_EQ(written(), "FFAA03AA0DEBFFAA03A10DEB");
}

TEST_F(Conversations, a_command_is_sent_and_its_acknowledgement_drained_whatever_it_says)
{
    fake.answer(hex("FFAA03E00DEB"), hex("000000000000"));
    Conversation::command(link(), hex("FFAA03E00DEB"));
    EXPECT_EQ(written(), "FFAA03E00DEB");
    EXPECT_EQ(fake.waiting(), 0);
}

TEST_F(Conversations, a_download_counts_when_FFBB01_stands_anywhere_in_the_reply)
{
    const QByteArray packet = hex("FFAA01010DEB01B6B7");
    fake.answer(packet, hex("00FFBB010DEB"));
    EXPECT_TRUE(Conversation::download(link(), packet));
    fake.answer(packet, hex("0FFBB010DEB0"));
    EXPECT_TRUE(Conversation::download(link(), packet)) << "on no byte boundary";
    fake.answer(packet, hex("FFBB02010DEB"));
    EXPECT_FALSE(Conversation::download(link(), packet));
}

TEST_F(Conversations, each_read_back_asks_with_its_command_and_waits_for_its_length)
{
    const QByteArray version(5, '\x01');
    const QByteArray parameters(256, '\x02');
    const QByteArray eeprom(129, '\x03');
    fake.answer(hex("FFAA02FA0DEB"), version);
    fake.answer(hex("FFAA02000DEB"), parameters);
    fake.answer(hex("FFAA02EE0DEB"), eeprom);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(Conversation::readVersion(link()), hexText(version));
    EXPECT_EQ(Conversation::readParameters(link()), hexText(parameters));
    EXPECT_EQ(Conversation::readEeprom(link()), hexText(eeprom));
    EXPECT_LT(timer.elapsed(), 5000) << "none ran into its time-out";
}
