// The messages of Windows about what is plugged in, sent to the real window in every state. The system does
// not let a program post them.

#include "tests/ui/mainwindow/mainwindowtest.h"

#include <qt_windows.h>
// After the header that it needs.
#include <dbt.h>

#include <vector>

namespace {

constexpr WPARAM arrival = DBT_DEVICEARRIVAL;
constexpr WPARAM removal = DBT_DEVICEREMOVECOMPLETE;

HWND handleOf(const QWidget &widget)
{
    return reinterpret_cast<HWND>(widget.window()->winId());
}

/// The interface of a USB device, as registered windows are told of it.
std::vector<char> usbDevice(const QString &name)
{
    const auto characters = static_cast<std::size_t>(name.size()) + 1;
    std::vector<char> bytes(sizeof(DEV_BROADCAST_DEVICEINTERFACE_W) + characters * sizeof(wchar_t));
    auto *device = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_W *>(bytes.data());
    device->dbcc_size = static_cast<DWORD>(bytes.size());
    device->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    name.toWCharArray(device->dbcc_name);
    return bytes;
}

} // namespace

class DeviceChange : public MainWindowTest
{
protected:
    /// As the program's main() does.
    void listen() { QCoreApplication::instance()->installNativeEventFilter(window.get()); }

    [[nodiscard]] qsizetype lists() const { return detector.link.calls().count("CreateDeviceInfoList"); }

    /// How often the devices are listed because of a message, when it and all that it caused is handled.
    [[nodiscard]] qsizetype listingsAfter(WPARAM what, const QWidget &receiver,
                                          const void *device = nullptr) const
    {
        const qsizetype before = lists();
        SendMessageW(handleOf(receiver), WM_DEVICECHANGE, what, reinterpret_cast<LPARAM>(device));
        QCoreApplication::processEvents();
        return lists() - before;
    }

    /// An arrival and the removal of another detector are one listing each.
    void expectOneListingEach() const
    {
        EXPECT_EQ(listingsAfter(arrival, *window), 1);
        EXPECT_EQ(listingsAfter(removal, *window), 1);
    }
};

TEST_F(DeviceChange, is_heard_while_disconnected)
{
    open();
    listen();
    expectOneListingEach();
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
}

TEST_F(DeviceChange, is_heard_while_connected_and_idle)
{
    openConnected();
    listen();
    expectOneListingEach();
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    EXPECT_TRUE(looksIdle());
}

TEST_F(DeviceChange, is_heard_while_sampling)
{
    openSampling();
    listen();
    showFrames(1);
    expectOneListingEach();
    EXPECT_TRUE(looksRunning());
    showFrames(1);
}

TEST_F(DeviceChange, is_heard_while_stopping)
{
    openSampling();
    listen();
    showFrames(1);
    click("pushButton_sample");
    ASSERT_TRUE(looksStopping());
    expectOneListingEach();
    EXPECT_TRUE(looksStopping());
    detector.pushBlock();
    EXPECT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
}

TEST_F(DeviceChange, is_heard_while_a_message_box_is_open)
{
    openSampling();
    listen();
    int told = 0;
    boxes.onBox = [&] {
        ++told;
        expectOneListingEach();
    };
    click("pushButton_Connect"); // stop first, it says
    EXPECT_EQ(told, 1);
}

TEST_F(DeviceChange, is_heard_while_the_engineering_dialog_is_open)
{
    openConnected("DebugMode=true\n");
    listen();
    int told = 0;
    boxes.onDialog = [&](QDialog *dialog) {
        ++told;
        expectOneListingEach();
        dialog->reject();
    };
    click("pushButton_develop");
    EXPECT_EQ(told, 1);
}

TEST_F(DeviceChange, that_also_comes_to_a_dialog_is_one_event)
{
    openConnected("DebugMode=true\n");
    listen();
    int told = 0;
    boxes.onDialog = [&](QDialog *dialog) {
        ++told;
        EXPECT_EQ(listingsAfter(arrival, *dialog), 0);
        EXPECT_EQ(listingsAfter(removal, *dialog), 0);
        dialog->reject();
    };
    click("pushButton_develop");
    EXPECT_EQ(told, 1);
}

TEST_F(DeviceChange, the_removal_of_the_last_detector_returns_to_disconnected)
{
    openSampling();
    listen();
    showFrames(1);
    detector.link.serialNumbers.clear();
    EXPECT_EQ(listingsAfter(removal, *window), 1);
    EXPECT_EQ(ports(), QStringList());
    EXPECT_FALSE(detector.link.isOpen());
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_TRUE(looksIdle());
}

TEST_F(DeviceChange, of_a_usb_device_is_heard_when_it_is_a_bridge)
{
    open();
    listen();
    const auto bridge = usbDevice("\\\\?\\USB#VID_0403&PID_6014#QV1K#{a5dcbf10-6530-11d2-901f-00c04fb951ed}");
    EXPECT_EQ(listingsAfter(arrival, *window, bridge.data()), 1);
    EXPECT_EQ(listingsAfter(removal, *window, bridge.data()), 1);
    const auto mouse = usbDevice("\\\\?\\USB#VID_1234&PID_0403#QV1K#{a5dcbf10-6530-11d2-901f-00c04fb951ed}");
    EXPECT_EQ(listingsAfter(arrival, *window, mouse.data()), 0);
    EXPECT_EQ(listingsAfter(removal, *window, mouse.data()), 0);
}

TEST_F(DeviceChange, of_another_kind_is_left_alone)
{
    open();
    listen();
    for (const WPARAM what :
         {WPARAM{DBT_DEVNODES_CHANGED}, WPARAM{DBT_DEVICEQUERYREMOVE}, WPARAM{DBT_CUSTOMEVENT}})
        EXPECT_EQ(listingsAfter(what, *window), 0) << what;
}
