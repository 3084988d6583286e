#include "simulator/scenes/scenes.h"

#include "simulator/geometry.h"

namespace simulator {

std::vector<float> sceneCurrents(Scene scene)
{
    switch (scene) {
    case Scene::Flat:
        return std::vector<float>(static_cast<std::size_t>(sensorPixels), flatCurrent);
    case Scene::Chart:
        return chartCurrents();
    case Scene::Phantom:
        return phantomCurrents();
    case Scene::Dark:
    case Scene::Replay:
        break;
    }
    return std::vector<float>(static_cast<std::size_t>(sensorPixels), 0.0F);
}

} // namespace simulator
