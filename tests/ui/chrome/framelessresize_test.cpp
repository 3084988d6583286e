#include "tests/ui/chrome/chromewindow.h"

#include <gtest/gtest.h>

namespace {

struct Pull
{
    const char *name;
    QPoint from;
    QRect expected; ///< after a move by (+20, +30)
};

void PrintTo(const Pull &pull, std::ostream *out)
{
    *out << pull.name;
}

/// What the window, at (100, 100) with 800 x 600, becomes when it is pulled from `from` to `to`.
QRect pulled(ChromeWindow &window, QPoint from, QPoint to)
{
    window.press(from);
    window.moveTo(to);
    window.release(to);
    return window.geometry();
}

QRect edges(int left, int top, int right, int bottom)
{
    return {QPoint(left, top), QPoint(right, bottom)};
}

} // namespace

class FramelessEdges : public testing::TestWithParam<Pull>
{
};

TEST_P(FramelessEdges, a_pull_moves_just_the_edges_that_were_pressed)
{
    ChromeWindow window;
    EXPECT_EQ(pulled(window, GetParam().from, GetParam().from + QPoint(20, 30)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Frameless, FramelessEdges,
                         testing::Values(Pull{"left", {101, 400}, edges(121, 100, 899, 699)},
                                         Pull{"right", {899, 400}, edges(100, 100, 919, 699)},
                                         Pull{"top", {500, 101}, edges(100, 131, 899, 699)},
                                         Pull{"bottom", {500, 699}, edges(100, 100, 899, 729)},
                                         Pull{"topLeft", {101, 101}, edges(121, 131, 899, 699)},
                                         Pull{"bottomLeft", {101, 699}, edges(121, 100, 899, 729)},
                                         Pull{"topRight", {899, 101}, edges(100, 131, 919, 699)},
                                         Pull{"bottomRight", {899, 699}, edges(100, 100, 919, 729)}),
                         [](const auto &test) { return test.param.name; });

TEST(FramelessResize, the_edge_follows_the_cursor_move_by_move)
{
    ChromeWindow window;
    window.press({899, 400});
    for (const int x : {950, 700, 820}) {
        window.moveTo({x, 400});
        EXPECT_EQ(window.geometry(), edges(100, 100, x, 699));
    }
}

TEST(FramelessResize, the_top_edge_of_the_title_strip_resizes_rather_than_drags)
{
    ChromeWindow window;
    EXPECT_EQ(pulled(window, {500, 102}, {560, 152}), edges(100, 152, 899, 699));
}

TEST(FramelessResize, exactly_the_minimum_width_is_taken)
{
    ChromeWindow window;
    EXPECT_EQ(pulled(window, {899, 400}, {499, 400}).width(), 400);
}

TEST(FramelessResize, the_right_edge_stops_at_the_last_width_above_the_minimum)
{
    ChromeWindow window;
    window.press({899, 400});
    window.moveTo({520, 400});
    EXPECT_EQ(window.width(), 421);
    window.moveTo({498, 400});
    EXPECT_EQ(window.geometry(), edges(100, 100, 520, 699));
}

TEST(FramelessResize, the_left_edge_stops_at_the_last_width_above_the_minimum)
{
    ChromeWindow window;
    window.press({100, 400});
    window.moveTo({480, 400});
    EXPECT_EQ(window.width(), 420);
    window.moveTo({501, 400});
    EXPECT_EQ(window.geometry(), edges(480, 100, 899, 699));
}

TEST(FramelessResize, the_bottom_edge_stops_at_the_last_height_above_the_minimum)
{
    ChromeWindow window;
    window.press({500, 699});
    window.moveTo({500, 420});
    window.moveTo({500, 398});
    EXPECT_EQ(window.geometry(), edges(100, 100, 899, 420));
}

TEST(FramelessResize, the_top_edge_stops_at_the_last_height_above_the_minimum)
{
    ChromeWindow window;
    window.press({500, 100});
    window.moveTo({500, 380});
    window.moveTo({500, 401});
    EXPECT_EQ(window.geometry(), edges(100, 380, 899, 699));
}

TEST(FramelessResize, the_vertical_part_of_a_move_that_is_too_narrow_still_applies)
{
    ChromeWindow window;
    EXPECT_EQ(pulled(window, {899, 699}, {300, 650}), edges(100, 100, 899, 650));
}

TEST(FramelessResize, the_horizontal_part_of_a_move_that_is_too_low_still_applies)
{
    ChromeWindow window;
    EXPECT_EQ(pulled(window, {101, 101}, {150, 600}), edges(150, 100, 899, 699));
}

TEST(FramelessResize, an_edge_pulled_past_the_opposite_one_does_nothing)
{
    ChromeWindow window;
    EXPECT_EQ(pulled(window, {101, 400}, {950, 400}), edges(100, 100, 899, 699));
    EXPECT_EQ(pulled(window, {500, 699}, {500, 50}), edges(100, 100, 899, 699));
}

TEST(FramelessResize, a_corner_move_that_turns_one_extent_around_does_nothing_at_all)
{
    ChromeWindow window;
    EXPECT_EQ(pulled(window, {899, 699}, {50, 750}), edges(100, 100, 899, 699));
}

TEST(FramelessResize, switched_off_it_leaves_the_size_alone)
{
    ChromeWindow window;
    window.helper.setResizeEnabled(false);
    EXPECT_EQ(pulled(window, {899, 400}, {950, 400}), edges(100, 100, 899, 699));
}

TEST(FramelessResize, a_press_on_an_edge_resizes_a_maximised_window_too)
{
    ChromeWindow window;
    window.showMaximized();
    const QRect before = window.frameGeometry();
    window.press({before.right(), before.center().y()});
    window.moveTo({before.right() - 50, before.center().y()});
    EXPECT_EQ(window.geometry().right(), before.right() - 50);
}

TEST(FramelessResize, a_wider_grip_reaches_further_in_and_a_width_of_0_changes_nothing)
{
    ChromeWindow window;
    window.helper.setEdgeWidth(10);
    window.helper.setEdgeWidth(0);
    EXPECT_EQ(pulled(window, {110, 400}, {130, 400}), edges(130, 100, 899, 699));
}

TEST(FramelessRubberBand, there_is_none_at_first_and_none_once_both_are_off)
{
    ChromeWindow window;
    EXPECT_EQ(ChromeWindow::band(), nullptr);
    window.helper.setRubberBandForDrag(true);
    const QRubberBand *band = ChromeWindow::band();
    ASSERT_NE(band, nullptr);
    EXPECT_EQ(band->shape(), QRubberBand::Rectangle);
    EXPECT_EQ(band->parent(), nullptr);
    window.helper.setRubberBandForResize(true);
    window.helper.setRubberBandForDrag(false);
    EXPECT_EQ(ChromeWindow::band(), band);
    window.helper.setRubberBandForResize(false);
    EXPECT_EQ(ChromeWindow::band(), nullptr);
}

TEST(FramelessRubberBand, a_window_attached_later_gets_its_band_at_once)
{
    FramelessHelper helper(nullptr);
    helper.setRubberBandForResize(true);
    EXPECT_EQ(ChromeWindow::band(), nullptr);
    QWidget window;
    helper.attachWindow(&window);
    EXPECT_NE(ChromeWindow::band(), nullptr);
}

TEST(FramelessRubberBand, a_drag_moves_the_band_and_the_release_the_window)
{
    ChromeWindow window;
    window.helper.setRubberBandForDrag(true);
    window.press({500, 120});
    EXPECT_TRUE(ChromeWindow::band()->isVisible());
    EXPECT_EQ(ChromeWindow::band()->geometry(), QRect(100, 100, 800, 600));
    window.moveTo({540, 150});
    EXPECT_EQ(ChromeWindow::band()->geometry(), QRect(140, 130, 800, 600));
    EXPECT_EQ(window.geometry(), QRect(100, 100, 800, 600));
    window.release({540, 150});
    EXPECT_FALSE(ChromeWindow::band()->isVisible());
    EXPECT_EQ(window.geometry(), QRect(140, 130, 800, 600));
}

TEST(FramelessRubberBand, a_resize_pulls_the_band_and_the_release_the_window)
{
    ChromeWindow window;
    window.helper.setRubberBandForResize(true);
    window.press({899, 699});
    EXPECT_TRUE(ChromeWindow::band()->isVisible());
    EXPECT_EQ(ChromeWindow::band()->geometry(), edges(100, 100, 899, 699));
    const QPoint start = ChromeWindow::band()->frameGeometry().topLeft(); // some platforms frame the band too
    window.moveTo({950, 750});
    EXPECT_EQ(ChromeWindow::band()->geometry(), QRect(start, QPoint(950, 750)));
    EXPECT_EQ(window.geometry(), edges(100, 100, 899, 699));
    window.release({950, 750});
    EXPECT_FALSE(ChromeWindow::band()->isVisible());
    EXPECT_EQ(window.geometry(), QRect(start, QPoint(950, 750)));
}

TEST(FramelessRubberBand, the_band_does_not_shrink_below_the_minimum_of_the_window)
{
    ChromeWindow window;
    window.helper.setRubberBandForResize(true);
    window.press({899, 699});
    const QRect start = ChromeWindow::band()->frameGeometry();
    window.moveTo({300, 750});
    EXPECT_EQ(ChromeWindow::band()->geometry(), QRect(start.topLeft(), QPoint(start.right(), 750)));
}

TEST(FramelessRubberBand, each_kind_of_band_is_shown_for_its_own_kind_of_press_only)
{
    ChromeWindow window;
    window.helper.setRubberBandForDrag(true);
    window.press({899, 400});
    EXPECT_FALSE(ChromeWindow::band()->isVisible());
    window.release({899, 400});

    window.helper.setRubberBandForResize(true);
    window.helper.setRubberBandForDrag(false);
    window.press({500, 120});
    EXPECT_FALSE(ChromeWindow::band()->isVisible());
}

TEST(FramelessRubberBand, a_right_press_shows_no_band)
{
    ChromeWindow window;
    window.helper.setRubberBandForDrag(true);
    window.press({500, 120}, Qt::RightButton);
    EXPECT_FALSE(ChromeWindow::band()->isVisible());
}
