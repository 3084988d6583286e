#include "ui/inspector/inspector.h"

#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QAction>

/// Counts who listens to a signal, which is not for everybody.
class Listening : public QObject
{
public:
    using QObject::receivers;
};

/// The inspector as the main window opens it.
class MainWindowInspecting : public MainWindowTest
{
protected:
    /// By the entry of the picture's menu.
    void openInspector()
    {
        find<QWidget>("frame")->actions().constFirst()->trigger();
        ASSERT_NE(inspector(), nullptr);
    }

    [[nodiscard]] Inspector *inspector() const { return window->findChild<Inspector *>(); }
    [[nodiscard]] QString value(const char *name) const
    {
        return getChild<QLabel>(*inspector(), QByteArray("value_").append(name).constData())
            ->text()
            .replace(u'\u00a0', u' ');
    }
    void waitForValue(const char *name, const QString &expected)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return value(name) == expected; }, 20000))
            << name << ": " << qPrintable(value(name));
    }

    /// Drags over a part of the picture; both places as shares of its width and height.
    void drag(QPointF from, QPointF to)
    {
        auto *picture = find<QWidget>("frame")->findChild<QLabel *>();
        const auto place = [picture](QPointF share) {
            return QPoint(qRound(share.x() * picture->width()), qRound(share.y() * picture->height()));
        };
        QTest::mousePress(picture, Qt::LeftButton, {}, place(from));
        QTest::mouseMove(picture, place((from + to) / 2));
        QTest::mouseMove(picture, place(to));
        QTest::mouseRelease(picture, Qt::LeftButton, {}, place(to));
    }
    /// "first row-last row, first column-last column"
    [[nodiscard]] QString region() const
    {
        const auto number = [this](const char *name) {
            return getChild<QSpinBox>(*inspector(), name)->value();
        };
        return QStringLiteral("%1-%2, %3-%4")
            .arg(number("spinBox_first_rows"))
            .arg(number("spinBox_last_rows"))
            .arg(number("spinBox_first_columns"))
            .arg(number("spinBox_last_columns"));
    }

    /// Closes it by the key, and waits until it is gone.
    void closeInspector()
    {
        QTest::keyClick(inspector(), Qt::Key_Escape);
        ASSERT_TRUE(QTest::qWaitFor([this] { return inspector() == nullptr; }, 20000));
    }
};

TEST_F(MainWindowInspecting, the_pictures_menu_and_a_key_open_one_that_leaves_the_window_usable)
{
    open();
    const QList<QAction *> entries = find<QWidget>("frame")->actions();
    ASSERT_FALSE(entries.isEmpty());
    EXPECT_EQ(entries.constFirst()->text(), "Inspector…");
    EXPECT_EQ(find<QWidget>("frame")->contextMenuPolicy(), Qt::ActionsContextMenu);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_I, Qt::ControlModifier);
    ASSERT_NE(inspector(), nullptr);
    EXPECT_TRUE(inspector()->isVisible());
    EXPECT_FALSE(inspector()->isModal());
    openInspector();
    EXPECT_EQ(window->findChildren<Inspector *>().size(), 1);
    closeInspector();
}

TEST_F(MainWindowInspecting, it_shows_the_frames_and_follows_the_click_that_reads_the_current)
{
    openSampling();
    openInspector();
    showFrames(1, 4096 + 500'000);
    waitForValue("received", "1");
    EXPECT_EQ(value("deviation"), "0.0000 nA");
    showFrames(2, 4096 + (1 << 20) - 1);
    waitForValue("received", "3");
    waitForValue("clipped_above", "1048576 (100.00 %)");
    auto *picture = find<QWidget>("frame")->findChild<QLabel *>();
    QTest::mouseClick(picture, Qt::LeftButton, {}, QPoint(picture->width() / 4, picture->height() / 2));
    const QString coordinate = text("label_coor").section(u':', 1).replace(",", ", ");
    const QString current = text("label_current").section(u' ', 1).replace("nA", " nA");
    waitForValue("pixel", coordinate.trimmed() + ' ' + current);
    EXPECT_EQ(value("waiting"), "0");
}

TEST_F(MainWindowInspecting, the_part_of_the_picture_that_the_mouse_is_dragged_over_is_its_region)
{
    openSampling();
    showFrames(1);
    auto *picture = find<QWidget>("frame")->findChild<QLabel *>();
    const QString whole = QStringLiteral("0-1023, 0-1023");
    picture->resize(512, 512);
    drag({0.25, 0.5}, {0.75, 0.625});
    EXPECT_EQ(inspector(), nullptr) << "without it a drag is a click";
    openInspector();
    EXPECT_EQ(region(), whole);
    drag({0.25, 0.5}, {0.75, 0.625});
    EXPECT_EQ(region(), "512-641, 256-769");
    EXPECT_EQ(text("label_coor"), "Coordinate: (256,512)") << "the press picks its pixel as ever";
    click("pushButton_rotate");
    drag({0.25, 0.5}, {0.75, 0.625});
    EXPECT_EQ(region(), "254-767, 512-641") << "a quarter turn clockwise: its left is the frame's bottom";
    drag({0.5, 0.5}, {-1, 2});
    EXPECT_EQ(region(), "510-1023, 512-1023") << "cut at the edges of the picture";
    closeInspector();
    drag({0.25, 0.5}, {0.75, 0.625});
}

TEST_F(MainWindowInspecting, closed_it_is_told_of_no_frame_and_works_nothing_out)
{
    openSampling();
    const auto listeners = [this] {
        return (pipeline().*&Listening::receivers)(SIGNAL(sendImagetoMain(QImage)));
    };
    const int without = listeners();
    openInspector();
    EXPECT_EQ(listeners(), without + 1);
    closeInspector();
    EXPECT_EQ(listeners(), without);
    showFrames(1);
}

TEST_F(MainWindowInspecting, the_window_closes_while_it_works)
{
    openSampling();
    showFrames(1);
    openInspector();
    EXPECT_EQ(inspector()->runner().begun(), 1);
    window->close();
    EXPECT_EQ(inspector(), nullptr);
    openInspector();
    window.reset();
}

TEST_F(MainWindowInspecting, it_counts_what_is_recorded_and_lost)
{
    openSampling();
    openInspector();
    find<QLineEdit>("lineEdit_savename")->setText("counted");
    find<QComboBox>("comboBox_saveframes")->setEditText("2");
    click("checkBox_picture");
    click("pushButton_save");
    showFrames(2);
    waitForValue("recorded", "2 of 2");
    EXPECT_EQ(value("losses"), "0");
    detector.link.setLosses(3);
    showFrames(1);
    waitForValue("losses", "3");
}
