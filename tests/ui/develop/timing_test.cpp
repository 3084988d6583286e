#include "tests/support/debugoutput.h"
#include "tests/ui/develop/dialog.h"

namespace {

class DevelopTiming : public testing::Test
{
protected:
    DevelopTiming() { dialog.open(); }

    Dialog dialog;
};

} // namespace

TEST_F(DevelopTiming, the_defaults_stay_but_for_the_frame_period)
{
    const QStringList before = dialog.texts(18, 17);
    dialog.click("pushButton_cal_time");
    EXPECT_EQ(dialog.text(17), QStringLiteral("158104400"));
    EXPECT_EQ(dialog.texts(18, 17), before);
}

TEST_F(DevelopTiming, each_result_lands_in_its_field_and_the_inputs_stay_as_typed)
{
    dialog.setText(18, QStringLiteral("1"));       // frame_head
    dialog.setText(19, QStringLiteral("20"));      // frame_tail
    dialog.setText(22, QStringLiteral("300"));     // out_gap
    dialog.setText(23, QStringLiteral(" 4000 "));  // outp_ck_gap
    dialog.setText(27, QStringLiteral("50000"));   // ckp_mux_gap
    dialog.setText(31, QStringLiteral("6"));       // adc_start_delay
    dialog.setText(32, QStringLiteral("700000"));  // adc_intA
    dialog.setText(34, QStringLiteral("8000000")); // adc_intB
    dialog.click("pushButton_cal_time");
    // frame_period wraps: 139200000 * 258 + 21 does not fit.
    const QStringList expected{
        QStringLiteral("1553861653"), QStringLiteral("1"),        QStringLiteral("20"),
        QStringLiteral("139200000"),  QStringLiteral("69600000"), QStringLiteral("300"),
        QStringLiteral(" 4000 "),     QStringLiteral("34791700"), QStringLiteral("8300"),
        QStringLiteral("4000"),       QStringLiteral("50000"),    QStringLiteral("8591700"),
        QStringLiteral("108300"),     QStringLiteral("50000"),    QStringLiteral("6"),
        QStringLiteral("700000"),     QStringLiteral("7891694"),  QStringLiteral("8000000")};
    EXPECT_EQ(dialog.texts(17, 18), expected);
}

TEST_F(DevelopTiming, an_empty_or_unreadable_input_counts_as_0_without_a_warning)
{
    const DebugOutput debug;
    for (const int number : {18, 19, 22, 23, 27, 31, 32})
        dialog.setText(number, QString());
    dialog.setText(34, QStringLiteral("21700 ns"));
    dialog.click("pushButton_cal_time");
    for (const int number : {17, 20, 21, 24, 25, 26, 28, 29, 30, 33})
        EXPECT_EQ(dialog.text(number), QStringLiteral("0")) << number;
    EXPECT_EQ(dialog.text(18), QString());
    EXPECT_EQ(dialog.text(34), QStringLiteral("21700 ns"));
    EXPECT_TRUE(debug.messages().isEmpty()) << qPrintable(debug.messages().join(u'\n'));
}

TEST_F(DevelopTiming, negative_results_are_written_as_negative_numbers)
{
    dialog.setText(32, QStringLiteral("0"));
    dialog.setText(34, QStringLiteral("1000"));
    dialog.click("pushButton_cal_time");
    EXPECT_EQ(dialog.text(28), QStringLiteral("-4000"));
    EXPECT_EQ(dialog.text(33), QStringLiteral("-4300"));
}

TEST_F(DevelopTiming, what_was_in_a_computed_field_plays_no_part)
{
    for (const int number : {17, 20, 21, 24, 25, 26, 28, 29, 30, 33})
        dialog.setText(number, QStringLiteral("7"));
    dialog.click("pushButton_cal_time");
    EXPECT_EQ(dialog.text(17), QStringLiteral("158104400"));
    EXPECT_EQ(dialog.text(33), QStringLiteral("16400"));
}

TEST_F(DevelopTiming, a_number_beyond_32_bits_counts_as_0)
{
    dialog.setText(22, QStringLiteral("2147483648"));
    dialog.click("pushButton_cal_time");
    EXPECT_EQ(dialog.text(25), QStringLiteral("2000"));
}

TEST_F(DevelopTiming, the_largest_inputs_wrap)
{
    dialog.setText(23, QStringLiteral("2147483647"));
    dialog.setText(22, QStringLiteral("0"));
    dialog.click("pushButton_cal_time");
    EXPECT_EQ(dialog.text(25), QStringLiteral("-2"));
    EXPECT_EQ(dialog.text(26), QStringLiteral("2147483647"));
}

TEST_F(DevelopTiming, the_shaded_fields_are_those_that_are_computed)
{
    for (int number = 17; number <= 34; ++number) {
        const bool computed = QList<int>{17, 20, 21, 24, 25, 26, 28, 29, 30, 33}.contains(number);
        EXPECT_EQ(dialog.field(number)->property("computed").toBool(), computed) << number;
    }
}
