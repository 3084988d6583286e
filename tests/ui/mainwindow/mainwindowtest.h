#pragma once

#include "tests/ui/mainwindow/fakedetector.h"
#include "tests/ui/mainwindow/forwardlibrary.h"
#include "tests/ui/mainwindow/windowfixture.h"

/// The window on a detector that the test drives.
class MainWindowTest : public WindowFixture
{
protected:
    /// Makes and shows the window; `config` are more lines of config.ini.
    void open(const QByteArray &config = {})
    {
        ForwardLibrary::use(FakeD2xx::functions());
        openOn(ForwardLibrary::path().toUtf8(), config);
    }

    void openConnected(const QByteArray &config = {})
    {
        open(config);
        connectDetector();
    }

    void openSampling(const QByteArray &config = {})
    {
        openConnected(config);
        click("pushButton_sample");
        ASSERT_TRUE(looksRunning());
    }

    /// Waits for that many more pictures.
    void showFrames(int frames, quint32 sample = 4096)
    {
        int shown = 0;
        const auto counting = QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                                               [&shown] { ++shown; });
        detector.stream(frames, sample);
        ASSERT_TRUE(QTest::qWaitFor([&] { return shown == frames && detector.owesBlock(); }, 20000)) << shown;
        QObject::disconnect(counting);
    }

    /// Presses play while it runs and gives the receive loop the block boundary at which it halts.
    void stop()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return detector.owesBlock(); }, 10000));
        click("pushButton_sample");
        detector.pushBlock();
        ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
    }

    [[nodiscard]] const QTimer &statusTimer() const { return MainWindowInspector::statusTimer(*window); }

    [[nodiscard]] bool hasIcon(const QAbstractButton *target, const char *name) const
    {
        const QString file = QStringLiteral(":/image/image_resource/%1").arg(QString::fromLatin1(name));
        return target->icon().pixmap(20, 20).toImage() == QIcon(file).pixmap(20, 20).toImage();
    }
    [[nodiscard]] bool looksIdle() const
    {
        return hasIcon(button("pushButton_sample"), "play.png") && button("pushButton_sample")->isEnabled();
    }
    [[nodiscard]] bool looksRunning() const { return hasIcon(button("pushButton_sample"), "stop.png"); }
    [[nodiscard]] bool looksStopping() const { return hasIcon(button("pushButton_sample"), "replay.png"); }

    FakeDetector detector;
};
