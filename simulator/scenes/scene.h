#pragma once

namespace simulator {

/// What the detector sees.
enum class Scene { Dark, Flat, Chart, Phantom, Replay };

} // namespace simulator
