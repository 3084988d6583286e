#include "tests/ui/mainwindow/mainwindowtest.h"

#include "device/portmanager.h"
#include "log/logmanager.h"
#include "ui/chrome/lightpalette.h"

#include <QFileDialog>
#include <QListView>
#include <QToolTip>

class MainWindowStartup : public MainWindowTest
{
};

TEST_F(MainWindowStartup, the_window_makes_log_and_link_and_ends_both)
{
    open();
    EXPECT_NE(LogManager::instance(), nullptr);
    EXPECT_NE(PortManager::instance(), nullptr);
    const QString log = finalLog();
    EXPECT_EQ(LogManager::instance(), nullptr);
    EXPECT_EQ(PortManager::instance(), nullptr);
    EXPECT_TRUE(log.contains(QStringLiteral("串口销毁"))) << qPrintable(log);
}

TEST_F(MainWindowStartup, the_log_of_a_run_begins_with_a_stamped_line_and_ends_with_the_rest_run_together)
{
    openSampling();
    showFrames(1);
    stop();
    const QStringList lines = finalLog().split(u'\n');
    const QString stamp = QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d   >>   ");
    const QRegularExpression first(QStringLiteral("^%1日志线程开启$").arg(stamp));
    EXPECT_TRUE(first.match(lines.first()).hasMatch()) << qPrintable(lines.first());
    // What still waited at the end has neither stamp nor line feed of its own.
    const QRegularExpression last(
        QStringLiteral("^\\D.*串口销毁串口接收线程结束串口关闭%1日志线程结束$").arg(stamp));
    ASSERT_GE(lines.size(), 3);
    EXPECT_TRUE(lines.last().isEmpty()) << "a line feed ends the file";
    EXPECT_TRUE(last.match(lines.at(lines.size() - 2)).hasMatch()) << qPrintable(lines.join(u'|'));
}

TEST_F(MainWindowStartup, the_port_list_holds_every_detector_in_the_order_of_the_driver)
{
    detector.link.serialNumbers = {"QV-B", "QV-A", "QV-C"};
    open();
    const auto *ports = find<QComboBox>("comboBox_port");
    ASSERT_EQ(ports->count(), 3);
    EXPECT_EQ(ports->itemText(0), "QV-B");
    EXPECT_EQ(ports->itemText(1), "QV-A");
    EXPECT_EQ(ports->itemText(2), "QV-C");
    EXPECT_TRUE(ports->itemIcon(0).isNull());
    EXPECT_FALSE(ports->itemData(0).isValid());
    EXPECT_EQ(ports->currentText(), "QV-B");
}

TEST_F(MainWindowStartup, nothing_is_sent_and_nothing_polls_before_the_first_connect)
{
    open();
    EXPECT_TRUE(detector.link.written().isEmpty());
    EXPECT_FALSE(statusTimer().isActive());
    EXPECT_TRUE(looksIdle());
}

TEST_F(MainWindowStartup, the_system_page_names_the_driver_library)
{
    open();
    EXPECT_TRUE(find<QTextEdit>("textEdit")->toPlainText().contains(ForwardLibrary::path()));
}

TEST_F(MainWindowStartup, without_a_driver_library_the_window_says_why_and_finds_no_detector)
{
    folder.write("config.ini", "[General]\nD2xxLibrary=/nowhere/libmissing.so\n");
    window = std::make_unique<mainwindow>();
    window->show();
    const QString said = find<QTextEdit>("textEdit")->toPlainText();
    EXPECT_TRUE(said.contains("No driver library could be loaded")) << qPrintable(said);
    EXPECT_TRUE(said.contains("libmissing.so")) << qPrintable(said);
    click("pushButton_Connect");
    EXPECT_EQ(boxes.last().text, "Device not found");
    click("pushButton_sample");
    EXPECT_EQ(boxes.last().text, "No Devices Connected");
    EXPECT_TRUE(looksIdle());
}

TEST_F(MainWindowStartup, the_log_names_the_driver_library_and_whether_it_simulates_once)
{
    open();
    const QString expected = QStringLiteral("驱动库：%1（非模拟数据）").arg(ForwardLibrary::path());
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return QString::fromUtf8(folder.read(logName())).contains(expected + u'\n'); }, 10000));
    const QString log = finalLog();
    EXPECT_EQ(log.count(QStringLiteral("驱动库")), 1);
    EXPECT_LT(log.indexOf(QStringLiteral("串口初始化")), log.indexOf(expected));
}

TEST_F(MainWindowStartup, the_log_says_why_no_driver_library_could_be_loaded)
{
    folder.write("config.ini", "[General]\nD2xxLibrary=/nowhere/libmissing.so\n");
    window = std::make_unique<mainwindow>();
    const QString log = finalLog();
    EXPECT_TRUE(log.contains(QStringLiteral("驱动库加载失败："))) << qPrintable(log);
    EXPECT_TRUE(log.contains("/nowhere/libmissing.so")) << qPrintable(log);
}

TEST_F(MainWindowStartup, the_virtual_detector_is_used_only_when_it_is_named)
{
    window = std::make_unique<mainwindow>();
    window->show();
    EXPECT_FALSE(find<QTextEdit>("textEdit")->toPlainText().startsWith("Virtual detector"));
}

TEST_F(MainWindowStartup, the_light_palette_shows_dark_text_on_light_ground_in_every_state)
{
    const QPalette light = LightPalette::palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const auto ground : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::ToolTipBase})
            EXPECT_GT(light.color(group, ground).lightness(), 200) << group << ground;
        for (const auto ink : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            EXPECT_LT(light.color(group, ink).lightness(), 160) << group << ink;
    }
    // What stands in an empty field is paler than what was typed, whatever Qt makes of a colour that is not
    // set.
    EXPECT_EQ(light.color(QPalette::PlaceholderText), light.color(QPalette::Disabled, QPalette::Text));
}

TEST_F(MainWindowStartup, a_dark_desktop_still_shows_a_light_window_and_light_dialogs)
{
    QApplication::setPalette(QPalette(QColor(40, 40, 40)));
    LightPalette::apply(*qApp);
    open();
    const QImage shown = window->grab().toImage();
    const auto lightness = [&](const char *name, QPoint inside) {
        return shown.pixelColor(find<QWidget>(name)->mapTo(window.get(), inside)).lightness();
    };
    EXPECT_GT(lightness("widget_19", {4, 300}), 230);
    EXPECT_GT(lightness("page_1", {4, 300}), 230);
    EXPECT_GT(lightness("textEdit", {20, 100}), 230);
    EXPECT_GT(lightness("comboBox_port", {20, 8}), 230);
}

TEST_F(MainWindowStartup, a_dark_desktop_still_shows_light_boxes_choosers_lists_and_tool_tips)
{
    QApplication::setPalette(QPalette(QColor(40, 40, 40)));
    LightPalette::apply(*qApp);
    open();
    const QMessageBox box(QMessageBox::Critical, "Error", "Device not found", QMessageBox::Ok, window.get());
    const QFileDialog chooser(window.get());
    const auto *names = chooser.findChild<QListView *>("listView");
    for (const QWidget *widget : {static_cast<const QWidget *>(&box), static_cast<const QWidget *>(&chooser),
                                  static_cast<const QWidget *>(names)}) {
        EXPECT_GT(widget->palette().color(QPalette::Window).lightness(), 230)
            << widget->metaObject()->className();
        EXPECT_GT(widget->palette().color(QPalette::Base).lightness(), 230)
            << widget->metaObject()->className();
        EXPECT_LT(widget->palette().color(QPalette::Text).lightness(), 100)
            << widget->metaObject()->className();
    }
    EXPECT_GT(QToolTip::palette().color(QPalette::ToolTipBase).lightness(), 230);
    EXPECT_LT(QToolTip::palette().color(QPalette::ToolTipText).lightness(), 100);

    auto *ports = find<QComboBox>("comboBox_port");
    ports->addItem("another");
    ports->showPopup();
    const QAbstractItemView *list = ports->view();
    ASSERT_TRUE(list->isVisible());
    const QImage popup = list->viewport()->grab().toImage();
    EXPECT_GT(popup.pixelColor(popup.width() - 5, list->visualRect(list->model()->index(1, 0)).center().y())
                  .lightness(),
              230);
    ports->hidePopup();
}

TEST_F(MainWindowStartup, boxes_have_plain_buttons_and_lists_drop_down_below_their_box)
{
    LightPalette::apply(*qApp);
    open();
    QMessageBox box(QMessageBox::Question, "Warning", "Sure?", QMessageBox::Yes | QMessageBox::No,
                    window.get());
    for (const QAbstractButton *choice : box.buttons())
        EXPECT_TRUE(choice->icon().isNull()) << qPrintable(choice->text());

    for (const char *name : {"comboBox_port", "comboBox_saveframes"}) {
        auto *list = find<QComboBox>(name);
        goTo(list);
        list->showPopup();
        EXPECT_GE(list->view()->mapToGlobal(QPoint()).y(),
                  list->mapToGlobal(QPoint(0, list->height() - 4)).y())
            << name;
        list->hidePopup();
    }
}
