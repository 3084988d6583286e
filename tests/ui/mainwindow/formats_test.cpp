#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/keepratiowidget.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>

class MainWindowFormats : public MainWindowTest
{
protected:
    /// Switches a form of the picture's context menu.
    void switchForm(const char *action) const
    {
        window->findChild<QAction *>(QString::fromLatin1(action))->trigger();
    }
};

TEST_F(MainWindowFormats, the_pictures_context_menu_offers_three_more_forms_by_mouse_and_keys)
{
    open();
    auto *picture = find<KeepRatioWidget>("frame");
    QStringList offered;
    QMetaObject::invokeMethod(
        picture,
        [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            for (const QAction *action : menu->actions()) {
                if (action->isCheckable())
                    offered << action->text();
            }
            ASSERT_EQ(offered.size(), 3);
            const auto isReached = [&] {
                return menu->activeAction() != nullptr && menu->activeAction()->text() == offered.at(1);
            };
            for (qsizetype n = 0; n < menu->actions().size() && !isReached(); ++n)
                QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
        },
        Qt::QueuedConnection);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, picture->rect().center(),
                            picture->mapToGlobal(picture->rect().center()));
    QApplication::sendEvent(picture->childAt(picture->rect().center()), &event);
    EXPECT_EQ(offered, QStringList({"Record a TIFF file (nA, 32 bits)", "Record a NumPy array (nA, 32 bits)",
                                    "Record raw frames"}));
    EXPECT_TRUE(window->findChild<QAction *>("action_recordNpy")->isChecked());
    EXPECT_EQ(text("label_savedetail"), "") << "something will be saved";
}

TEST_F(MainWindowFormats, a_form_of_the_menu_alone_is_recorded_and_tells_what_the_pages_show)
{
    openSampling();
    click("radioButton_10");
    for (const char *action : {"action_recordTiff", "action_recordNpy", "action_recordRaw"})
        switchForm(action);
    find<QLineEdit>("lineEdit_savename")->setText("run");
    find<QComboBox>("comboBox_saveframes")->setEditText("2");
    click("pushButton_save");
    EXPECT_EQ(text("label_savedetail"), "0 of 2 frames stored");
    switchForm("action_recordRaw"); // for the next one
    showFrames(2);
    EXPECT_EQ(text("label_savestate"), "Save Success");
    EXPECT_EQ(QDir(folder.filePath("Logs/run")).entryList(QDir::Files, QDir::Name),
              QStringList({"run.npy", "run.npy.json", "run.raw", "run.raw.json", "run.tif", "run.tif.json"}));
    const QJsonObject told = QJsonDocument::fromJson(folder.read("Logs/run/run.raw.json")).object();
    EXPECT_EQ(told["detector"]["serial_number"], find<QComboBox>("comboBox_port")->currentText());
    EXPECT_EQ(told["detector"]["simulated"], false);
    EXPECT_EQ(told["settings"]["current_range_nA"], 10);
    EXPECT_EQ(told["settings"]["voltages_V"]["voff"], -15);
    EXPECT_TRUE(told["settings"]["timing_ns"].isNull()) << "none was sent";
}
