#include "tests/ui/chrome/chromewindow.h"

#include <gtest/gtest.h>

#include <memory>

TEST(FramelessLifetime, a_served_window_tracks_the_mouse_and_hovers)
{
    QWidget window;
    FramelessHelper helper(nullptr);
    helper.attachWindow(&window);
    EXPECT_TRUE(window.hasMouseTracking());
    EXPECT_TRUE(window.testAttribute(Qt::WA_Hover));
}

TEST(FramelessLifetime, attaching_leaves_the_flags_of_the_window_alone)
{
    QWidget window;
    const auto flags = window.windowFlags();
    FramelessHelper helper(nullptr);
    helper.attachWindow(&window);
    EXPECT_EQ(window.windowFlags(), flags);
}

TEST(FramelessLifetime, its_end_gives_the_window_back_as_it_was)
{
    QWidget window;
    const auto flags = window.windowFlags();
    auto helper = std::make_unique<FramelessHelper>(nullptr);
    helper->attachWindow(&window);
    window.setWindowFlags(flags | Qt::FramelessWindowHint);
    window.show();
    helper.reset();
    EXPECT_EQ(window.windowFlags(), flags);
    EXPECT_FALSE(window.hasMouseTracking());
    EXPECT_FALSE(window.testAttribute(Qt::WA_Hover));
}

TEST(FramelessLifetime, its_end_takes_the_rubber_bands_along)
{
    auto helper = std::make_unique<FramelessHelper>(nullptr);
    QWidget window;
    helper->attachWindow(&window);
    helper->setRubberBandForDrag(true);
    ASSERT_NE(ChromeWindow::band(), nullptr);
    helper.reset();
    EXPECT_EQ(ChromeWindow::band(), nullptr);
}

TEST(FramelessLifetime, attaching_twice_keeps_the_flags_of_the_first_time)
{
    QWidget window;
    const auto flags = window.windowFlags();
    auto helper = std::make_unique<FramelessHelper>(nullptr);
    helper->attachWindow(&window);
    window.setWindowFlags(flags | Qt::FramelessWindowHint);
    helper->attachWindow(&window);
    helper.reset();
    EXPECT_EQ(window.windowFlags(), flags);
}

TEST(FramelessLifetime, several_windows_are_served_each_for_itself)
{
    ChromeWindow first;
    QWidget second;
    second.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    second.setGeometry(50, 60, 300, 200);
    second.show();
    first.helper.attachWindow(&second);
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(100, 20), QPointF(150, 80), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&second, &press);
    QMouseEvent move(QEvent::MouseMove, QPointF(110, 30), QPointF(160, 90), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&second, &move);
    EXPECT_EQ(second.pos(), QPoint(60, 70));
    EXPECT_EQ(first.pos(), QPoint(100, 100));
}

TEST(FramelessLifetime, a_window_that_owns_its_helper_goes_in_peace)
{
    auto window = std::make_unique<QWidget>();
    auto *helper = new FramelessHelper(window.get());
    helper->attachWindow(window.get());
    helper->setRubberBandForDrag(true);
    window->setWindowFlags(window->windowFlags() | Qt::FramelessWindowHint);
    window->show();
    ASSERT_NE(ChromeWindow::band(), nullptr);
    window.reset();
    EXPECT_EQ(ChromeWindow::band(), nullptr);
}

TEST(FramelessLifetime, a_window_that_goes_first_is_forgotten)
{
    FramelessHelper helper(nullptr);
    {
        QWidget window;
        helper.attachWindow(&window);
        helper.setRubberBandForResize(true);
        ASSERT_NE(ChromeWindow::band(), nullptr);
    }
    EXPECT_EQ(ChromeWindow::band(), nullptr);
    helper.setRubberBandForDrag(true);
    EXPECT_EQ(ChromeWindow::band(), nullptr);
}
