#pragma once

#include "tests/soak/soakwindow.h"

/// Ends what runs, gives the detector its health back and uses it: connect, play, a picture, stop,
/// disconnect. Empty when it works, if not at once; else what failed, try after try.
[[nodiscard]] QString failsToWorkAgain(SoakWindow &window);

/// Whether a serial number in the list is none of a detector, but tells that the virtual detector has read
/// its settings.
[[nodiscard]] bool isMarker(const QString &serialNumber);
