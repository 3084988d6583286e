#pragma once

#include "tests/support/virtualdetector.h"
#include "tests/ui/mainwindow/windowfixture.h"

#include <set>

/// The whole way from the buttons down to the virtual detector and back.
class MainWindowOnVirtualDetector : public WindowFixture
{
protected:
    void open(const QByteArray &detector = {}, const QByteArray &config = {})
    {
        settleVirtualDetector(folder, detector);
        openOn(QV1K_VIRTUAL_LIBRARY, config);
        QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                         [this](const QImage &image) {
                             ++pictures;
                             picture = image.copy();
                         });
    }

    void start()
    {
        if (button("pushButton_Connect")->text() == "Connect")
            click("pushButton_Connect");
        click("pushButton_sample");
        ASSERT_FALSE(button("pushButton_set")->isEnabled()) << "the acquisition does not run";
    }

    void waitForPictures(int more)
    {
        const int target = pictures + more;
        ASSERT_TRUE(QTest::qWaitFor([&] { return pictures >= target; }, 20000)) << pictures;
    }

    void stop()
    {
        click("pushButton_sample");
        ASSERT_TRUE(QTest::qWaitFor([this] { return button("pushButton_set")->isEnabled(); }, 20000));
        EXPECT_TRUE(button("pushButton_sample")->isEnabled());
    }

    /// The rate that the window shows.
    [[nodiscard]] double framesPerSecond() const { return text("label_fps").section(u' ', 1).toDouble(); }

    /// Waits until the label says so.
    void waitForText(const char *label, const char *expected)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return text(label) == expected; }, 20000))
            << qPrintable(text(label));
    }

    [[nodiscard]] std::set<uchar> greys() const
    {
        std::set<uchar> levels;
        for (int y = 0; y < picture.height(); ++y)
            levels.insert(picture.constScanLine(y), picture.constScanLine(y) + picture.width());
        return levels;
    }

    int pictures = 0;
    QImage picture;
};
