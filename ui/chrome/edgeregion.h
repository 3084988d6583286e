#pragma once

#include <QPoint>
#include <QRect>

/// Which edges of a window's frame a point lies on. Plain value.
///
/// Each edge looks at one coordinate only, bounds included: a point level with the left edge but far above
/// the window still counts as on the left edge.
struct EdgeRegion
{
    bool onLeft = false;
    bool onRight = false;
    bool onTop = false;
    bool onBottom = false;
    bool topLeft = false;
    bool bottomLeft = false;
    bool topRight = false;
    bool bottomRight = false;
    bool onAnyEdge = false;

    EdgeRegion() = default;

    /// `point` and `frame` in global coordinates, `edgeWidth` in pixels. The right and bottom bands end one
    /// pixel outside the frame.
    EdgeRegion(QPoint point, const QRect &frame, int edgeWidth);

    /// Those that a press there moves: two in a corner, none beside the edges.
    [[nodiscard]] Qt::Edges edges() const;

    friend bool operator==(const EdgeRegion &, const EdgeRegion &) = default;
};
