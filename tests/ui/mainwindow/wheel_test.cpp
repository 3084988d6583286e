#include "tests/support/wheel.h"
#include "tests/ui/mainwindow/mainwindowtest.h"

class MainWindowWheel : public MainWindowTest
{
};

TEST_F(MainWindowWheel, over_a_field_without_the_focus_changes_no_value)
{
    detector.link.serialNumbers = {"QV-A", "QV-B"};
    open();
    const QList<QWidget *> fields{
        find<QWidget>("comboBox_port"),      find<QWidget>("doubleSpinBox_von"),
        find<QWidget>("doubleSpinBox_voff"), find<QWidget>("doubleSpinBox_vcom"),
        find<QWidget>("doubleSpinBox_vss"),  find<QWidget>("doubleSpinBox_contrast"),
        find<QWidget>("comboBox_saveframes")};
    const auto values = [&fields] {
        QStringList texts;
        for (const QWidget *field : fields) {
            const auto *list = qobject_cast<const QComboBox *>(field);
            texts << (list != nullptr ? list->currentText()
                                      : qobject_cast<const QDoubleSpinBox *>(field)->text());
        }
        return texts;
    };
    const QStringList before = values();
    for (QWidget *field : fields) {
        goTo(field);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        window->setFocus();
        for (const int angle : {-120, 120, 120})
            EXPECT_FALSE(turnWheel(field, angle)) << qPrintable(field->objectName());
        EXPECT_FALSE(field->hasFocus()) << qPrintable(field->objectName());
    }
    EXPECT_EQ(values(), before);
}
