#include "tests/ui/develop/dialog.h"

#include <QTest>

using DialogFields::fieldName;

namespace {

class DevelopStore : public testing::Test
{
protected:
    Dialog dialog;
};

} // namespace

TEST_F(DevelopStore, missing_keys_leave_the_defaults_of_the_form)
{
    dialog.open();
    EXPECT_EQ(dialog.list("comboBox_pcrange")->currentIndex(), 0);
    EXPECT_TRUE(dialog.radio("radioButton_1k")->isChecked());
    EXPECT_EQ(dialog.text(1), QString());
    EXPECT_EQ(dialog.text(17), QStringLiteral("158102800"));
    EXPECT_EQ(dialog.text(35), QString());
}

TEST_F(DevelopStore, a_text_with_commas_that_was_typed_into_the_file_is_one_text)
{
    dialog.folder.write(QStringLiteral("config.ini"), "[General]\nlineEdit_35=1,5,a\n");
    dialog.open();
    EXPECT_EQ(dialog.text(35), QStringLiteral("1,5,a"));
}

TEST_F(DevelopStore, opening_alone_stores_nothing)
{
    dialog.open();
    EXPECT_TRUE(dialog.settings.allKeys().isEmpty());
}

TEST_F(DevelopStore, closing_stores_every_key)
{
    dialog.open();
    dialog.close();
    QStringList expected{QStringLiteral("mode")};
    for (const char *name : DialogFields::lists)
        expected << QString::fromLatin1(name);
    for (int number = 1; number <= 66; ++number)
        expected << fieldName(number);
    QStringList keys = dialog.settings.allKeys();
    keys.sort();
    expected.sort();
    EXPECT_EQ(keys, expected);
}

TEST_F(DevelopStore, the_values_are_indexes_a_boolean_and_texts)
{
    dialog.open();
    dialog.list("comboBox_ope")->setCurrentIndex(3);
    dialog.radio("radioButton_256")->setChecked(true);
    dialog.setText(16, QStringLiteral(" 1.5 "));
    dialog.close();
    dialog.settings.sync();
    const QSettings file(QStringLiteral("./config.ini"), QSettings::IniFormat);
    EXPECT_EQ(file.value(QStringLiteral("comboBox_ope")).toInt(), 3);
    EXPECT_EQ(file.value(QStringLiteral("mode")), QVariant(QStringLiteral("false")));
    EXPECT_EQ(file.value(fieldName(16)).toString(), QStringLiteral(" 1.5 "));
    EXPECT_EQ(file.value(fieldName(17)).toString(), QStringLiteral("158102800"));
}

TEST_F(DevelopStore, everything_comes_back_at_the_next_opening)
{
    dialog.open();
    dialog.list("comboBox_ope")->setCurrentIndex(2);
    dialog.list("comboBox_data")->setCurrentIndex(1);
    dialog.list("comboBox_mode")->setCurrentIndex(1);
    dialog.list("comboBox_pcrange")->setCurrentIndex(6);
    dialog.radio("radioButton_256")->setChecked(true);
    for (int number = 1; number <= 66; ++number)
        dialog.setText(number, QString::number(number * 1000));
    dialog.open();
    EXPECT_EQ(dialog.list("comboBox_ope")->currentText(), QStringLiteral("A+B"));
    EXPECT_EQ(dialog.list("comboBox_data")->currentText(), QStringLiteral("16 bit"));
    EXPECT_EQ(dialog.list("comboBox_mode")->currentText(), QStringLiteral("on"));
    EXPECT_EQ(dialog.list("comboBox_pcrange")->currentText(), QStringLiteral("4"));
    EXPECT_TRUE(dialog.radio("radioButton_256")->isChecked());
    EXPECT_FALSE(dialog.radio("radioButton_1k")->isChecked());
    for (int number = 1; number <= 66; ++number)
        EXPECT_EQ(dialog.text(number), QString::number(number * 1000));
}

TEST_F(DevelopStore, it_comes_back_from_the_file_too)
{
    dialog.open();
    dialog.list("comboBox_mode")->setCurrentIndex(1);
    dialog.setText(5, QStringLiteral("12,5; \"x\" 电压"));
    dialog.setText(17, QString());
    dialog.close();
    dialog.settings.sync();
    QSettings file(QStringLiteral("./config.ini"), QSettings::IniFormat);
    const developwindow again(&file, nullptr);
    EXPECT_EQ(getChild<QComboBox>(again, "comboBox_mode")->currentIndex(), 1);
    EXPECT_TRUE(getChild<QRadioButton>(again, "radioButton_1k")->isChecked());
    EXPECT_EQ(getChild<QLineEdit>(again, "lineEdit_5")->text(), QStringLiteral("12,5; \"x\" 电压"));
    EXPECT_EQ(getChild<QLineEdit>(again, "lineEdit_17")->text(), QString()) << "an emptied field stays empty";
}

TEST_F(DevelopStore, a_key_that_is_there_is_taken_the_others_stay_at_their_defaults)
{
    dialog.settings.setValue(QStringLiteral("comboBox_pcrange"), 3);
    dialog.settings.setValue(fieldName(32), 400000);
    dialog.open();
    EXPECT_EQ(dialog.list("comboBox_pcrange")->currentText(), QStringLiteral("13"));
    EXPECT_EQ(dialog.list("comboBox_ope")->currentIndex(), 0);
    EXPECT_EQ(dialog.text(32), QStringLiteral("400000"));
    EXPECT_EQ(dialog.text(33), QStringLiteral("16400"));
}

TEST_F(DevelopStore, what_was_stored_is_overwritten_and_other_keys_are_left_alone)
{
    dialog.settings.setValue(QStringLiteral("SavePath"), QStringLiteral("/data"));
    dialog.settings.setValue(fieldName(1), QStringLiteral("3.3"));
    dialog.open();
    dialog.setText(1, QStringLiteral("-1"));
    dialog.close();
    EXPECT_EQ(dialog.settings.value(fieldName(1)).toString(), QStringLiteral("-1"));
    EXPECT_EQ(dialog.settings.value(QStringLiteral("SavePath")).toString(), QStringLiteral("/data"));
}

TEST_F(DevelopStore, a_hand_edit_of_the_file_is_shown_and_not_written_over)
{
    dialog.settings.setValue(fieldName(1), QStringLiteral("1"));
    dialog.settings.sync();
    dialog.folder.write(QStringLiteral("config.ini"), "[General]\nlineEdit_1=2.5\ncomboBox_ope=2\n");
    dialog.open();
    EXPECT_EQ(dialog.text(1), QStringLiteral("2.5"));
    dialog.close();
    dialog.settings.sync();
    EXPECT_TRUE(dialog.folder.readText(QStringLiteral("config.ini")).contains("lineEdit_1=2.5\n"));
    EXPECT_EQ(dialog.settings.value(QStringLiteral("comboBox_ope")).toInt(), 2);
}

TEST_F(DevelopStore, the_mode_key_checks_the_matching_button)
{
    dialog.settings.setValue(QStringLiteral("mode"), false);
    dialog.open();
    EXPECT_TRUE(dialog.radio("radioButton_256")->isChecked());
    dialog.close();
    dialog.settings.setValue(QStringLiteral("mode"), true);
    dialog.open();
    EXPECT_TRUE(dialog.radio("radioButton_1k")->isChecked());
}

TEST_F(DevelopStore, an_index_outside_the_list_selects_nothing_and_is_stored_as_such)
{
    dialog.settings.setValue(QStringLiteral("comboBox_ope"), 99);
    dialog.settings.setValue(QStringLiteral("comboBox_data"), QStringLiteral("rubbish"));
    dialog.open();
    EXPECT_EQ(dialog.list("comboBox_ope")->currentIndex(), -1);
    EXPECT_EQ(dialog.list("comboBox_data")->currentIndex(), 0);
    dialog.close();
    EXPECT_EQ(dialog.settings.value(QStringLiteral("comboBox_ope")).toInt(), -1);
}

TEST_F(DevelopStore, closing_the_window_alone_stores_nothing_yet)
{
    dialog.open();
    dialog.window().show();
    QTest::keyClick(&dialog.window(), Qt::Key_Escape);
    EXPECT_FALSE(dialog.window().isVisible());
    EXPECT_TRUE(dialog.settings.allKeys().isEmpty());
}

TEST_F(DevelopStore, the_version_label_is_not_kept)
{
    dialog.open();
    getChild<QLabel>(dialog.window(), "label_version")->setText(QStringLiteral("1.2.3.4.5"));
    dialog.open();
    EXPECT_EQ(dialog.version(), QStringLiteral("00.00.00.00"));
}
