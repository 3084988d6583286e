#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QDialog>

class MainWindowTitleBar : public MainWindowTest
{
};

TEST_F(MainWindowTitleBar, closing_asks_first_with_no_as_the_default)
{
    open();
    boxes.startOver(QMessageBox::No);
    click("pushButton_close");
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().title, "Warning");
    EXPECT_EQ(boxes.last().text, QStringLiteral("Are you sure you want to exit\uFF1F"));
    EXPECT_EQ(boxes.last().icon, QMessageBox::Question);
    EXPECT_EQ(boxes.last().buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(boxes.last().defaultButton, QMessageBox::No);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(MainWindowTitleBar, yes_closes_the_window)
{
    open();
    boxes.startOver(QMessageBox::Yes);
    click("pushButton_close");
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindowTitleBar, a_dismissed_question_leaves_the_window_open)
{
    open();
    boxes.startOver(QMessageBox::Ok); // not among its buttons
    click("pushButton_close");
    EXPECT_EQ(boxes.boxes().size(), 1);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(MainWindowTitleBar, the_maximise_button_toggles_and_changes_its_icon)
{
    open();
    click("pushButton_maxsize");
    EXPECT_TRUE(window->isMaximized());
    EXPECT_TRUE(hasIcon(button("pushButton_maxsize"), "Maximize-3.png"));
    click("pushButton_maxsize");
    EXPECT_FALSE(window->isMaximized());
    EXPECT_TRUE(hasIcon(button("pushButton_maxsize"), "Maximize-1.png"));
}

TEST_F(MainWindowTitleBar, the_maximise_icon_follows_a_window_that_was_maximised_otherwise)
{
    open();
    window->showMaximized();
    EXPECT_TRUE(hasIcon(button("pushButton_maxsize"), "Maximize-3.png"));
    window->showNormal();
    EXPECT_TRUE(hasIcon(button("pushButton_maxsize"), "Maximize-1.png"));
}

TEST_F(MainWindowTitleBar, a_maximised_window_has_square_corners_and_a_restored_one_round_ones)
{
    open();
    window->setAttribute(Qt::WA_TranslucentBackground);
    const auto coveredCorners = [this] {
        const QImage shown = window->grab().toImage();
        const int right = shown.width() - 1;
        const int bottom = shown.height() - 1;
        int covered = 0;
        for (const QPoint corner : {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)})
            covered += shown.pixelColor(corner).alpha() == 255 ? 1 : 0;
        return covered;
    };
    EXPECT_EQ(coveredCorners(), 0);
    window->showMaximized();
    EXPECT_EQ(coveredCorners(), 4);
    window->showNormal();
    EXPECT_EQ(coveredCorners(), 0);
}

TEST_F(MainWindowTitleBar, the_minimise_button_minimises)
{
    open();
    click("pushButton_minimize");
    EXPECT_TRUE(window->isMinimized());
}

TEST_F(MainWindowTitleBar, the_developer_and_voltage_buttons_open_modal_dialogs_on_the_window)
{
    open("DebugMode=true\n");
    QStringList dialogs;
    boxes.onDialog = [&](QDialog *dialog) {
        dialogs << QString::fromLatin1(dialog->metaObject()->className());
        EXPECT_EQ(dialog->parentWidget(), window.get());
        EXPECT_TRUE(dialog->isModal());
        dialog->reject();
    };
    click("pushButton_develop");
    click("pushButton_voltinfo");
    EXPECT_EQ(dialogs, QStringList({"developwindow", "VoltageDetails"}));
    for (const QObject *child : window->children())
        EXPECT_FALSE(child->inherits("QDialog")) << child->metaObject()->className();
}
