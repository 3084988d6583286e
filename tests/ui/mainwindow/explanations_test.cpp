#include "tests/ui/mainwindow/mainwindowtest.h"
#include "tests/ui/mainwindow/systemopener.h"

#include <QDialog>
#include <QDir>

/// What the window tells of its own accord: why something cannot be used, what holds from when, where files
/// go.
class MainWindowExplanations : public MainWindowTest
{
protected:
    [[nodiscard]] QString toolTip(const char *name) const { return find<QWidget>(name)->toolTip(); }

    /// Every control of a window that is shown and cannot be used says why.
    static void expectReasons(const QWidget &shown, const QMap<QString, QString> &usual)
    {
        for (const QWidget *widget : shown.findChildren<QWidget *>()) {
            const bool isControl = widget->focusPolicy() != Qt::NoFocus || widget->inherits("QPushButton");
            if (!isControl || widget->isEnabled() || widget->isHidden() || widget->objectName().isEmpty())
                continue;
            EXPECT_NE(widget->toolTip(), usual.value(widget->objectName()))
                << qPrintable(widget->objectName());
        }
    }
};

TEST_F(MainWindowExplanations, every_control_that_cannot_be_used_says_why)
{
    openConnected("DebugMode=true\n");
    QMap<QString, QString> usual;
    for (const QWidget *widget : window->findChildren<QWidget *>())
        usual.insert(widget->objectName(), widget->toolTip());
    click("pushButton_cali");
    EXPECT_EQ(toolTip("pushButton_full_on"), "Start the acquisition first");
    expectReasons(*window, usual);

    click("pushButton_sample");
    EXPECT_EQ(toolTip("pushButton_full_on"), usual.value("pushButton_full_on"));
    EXPECT_TRUE(toolTip("pushButton_set").contains("Stop the acquisition first"));
    expectReasons(*window, usual);

    ASSERT_TRUE(QTest::qWaitFor([this] { return detector.owesBlock(); }, 10000));
    click("pushButton_sample");
    EXPECT_TRUE(toolTip("pushButton_sample").contains("until the detector has stopped"));
    expectReasons(*window, usual);
    detector.pushBlock();
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
    EXPECT_EQ(toolTip("pushButton_sample"), usual.value("pushButton_sample"));
    EXPECT_EQ(toolTip("pushButton_set"), usual.value("pushButton_set"));
}

TEST_F(MainWindowExplanations, the_buttons_of_the_engineering_dialog_say_why_and_then_tell_their_own_again)
{
    openSampling("DebugMode=true\n");
    boxes.onDialog = [this](QDialog *dialog) {
        boxes.onDialog = {};
        expectReasons(*dialog, {});
        dialog->reject();
    };
    click("pushButton_develop");
}

TEST_F(MainWindowExplanations, the_battery_tells_its_charge_or_that_nothing_is_connected)
{
    open();
    EXPECT_EQ(toolTip("widget_battery"), "Battery charge: no detector is connected");
    click("pushButton_Connect");
    EXPECT_EQ(toolTip("widget_battery"), "Battery charge: 80 %");
    detector.link.answer(CommandFrame::levelQuery(), hex("130000000000"));
    window->check_lower_computer_status();
    EXPECT_EQ(toolTip("widget_battery"), "Battery charge: 19 %");
    EXPECT_EQ(find<QWidget>("widget_battery")->accessibleDescription(), "Battery charge: 19 %");
    click("pushButton_Connect");
    EXPECT_EQ(toolTip("widget_battery"), "Battery charge: no detector is connected");
    detector.link.answer(CommandFrame::levelQuery(), {});
    click("pushButton_Connect");
    EXPECT_EQ(toolTip("widget_battery"), "Battery charge: the detector has not told it");
}

TEST_F(MainWindowExplanations, the_contrast_says_from_when_it_holds)
{
    open();
    EXPECT_EQ(toolTip("doubleSpinBox_contrast"), "Holds from the next start of the acquisition");
}

TEST_F(MainWindowExplanations, the_save_path_can_be_read_whole_and_is_not_typed_into)
{
    const QString path = folder.filePath(QString(80, u'x'));
    ASSERT_TRUE(QDir().mkpath(path));
    open("SavePath=" + path.toUtf8() + "\n");
    auto *field = find<QLineEdit>("lineEdit_savepath");
    EXPECT_EQ(field->text(), path);
    EXPECT_EQ(field->toolTip(), QDir::toNativeSeparators(path));
    goTo(field);
    QTest::keyClicks(field, "abc");
    EXPECT_EQ(field->text(), path);
}

TEST_F(MainWindowExplanations, without_a_save_path_the_default_folder_is_shown)
{
    open();
    const auto *field = find<QLineEdit>("lineEdit_savepath");
    const QString standard = QDir::toNativeSeparators(QDir::currentPath() + "/Logs");
    EXPECT_EQ(field->text(), "");
    EXPECT_EQ(field->placeholderText(), standard);
    EXPECT_EQ(field->toolTip(), standard);
}

TEST_F(MainWindowExplanations, the_folder_of_the_last_recording_opens_with_a_click)
{
    openSampling();
    EXPECT_TRUE(button("pushButton_openfolder")->isHidden()) << "nothing was recorded";
    find<QLineEdit>("lineEdit_savename")->setText("first");
    click("checkBox_picture");
    click("pushButton_save");
    showFrames(1);
    find<QLineEdit>("lineEdit_savename")->setText("next");
    SystemOpener desktop;
    click("pushButton_openfolder");
    ASSERT_EQ(desktop.opened.size(), 1);
    const QString shown = desktop.opened.first().toLocalFile();
    EXPECT_TRUE(QFile::exists(shown + "/first_pic1.png")) << qPrintable(shown);

    desktop.refuse();
    click("pushButton_openfolder");
    EXPECT_EQ(find<QLabel>("label_savedetail")->text(), "Nothing opens " + QDir::toNativeSeparators(shown));
}
