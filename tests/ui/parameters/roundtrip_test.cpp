// The engineering dialog, opened from the window, and the virtual detector.

#include "tests/ui/parameters/parameterwindow.h"

using namespace DialogFields;

namespace {

// Multiples of 0.625 V are whole codes: they are shown as they were sent.
QStringList voltages()
{
    QStringList texts;
    for (int i = 0; i < 16; ++i)
        texts << QString::number(-20.0 + 2.5 * i, 'f', 3);
    return texts;
}

// Multiples of five: the integration times come back as they were typed.
QStringList timings()
{
    QStringList texts;
    for (int i = 0; i < 18; ++i)
        texts << QString::number(100000005 - 5 * i * i);
    return texts;
}

QStringList words()
{
    QStringList texts{"2147483647", "0"};
    while (texts.size() < 32)
        texts << QString::number(1000003 * texts.size());
    return texts;
}

class ParameterRoundTrip : public ParameterWindow
{
protected:
    static void fill(const developwindow &dialog)
    {
        choose(dialog, {2, 1, 1, 4});
        getChild<QRadioButton>(dialog, "radioButton_256")->click();
        type(dialog, 1, voltages());
        type(dialog, 17, timings());
        type(dialog, 35, words());
    }
    static void expectFilled(const developwindow &dialog)
    {
        EXPECT_EQ(chosen(dialog), QStringList({"A+B", "16 bit", "on", "10"}));
        EXPECT_TRUE(getChild<QRadioButton>(dialog, "radioButton_256")->isChecked());
        EXPECT_EQ(shown(dialog, 1, 16), voltages());
        EXPECT_EQ(shown(dialog, 17, 18), timings());
        EXPECT_EQ(shown(dialog, 35, 32), words());
    }
    static void fillWithOther(const developwindow &dialog)
    {
        choose(dialog, {0, 0, 0, 0});
        getChild<QRadioButton>(dialog, "radioButton_1k")->click();
        type(dialog, 1, QStringList(66, "7"));
    }
};

} // namespace

TEST_F(ParameterRoundTrip, what_is_set_in_the_dialog_is_there_when_it_opens_again_and_when_it_is_read_back)
{
    openConnected();
    inDialog([](const developwindow &dialog) {
        fill(dialog);
        for (const char *name : {"pushButton_set_adc", "pushButton_set_mode", "pushButton_set_voltage",
                                 "pushButton_set_time", "pushButton_send_eep"})
            press(dialog, name);
    });
    inDialog([](const developwindow &dialog) {
        expectFilled(dialog);
        fillWithOther(dialog);
        press(dialog, "pushButton_parm_readback");
        EXPECT_EQ(field(dialog, 35)->text(), "7");
        press(dialog, "pushButton_eep_readback");
        expectFilled(dialog);
    });
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(ParameterRoundTrip, the_fields_outlive_the_window)
{
    openConnected();
    inDialog([](const developwindow &dialog) { fill(dialog); });
    window.reset();
    window = std::make_unique<mainwindow>();
    window->show();
    inDialog([](const developwindow &dialog) { expectFilled(dialog); });
}

TEST_F(ParameterRoundTrip, an_integration_time_that_is_no_multiple_of_five_comes_back_by_one_or_two_less)
{
    openConnected();
    inDialog([](const developwindow &dialog) {
        type(dialog, 32, {"16601", "15400", "21703"});
        press(dialog, "pushButton_set_time");
        press(dialog, "pushButton_parm_readback");
        EXPECT_EQ(shown(dialog, 32, 3), QStringList({"16600", "15400", "21702"}));
    });
}

TEST_F(ParameterRoundTrip, only_what_was_written_to_the_eeprom_comes_back_after_it_was_overwritten)
{
    openConnected();
    inDialog([](const developwindow &dialog) {
        const auto readBack = [&dialog] {
            press(dialog, "pushButton_eep_readback");
            return shown(dialog, 35, 32);
        };
        type(dialog, 35, words());
        press(dialog, "pushButton_send_eep");
        press(dialog, "pushButton_write_eep");
        press(dialog, "pushButton_init_eep");
        EXPECT_EQ(readBack(), QStringList(32, "0"));
        type(dialog, 35, QStringList(32, "5"));
        press(dialog, "pushButton_send_eep");
        EXPECT_EQ(readBack(), QStringList(32, "5"));
        press(dialog, "pushButton_read_eep");
        EXPECT_EQ(readBack(), words());
    });
}

TEST_F(ParameterRoundTrip, a_skipped_field_moves_the_later_ones_up_in_the_detector)
{
    openConnected();
    inDialog([](const developwindow &dialog) {
        type(dialog, 1, QStringList(16, "-10"));
        press(dialog, "pushButton_set_voltage");
        type(dialog, 1, QStringList{"1.25", "oops", "2.5", "3.75", "5"} + QStringList(11, "0"));
        press(dialog, "pushButton_set_voltage");
        press(dialog, "pushButton_parm_readback");
        EXPECT_EQ(shown(dialog, 1, 4), QStringList({"1.250", "2.500", "3.750", "5.000"}));
        EXPECT_EQ(field(dialog, 16)->text(), "-10.000") << "was not sent: as it was";
    });
}

TEST_F(ParameterRoundTrip, the_calculated_timing_is_sent_and_sets_the_pace)
{
    openConnected("Pacing=timing\n");
    inDialog([](const developwindow &dialog) {
        type(dialog, 18, {"100000000", "200000000"}); // frame_head, frame_tail
        press(dialog, "pushButton_cal_time");
        EXPECT_EQ(field(dialog, 17)->text(), "458102400");
        press(dialog, "pushButton_set_time");
    });
    start();
    waitForPictures(2);
    const double rate = framesPerSecond();
    EXPECT_LT(rate, 1.1 * 2.183);
    EXPECT_GT(rate, 0.2 * 2.183); // a busy machine may miss frames, not by this much
    stop();
}
