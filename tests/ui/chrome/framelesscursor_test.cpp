#include "tests/ui/chrome/chromewindow.h"

#include <gtest/gtest.h>

namespace {

struct Spot
{
    const char *name;
    QPoint point;
    Qt::CursorShape shape;
};

void PrintTo(const Spot &spot, std::ostream *out)
{
    *out << spot.name;
}

} // namespace

class FramelessCursorShapes : public testing::TestWithParam<Spot>
{
};

TEST_P(FramelessCursorShapes, hovering_and_moving_over_an_edge_show_its_cursor)
{
    ChromeWindow window;
    window.hover(GetParam().point);
    EXPECT_TRUE(window.hasCursor());
    EXPECT_EQ(window.cursor().shape(), GetParam().shape);

    window.hover({500, 400});
    EXPECT_FALSE(window.hasCursor());
    window.moveOnlyTo(GetParam().point);
    EXPECT_EQ(window.cursor().shape(), GetParam().shape);
}

INSTANTIATE_TEST_SUITE_P(Frameless, FramelessCursorShapes,
                         testing::Values(Spot{"topLeft", {100, 100}, Qt::SizeFDiagCursor},
                                         Spot{"bottomRight", {899, 699}, Qt::SizeFDiagCursor},
                                         Spot{"topRight", {899, 100}, Qt::SizeBDiagCursor},
                                         Spot{"bottomLeft", {100, 699}, Qt::SizeBDiagCursor},
                                         Spot{"left", {103, 400}, Qt::SizeHorCursor},
                                         Spot{"right", {897, 400}, Qt::SizeHorCursor},
                                         Spot{"top", {500, 103}, Qt::SizeVerCursor},
                                         Spot{"bottom", {500, 697}, Qt::SizeVerCursor}),
                         [](const auto &test) { return test.param.name; });

TEST(FramelessCursor, the_left_and_right_bands_are_as_wide_as_the_edge_width)
{
    ChromeWindow window;
    for (const int x : {100, 101, 102, 103, 897, 898, 899, 900}) {
        window.hover({x, 400});
        EXPECT_EQ(window.cursor().shape(), Qt::SizeHorCursor) << x;
    }
    for (const int x : {104, 896}) {
        window.hover({x, 400});
        EXPECT_FALSE(window.hasCursor()) << x;
    }
}

TEST(FramelessCursor, the_cursor_of_the_window_stays_as_long_as_none_of_the_helper_was_set)
{
    ChromeWindow window;
    window.setCursor(Qt::CrossCursor);
    window.hover({500, 400});
    EXPECT_EQ(window.cursor().shape(), Qt::CrossCursor);
}

TEST(FramelessCursor, leaving_the_window_takes_the_cursor_back)
{
    ChromeWindow window;
    window.hover({100, 400});
    window.leave();
    EXPECT_FALSE(window.hasCursor());
}

TEST(FramelessCursor, leaving_the_window_with_the_button_down_keeps_the_cursor)
{
    ChromeWindow window;
    window.hover({100, 400});
    window.press({100, 400});
    window.leave();
    EXPECT_EQ(window.cursor().shape(), Qt::SizeHorCursor);
}

TEST(FramelessCursor, a_move_with_the_left_button_down_does_not_change_it)
{
    ChromeWindow window;
    window.press({500, 400});
    window.moveOnlyTo({100, 400}, Qt::LeftButton);
    EXPECT_FALSE(window.hasCursor());
}

TEST(FramelessCursor, a_maximised_window_shows_none)
{
    ChromeWindow window;
    window.showMaximized();
    window.hover(window.frameGeometry().topLeft());
    EXPECT_FALSE(window.hasCursor());
}

TEST(FramelessCursor, a_full_screen_window_shows_none)
{
    ChromeWindow window;
    window.showFullScreen();
    window.moveOnlyTo(window.frameGeometry().topLeft());
    EXPECT_FALSE(window.hasCursor());
}

TEST(FramelessCursor, a_cursor_from_before_is_taken_back_once_the_window_is_maximised)
{
    ChromeWindow window;
    window.hover({100, 400});
    window.showMaximized();
    EXPECT_TRUE(window.hasCursor());
    window.hover({300, 300});
    EXPECT_FALSE(window.hasCursor());
}

TEST(FramelessCursor, after_maximising_it_is_taken_back_again_at_every_move)
{
    ChromeWindow window;
    window.hover({100, 400});
    window.showMaximized();
    window.hover({300, 300});
    window.setCursor(Qt::CrossCursor);
    window.hover({300, 300});
    EXPECT_FALSE(window.hasCursor());
}

TEST(FramelessCursor, without_resizing_there_is_none)
{
    ChromeWindow window;
    window.helper.setResizeEnabled(false);
    window.hover({100, 400});
    window.moveOnlyTo({100, 400});
    EXPECT_FALSE(window.hasCursor());
}

TEST(FramelessCursor, a_move_with_the_right_button_down_still_updates_it)
{
    ChromeWindow window;
    window.press({500, 400}, Qt::RightButton);
    window.moveOnlyTo({500, 100}, Qt::RightButton);
    EXPECT_EQ(window.cursor().shape(), Qt::SizeVerCursor);
}
