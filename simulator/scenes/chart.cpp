#include "simulator/scenes/scenes.h"
#include "simulator/scenes/testmarks.h"

#include <array>

namespace simulator {

namespace {

constexpr float openBeam = 115.0F; // nA
constexpr float lead = 3.0F;       // optical depth

void addFrame(Field &depths)
{
    constexpr float edge = 16;
    constexpr float end = sensorWidth - edge;
    constexpr float half = 4;
    addStroke(depths, {{edge, edge}, {end, edge}, half, half}, lead);
    addStroke(depths, {{end, edge}, {end, end}, half, half}, lead);
    addStroke(depths, {{end, end}, {edge, end}, half, half}, lead);
    addStroke(depths, {{edge, end}, {edge, edge}, half, half}, lead);
    for (const float y : {64.0F, 960.0F}) {
        for (const float x : {64.0F, 512.0F, 960.0F})
            addCross(depths, {x, y}, 26, lead);
    }
}

/// Two rows of groups, upright above lying, coarse on the left.
void addResolutionGroups(Field &depths)
{
    constexpr std::array pitches{32.0F, 24.0F, 16.0F, 12.0F, 10.0F, 8.0F, 6.0F, 5.0F, 4.0F, 3.0F, 2.0F};
    float left = 64;
    for (const float pitch : pitches) {
        const float width = std::clamp(pitch * 5, 40.0F, 120.0F);
        addLinePairs(depths, {left, 120, left + width, 220}, pitch, true, lead);
        addLinePairs(depths, {left, 236, left + width, 336}, pitch, false, lead);
        left += width + 20;
    }
}

void addContrastDiscs(Field &depths)
{
    for (int column = 0; column < 8; ++column) {
        const float depth = 0.5F / static_cast<float>(1 << column);
        const float x = 420 + 76 * static_cast<float>(column);
        addDisc(depths, {x, 790}, 28, depth);
        addDisc(depths, {x, 850}, 16, depth);
        addDisc(depths, {x, 892}, 8, depth);
    }
}

} // namespace

std::vector<float> chartCurrents()
{
    Field depths(0);
    addFrame(depths);
    addResolutionGroups(depths);
    addStar(depths, {512, 560}, 190, 36, lead);
    addStepWedge(depths, {72, 400, 192, 890}, 10, 2.0F);
    addRectangle(depths, {792, 400, 932, 540}, 0.0873F, lead);
    addRectangle(depths, {792, 580, 932, 720}, -0.0873F, 0.4F);
    addContrastDiscs(depths);
    addLetters(depths, "QV1K", {226, 850}, 40, lead);

    std::vector<float> result;
    result.reserve(depths.values().size());
    for (const float depth : depths.values())
        result.push_back(openBeam * std::exp(-depth));
    return result;
}

} // namespace simulator
