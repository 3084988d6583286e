// What nobody has set yet: the widths are those of every helper of the process.

#include "ui/framelesshelper.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

TEST(FramelessDefaults, the_grip_is_5_pixels_wide_and_the_title_strip_30_high)
{
    QWidget window;
    window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    window.setGeometry(100, 100, 800, 600);
    FramelessHelper helper(nullptr);
    helper.attachWindow(&window);
    helper.setEdgeWidth(0);
    helper.setTitleBarHeight(0);
    window.show();
    const auto dragged = [&window](QPoint from) {
        const QPoint before = window.pos();
        const auto send = [&window, before](QEvent::Type type, QPoint global) {
            QMouseEvent event(type, global - before, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&window, &event);
        };
        send(QEvent::MouseButtonPress, from);
        send(QEvent::MouseMove, from + QPoint(10, 10));
        send(QEvent::MouseButtonRelease, from + QPoint(10, 10));
        return window.pos() - before;
    };
    EXPECT_EQ(dragged({500, 130}), QPoint(0, 0)) << "row 30";
    EXPECT_EQ(dragged({500, 129}), QPoint(10, 10)) << "row 29";
    EXPECT_EQ(dragged({116, 125}), QPoint(10, 10)) << "column 6";
    const int widthBefore = window.width();
    dragged({125, 300});
    EXPECT_EQ(window.width(), widthBefore - 15) << "column 5 follows the cursor";
}
