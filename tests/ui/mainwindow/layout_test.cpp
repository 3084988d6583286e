#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/keepratiowidget.h"

#include <QScreen>

#include <utility>

class MainWindowLayout : public MainWindowTest
{
protected:
    /// Shows the window as on a machine where another font stands for the one that it asks for.
    void replaceFont(const char *before, const char *after)
    {
        QList<QWidget *> widgets = window->findChildren<QWidget *>();
        widgets.prepend(window.get());
        for (QWidget *widget : widgets)
            if (QString sheet = widget->styleSheet(); sheet.contains(before))
                widget->setStyleSheet(sheet.replace(before, after));
    }
};

TEST_F(MainWindowLayout, every_page_fits_a_small_screen)
{
    open("DebugMode=true\n");
    // 1280 x 720 at 200 %
    EXPECT_LE(window->minimumWidth(), 640);
    EXPECT_LE(window->minimumHeight(), 360);
    const QSize room = window->screen()->availableSize();
    ASSERT_LT(room.width(), 1280) << "the window would fit anyway";
    EXPECT_LE(window->width(), room.width());
    EXPECT_LE(window->height(), room.height());
}

TEST_F(MainWindowLayout, the_controls_of_every_page_lie_equally_high_in_every_font)
{
    QList<QMap<QString, std::pair<int, int>>> places; // top and height by page and name
    open("DebugMode=true\n");
    const char *before = "Arial";
    for (const char *family : {"Liberation Sans", "Noto Sans CJK SC"}) {
        replaceFont(std::exchange(before, family), family);
        ASSERT_EQ(QFontInfo(find<QPushButton>("pushButton_set")->font()).family(), family);
        places.emplaceBack();
        auto *pages = find<QStackedWidget>("stackedWidget");
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            QCoreApplication::processEvents();
            for (const QWidget *control : pages->currentWidget()->findChildren<QWidget *>())
                if (control->isVisible() && control->focusPolicy() != Qt::NoFocus &&
                    !qobject_cast<const QLabel *>(control))
                    places.last().insert(QStringLiteral("%1 %2").arg(page).arg(control->objectName()),
                                         {control->mapTo(window.get(), QPoint()).y(), control->height()});
        }
    }
    EXPECT_GT(places[0].size(), 30);
    for (const auto &[name, place] : places[0].asKeyValueRange())
        EXPECT_EQ(places[1].value(name), place) << name.toStdString();
}

TEST_F(MainWindowLayout, the_dialogs_open_no_larger_than_the_screen)
{
    open("DebugMode=true\n");
    const QSize room = window->screen()->availableSize();
    QStringList seen;
    boxes.onDialog = [&](QDialog *dialog) {
        seen << QString::fromLatin1(dialog->metaObject()->className());
        EXPECT_LE(dialog->width(), room.width());
        EXPECT_LE(dialog->height(), room.height());
        dialog->reject();
    };
    click("pushButton_develop");
    click("pushButton_voltinfo");
    EXPECT_EQ(seen, QStringList({"developwindow", "VoltageDetails"}));
}

TEST_F(MainWindowLayout, the_views_keep_their_ratios)
{
    open();
    window->resize(1280, 820);
    const auto ratio = [](const QWidget *view) {
        const auto *content = view->findChild<QWidget *>();
        return static_cast<double>(content->width()) / content->height();
    };
    EXPECT_NEAR(ratio(find<KeepRatioWidget>("frame")), 1.0, 0.01);
    EXPECT_NEAR(ratio(find<KeepRatioWidget>("frame_orvane")), 847.0 / 209.0, 0.1);
}
