// The pictures of the documents, made of the window on the virtual detector and compared with those that are
// kept. QV1K_PICTURES=folder keeps what was made there: see docs/images/make.

#include "tests/docs/pictures.h"
#include "tests/ui/mainwindow/virtualwindow.h"
#include "ui/developwindow.h"
#include "ui/inspector/inspector.h"

#include <QDir>
#include <QFileInfo>

namespace {

const QString keptFolder = QStringLiteral(QV1K_SOURCE_TREE "/docs/images/");

} // namespace

class DocumentPictures : public MainWindowOnVirtualDetector
{
protected:
    void compare(const QImage &made, const QString &name)
    {
        const QString wanted = qEnvironmentVariable("QV1K_PICTURES");
        if (!wanted.isEmpty()) {
            ASSERT_TRUE(made.save(wanted + u'/' + name)) << qPrintable(wanted);
            return;
        }
        const QImage kept(keptFolder + name);
        ASSERT_FALSE(kept.isNull()) << qPrintable(name) << " is not there: docs/images/make makes it";
        const QString difference = Pictures::difference(made, kept);
        const QString now = QDir(QStringLiteral(QV1K_MADE_PICTURES)).filePath(name);
        if (!difference.isEmpty())
            made.save(now);
        EXPECT_EQ(difference, QString())
            << qPrintable(name) << " is kept otherwise than the program looks: " << qPrintable(now)
            << "; docs/images/make makes it again";
    }

    /// The window as large as it is on a screen with room for it.
    void openWhole(const QByteArray &detector = {})
    {
        open(detector);
        window->resize(1280, 820);
    }

    /// Shows that many frames and keeps the last, while the acquisition goes on: the same noise every time.
    void standStillAfter(int frames)
    {
        QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(), [this, frames] {
            if (pictures == frames)
                QObject::disconnect(&pipeline(), nullptr, window.get(), nullptr);
        });
        start();
        ASSERT_TRUE(QTest::qWaitFor([&] { return pictures == frames; }, 20000)) << pictures;
        // What the virtual detector makes of its frame period; measured, it would be another every time.
        find<QLabel>("label_fps")->setText(QStringLiteral("FPS: 6.32"));
    }

    /// The upper part of the page that is in front, where its fields are.
    [[nodiscard]] QImage page() const
    {
        auto *pages = find<QStackedWidget>("stackedWidget");
        return pages->grab(QRect(0, 0, pages->width(), 390)).toImage();
    }

    void bringToFront(const char *widget) { goTo(find<QWidget>(widget)); }
};

TEST_F(DocumentPictures, of_the_running_window)
{
    openWhole();
    connectDetector();
    // Before the first frame: each refreshes the current, and the last that is shown counts.
    auto *view = find<QWidget>("frame")->findChild<QLabel *>();
    QTest::mouseClick(view, Qt::LeftButton, {}, view->rect().center());
    standStillAfter(2);
    bringToFront("pushButton_cali");
    compare(window->grab().toImage(), QStringLiteral("running.png"));
}

TEST_F(DocumentPictures, of_the_system_page_when_connected)
{
    openWhole();
    connectDetector();
    auto *text = find<QTextEdit>("textEdit");
    // Where the library lies is another place on every machine.
    const QString path = QStringLiteral(QV1K_VIRTUAL_LIBRARY);
    ASSERT_TRUE(text->toPlainText().contains(path));
    text->setPlainText(text->toPlainText().replace(path, QStringLiteral("/usr/lib/qv1k/libd2xx_virtual.so")));
    compare(page(), QStringLiteral("system.png"));
}

TEST_F(DocumentPictures, of_the_settings_page)
{
    openWhole();
    bringToFront("pushButton_set");
    compare(page(), QStringLiteral("settings.png"));
}

TEST_F(DocumentPictures, of_a_calibration)
{
    openWhole("Scene=flat\n");
    bringToFront("pushButton_cali");
    start();
    click("pushButton_cali");
    click("pushButton_full_on");
    waitForText("label_calistate", "Full On Success");
    compare(page(), QStringLiteral("calibration.png"));
}

TEST_F(DocumentPictures, of_a_finished_recording)
{
    openWhole();
    bringToFront("pushButton_save");
    find<QLineEdit>("lineEdit_savename")->setText(QStringLiteral("hand"));
    find<QCheckBox>("checkBox_picture")->setChecked(true);
    // Where the program was started is another folder every time.
    find<QLineEdit>("lineEdit_savepath")->setPlaceholderText(QStringLiteral("/home/operator/Logs"));
    start();
    click("pushButton_save");
    waitForText("label_savestate", "Save Success");
    compare(page(), QStringLiteral("save.png"));
}

TEST_F(DocumentPictures, of_the_engineering_dialog)
{
    QSettings settings(folder.filePath("develop.ini"), QSettings::IniFormat);
    developwindow dialog(&settings, nullptr);
    dialog.setConnected(true);
    dialog.show();
    compare(dialog.grab().toImage(), QStringLiteral("engineering.png"));
}

TEST_F(DocumentPictures, of_the_inspector)
{
    open();
    std::vector<std::vector<double>> frames;
    QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                     [&] { frames.push_back(pipeline().lastFrame()); });
    start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames.size() >= 2; }, 20000));
    stop();

    // The first two: the same noise every time.
    std::size_t next = 0;
    qint64 now = 0;
    Inspector inspector([&] { return std::span<const double>(frames.at(next)); }, [&] { return now; },
                        [] { return FrameCounts{.received = 2}; });
    inspector.pick(592, 425);
    int shown = 0;
    QObject::connect(&inspector.runner(), &InspectionRunner::inspected, &inspector, [&] { ++shown; });
    for (; next < 2; ++next, now += InspectionRunner::intervalMs) {
        inspector.frameArrived();
        ASSERT_TRUE(QTest::qWaitFor([&] { return shown == static_cast<int>(next) + 1; }, 20000));
    }
    compare(inspector.grab().toImage(), QStringLiteral("inspector.png"));
}

TEST(KeptPictures, are_those_that_are_made_and_small)
{
    const QDir kept(keptFolder);
    EXPECT_EQ(kept.entryList({"*.png"}, QDir::Files, QDir::Name),
              QStringList({"calibration.png", "engineering.png", "inspector.png", "running.png", "save.png",
                           "settings.png", "system.png"}));
    for (const QFileInfo &file : kept.entryInfoList({"*.png"}))
        EXPECT_LT(file.size(), 200 * 1024) << qPrintable(file.fileName());
}

TEST(KeptPictures, another_word_makes_a_difference_and_noise_does_not)
{
    QImage kept(256, 64, QImage::Format_RGB32);
    kept.fill(Qt::white);
    QImage noisy = kept;
    for (int x = 0; x < noisy.width(); ++x)
        noisy.setPixel(x, x % noisy.height(), qRgb(240, 240, 240));
    EXPECT_EQ(Pictures::difference(noisy, kept), QString());
    const auto written = [&kept](const QString &text) {
        QLabel label(text);
        label.setStyleSheet(QStringLiteral("background: white; color: black; font: 13px Arial;"));
        label.resize(kept.size());
        return label.grab().toImage();
    };
    EXPECT_EQ(Pictures::difference(written("Start"), written("Start")), QString());
    EXPECT_NE(Pictures::difference(written("Start"), written("Close")), QString());
    EXPECT_NE(Pictures::difference(kept.copy(0, 0, 128, 64), kept), QString());
}
