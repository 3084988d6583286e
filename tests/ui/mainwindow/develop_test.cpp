#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/developwindow.h"

/// The engineering dialog over the window, while the link below it changes.
class MainWindowDevelop : public MainWindowTest
{
protected:
    /// Opens the dialog by its button and has each of these steps taken in it, one after the other.
    void inDialog(QList<std::function<void(QDialog &)>> steps)
    {
        boxes.onDialog = [&steps](QDialog *dialog) {
            if (steps.isEmpty())
                dialog->accept();
            else
                steps.takeFirst()(*dialog);
        };
        click("pushButton_develop");
        boxes.onDialog = {};
        EXPECT_TRUE(steps.isEmpty()) << "the dialog did not stay open for every step";
    }

    static QPushButton &commandButton(const QDialog &dialog)
    {
        return *getChild<QPushButton>(dialog, "pushButton_set_adc");
    }
    static QString connectionLine(const QDialog &dialog)
    {
        return getChild<QLabel>(dialog, "label_connection")->text();
    }
};

TEST_F(MainWindowDevelop, command_buttons_are_grey_while_the_acquisition_runs_and_usable_when_it_ends)
{
    openSampling("DebugMode=true\n");
    showFrames(1);
    inDialog({[this](QDialog &dialog) {
                  EXPECT_FALSE(getChild<QLabel>(dialog, "label_connection")->isVisible());
                  EXPECT_FALSE(commandButton(dialog).isEnabled());
                  EXPECT_EQ(commandButton(dialog).toolTip(), "Stop the acquisition first");
                  EXPECT_TRUE(getChild<QPushButton>(dialog, "pushButton_cal_time")->isEnabled());
                  window->on_pushButton_sample_clicked(); // the stop, asked for by whatever may
                  EXPECT_FALSE(commandButton(dialog).isEnabled()) << "it still runs";
                  detector.pushBlock();
                  ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
              },
              [](QDialog &dialog) {
                  EXPECT_TRUE(commandButton(dialog).isEnabled());
                  EXPECT_TRUE(commandButton(dialog).toolTip().isEmpty());
              }});
}

TEST_F(MainWindowDevelop, a_line_says_that_nothing_is_connected_and_the_buttons_send_all_the_same)
{
    open("DebugMode=true\n");
    inDialog({[](QDialog &dialog) {
        EXPECT_FALSE(connectionLine(dialog).isEmpty());
        EXPECT_TRUE(commandButton(dialog).isEnabled());
    }});
}

TEST_F(MainWindowDevelop, the_line_follows_the_connection)
{
    openConnected("DebugMode=true\n");
    inDialog({[this](QDialog &dialog) {
        EXPECT_TRUE(connectionLine(dialog).isEmpty());
        detector.link.serialNumbers.clear();
        ForwardLibrary::reportDeviceEvent(false);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !connectionLine(dialog).isEmpty(); }, 10000));
    }});
}

TEST_F(MainWindowDevelop, a_command_to_a_dead_handle_gives_the_device_up_behind_the_dialog)
{
    openConnected("DebugMode=true\n");
    inDialog({[this](QDialog &dialog) {
                  detector.link.setStatusResult(d2xx::Status::IoError);
                  commandButton(dialog).click();
              },
              [](QDialog &dialog) {
                  EXPECT_FALSE(connectionLine(dialog).isEmpty());
              }});
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowDevelop, clicks_that_queued_up_during_an_exchange_are_not_carried_out_afterwards)
{
    openConnected("DebugMode=true\n");
    detector.link.clearWritten();
    inDialog({[this](QDialog &dialog) {
        // The operator presses another button while the first command waits for its reply.
        detector.link.setOnWrite([this, &dialog](const QByteArray &) {
            detector.link.setOnWrite({});
            auto *other = getChild<QPushButton>(dialog, "pushButton_set_mode");
            for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                QCoreApplication::postEvent(other,
                                            new QMouseEvent(type, {5, 5}, other->mapToGlobal(QPointF{5, 5}),
                                                            Qt::LeftButton, Qt::LeftButton, {}));
            detector.link.push(hex("FFBB01010DEB"));
        });
        commandButton(dialog).click();
        QCoreApplication::processEvents();
        EXPECT_EQ(detector.link.written().size(), 1);
        getChild<QPushButton>(dialog, "pushButton_set_mode")->click(); // a press after it is one
        EXPECT_EQ(detector.link.written().size(), 2);
    }});
}

TEST_F(MainWindowDevelop, an_EEPROM_word_that_goes_out_in_another_form_says_so)
{
    open("DebugMode=true\n");
    inDialog({[](QDialog &dialog) {
        auto *field = getChild<QLineEdit>(dialog, "lineEdit_35");
        field->setText("2147483647");
        EXPECT_EQ(field->toolTip(), "Field 35");
        field->setText("4294967295");
        EXPECT_TRUE(field->toolTip().contains("00000001")) << qPrintable(field->toolTip());
    }});
}
