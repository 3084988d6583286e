#include "ui/chrome/edgeregion.h"

namespace {

bool isWithin(int value, int first, int last)
{
    return first <= value && value <= last;
}

} // namespace

EdgeRegion::EdgeRegion(QPoint point, const QRect &frame, int edgeWidth)
{
    const int rightEnd = frame.x() + frame.width();
    const int bottomEnd = frame.y() + frame.height();
    onLeft = isWithin(point.x(), frame.x(), frame.x() + edgeWidth);
    onRight = isWithin(point.x(), rightEnd - edgeWidth, rightEnd);
    onTop = isWithin(point.y(), frame.y(), frame.y() + edgeWidth);
    onBottom = isWithin(point.y(), bottomEnd - edgeWidth, bottomEnd);
    topLeft = onLeft && onTop;
    bottomLeft = onLeft && onBottom;
    topRight = onRight && onTop;
    bottomRight = onRight && onBottom;
    onAnyEdge = onLeft || onRight || onTop || onBottom;
}

Qt::Edges EdgeRegion::edges() const
{
    Qt::Edges moved;
    moved.setFlag(Qt::LeftEdge, onLeft);
    moved.setFlag(Qt::RightEdge, onRight && !onLeft);
    moved.setFlag(Qt::TopEdge, onTop);
    moved.setFlag(Qt::BottomEdge, onBottom && !onTop);
    return moved;
}
