#include "simulator/scenes/field.h"

namespace simulator {

Box Segment::box(float margin) const
{
    const float reach = std::max(fromRadius, toRadius) + margin;
    return {std::min(from.x, to.x) - reach, std::min(from.y, to.y) - reach, std::max(from.x, to.x) + reach,
            std::max(from.y, to.y) + reach};
}

Beside beside(const Segment &segment, Point point)
{
    const float dx = segment.to.x - segment.from.x;
    const float dy = segment.to.y - segment.from.y;
    const float px = point.x - segment.from.x;
    const float py = point.y - segment.from.y;
    const float along = std::clamp((px * dx + py * dy) / (dx * dx + dy * dy), 0.0F, 1.0F);
    const float x = px - along * dx;
    const float y = py - along * dy;
    return {std::sqrt(x * x + y * y), along};
}

} // namespace simulator
