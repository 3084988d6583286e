#pragma once

#include "tests/support/children.h"
#include "tests/support/logfile.h"
#include "tests/support/messageboxes.h"
#include "tests/support/workingfolder.h"
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

/// The operator's window in an empty working folder, operated as a person does. Which detector is behind it,
/// the fixtures above say.
class WindowFixture : public testing::Test
{
protected:
    /// The window goes before the detector on which it works.
    void TearDown() override { window.reset(); }

    /// Makes and shows the window on a driver library; `config` are more lines of config.ini.
    void openOn(const QByteArray &library, const QByteArray &config)
    {
        folder.write(QStringLiteral("config.ini"), "[General]\nD2xxLibrary=" + library + "\n" + config);
        window = std::make_unique<mainwindow>();
        window->show();
    }

    /// Connects by the button.
    void connectDetector()
    {
        click("pushButton_Connect");
        ASSERT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return getChild<Widget>(*window, name);
    }
    [[nodiscard]] QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    [[nodiscard]] QString text(const char *label) const { return find<QLabel>(label)->text(); }
    [[nodiscard]] ProcessImage &pipeline() const { return MainWindowInspector::pipeline(*window); }

    /// The serial numbers that are offered.
    [[nodiscard]] QStringList ports() const
    {
        QStringList texts;
        const auto *box = find<QComboBox>("comboBox_port");
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
        return texts;
    }

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

    /// What config.ini says of a key.
    [[nodiscard]] QVariant stored(const QString &key) const
    {
        return QSettings(folder.filePath(QStringLiteral("config.ini")), QSettings::IniFormat).value(key);
    }

    /// What the log said in the end: ends the window.
    [[nodiscard]] QString finalLog()
    {
        window.reset();
        return QString::fromUtf8(folder.read(logName()));
    }

    WorkingFolder folder;
    MessageBoxes boxes;
    std::unique_ptr<mainwindow> window;
};
