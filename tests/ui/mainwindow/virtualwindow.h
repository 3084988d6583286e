#pragma once

#include "tests/support/children.h"
#include "tests/support/messageboxes.h"
#include "tests/support/workingfolder.h"
#include "tests/ui/mainwindow/mainwindowinspector.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>

#include <memory>
#include <set>

/// The whole way from the buttons down to the virtual detector and back.
class MainWindowOnVirtualDetector : public testing::Test
{
protected:
    void open(const QByteArray &detector = {}, const QByteArray &config = {})
    {
        settleDetector(detector);
        folder.write("config.ini", "[General]\nD2xxLibrary=" QV1K_VIRTUAL_LIBRARY "\n" + config);
        window = std::make_unique<mainwindow>();
        window->show();
        QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                         [this](const QImage &image) {
                             ++pictures;
                             picture = image.copy();
                         });
    }

    /// Writes the detector's settings; paces are off unless said otherwise.
    void settleDetector(const QByteArray &lines)
    {
        folder.write("virtual-detector.ini", "[General]\nPacing=none\n" + lines);
    }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return getChild<Widget>(*window, name);
    }
    [[nodiscard]] QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    [[nodiscard]] ProcessImage &pipeline() const { return MainWindowInspector::pipeline(*window); }

    void click(const char *name)
    {
        auto *target = find<QAbstractButton>(name);
        auto *pages = find<QStackedWidget>("stackedWidget");
        for (int row = 0; row < pages->count(); ++row) {
            if (pages->widget(row)->isAncestorOf(target))
                find<QListWidget>("listWidget")->setCurrentRow(row);
        }
        ASSERT_TRUE(target->isVisible()) << name;
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(8, target->height() / 2));
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

    [[nodiscard]] QString text(const char *label) const { return find<QLabel>(label)->text(); }

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

    WorkingFolder folder;
    MessageBoxes boxes;
    int pictures = 0;
    QImage picture;
    std::unique_ptr<mainwindow> window;
};
