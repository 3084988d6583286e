#include "tests/ui/chrome/chromewindow.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <QTimerEvent>

namespace {

const QPoint inTitle(500, 120);
const QPoint inBody(500, 400);

} // namespace

TEST(FramelessDrag, the_title_strip_moves_the_window_with_the_cursor)
{
    ChromeWindow window;
    window.press(inTitle);
    window.moveTo(inTitle + QPoint(37, -15));
    EXPECT_EQ(window.geometry(), QRect(137, 85, 800, 600));
    window.moveTo(inTitle + QPoint(-60, 44));
    EXPECT_EQ(window.geometry(), QRect(40, 144, 800, 600));
}

TEST(FramelessDrag, the_last_row_of_the_title_strip_drags_and_the_next_does_not)
{
    ChromeWindow window;
    window.press({500, 139});
    window.moveTo({510, 149});
    window.release({510, 149});
    EXPECT_EQ(window.pos(), QPoint(110, 110));

    window.press({500, 150});
    window.moveTo({550, 200});
    EXPECT_EQ(window.pos(), QPoint(110, 110));
}

TEST(FramelessDrag, the_body_does_not_move_the_window)
{
    ChromeWindow window;
    window.press(inBody);
    window.moveTo(inBody + QPoint(50, 50));
    EXPECT_EQ(window.geometry(), QRect(100, 100, 800, 600));
}

TEST(FramelessDrag, the_release_ends_the_drag)
{
    ChromeWindow window;
    window.press(inTitle);
    window.release(inTitle);
    window.moveTo(inTitle + QPoint(50, 50), Qt::NoButton);
    EXPECT_EQ(window.pos(), QPoint(100, 100));
}

TEST(FramelessDrag, the_release_of_another_button_does_not_end_the_drag)
{
    ChromeWindow window;
    window.press(inTitle);
    window.release(inTitle, Qt::RightButton);
    window.moveTo(inTitle + QPoint(50, 50));
    EXPECT_EQ(window.pos(), QPoint(150, 150));
}

TEST(FramelessDrag, a_right_press_drags_nothing)
{
    ChromeWindow window;
    window.press(inTitle, Qt::RightButton);
    window.moveTo(inTitle + QPoint(50, 50), Qt::RightButton);
    EXPECT_EQ(window.pos(), QPoint(100, 100));
}

TEST(FramelessDrag, switched_off_it_leaves_the_window_where_it_is)
{
    ChromeWindow window;
    window.helper.setDragEnabled(false);
    window.press(inTitle);
    window.moveTo(inTitle + QPoint(50, 50));
    EXPECT_EQ(window.pos(), QPoint(100, 100));

    window.helper.setDragEnabled(true);
    window.moveTo(inTitle + QPoint(50, 50));
    EXPECT_EQ(window.pos(), QPoint(150, 150));
}

TEST(FramelessDrag, the_top_edge_of_the_title_strip_drags_once_resizing_is_off)
{
    ChromeWindow window;
    window.helper.setResizeEnabled(false);
    window.press({500, 101});
    window.moveTo({510, 111});
    EXPECT_EQ(window.geometry(), QRect(110, 110, 800, 600));
}

TEST(FramelessDoubleClick, at_row_39_it_maximises_and_then_restores)
{
    ChromeWindow window;
    window.doubleClick({500, 139});
    EXPECT_TRUE(window.isMaximized());
    window.doubleClick(window.geometry().topLeft() + QPoint(50, 39));
    EXPECT_FALSE(window.isMaximized());
    EXPECT_EQ(window.geometry(), QRect(100, 100, 800, 600));
}

TEST(FramelessDoubleClick, at_row_40_it_does_nothing)
{
    ChromeWindow window;
    window.doubleClick({500, 140});
    EXPECT_FALSE(window.isMaximized());
}

TEST(FramelessDoubleClick, the_right_button_does_nothing_and_is_kept_from_the_window)
{
    ChromeWindow window;
    window.doubleClick({500, 110}, Qt::RightButton);
    EXPECT_FALSE(window.isMaximized());
    EXPECT_FALSE(window.received.contains(QEvent::MouseButtonDblClick));
}

TEST(FramelessEvents, mouse_leave_hover_and_timer_events_never_reach_the_window)
{
    ChromeWindow window;
    window.press(inBody);
    window.moveTo(inBody);
    window.release(inBody);
    window.press(inBody, Qt::RightButton);
    window.doubleClick(inBody);
    window.hover(inBody);
    window.leave();
    QTimerEvent timer(1);
    QApplication::sendEvent(&window, &timer);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonRelease,
                            QEvent::MouseButtonDblClick, QEvent::HoverMove, QEvent::Leave, QEvent::Timer})
        EXPECT_FALSE(window.received.contains(type)) << type;
}

TEST(FramelessEvents, every_other_event_reaches_the_window)
{
    ChromeWindow window;
    for (const auto type : {QEvent::HoverEnter, QEvent::HoverLeave, QEvent::Enter, QEvent::User}) {
        QEvent event(type);
        QApplication::sendEvent(&window, &event);
        EXPECT_TRUE(window.received.contains(type)) << type;
    }
}

TEST(FramelessEvents, children_keep_their_own_clicks)
{
    ChromeWindow window;
    QPushButton button(&window);
    button.setGeometry(300, 5, 80, 30);
    button.show();
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&clicks] { ++clicks; });
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(window.pos(), QPoint(100, 100));
}

TEST(FramelessEvents, a_window_that_is_not_served_keeps_its_events)
{
    ChromeWindow window;
    QWidget other;
    QTimerEvent timer(1);
    other.installEventFilter(&window.helper);
    EXPECT_FALSE(static_cast<QObject &>(window.helper).eventFilter(&other, &timer));
}
