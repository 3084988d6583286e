#pragma once

#include "tests/support/children.h"
#include "tests/support/logfile.h"
#include "tests/support/messageboxes.h"
#include "tests/support/workingfolder.h"
#include "tests/ui/mainwindow/fakedetector.h"
#include "tests/ui/mainwindow/forwardlibrary.h"
#include "tests/ui/mainwindow/mainwindowinspector.h"
#include "ui/mainwindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QStackedWidget>
#include <QTest>
#include <QTextEdit>

#include <memory>
#include <optional>

/// A real window in an empty working folder, on a detector that the test drives, operated as a person does.
class MainWindowTest : public testing::Test
{
protected:
    /// Makes and shows the window; `config` are lines of config.ini.
    void open(const QByteArray &config = {})
    {
        ForwardLibrary::use(FakeD2xx::functions());
        folder.write(QStringLiteral("config.ini"),
                     "[General]\nD2xxLibrary=" + ForwardLibrary::path().toUtf8() + "\n" + config);
        window = std::make_unique<mainwindow>();
        window->show();
    }

    void openConnected(const QByteArray &config = {})
    {
        open(config);
        click("pushButton_Connect");
        ASSERT_EQ(button("pushButton_Connect")->text(), "Disconnect");
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

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return getChild<Widget>(*window, name);
    }
    [[nodiscard]] QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    [[nodiscard]] QString text(const char *label) const { return find<QLabel>(label)->text(); }

    /// Goes to the widget's page, as the navigation list does.
    void goTo(const QWidget *widget)
    {
        auto *pages = find<QStackedWidget>("stackedWidget");
        for (int row = 0; row < pages->count(); ++row) {
            if (pages->widget(row)->isAncestorOf(widget))
                find<QListWidget>("listWidget")->setCurrentRow(row);
        }
    }

    /// A press and release of the left button, on a button that the operator can reach.
    void click(const char *name)
    {
        auto *target = find<QAbstractButton>(name);
        goTo(target);
        ASSERT_TRUE(target->isVisible()) << name;
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(8, target->height() / 2));
    }

    [[nodiscard]] ProcessImage &pipeline() const { return MainWindowInspector::pipeline(*window); }
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

    /// What config.ini says of a key.
    [[nodiscard]] QVariant stored(const char *key) const
    {
        return QSettings(folder.filePath(QStringLiteral("config.ini")), QSettings::IniFormat)
            .value(QString::fromLatin1(key));
    }

    /// What the log said in the end: ends the window.
    [[nodiscard]] QString finalLog()
    {
        window.reset();
        return QString::fromUtf8(folder.read(logName()));
    }

    WorkingFolder folder;
    FakeDetector detector;
    std::optional<MessageBoxes> boxes{std::in_place};
    std::unique_ptr<mainwindow> window;
};
