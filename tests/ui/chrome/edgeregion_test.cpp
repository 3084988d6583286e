#include "ui/chrome/edgeregion.h"

#include <gtest/gtest.h>

namespace {

const QRect windowRect(100, 200, 800, 600);

EdgeRegion at(int x, int y, int edgeWidth = 3)
{
    return {QPoint(x, y), windowRect, edgeWidth};
}

} // namespace

TEST(EdgeRegion, the_default_region_is_on_no_edge)
{
    const EdgeRegion none;
    EXPECT_FALSE(none.onLeft || none.onRight || none.onTop || none.onBottom || none.onAnyEdge);
    EXPECT_FALSE(none.topLeft || none.bottomLeft || none.topRight || none.bottomRight);
}

TEST(EdgeRegion, the_left_band_spans_its_width_and_both_its_bounds)
{
    EXPECT_FALSE(at(99, 500).onLeft);
    EXPECT_TRUE(at(100, 500).onLeft);
    EXPECT_TRUE(at(103, 500).onLeft);
    EXPECT_FALSE(at(104, 500).onLeft);
}

TEST(EdgeRegion, the_right_band_ends_one_pixel_outside_the_frame)
{
    EXPECT_FALSE(at(896, 500).onRight);
    EXPECT_TRUE(at(897, 500).onRight);
    EXPECT_TRUE(at(900, 500).onRight);
    EXPECT_FALSE(at(901, 500).onRight);
}

TEST(EdgeRegion, the_top_band_spans_its_width_and_both_its_bounds)
{
    EXPECT_FALSE(at(500, 199).onTop);
    EXPECT_TRUE(at(500, 200).onTop);
    EXPECT_TRUE(at(500, 203).onTop);
    EXPECT_FALSE(at(500, 204).onTop);
}

TEST(EdgeRegion, the_bottom_band_ends_one_pixel_outside_the_frame)
{
    EXPECT_FALSE(at(500, 796).onBottom);
    EXPECT_TRUE(at(500, 797).onBottom);
    EXPECT_TRUE(at(500, 800).onBottom);
    EXPECT_FALSE(at(500, 801).onBottom);
}

TEST(EdgeRegion, each_corner_is_where_its_two_edges_meet)
{
    EXPECT_TRUE(at(101, 201).topLeft);
    EXPECT_TRUE(at(101, 799).bottomLeft);
    EXPECT_TRUE(at(899, 201).topRight);
    EXPECT_TRUE(at(899, 799).bottomRight);
}

TEST(EdgeRegion, an_edge_away_from_the_corners_is_no_corner)
{
    for (const EdgeRegion &region : {at(100, 500), at(900, 500), at(500, 200), at(500, 800)}) {
        EXPECT_TRUE(region.onAnyEdge);
        EXPECT_FALSE(region.topLeft || region.bottomLeft || region.topRight || region.bottomRight);
    }
}

TEST(EdgeRegion, the_middle_is_on_no_edge)
{
    EXPECT_EQ(at(500, 500), EdgeRegion());
}

TEST(EdgeRegion, only_one_coordinate_is_looked_at)
{
    EXPECT_TRUE(at(100, -5000).onLeft);
    EXPECT_TRUE(at(5000, 800).onBottom);
}

TEST(EdgeRegion, in_a_frame_narrower_than_two_bands_a_point_is_on_both_edges)
{
    const EdgeRegion region(QPoint(103, 103), QRect(100, 100, 6, 6), 3);
    EXPECT_TRUE(region.onLeft && region.onRight && region.onTop && region.onBottom);
    EXPECT_TRUE(region.topLeft && region.bottomRight);
}

TEST(EdgeRegion, of_two_edges_that_face_each_other_the_left_and_the_top_one_are_moved)
{
    const EdgeRegion both(QPoint(103, 103), QRect(100, 100, 6, 6), 3);
    EXPECT_EQ(both.edges(), Qt::LeftEdge | Qt::TopEdge);
    EXPECT_EQ(EdgeRegion(QPoint(104, 104), QRect(100, 100, 6, 6), 3).edges(), Qt::RightEdge | Qt::BottomEdge);
}

TEST(EdgeRegion, a_wider_band_reaches_further_in)
{
    EXPECT_TRUE(at(110, 500, 10).onLeft);
    EXPECT_TRUE(at(890, 500, 10).onRight);
    EXPECT_FALSE(at(111, 500, 10).onAnyEdge);
}
