#pragma once

#include "tests/soak/chance.h"

#include <QByteArray>

/// What goes wrong next: lines of the virtual detector's settings, simulator/README.md.
struct FaultChoice
{
    QByteArray settings; ///< of its group [General], and of [Faults]
    int faults = 0;      ///< keys of faults among them

    /// A healthy detector in one of three.
    [[nodiscard]] static FaultChoice random(Chance &chance);
};
