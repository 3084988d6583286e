#include "ui/chrome/systemdrag.h"

SystemDrag SystemDrag::of(const QString &platform, FramelessOptions options, const EdgeRegion &region,
                          bool onTitle)
{
    if (!platform.startsWith(QStringLiteral("wayland")))
        return {};
    if (options.testFlag(FramelessOption::Resize) && region.onAnyEdge)
        return {.moves = false, .resizes = region.edges()};
    return {.moves = options.testFlag(FramelessOption::Drag) && onTitle, .resizes = {}};
}
