#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QDialog>
#include <QSignalSpy>

/// The window operated by keys alone.
class MainWindowKeyboard : public MainWindowTest
{
protected:
    void openActive(const QByteArray &config = {})
    {
        open(config);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    /// A key pressed and released wherever the focus is in the window. After a box, it is in front again: the
    /// window manager would see to that.
    void key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = {})
    {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QWidget *target = QApplication::focusWidget();
        QTest::keyClick(target == nullptr ? window.get() : target, pressed, modifiers);
    }

    /// Presses the tabulator until the widget has the focus.
    void tabTo(const char *name)
    {
        const auto *target = find<QWidget>(name);
        for (int presses = 0; presses < 60 && !target->hasFocus(); ++presses)
            key(Qt::Key_Tab);
        ASSERT_TRUE(target->hasFocus()) << name;
    }

    [[nodiscard]] QString page() const
    {
        return find<QStackedWidget>("stackedWidget")->currentWidget()->objectName();
    }

    /// Where the tabulator leads from a page's first field, until it leaves the page.
    [[nodiscard]] QList<QWidget *> tabbed()
    {
        QList<QWidget *> fields;
        const auto *pages = find<QStackedWidget>("stackedWidget");
        while (pages->isAncestorOf(QApplication::focusWidget()) &&
               !fields.contains(QApplication::focusWidget())) {
            fields << QApplication::focusWidget();
            key(Qt::Key_Tab);
        }
        return fields;
    }
};

TEST_F(MainWindowKeyboard, every_page_has_a_key_that_leads_to_its_first_field)
{
    openActive();
    const QStringList pages{"page_1", "page_2", "page", "page_4", "page_5"};
    const QStringList first{"comboBox_port", "radioButton_150", "pushButton_rotate", "comboBox_saveframes"};
    for (const int row : {3, 1, 2, 0, 4}) {
        key(static_cast<Qt::Key>(Qt::Key_1 + row), Qt::ControlModifier);
        EXPECT_EQ(page(), pages.at(row));
        EXPECT_EQ(find<QListWidget>("listWidget")->item(row)->toolTip(),
                  QStringLiteral("Ctrl+%1").arg(row + 1));
        if (row < first.size()) {
            ASSERT_NE(QApplication::focusWidget(), nullptr);
            EXPECT_EQ(QApplication::focusWidget()->objectName(), first.at(row));
        }
    }
}

TEST_F(MainWindowKeyboard, the_tabulator_reaches_every_field_of_a_page_in_reading_order)
{
    openActive("DebugMode=true\n");
    for (int row = 0; row < 4; ++row) {
        key(static_cast<Qt::Key>(Qt::Key_1 + row), Qt::ControlModifier);
        const auto *shown = find<QStackedWidget>("stackedWidget")->currentWidget();
        QSet<QWidget *> expected;
        for (QWidget *field : shown->findChildren<QWidget *>()) {
            const auto *radio = qobject_cast<const QRadioButton *>(field);
            if (field->isVisible() && field->isEnabled() && field->focusProxy() == nullptr &&
                (field->focusPolicy() & Qt::TabFocus) == Qt::TabFocus &&
                (radio == nullptr || radio->isChecked())) // arrow keys go on from the chosen one
                expected.insert(field);
        }
        const QList<QWidget *> visited = tabbed();
        EXPECT_EQ(QSet<QWidget *>(visited.begin(), visited.end()), expected) << row;
        for (qsizetype i = 1; i < visited.size(); ++i) {
            const QPoint before = visited.at(i - 1)->mapTo(window.get(), QPoint());
            const QPoint after = visited.at(i)->mapTo(window.get(), QPoint());
            const bool isBelow = after.y() >= before.y() + visited.at(i - 1)->height();
            EXPECT_TRUE(isBelow || after.x() > before.x())
                << qPrintable(visited.at(i - 1)->objectName()) << " before "
                << qPrintable(visited.at(i)->objectName());
        }
    }
}

TEST_F(MainWindowKeyboard, the_tool_tips_tell_the_keys)
{
    openActive();
    const QMap<const char *, const char *> keys{
        {"pushButton_sample", "(F5)"},       {"pushButton_save", "(Ctrl+S)"},
        {"pushButton_maxsize", "(F11)"},     {"pushButton_close", "(Ctrl+Q)"},
        {"pushButton_minimize", "(Ctrl+M)"}, {"pushButton_develop", "(F12)"}};
    for (const auto &[name, tip] : keys.asKeyValueRange())
        EXPECT_TRUE(button(name)->toolTip().endsWith(tip)) << qPrintable(button(name)->toolTip());
}

TEST_F(MainWindowKeyboard, the_keys_of_the_title_bar_do_what_its_buttons_do)
{
    openActive("DebugMode=true\n");
    key(Qt::Key_F11);
    EXPECT_TRUE(window->isMaximized());
    key(Qt::Key_F11);
    EXPECT_FALSE(window->isMaximized());

    int dialogs = 0;
    boxes.onDialog = [&](QDialog *dialog) {
        ++dialogs;
        QTest::keyClick(dialog, Qt::Key_Escape);
    };
    key(Qt::Key_F12);
    EXPECT_EQ(dialogs, 1) << "and Escape closes it";
    key(Qt::Key_M, Qt::ControlModifier);
    EXPECT_TRUE(window->isMinimized());
}

TEST_F(MainWindowKeyboard, the_key_of_the_engineering_dialog_opens_nothing_that_the_settings_hide)
{
    openActive();
    boxes.onDialog = [](QDialog *dialog) {
        ADD_FAILURE() << dialog->metaObject()->className();
        dialog->reject();
    };
    key(Qt::Key_F12);
}

TEST_F(MainWindowKeyboard, the_focus_is_where_it_was_after_a_press_on_play)
{
    openActive();
    connectDetector();
    for (const char *name : {"pushButton_sample", "lineEdit_savename"}) {
        goTo(find<QWidget>(name));
        find<QWidget>(name)->setFocus();
        key(Qt::Key_F5);
        ASSERT_TRUE(looksRunning());
        EXPECT_TRUE(find<QWidget>(name)->hasFocus()) << name;
        ASSERT_TRUE(QTest::qWaitFor([this] { return detector.owesBlock(); }, 10000));
        key(Qt::Key_F5);
        detector.pushBlock();
        ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
        EXPECT_TRUE(find<QWidget>(name)->hasFocus()) << name;
    }
}

TEST_F(MainWindowKeyboard, return_sends_nothing_by_accident)
{
    openActive("DebugMode=true\n");
    connectDetector();
    detector.link.clearWritten();
    for (int row = 0; row < 4; ++row) {
        key(static_cast<Qt::Key>(Qt::Key_1 + row), Qt::ControlModifier);
        for (QWidget *field : tabbed()) {
            field->setFocus();
            key(Qt::Key_Return);
            key(Qt::Key_Enter);
        }
    }
    EXPECT_TRUE(detector.link.written().isEmpty()) << detector.writtenTexts().join(' ').constData();
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowKeyboard, a_shortcut_is_not_carried_out_while_the_detector_is_waited_for)
{
    openActive();
    connectDetector();
    detector.link.answer(CommandFrame::readinessQuery(), hex("FFBB03AA00EB"));
    QTimer::singleShot(300, window.get(), [this] {
        QTest::keyClick(window.get(), Qt::Key_F11);
        QTest::keyClick(window.get(), Qt::Key_3, Qt::ControlModifier);
        window->close();
    });
    key(Qt::Key_F5);
    EXPECT_FALSE(window->isMaximized());
    EXPECT_EQ(page(), "page_1");
}

TEST_F(MainWindowKeyboard, arrow_keys_pick_the_pixel)
{
    openActive();
    find<QWidget>("frame")->setFocus();
    key(Qt::Key_Right);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(text("label_coor"), "Coordinate: (1,16)");
    for (int i = 0; i < 3; ++i)
        key(Qt::Key_Left);
    EXPECT_EQ(text("label_coor"), "Coordinate: (0,16)");
}

namespace {

void pressYesByKeys()
{
    const auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    QAbstractButton *yes = box->button(QMessageBox::Yes);
    for (int presses = 0; presses < 4 && box->focusWidget() != yes; ++presses)
        QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(box->focusWidget(), yes);
    QTest::keyClick(yes, Qt::Key_Space);
}

} // namespace

TEST_F(MainWindowKeyboard, a_whole_session_needs_no_mouse)
{
    openActive();
    key(Qt::Key_1, Qt::ControlModifier);
    tabTo("pushButton_Connect");
    key(Qt::Key_Space);
    ASSERT_EQ(button("pushButton_Connect")->text(), "Disconnect");

    key(Qt::Key_2, Qt::ControlModifier);
    key(Qt::Key_Down); // the next range
    EXPECT_FALSE(find<QRadioButton>("radioButton_150")->isChecked());
    tabTo("doubleSpinBox_von");
    for (const auto digit : {Qt::Key_1, Qt::Key_2})
        key(digit); // over what was selected
    tabTo("pushButton_set");
    EXPECT_EQ(find<QDoubleSpinBox>("doubleSpinBox_von")->value(), 12.0);
    key(Qt::Key_Space);
    EXPECT_EQ(boxes.last().text, "set success");

    key(Qt::Key_F5);
    ASSERT_TRUE(looksRunning());
    showFrames(1);
    tabTo("frame");
    key(Qt::Key_Right);
    EXPECT_EQ(text("label_coor"), "Coordinate: (1,0)");

    key(Qt::Key_3, Qt::ControlModifier);
    for (const char *name : {"pushButton_cali", "pushButton_full_off"}) {
        tabTo(name);
        key(Qt::Key_Space);
    }
    showFrames(1, 4096 + 10486);
    EXPECT_EQ(text("label_calistate"), "Full Off Success");

    key(Qt::Key_4, Qt::ControlModifier);
    tabTo("lineEdit_savename");
    QTest::keyClicks(QApplication::focusWidget(), "keys");
    tabTo("checkBox_picture");
    key(Qt::Key_Space);
    key(Qt::Key_S, Qt::ControlModifier);
    showFrames(1);
    EXPECT_EQ(text("label_savestate"), "Save Success");
    EXPECT_TRUE(QFile::exists(folder.filePath("Logs/keys/keys_pic1.png")));

    ASSERT_TRUE(QTest::qWaitFor([this] { return detector.owesBlock(); }, 10000));
    key(Qt::Key_F5);
    detector.pushBlock();
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
    boxes.onBox = &pressYesByKeys;
    boxes.startOver(QMessageBox::Ok); // which that box has not
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible()) << "Yes was pressed by its key";
}
