#pragma once

#include "tests/soak/chance.h"
#include "tests/soak/soakwindow.h"

/// What an operator does, and what the detector does to them.
struct Action
{
    const char *name;
    int weight; ///< how often it comes, against the others
    void (*take)(SoakWindow &window, Chance &chance);

    /// One of them, whatever the window's state.
    [[nodiscard]] static const Action &random(Chance &chance);
};
