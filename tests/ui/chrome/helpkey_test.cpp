#include "ui/chrome/helpkey.h"
#include "ui/parameters/inputblock.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

TEST(HelpKey, tells_of_F1_in_a_field_of_a_modal_dialog)
{
    QWidget window;
    const HelpKey key(&window);
    QSignalSpy pressed(&key, &HelpKey::pressed);
    window.show();
    QDialog dialog(&window);
    auto *layout = new QVBoxLayout(&dialog);
    auto *field = new QLineEdit;
    layout->addWidget(field);
    dialog.open();
    QTest::keyClick(field, Qt::Key_F1);
    EXPECT_EQ(pressed.size(), 1);
    QTest::keyClick(field, Qt::Key_F2);
    QTest::keyClick(field, Qt::Key_F1, Qt::ControlModifier);
    EXPECT_EQ(pressed.size(), 1);
}

TEST(HelpKey, and_in_a_message_box)
{
    const HelpKey key(nullptr);
    QSignalSpy pressed(&key, &HelpKey::pressed);
    QMessageBox box(QMessageBox::Critical, "Error", "Device not found");
    box.open();
    QTest::keyClick(&box, Qt::Key_F1);
    EXPECT_EQ(pressed.size(), 1);
    EXPECT_TRUE(box.isVisible());
}

TEST(HelpKey, that_is_held_down_is_told_once)
{
    const HelpKey key(nullptr);
    QSignalSpy pressed(&key, &HelpKey::pressed);
    QWidget window;
    QKeyEvent first(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &first);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(&window, &repeated);
    EXPECT_EQ(pressed.size(), 1);
}

TEST(HelpKey, is_kept_away_with_all_other_input)
{
    const HelpKey key(nullptr);
    QSignalSpy pressed(&key, &HelpKey::pressed);
    QWidget window;
    window.show();
    {
        const InputBlock block(window);
        QTest::keyClick(&window, Qt::Key_F1);
    }
    EXPECT_EQ(pressed.size(), 0);
    QTest::keyClick(&window, Qt::Key_F1);
    EXPECT_EQ(pressed.size(), 1);
}
