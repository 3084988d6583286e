// The buttons that send one fixed or one short frame.

#include "tests/ui/develop/linkeddialog.h"

#include <QElapsedTimer>
#include <QMetaObject>

namespace {

class DevelopSend : public LinkedDialog
{
};

struct Command
{
    const char *button;
    const char *slot;
    const char *frame;
};

constexpr Command commands[] = {
    {"pushButton_write_eep", "write_eep", "FFAA03E00DEB"},
    {"pushButton_read_eep", "read_eep", "FFAA03E10DEB"},
    {"pushButton_init_eep", "init_eep", "FFAA03EF0DEB"},
    {"pushButton_set_adc", "set_adc", "FFAA01010DEB01B6B7"},
    {"pushButton_set_mode", "set_mode", "FFAA01000DEB0000"},
};

} // namespace

TEST_F(DevelopSend, each_command_button_sends_its_frame)
{
    for (const Command &command : commands)
        EXPECT_EQ(sentBy(command.button), command.frame) << command.button;
}

TEST_F(DevelopSend, each_slot_can_be_called_by_its_name)
{
    for (const Command &command : commands) {
        fake.clearWritten();
        EXPECT_TRUE(QMetaObject::invokeMethod(&dialog.window(), command.slot));
        EXPECT_EQ(fake.writtenHex(), command.frame) << command.slot;
    }
}

TEST_F(DevelopSend, the_reply_is_taken_off_the_link_and_not_judged)
{
    const DebugOutput debug;
    replyWith(hex("000000000000"));
    sentBy("pushButton_set_mode");
    EXPECT_EQ(fake.waiting(), 0);
    EXPECT_TRUE(debug.messages().filter(QStringLiteral("invalid")).isEmpty());
}

TEST_F(DevelopSend, a_reply_that_comes_late_is_waited_for)
{
    replyInPieces(hex("FFBB01"), hex("000DEB"));
    sentBy("pushButton_set_mode");
    EXPECT_EQ(fake.waiting(), 0);
}

TEST_F(DevelopSend, a_silent_device_is_given_up_after_two_seconds)
{
    fake.setOnWrite({});
    QElapsedTimer timer;
    timer.start();
    sentBy("pushButton_init_eep");
    EXPECT_GE(timer.elapsed(), 2000);
    EXPECT_LT(timer.elapsed(), 4500);
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("wait_for_read 接收数据超时")));
}

TEST_F(DevelopSend, the_waiting_cursor_is_there_during_the_exchange_only)
{
    bool waiting = false;
    fake.setOnWrite([this, &waiting](const QByteArray &) {
        waiting = QGuiApplication::overrideCursor() != nullptr &&
                  QGuiApplication::overrideCursor()->shape() == Qt::WaitCursor;
        fake.push(hex("FFBB03E00DEB"));
    });
    sentBy("pushButton_write_eep");
    EXPECT_TRUE(waiting);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(DevelopSend, with_no_device_open_nothing_is_written)
{
    link().closeDevice();
    dialog.click("pushButton_set_mode");
    EXPECT_TRUE(fake.written().isEmpty());
}

TEST_F(DevelopSend, the_other_mode_is_10)
{
    dialog.radio("radioButton_256")->setChecked(true);
    EXPECT_EQ(sentBy("pushButton_set_mode"), "FFAA01000DEB1010");
}

TEST_F(DevelopSend, the_adc_word_follows_the_four_lists)
{
    struct Choice
    {
        std::array<int, 4> indexes; ///< of the lists, in their order
        const char *frame;
    };
    const Choice choices[] = {
        {{0, 0, 0, 0}, "FFAA01010DEB01B6B7"}, {{1, 0, 0, 0}, "FFAA01010DEB00B6B6"},
        {{2, 0, 0, 0}, "FFAA01010DEB03B6B9"}, {{3, 0, 0, 0}, "FFAA01010DEB07B6BD"},
        {{0, 1, 0, 0}, "FFAA01010DEB013637"}, {{0, 0, 1, 0}, "FFAA01010DEB01F6F7"},
        {{0, 0, 0, 3}, "FFAA01010DEB019B9C"}, {{0, 0, 0, 6}, "FFAA01010DEB018081"},
        {{3, 1, 1, 5}, "FFAA01010DEB074950"},
    };
    for (const Choice &choice : choices) {
        DialogFields::choose(dialog.window(), choice.indexes);
        EXPECT_EQ(sentBy("pushButton_set_adc"), choice.frame);
    }
}

TEST_F(DevelopSend, lists_with_nothing_selected_send_the_fallback_word)
{
    DialogFields::choose(dialog.window(), {-1, -1, -1, -1});
    EXPECT_EQ(sentBy("pushButton_set_adc"), "FFAA01010DEB013637");
}

TEST_F(DevelopSend, the_calculator_sends_nothing)
{
    dialog.click("pushButton_cal_time");
    EXPECT_TRUE(fake.written().isEmpty());
}
