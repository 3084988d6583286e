#include "simulator/scenes/testmarks.h"

#include <array>

namespace simulator {

namespace {

float coverage(float signedDistance)
{
    return std::clamp(0.5F - signedDistance, 0.0F, 1.0F);
}

void raise(float &value, float depth)
{
    value = std::max(value, depth);
}

/// How much of the pixel that begins at `u` is covered by bars of half the pitch.
float barCoverage(float u, float pitch)
{
    const auto covered = [pitch](float end) {
        const float periods = std::floor(end / pitch);
        return periods * pitch / 2 + std::min(end - periods * pitch, pitch / 2);
    };
    return covered(u + 1) - covered(u);
}

struct LetterStroke
{
    char letter;
    Point from;
    Point to;
};

/// In units of the letter's height.
constexpr std::array letterStrokes{
    LetterStroke{'Q', {0.22F, 0.00F}, {0.44F, 0.00F}}, LetterStroke{'Q', {0.44F, 0.00F}, {0.66F, 0.25F}},
    LetterStroke{'Q', {0.66F, 0.25F}, {0.66F, 0.75F}}, LetterStroke{'Q', {0.66F, 0.75F}, {0.44F, 1.00F}},
    LetterStroke{'Q', {0.44F, 1.00F}, {0.22F, 1.00F}}, LetterStroke{'Q', {0.22F, 1.00F}, {0.00F, 0.75F}},
    LetterStroke{'Q', {0.00F, 0.75F}, {0.00F, 0.25F}}, LetterStroke{'Q', {0.00F, 0.25F}, {0.22F, 0.00F}},
    LetterStroke{'Q', {0.40F, 0.72F}, {0.68F, 1.05F}}, LetterStroke{'V', {0.00F, 0.00F}, {0.32F, 1.00F}},
    LetterStroke{'V', {0.32F, 1.00F}, {0.64F, 0.00F}}, LetterStroke{'1', {0.14F, 0.20F}, {0.36F, 0.00F}},
    LetterStroke{'1', {0.36F, 0.00F}, {0.36F, 1.00F}}, LetterStroke{'K', {0.02F, 0.00F}, {0.02F, 1.00F}},
    LetterStroke{'K', {0.58F, 0.00F}, {0.02F, 0.58F}}, LetterStroke{'K', {0.20F, 0.40F}, {0.62F, 1.00F}},
    LetterStroke{'L', {0.02F, 0.00F}, {0.02F, 1.00F}}, LetterStroke{'L', {0.02F, 1.00F}, {0.52F, 1.00F}}};

} // namespace

void addDisc(Field &depths, Point centre, float radius, float depth)
{
    const Box box{centre.x - radius - 1, centre.y - radius - 1, centre.x + radius + 1, centre.y + radius + 1};
    depths.change(box, [=](float &value, Point point) {
        raise(value, depth * coverage(std::hypot(point.x - centre.x, point.y - centre.y) - radius));
    });
}

void addStroke(Field &depths, const Segment &stroke, float depth)
{
    depths.change(stroke.box(1), [&](float &value, Point point) {
        const Beside place = beside(stroke, point);
        const float radius = std::lerp(stroke.fromRadius, stroke.toRadius, place.along);
        raise(value, depth * coverage(place.distance - radius));
    });
}

void addRectangle(Field &depths, const Box &box, float angle, float depth)
{
    const Point centre{(box.left + box.right) / 2, (box.top + box.bottom) / 2};
    const float halfWidth = (box.right - box.left) / 2;
    const float halfHeight = (box.bottom - box.top) / 2;
    const float reach = std::hypot(halfWidth, halfHeight) + 1;
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    depths.change({centre.x - reach, centre.y - reach, centre.x + reach, centre.y + reach},
                  [=](float &value, Point point) {
                      const float x = point.x - centre.x;
                      const float y = point.y - centre.y;
                      const float across = std::abs(c * x + s * y) - halfWidth;
                      const float down = std::abs(c * y - s * x) - halfHeight;
                      raise(value, depth * coverage(across) * coverage(down));
                  });
}

void addLinePairs(Field &depths, const Box &box, float pitch, bool upright, float depth)
{
    depths.change(box, [=](float &value, Point point) {
        const float u = (upright ? point.x - box.left : point.y - box.top) - 0.5F;
        raise(value, depth * barCoverage(u, pitch));
    });
}

void addStepWedge(Field &depths, const Box &box, int steps, float depth)
{
    const float height = (box.bottom - box.top) / static_cast<float>(steps);
    for (int step = 0; step < steps; ++step) {
        const float top = box.top + height * static_cast<float>(step);
        addRectangle(depths, {box.left, top, box.right, top + height}, 0,
                     depth * static_cast<float>(step + 1) / static_cast<float>(steps));
    }
}

void addStar(Field &depths, Point centre, float radius, int spokes, float depth)
{
    const Box box{centre.x - radius - 1, centre.y - radius - 1, centre.x + radius + 1, centre.y + radius + 1};
    const auto frequency = static_cast<float>(spokes);
    depths.change(box, [=](float &value, Point point) {
        const float x = point.x - centre.x;
        const float y = point.y - centre.y;
        const float distance = std::hypot(x, y);
        const float wave = std::sin(frequency * std::atan2(y, x)) * distance / frequency;
        raise(value, depth * coverage(-wave) * coverage(distance - radius));
    });
}

void addCross(Field &depths, Point centre, float radius, float depth)
{
    constexpr float wire = 1.2F;
    addStroke(depths, {{centre.x - radius, centre.y}, {centre.x + radius, centre.y}, wire, wire}, depth);
    addStroke(depths, {{centre.x, centre.y - radius}, {centre.x, centre.y + radius}, wire, wire}, depth);
    const float ring = radius * 0.6F;
    depths.change({centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius},
                  [=](float &value, Point point) {
                      const float distance = std::hypot(point.x - centre.x, point.y - centre.y);
                      raise(value, depth * coverage(std::abs(distance - ring) - wire));
                  });
}

void addLetters(Field &depths, const char *text, Point origin, float height, float depth)
{
    const float wire = height * 0.06F;
    for (const char *letter = text; *letter != '\0'; ++letter) {
        for (const LetterStroke &stroke : letterStrokes) {
            if (stroke.letter != *letter)
                continue;
            const Point from{origin.x + stroke.from.x * height, origin.y + stroke.from.y * height};
            const Point to{origin.x + stroke.to.x * height, origin.y + stroke.to.y * height};
            addStroke(depths, {from, to, wire, wire}, depth);
        }
        origin.x += height * 0.95F;
    }
}

} // namespace simulator
