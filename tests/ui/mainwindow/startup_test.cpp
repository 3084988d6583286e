#include "mainwindowtest.h"

#include "device/portmanager.h"
#include "log/logmanager.h"
#include "ui/lightpalette.h"

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
    EXPECT_EQ(boxes->last().text, "Device not found");
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
    const QDialog dialog(window.get());
    EXPECT_GT(dialog.palette().color(QPalette::Window).lightness(), 230);
    EXPECT_LT(dialog.palette().color(QPalette::WindowText).lightness(), 100);
}
