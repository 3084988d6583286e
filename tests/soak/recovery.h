#pragma once

#include "tests/soak/soakwindow.h"

/// Makes the detector healthy, and connects, plays, sees a picture, stops and disconnects, as an operator
/// does who tries again a few times. False when that does not go.
[[nodiscard]] bool worksAgain(SoakWindow &window);
