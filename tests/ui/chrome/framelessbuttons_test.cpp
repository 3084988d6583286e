#include "ui/framelesshelper.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

/// A frameless window with a button that fills its top right corner, as a close button does.
class FramelessButtons : public testing::Test
{
protected:
    FramelessButtons()
    {
        window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        window.setGeometry(100, 100, 400, 300);
        window.setMinimumSize(100, 100);
        button.setGeometry(350, 0, 50, 40);
        helper.attachWindow(&window);
        helper.setEdgeWidth(3);
        helper.setTitleBarHeight(40);
        window.show();
    }

    void press(QPoint inButton) { QTest::mousePress(&button, Qt::LeftButton, {}, inButton); }
    void moveTo(QPoint inButton)
    {
        const QPoint global = button.mapToGlobal(inButton);
        QMouseEvent event(QEvent::MouseMove, inButton, global, Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&button, &event);
    }
    void release(QPoint inButton) { QTest::mouseRelease(&button, Qt::LeftButton, {}, inButton); }

    QWidget window;
    QPushButton button{&window};
    QSignalSpy clicked{&button, &QPushButton::clicked};
    FramelessHelper helper{nullptr};
};

TEST_F(FramelessButtons, a_press_on_a_button_where_the_resize_cursor_shows_resizes_and_clicks_nothing)
{
    press({49, 0});
    moveTo({69, -30});
    release({69, -30});
    EXPECT_EQ(window.geometry().topRight(), QPoint(519, 70));
    EXPECT_EQ(window.geometry().bottomLeft(), QPoint(100, 399));
    EXPECT_EQ(clicked.count(), 0);
    EXPECT_FALSE(button.isDown());
}

TEST_F(FramelessButtons, a_press_beside_the_edge_is_the_buttons)
{
    press({45, 5});
    moveTo({45, 6});
    release({45, 6});
    EXPECT_EQ(window.geometry(), QRect(100, 100, 400, 300));
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(FramelessButtons, the_corner_of_a_maximised_window_is_the_buttons)
{
    window.showMaximized();
    button.move(window.width() - button.width(), 0);
    QTest::mouseClick(&button, Qt::LeftButton, {}, {49, 0});
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_TRUE(window.isMaximized());
}

TEST_F(FramelessButtons, the_corner_of_a_window_that_fills_the_screen_is_the_buttons)
{
    window.showFullScreen();
    button.move(window.width() - button.width(), 0);
    QTest::mouseClick(&button, Qt::LeftButton, {}, {49, 0});
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_TRUE(window.isFullScreen());
}

TEST_F(FramelessButtons, without_resizing_the_whole_button_is_its_own)
{
    helper.setResizeEnabled(false);
    QTest::mouseClick(&button, Qt::LeftButton, {}, {49, 0});
    EXPECT_EQ(clicked.count(), 1);
}
