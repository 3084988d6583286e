#pragma once

#include "ui/chrome/framelesswindowstate.h"

#include <QString>

/// Whether the system moves and resizes a window that is pulled, instead of the helper. On Wayland a program
/// cannot place its windows: it asks the compositor, which then follows the pointer itself.
struct SystemDrag
{
    bool moves = false;
    Qt::Edges resizes;

    /// Of a window that was pressed in `region`, on a platform of Qt's.
    [[nodiscard]] static SystemDrag of(const QString &platform, FramelessOptions options,
                                       const EdgeRegion &region, bool onTitle);

    friend bool operator==(const SystemDrag &, const SystemDrag &) = default;
};
