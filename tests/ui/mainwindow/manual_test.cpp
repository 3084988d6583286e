#include "tests/ui/mainwindow/mainwindowtest.h"
#include "tests/ui/mainwindow/systemopener.h"

#include <QFileInfo>
#include <QToolTip>

class MainWindowManual : public MainWindowTest
{
protected:
    void pressF1()
    {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window.get(), Qt::Key_F1);
    }

    SystemOpener browser;
};

TEST_F(MainWindowManual, F1_opens_the_page_that_was_built_with_the_program)
{
    open();
    pressF1();
    ASSERT_EQ(browser.opened.size(), 1);
    const QString page = browser.opened.first().toLocalFile();
    EXPECT_TRUE(page.endsWith("/share/qv1k/manual/manual.html")) << qPrintable(page);
    EXPECT_TRUE(QFileInfo::exists(page)) << qPrintable(page);
    EXPECT_TRUE(find<QLabel>("label_about_manualproblem")->isHidden());
}

TEST_F(MainWindowManual, the_link_of_the_about_page_opens_the_same)
{
    open();
    auto *label = find<QLabel>("label_about_manual");
    goTo(label);
    QTest::mouseClick(label, Qt::LeftButton, {}, label->rect().center() - QPoint(15, 0));
    ASSERT_EQ(browser.opened.size(), 1);
    EXPECT_EQ(browser.opened.first().fileName(), "manual.html");
}

TEST_F(MainWindowManual, one_that_is_not_there_is_told_on_the_about_page_and_in_no_box)
{
    open();
    MainWindowInspector::setManualFolders(*window, {folder.filePath("none"), folder.filePath("nor here")});
    pressF1();
    EXPECT_TRUE(browser.opened.isEmpty());
    auto *problem = find<QLabel>("label_about_manualproblem");
    EXPECT_TRUE(problem->isVisible());
    for (const char *name : {"none", "nor here"})
        EXPECT_TRUE(problem->text().contains(QDir::toNativeSeparators(folder.filePath(name))));
}

TEST_F(MainWindowManual, what_was_told_goes_when_it_is_there_again)
{
    open();
    MainWindowInspector::setManualFolders(*window, {folder.path()});
    pressF1();
    auto *problem = find<QLabel>("label_about_manualproblem");
    ASSERT_TRUE(problem->isVisible());
    folder.write("manual.html", "here");
    pressF1();
    EXPECT_TRUE(problem->isHidden());
    ASSERT_EQ(browser.opened.size(), 1);
    EXPECT_EQ(browser.opened.first(), QUrl::fromLocalFile(folder.filePath("manual.html")));
}

TEST_F(MainWindowManual, F1_opens_it_from_both_dialogs_and_from_a_box)
{
    openSampling("DebugMode=true\n");
    int asked = 0;
    const auto pressIn = [&asked](QWidget *modal) {
        ++asked;
        QTest::keyClick(modal->focusWidget() != nullptr ? modal->focusWidget() : modal, Qt::Key_F1);
    };
    boxes.onDialog = [&pressIn](QDialog *dialog) {
        pressIn(dialog);
        dialog->reject();
    };
    boxes.onBox = [&pressIn] {
        pressIn(QApplication::activeModalWidget());
    };
    click("pushButton_develop");
    EXPECT_EQ(browser.opened.size(), 1);
    click("pushButton_voltinfo");
    EXPECT_EQ(browser.opened.size(), 2);
    click("pushButton_Connect"); // which is refused in a box
    EXPECT_EQ(browser.opened.size(), 3);
    EXPECT_EQ(asked, 3);
}

TEST_F(MainWindowManual, one_that_is_not_there_is_told_in_the_dialog_too)
{
    open("DebugMode=true\n");
    MainWindowInspector::setManualFolders(*window, {folder.filePath("none")});
    QString told;
    boxes.onDialog = [&told](QDialog *dialog) {
        QTest::keyClick(dialog, Qt::Key_F1);
        told = QToolTip::text();
        dialog->reject();
    };
    click("pushButton_develop");
    EXPECT_TRUE(told.contains(QDir::toNativeSeparators(folder.filePath("none")))) << qPrintable(told);
}

TEST_F(MainWindowManual, that_no_browser_is_there_is_told_with_the_page)
{
    open();
    folder.write("manual.html", "here");
    MainWindowInspector::setManualFolders(*window, {folder.path()});
    browser.refuse();
    pressF1();
    EXPECT_TRUE(browser.opened.isEmpty());
    const auto *problem = find<QLabel>("label_about_manualproblem");
    EXPECT_TRUE(problem->isVisible());
    const QString page = QDir::toNativeSeparators(folder.filePath("manual.html"));
    EXPECT_EQ(problem->text(), "The system opens no HTML pages. The manual is " + page);
}
