#include "tests/ui/develop/linkeddialog.h"

#include "ui/develop/fieldmarks.h"

class DevelopFieldMarks : public LinkedDialog
{
protected:
    [[nodiscard]] bool isMarked(int number) { return dialog.field(number)->property("unsendable").toBool(); }

    /// The colour of a field's ground beside its text.
    [[nodiscard]] QColor ground(int number)
    {
        QLineEdit *field = dialog.field(number);
        return field->grab().toImage().pixelColor(field->width() - 6, field->height() / 2);
    }
};

TEST_F(DevelopFieldMarks, what_goes_over_the_cable_as_it_stands_has_no_problem)
{
    for (const char *volts : {"0", "-20", "19.9993", "1e1", "-15.5"})
        EXPECT_EQ(FieldMarks::problem(1, volts), QString()) << volts;
    for (const char *time : {"0", "-2147483648", "2147483647"})
        EXPECT_EQ(FieldMarks::problem(17, time), QString()) << time;
    for (const char *word : {"0", "2147483647"})
        EXPECT_EQ(FieldMarks::problem(35, word), QString()) << word;
}

TEST_F(DevelopFieldMarks, what_does_not_has_one)
{
    for (const char *volts : {"volt", "1,5", "20", "-20.001", "1e9", "nan", "inf"})
        EXPECT_NE(FieldMarks::problem(16, volts), QString()) << volts;
    for (const char *time : {"1.5", "2147483648", "-2147483649", "soon"})
        EXPECT_NE(FieldMarks::problem(34, time), QString()) << time;
    for (const char *word : {"-1", "4294967296", "0x10", "2147483648"})
        EXPECT_NE(FieldMarks::problem(66, word), QString()) << word;
    EXPECT_TRUE(FieldMarks::problem(35, "2147483648").contains("sent as 80000000"));
}

TEST_F(DevelopFieldMarks, a_field_that_cannot_be_sent_looks_so_and_its_tool_tip_says_why)
{
    dialog.window().show();
    for (const int number : {1, 16, 17, 34, 35, 66}) {
        dialog.setText(number, "1");
        EXPECT_FALSE(isMarked(number)) << number;
        const QColor before = ground(number);
        dialog.setText(number, "one");
        EXPECT_TRUE(isMarked(number)) << number;
        EXPECT_NE(ground(number), before) << number;
        EXPECT_TRUE(dialog.field(number)->toolTip().contains("Not a ")) << number;
        dialog.setText(number, "1");
        EXPECT_EQ(ground(number), before) << number;
        EXPECT_FALSE(dialog.field(number)->toolTip().contains("Not a ")) << number;
    }
}

TEST_F(DevelopFieldMarks, what_the_settings_held_is_marked_when_the_dialog_opens)
{
    dialog.close();
    dialog.settings.setValue("lineEdit_3", "three");
    dialog.open();
    EXPECT_TRUE(isMarked(3));
    EXPECT_FALSE(isMarked(17));
}

TEST_F(DevelopFieldMarks, an_empty_field_says_that_it_is_left_out)
{
    dialog.setText(40, {});
    EXPECT_FALSE(isMarked(40));
    EXPECT_EQ(dialog.field(40)->placeholderText(), "left out");
    EXPECT_TRUE(dialog.field(40)->toolTip().contains("Empty"));
}

TEST_F(DevelopFieldMarks, the_number_that_a_warning_tells_is_found_at_its_field)
{
    for (int number = 1; number <= 66; ++number)
        EXPECT_EQ(dialog.field(number)->toolTip().section(u'\n', 0, 0),
                  QStringLiteral("Field %1").arg(number));
}
