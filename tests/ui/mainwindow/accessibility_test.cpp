#include "tests/support/accessibletree.h"
#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QDialog>

class MainWindowAccessibility : public MainWindowTest
{
protected:
    /// What a screen reader says of a widget.
    [[nodiscard]] QString said(const char *name, QAccessible::Text text) const
    {
        return QAccessible::queryAccessibleInterface(find<QWidget>(name))->text(text);
    }
};

TEST_F(MainWindowAccessibility, whatever_can_take_the_focus_has_a_name_on_every_page)
{
    open("DebugMode=true\n");
    click("pushButton_cali");
    int focusable = 0;
    for (int row = 0; row < 5; ++row) {
        find<QListWidget>("listWidget")->setCurrentRow(row);
        const QStringList found = AccessibleTree::nameless(window.get(), &focusable);
        EXPECT_TRUE(found.isEmpty()) << row << ": " << qPrintable(found.join(", "));
    }
    EXPECT_GT(focusable, 35);
}

TEST_F(MainWindowAccessibility, and_in_every_dialog)
{
    openSampling("DebugMode=true\n");
    QMap<QString, int> focusable;
    boxes.onDialog = [&](QDialog *dialog) {
        const QString name = dialog->metaObject()->className();
        const QStringList found = AccessibleTree::nameless(dialog, &focusable[name]);
        EXPECT_TRUE(found.isEmpty()) << qPrintable(name + ": " + found.join(", "));
        dialog->reject();
    };
    click("pushButton_develop");
    click("pushButton_voltinfo");
    EXPECT_GT(focusable.value("developwindow"), 66);
    EXPECT_TRUE(focusable.contains("VoltageDetails"));
}

TEST_F(MainWindowAccessibility, the_buttons_without_text_say_what_they_do)
{
    open();
    const QMap<const char *, const char *> names{{"pushButton_sample", "Start or stop the acquisition"},
                                                 {"pushButton_close", "Close"},
                                                 {"pushButton_maxsize", "Maximize or restore"},
                                                 {"pushButton_minimize", "Minimize"},
                                                 {"pushButton_rotate", "Rotate by 90 degrees"},
                                                 {"pushButton_savepath", "Choose the folder"},
                                                 {"frame", "Picture"},
                                                 {"listWidget", "Pages"},
                                                 {"progressBar", "Progress of the recording"},
                                                 {"widget_battery", "Battery charge"}};
    for (const auto &[widget, name] : names.asKeyValueRange())
        EXPECT_EQ(said(widget, QAccessible::Name), name);
}

TEST_F(MainWindowAccessibility, labels_belong_to_their_fields)
{
    open();
    const QMap<const char *, const char *> fields{
        {"label_von", "doubleSpinBox_von"},    {"label_voff", "doubleSpinBox_voff"},
        {"label_vcom", "doubleSpinBox_vcom"},  {"label_vss", "doubleSpinBox_vss"},
        {"label_2", "doubleSpinBox_contrast"}, {"label_29", "comboBox_saveframes"},
        {"label_30", "lineEdit_savename"},     {"label_31", "lineEdit_savepath"}};
    for (const auto &[label, field] : fields.asKeyValueRange())
        EXPECT_EQ(find<QLabel>(label)->buddy(), find<QWidget>(field)) << label;
}

TEST_F(MainWindowAccessibility, descriptions_tell_units_and_ways)
{
    open();
    EXPECT_TRUE(said("doubleSpinBox_von", QAccessible::Description).contains("volts"));
    EXPECT_TRUE(said("frame", QAccessible::Description).contains("arrow keys"));
    EXPECT_TRUE(said("widget_battery", QAccessible::Description).contains("no detector"));
}
