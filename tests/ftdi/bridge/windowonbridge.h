#pragma once

#include "tests/ftdi/bridge/detectorlines.h"
#include "tests/ftdi/bridge/usbbed.h"
#include "tests/support/patience.h"
#include "tests/ui/mainwindow/windowfixture.h"

#include <QTextEdit>

/// The whole way from the buttons through the link and the open driver down to a detector on an emulated
/// bridge, and back. The detector sends as fast as it is asked.
class WindowOnBridge : public WindowFixture
{
protected:
    static constexpr int port = 1;

    void SetUp() override
    {
        ASSERT_TRUE(UsbBed::isAtHand()) << "start it by ctest, which loads umockdev's library first";
    }

    void open(const QByteArray &config = {})
    {
        openOn(QV1K_FTDI_LIBRARY, "DebugMode=true\n" + config);
        QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(), [this] { ++pictures; });
    }

    void plugIn(const UsbBed::Identity &identity = {})
    {
        simulator::Settings settings;
        settings.pacing = simulator::Pacing::None;
        bridge = &bed.plugIn(port, identity, std::make_unique<DetectorLines>(settings));
    }
    void unplug()
    {
        bed.unplug(port);
        bridge = nullptr;
    }

    [[nodiscard]] bool isConnected() const { return button("pushButton_Connect")->text() == "Disconnect"; }
    [[nodiscard]] bool isSampling() const { return !button("pushButton_set")->isEnabled(); }
    [[nodiscard]] QString systemPage() const { return find<QTextEdit>("textEdit")->toPlainText(); }

    void waitForPorts(const QStringList &expected)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return ports() == expected; }, patienceMs))
            << qPrintable(ports().join(u' '));
    }
    void start()
    {
        click("pushButton_sample");
        ASSERT_TRUE(isSampling()) << "the acquisition does not run; "
                                  << (boxes.isEmpty() ? "no message" : qPrintable(boxes.last().text));
    }
    /// However slow the machine is: the next picture comes in time.
    void waitForPictures(int more)
    {
        for (int left = more; left > 0; --left) {
            const int before = pictures;
            ASSERT_TRUE(QTest::qWaitFor([&] { return pictures > before; }, patienceMs)) << pictures;
            left -= pictures - before - 1;
        }
    }
    void stop()
    {
        click("pushButton_sample");
        ASSERT_TRUE(QTest::qWaitFor([this] { return !isSampling(); }, patienceMs));
    }
    /// The way to a picture that the operator goes.
    void expectThatItWorks()
    {
        waitForPorts({"QV1K"});
        connectDetector();
        start();
        waitForPictures(1);
        stop();
    }
    /// After the cable was pulled.
    void expectThatItIsGivenUp()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !isConnected() && !isSampling(); }, patienceMs));
        EXPECT_TRUE(button("pushButton_sample")->isEnabled());
        waitForPorts({});
    }

    UsbBed bed;
    EmulatedBridge *bridge = nullptr;
    int pictures = 0;
};
