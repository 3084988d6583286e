#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/mainwindow/stylesheets.h"

#include <QCoreApplication>
#include <QLayout>
#include <QTranslator>

namespace {

/// Has another text for whatever can be translated.
class AnotherLanguage : public QTranslator
{
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char * /*context*/, const char *text, const char * /*comment*/,
                                    int /*number*/) const override
    {
        return QStringLiteral("~%1~").arg(QString::fromUtf8(text));
    }
};

} // namespace

class MainWindowConnection : public MainWindowTest
{
protected:
    void showLevel(const QByteArray &reply)
    {
        detector.link.answer(CommandFrame::levelQuery(), reply);
        window->check_lower_computer_status();
        find<QWidget>("widget_battery")->layout()->activate();
    }
};

TEST_F(MainWindowConnection, in_another_language_the_connect_button_still_tells_the_state_by_its_text)
{
    AnotherLanguage language;
    QCoreApplication::installTranslator(&language);
    open();
    EXPECT_EQ(button("pushButton_set")->text(), "~Setting~");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    click("pushButton_Connect");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    click("pushButton_Connect");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    QCoreApplication::removeTranslator(&language);
}

TEST_F(MainWindowConnection,
       connect_opens_the_chosen_detector_asks_for_its_charge_and_polls_every_two_minutes)
{
    detector.link.serialNumbers = {"QV1K", "QV2K"};
    open();
    find<QComboBox>("comboBox_port")->setCurrentIndex(1);
    click("pushButton_Connect");
    EXPECT_TRUE(detector.link.calls().contains("OpenEx QV2K 1"));
    EXPECT_EQ(detector.link.writtenHex(), "FFAA02100DEB");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    EXPECT_TRUE(statusTimer().isActive());
    EXPECT_EQ(statusTimer().interval(), 120000);
    EXPECT_FALSE(statusTimer().isSingleShot());
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowConnection, disconnect_closes_the_detector_and_stops_the_poll)
{
    openConnected();
    click("pushButton_Connect");
    EXPECT_FALSE(detector.link.isOpen());
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_FALSE(statusTimer().isActive());
    click("pushButton_Connect");
    EXPECT_TRUE(detector.link.isOpen());
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
}

TEST_F(MainWindowConnection, without_a_detector_connect_says_device_not_found)
{
    detector.link.serialNumbers.clear();
    open();
    click("pushButton_Connect");
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().title, "Error");
    EXPECT_EQ(boxes.last().text, "Device not found");
    EXPECT_EQ(boxes.last().icon, QMessageBox::Critical);
    EXPECT_EQ(boxes.last().buttons, QMessageBox::Ok);
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_FALSE(detector.link.calls().join(u' ').contains("OpenEx"));
    EXPECT_FALSE(statusTimer().isActive());
}

TEST_F(MainWindowConnection, a_detector_that_another_program_holds_says_device_connect_failed)
{
    detector.link.openStatus = d2xx::Status::DeviceNotOpened;
    open();
    click("pushButton_Connect");
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().title, "Error");
    EXPECT_EQ(boxes.last().text, "Device connect failed");
    EXPECT_EQ(boxes.last().icon, QMessageBox::Critical);
    EXPECT_EQ(boxes.last().buttons, QMessageBox::Ok);
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_TRUE(detector.link.written().isEmpty());
    EXPECT_FALSE(statusTimer().isActive());

    detector.link.openStatus = d2xx::Status::Ok;
    click("pushButton_Connect");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
}

TEST_F(MainWindowConnection, disconnect_is_refused_while_the_acquisition_runs)
{
    openSampling();
    click("pushButton_Connect");
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().title, "Error");
    EXPECT_EQ(boxes.last().text, "Device is running,Please stop sample first");
    EXPECT_EQ(boxes.last().icon, QMessageBox::Critical);
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    EXPECT_TRUE(detector.link.isOpen());
    EXPECT_TRUE(looksRunning());
}

TEST_F(MainWindowConnection, the_battery_gauge_shows_the_charge_and_turns_red_below_20_percent)
{
    openConnected();
    const auto *gauge = find<QWidget>("widget_battery");
    const auto *fill = find<QWidget>("battery_color");
    constexpr int whole = 34; // inside the white border
    struct Case
    {
        const char *reply;
        int gap;
        const char *style;
    };
    for (const Case &c : {Case{"640000000000", 0, StyleSheets::batteryFull},
                          Case{"320000000000", 18, StyleSheets::batteryFull},
                          Case{"140000000000", 28, StyleSheets::batteryFull},
                          Case{"130000000000", 29, StyleSheets::batteryLow},
                          Case{"000000000000", whole, StyleSheets::batteryLow}}) {
        showLevel(hex(c.reply));
        EXPECT_EQ(fill->width(), whole - c.gap) << c.reply;
        EXPECT_EQ(fill->styleSheet(), c.style) << c.reply;
    }
    EXPECT_EQ(gauge->size(), QSize(36, 18)) << "the gauge itself keeps its size";
}

TEST_F(MainWindowConnection, a_short_reply_counts_by_its_first_byte_and_an_absurd_charge_is_full)
{
    openConnected();
    const auto *fill = find<QWidget>("battery_color");
    showLevel(hex("0A"));
    EXPECT_EQ(fill->styleSheet(), StyleSheets::batteryLow);
    showLevel(hex("FF0000000000"));
    EXPECT_EQ(fill->styleSheet(), StyleSheets::batteryFull);
    EXPECT_GE(fill->visibleRegion().boundingRect().width(), 34) << "all that the gauge lets through";
    EXPECT_EQ(find<QWidget>("widget_battery")->size(), QSize(36, 18));
}

TEST_F(MainWindowConnection, a_detector_that_does_not_tell_its_charge_leaves_the_gauge_and_connects)
{
    open();
    const auto *fill = find<QWidget>("battery_color");
    const QRect before = fill->geometry();
    detector.link.answer(CommandFrame::levelQuery(), {});
    click("pushButton_Connect");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    EXPECT_TRUE(statusTimer().isActive());
    EXPECT_EQ(fill->geometry(), before);
    EXPECT_EQ(fill->styleSheet(), StyleSheets::batteryFull);
}
