// What the window looks like on screens of different sizes. The device pixel ratio is the process's: CMake
// runs this with several.

#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/chrome/screenroom.h"
#include "ui/developwindow.h"
#include "ui/keepratiowidget.h"
#include "ui/voltagedetails.h"

#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QScrollArea>
#include <QScrollBar>

#include <cmath>

namespace {

/// Widgets whose inside is the toolkit's own.
bool isClosed(const QWidget *widget)
{
    return qobject_cast<const QAbstractScrollArea *>(widget) != nullptr ||
           qobject_cast<const QAbstractSpinBox *>(widget) != nullptr ||
           qobject_cast<const QComboBox *>(widget) != nullptr ||
           qobject_cast<const QLineEdit *>(widget) != nullptr;
}

QList<QWidget *> shownChildren(const QWidget &parent)
{
    QList<QWidget *> children = parent.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    children.removeIf([](const QWidget *child) { return !child->isVisible() || child->isWindow(); });
    return children;
}

bool isCut(const QWidget *widget)
{
    if (const auto *list = qobject_cast<const QListWidget *>(widget))
        return list->viewport()->width() < list->sizeHintForColumn(0) ||
               list->verticalScrollBar()->maximum() > 0;
    if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
        return edit->fontMetrics().horizontalAdvance(edit->text()) + 8 > edit->width();
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        if (label->text().isEmpty() || label->maximumWidth() < 10)
            return false;
        if (label->wordWrap())
            return label->heightForWidth(label->width()) > label->height();
        return label->sizeHint().width() > label->width() || label->sizeHint().height() > label->height();
    }
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    return button != nullptr && !button->text().isEmpty() &&
           (button->sizeHint().width() > button->width() ||
            button->fontMetrics().height() > button->height());
}

/// Everything visible lies inside its parent, over no sibling, and with its whole text.
QStringList faults(const QWidget &parent)
{
    QStringList found;
    const QList<QWidget *> children = shownChildren(parent);
    for (const QWidget *child : children) {
        if (!parent.rect().contains(child->geometry()))
            found << child->objectName() + " reaches out of " + parent.objectName();
        if (isCut(child))
            found << child->objectName() + " is cut";
        for (const QWidget *other : children) {
            if (child < other && child->geometry().intersects(other->geometry()))
                found << child->objectName() + " and " + other->objectName() + " overlap";
        }
        if (!isClosed(child))
            found << faults(*child);
    }
    return found;
}

void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace

class MainWindowScreens : public MainWindowTest
{
protected:
    /// Everything that a page may show, with texts as long as they get.
    void showEverything()
    {
        click("pushButton_cali");
        find<QLabel>("label_fps")->setText("FPS: 1000.00");
        find<QLabel>("label_coor")->setText("Coordinate: (1023,1023)");
        find<QLabel>("label_current")->setText("Current: 1048.5759nA");
        find<QLabel>("label_calistate")->setText("Full Off Success");
        find<QLabel>("label_savestate")->setText("Save Success");
        find<QLabel>("label_savedetail")->setText("1000 of 1000 frames stored, 1000 files failed");
        button("pushButton_openfolder")->show();
    }

    static void replaceFont(QWidget &shown, const QString &before, const QString &after)
    {
        QList<QWidget *> widgets = shown.findChildren<QWidget *>();
        widgets.prepend(&shown);
        for (QWidget *widget : widgets)
            if (QString sheet = widget->styleSheet(); sheet.contains(before))
                widget->setStyleSheet(sheet.replace(before, after));
    }

    void expectWholeOnEveryPage(const QString &when)
    {
        auto *pages = find<QListWidget>("listWidget");
        for (int row = 0; row < pages->count(); ++row) {
            pages->setCurrentRow(row);
            settle();
            const QStringList found = faults(*window);
            EXPECT_TRUE(found.isEmpty())
                << qPrintable(when) << ", page " << row << ": " << qPrintable(found.join("; "));
        }
    }
};

TEST_F(MainWindowScreens, nothing_is_cut_and_nothing_overlaps)
{
    open("DebugMode=true\n");
    showEverything();
    const QList<QSize> screens{{1280, 720}, {1920, 1080}, {3840, 2160}};
    QString family = "Arial";
    for (const char *next : {"Liberation Sans", "Noto Sans CJK SC"}) {
        replaceFont(*window, family, next);
        family = next;
        settle();
        ASSERT_EQ(QFontInfo(button("pushButton_set")->font()).family(), family);
        // Beside the screens, where the layouts begin to give way.
        QList<QSize> sizes{window->minimumSize(), {980, 446}, {979, 445}, {1280, 820}};
        for (const QSize screen : screens)
            sizes << (QSizeF(screen) / window->devicePixelRatioF()).toSize();
        for (const QSize size : sizes) {
            window->resize(size);
            settle();
            EXPECT_EQ(window->size(), size);
            expectWholeOnEveryPage(
                QStringLiteral("%1, %2 x %3").arg(family).arg(size.width()).arg(size.height()));
        }
    }
}

TEST_F(MainWindowScreens, the_dialogs_are_whole_and_so_they_are_when_they_are_scrolled)
{
    open();
    QSettings settings("./other.ini", QSettings::IniFormat);
    const QSize large(2000, 2000);
    for (const QString family : {"Liberation Sans", "Noto Sans CJK SC"}) {
        for (const QSize room : {large, QSize(845, 448), QSize(640, 330)}) {
            developwindow develop(&settings, nullptr);
            develop.setConnected(false);
            VoltageDetails voltages(nullptr);
            voltages.setStyleSheet(window->styleSheet()); // as below the window
            for (QDialog *dialog : std::initializer_list<QDialog *>{&develop, &voltages}) {
                replaceFont(*dialog, "Arial", family);
                ScreenRoom::keepWithin(*dialog, room);
                dialog->show();
                settle();
                ASSERT_EQ(QFontInfo(dialog->findChild<QLabel *>()->font()).family(), family);
                const auto *area = dialog->findChild<QScrollArea *>();
                EXPECT_EQ(area != nullptr, room != large);
                EXPECT_TRUE(area == nullptr || dialog->size() == room);
                const QStringList found = faults(area != nullptr ? *area->widget() : *dialog);
                EXPECT_TRUE(found.isEmpty()) << qPrintable(family + ": " + found.join("; "));
            }
        }
    }
}

TEST_F(MainWindowScreens, the_picture_has_the_screens_own_pixels)
{
    open();
    QImage stripes(1024, 1024, QImage::Format_Grayscale8);
    for (int y = 0; y < 1024; ++y)
        for (int x = 0; x < 1024; ++x)
            stripes.scanLine(y)[x] = static_cast<uchar>(x / 4 % 2 == 0 ? 20 : 230);
    window->receive_displayImage(stripes);
    auto *label = find<QWidget>("frame")->findChild<QLabel *>();
    const QPixmap shown = label->pixmap(Qt::ReturnByValue);
    const qreal ratio = window->devicePixelRatioF();
    EXPECT_EQ(shown.devicePixelRatio(), ratio);
    const double side = std::min(label->width(), label->height()) * ratio;
    EXPECT_NEAR(shown.width(), side, 1.0);
    EXPECT_EQ(shown.width(), shown.height());

    // And is painted pixel by pixel: what the screen shows is the picture as it was scaled.
    const QImage painted = label->grab().toImage().convertToFormat(QImage::Format_Grayscale8);
    const QImage expected = shown.toImage().convertToFormat(QImage::Format_Grayscale8);
    const int y = expected.height() / 2;
    const int last = std::min(painted.width(), expected.width());
    int best = last;
    for (int shift = -2; shift <= 2; ++shift) {
        int wrong = 0;
        for (int x = 2; x < last - 2; ++x)
            wrong += painted.constScanLine(y)[x + shift] == expected.constScanLine(y)[x] ? 0 : 1;
        best = std::min(best, wrong);
    }
    EXPECT_EQ(best, 0) << "columns that were scaled once more";
}

TEST_F(MainWindowScreens, a_click_tells_the_same_place_at_every_ratio)
{
    open();
    auto *label = find<QWidget>("frame")->findChild<QLabel *>();
    QTest::mouseClick(label, Qt::LeftButton, {}, QPoint(label->width() / 2, label->height() / 4));
    const QString expected = QStringLiteral("Coordinate: (%1,%2)")
                                 .arg(label->width() / 2 * 1024 / label->width())
                                 .arg(label->height() / 4 * 1024 / label->height());
    EXPECT_EQ(text("label_coor"), expected);
}
