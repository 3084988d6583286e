#include "ui/chrome/systemdrag.h"

#include <gtest/gtest.h>

namespace {

const QRect dragged(100, 100, 800, 600);
constexpr int edgeWidth = 3;
const FramelessOptions both = FramelessOption::Drag | FramelessOption::Resize;

EdgeRegion pressAt(int x, int y)
{
    return {QPoint(x, y), dragged, edgeWidth};
}

} // namespace

TEST(SystemDrag, only_on_wayland_does_the_compositor_move_and_resize)
{
    for (const char *platform : {"xcb", "windows", "offscreen", "cocoa", ""}) {
        EXPECT_EQ(SystemDrag::of(platform, both, pressAt(500, 120), true), SystemDrag()) << platform;
        EXPECT_EQ(SystemDrag::of(platform, both, pressAt(100, 100), true), SystemDrag()) << platform;
    }
    for (const char *platform : {"wayland", "wayland-egl"})
        EXPECT_TRUE(SystemDrag::of(platform, both, pressAt(500, 120), true).moves) << platform;
}

TEST(SystemDrag, an_edge_resizes_that_edge_and_a_corner_two)
{
    struct Place
    {
        int x;
        int y;
        Qt::Edges edges;
    };
    for (const Place &place :
         {Place{100, 400, Qt::LeftEdge}, Place{899, 400, Qt::RightEdge}, Place{500, 100, Qt::TopEdge},
          Place{500, 699, Qt::BottomEdge}, Place{100, 100, Qt::TopEdge | Qt::LeftEdge},
          Place{899, 100, Qt::TopEdge | Qt::RightEdge}, Place{100, 699, Qt::BottomEdge | Qt::LeftEdge},
          Place{899, 699, Qt::BottomEdge | Qt::RightEdge}}) {
        const SystemDrag drag = SystemDrag::of("wayland", both, pressAt(place.x, place.y), true);
        EXPECT_EQ(drag.resizes, place.edges) << place.x << ' ' << place.y;
        EXPECT_FALSE(drag.moves) << "edges come before the title";
    }
}

TEST(SystemDrag, below_the_title_and_without_the_option_nothing_is_handed_over)
{
    EXPECT_EQ(SystemDrag::of("wayland", both, pressAt(500, 400), false), SystemDrag());
    EXPECT_EQ(SystemDrag::of("wayland", FramelessOption::Resize, pressAt(500, 120), true), SystemDrag());
    EXPECT_EQ(SystemDrag::of("wayland", FramelessOption::Drag, pressAt(100, 400), false), SystemDrag());
}
