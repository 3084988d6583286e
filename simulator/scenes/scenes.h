#pragma once

#include "simulator/scenes/scene.h"

#include <vector>

namespace simulator {

/// Photocurrent everywhere on the flat scene at full light, nA.
inline constexpr float flatCurrent = 100.0F;

/// Photocurrent of each pixel at full light, nA, row by row. The replay has none of its own: dark.
[[nodiscard]] std::vector<float> sceneCurrents(Scene scene);

/// A resolution chart: line pairs of 2 to 32 pixels a pair, a star, grey steps, slanted edges.
[[nodiscard]] std::vector<float> chartCurrents();

/// A hand on the detector, as in the first radiographs: bones in soft tissue, a ring, and test marks in the
/// open beam around it.
[[nodiscard]] std::vector<float> phantomCurrents();

} // namespace simulator
