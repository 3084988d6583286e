#include "tests/ui/mainwindow/mainwindowtest.h"

#include "tests/support/debugoutput.h"
#include "ui/mainwindow/stylesheets.h"

#include <QDir>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

class MainWindowHotPlug : public MainWindowTest
{
protected:
    void plugIn()
    {
        const auto before = lists();
        ForwardLibrary::reportDeviceEvent(true);
        ASSERT_TRUE(QTest::qWaitFor([&] { return lists() > before; }));
    }

    void pullOut(const QStringList &left = {})
    {
        detector.link.serialNumbers = left;
        const auto before = lists();
        ForwardLibrary::reportDeviceEvent(false);
        ASSERT_TRUE(QTest::qWaitFor([&] { return lists() > before; }));
    }

    [[nodiscard]] qsizetype lists() const { return detector.link.calls().count("CreateDeviceInfoList"); }
};

TEST_F(MainWindowHotPlug, plugging_in_replaces_the_port_list_by_the_detectors_fixed_name)
{
    detector.link.serialNumbers.clear();
    open();
    EXPECT_EQ(ports(), QStringList());
    detector.link.serialNumbers = {"SOMETHING", "ELSE"};
    plugIn();
    EXPECT_EQ(ports(), QStringList("QV1K"));
}

TEST_F(MainWindowHotPlug, another_bridge_is_listed_as_such_and_not_chosen)
{
    detector.link.serialNumbers = {"CABLE"};
    detector.link.descriptions = {{"CABLE", "serial cable"}};
    open();
    EXPECT_EQ(ports(), QStringList("CABLE (other bridge)"));
    EXPECT_EQ(find<QComboBox>("comboBox_port")->currentIndex(), -1);
    click("pushButton_Connect");
    EXPECT_FALSE(detector.link.isOpen()) << "nobody named it";

    plugIn();
    EXPECT_EQ(ports(), QStringList("CABLE (other bridge)"));
    detector.link.serialNumbers = {"CABLE", "QV1K"};
    plugIn();
    EXPECT_EQ(ports(), QStringList({"QV1K", "CABLE (other bridge)"}));
    EXPECT_EQ(find<QComboBox>("comboBox_port")->currentText(), "QV1K");

    find<QComboBox>("comboBox_port")->setCurrentIndex(1);
    connectDetector();
    EXPECT_TRUE(detector.link.calls().contains("OpenEx CABLE 1")) << "the operator named it";
}

TEST_F(MainWindowHotPlug, detectors_may_have_other_names)
{
    detector.link.serialNumbers = {"CABLE", "QV1K"};
    detector.link.descriptions = {{"CABLE", "serial cable"}, {"QV1K", ""}};
    open("DetectorNames=Lab, serial\n");
    EXPECT_EQ(ports(), QStringList({"CABLE", "QV1K (other bridge)"}));
}

TEST_F(MainWindowHotPlug, pulling_out_another_detector_lists_those_that_are_left_and_goes_on)
{
    detector.link.serialNumbers = {"A", "B", "C"};
    const DebugOutput output;
    openSampling();
    EXPECT_TRUE(detector.link.calls().contains("OpenEx A 1"));
    pullOut({"C", "A"});
    EXPECT_EQ(ports(), QStringList({"C", "A"}));
    EXPECT_TRUE(output.contains("device remove"));
    EXPECT_TRUE(detector.link.isOpen());
    EXPECT_TRUE(looksRunning());
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    showFrames(1);
}

TEST_F(MainWindowHotPlug, pulling_out_the_open_one_of_several_detectors_gives_it_up_and_lists_the_others)
{
    detector.link.serialNumbers = {"A", "B", "C"};
    openSampling();
    showFrames(1);
    EXPECT_TRUE(detector.link.calls().contains("OpenEx A 1"));
    detector.link.setStatusResult(d2xx::Status::IoError);
    pullOut({"C", "B"});
    EXPECT_EQ(ports(), QStringList({"C", "B"}));
    EXPECT_FALSE(detector.link.isOpen());
    EXPECT_TRUE(looksIdle());
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_TRUE(find<QTextEdit>("textEdit")->toPlainText().contains("was lost at"));

    detector.link.setStatusResult(d2xx::Status::Ok);
    connectDetector();
    EXPECT_TRUE(detector.link.calls().contains("OpenEx C 1"));
    click("pushButton_sample");
    showFrames(1);
    stop();
}

TEST_F(MainWindowHotPlug, a_list_that_cannot_be_had_leaves_the_ports_and_the_acquisition_as_they_are)
{
    openSampling();
    detector.link.createListStatus = d2xx::Status::IoError;
    pullOut({"QV1K"});
    EXPECT_EQ(ports(), QStringList("QV1K"));
    EXPECT_TRUE(looksRunning());
    EXPECT_TRUE(detector.link.isOpen());
}

TEST_F(MainWindowHotPlug, pulling_out_the_last_detector_while_idle_returns_to_disconnected)
{
    openConnected();
    pullOut();
    EXPECT_EQ(ports(), QStringList());
    EXPECT_FALSE(detector.link.isOpen());
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_FALSE(statusTimer().isActive());
    EXPECT_TRUE(looksIdle());
    EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playIdle);
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowHotPlug, pulling_out_while_nothing_is_connected_changes_only_the_list)
{
    open();
    pullOut();
    EXPECT_EQ(ports(), QStringList());
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_TRUE(looksIdle());
}

TEST_F(MainWindowHotPlug, pulling_out_while_sampling_returns_to_disconnected_at_once)
{
    openSampling();
    showFrames(1);
    find<QLineEdit>("lineEdit_savename")->setText("cut");
    find<QComboBox>("comboBox_saveframes")->setEditText("500");
    click("checkBox_picture");
    click("pushButton_save");
    showFrames(1);
    ASSERT_TRUE(pipeline().isSaving());

    pullOut();
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_FALSE(detector.link.isOpen());
    EXPECT_FALSE(statusTimer().isActive());
    EXPECT_TRUE(looksIdle());
    EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playRemoved);
    EXPECT_TRUE(button("pushButton_set")->isEnabled());
    EXPECT_FALSE(pipeline().isSaving());
    EXPECT_EQ(text("label_savestate"), "Save Stop");
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowHotPlug, a_stop_that_arrives_after_the_removal_changes_nothing_and_does_not_block)
{
    openSampling();
    showFrames(1);
    click("pushButton_sample");
    EXPECT_TRUE(looksStopping());
    EXPECT_FALSE(button("pushButton_sample")->isEnabled());
    pullOut();
    EXPECT_TRUE(looksIdle());
    detector.link.clearWritten();

    QElapsedTimer blocked;
    blocked.start();
    window->handleStop();
    EXPECT_LT(blocked.elapsed(), 3000); // the wait for the echo of a halt would take 3.5 s
    EXPECT_TRUE(detector.link.written().isEmpty());
    EXPECT_FALSE(statusTimer().isActive());
    EXPECT_TRUE(looksIdle());
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
}

TEST_F(MainWindowHotPlug, after_a_removal_while_sampling_the_detector_can_be_used_again)
{
    openSampling();
    showFrames(1);
    pullOut();
    detector.link.serialNumbers = {"QV1K"};
    plugIn();
    click("pushButton_Connect");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    EXPECT_TRUE(statusTimer().isActive());
    click("pushButton_sample");
    EXPECT_TRUE(looksRunning());
    showFrames(2);
    stop();
    EXPECT_TRUE(looksIdle());
    EXPECT_TRUE(statusTimer().isActive());
}

namespace {

/// Notes what the window's own handling of native messages is asked, and answers in a way of its own.
class NotingWindow : public mainwindow
{
public:
    QByteArray type;
    const void *message = nullptr;

protected:
    bool nativeEvent(const QByteArray &eventType, void *eventMessage, qintptr *result) override
    {
        type = eventType;
        message = eventMessage;
        *result = 7;
        return true;
    }
};

} // namespace

TEST_F(MainWindowHotPlug, native_messages_are_passed_on_to_the_window_whose_answer_counts)
{
    NotingWindow noting;
    qintptr result = 0;
#ifdef Q_OS_WIN
    MSG message{};
#else
    int message = 0;
#endif
    EXPECT_TRUE(noting.nativeEventFilter("a message", &message, &result));
    EXPECT_EQ(noting.type, "a message");
    EXPECT_EQ(noting.message, &message);
    EXPECT_EQ(result, 7);
}
