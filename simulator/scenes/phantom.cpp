#include "simulator/random.h"
#include "simulator/scenes/scenes.h"
#include "simulator/scenes/testmarks.h"

#include <array>
#include <span>

namespace simulator {

namespace {

constexpr float openBeam = 120.0F; // nA
constexpr float lead = 2.6F;       // optical depth

/// The joints of one finger from the wrist to the tip.
struct Finger
{
    std::array<Point, 5> places;
    std::size_t joints;
    float bone;  ///< radius of its first bone
    float flesh; ///< radius at its root
};

constexpr std::array fingers{
    Finger{{{{424, 742}, {334, 566}, {280, 446}, {256, 380}, {240, 322}}}, 5, 16.5F, 38},
    Finger{{{{462, 724}, {406, 520}, {370, 366}, {353, 276}, {343, 206}}}, 5, 18.0F, 42},
    Finger{{{{508, 714}, {490, 498}, {481, 326}, {478, 224}, {477, 148}}}, 5, 19.0F, 44},
    Finger{{{{556, 722}, {580, 512}, {602, 358}, {615, 268}, {624, 198}}}, 5, 18.5F, 43},
    Finger{{{{604, 772}, {698, 656}, {776, 566}, {834, 496}}}, 4, 20.0F, 45}};

constexpr std::array<Segment, 8> palm{{{{470, 740}, {420, 600}, 84, 64},
                                       {{520, 740}, {540, 590}, 92, 72},
                                       {{590, 790}, {674, 684}, 60, 46},
                                       {{500, 800}, {500, 760}, 112, 108},
                                       {{500, 830}, {498, 1100}, 106, 122},
                                       {{440, 770}, {352, 610}, 54, 44},
                                       {{440, 590}, {540, 580}, 62, 62},
                                       {{400, 640}, {600, 640}, 50, 50}}};

constexpr std::array<Segment, 8> carpals{{{{452, 772}, {456, 764}, 25, 25},
                                          {{494, 760}, {500, 752}, 26, 25},
                                          {{542, 758}, {548, 752}, 24, 24},
                                          {{588, 784}, {594, 776}, 22, 24},
                                          {{440, 812}, {446, 808}, 23, 22},
                                          {{484, 812}, {492, 802}, 26, 24},
                                          {{530, 806}, {548, 800}, 24, 24},
                                          {{556, 828}, {566, 812}, 20, 20}}};

/// Distance to the union of two shapes with the notch between them filled in smoothly.
float smoothUnion(float a, float b)
{
    constexpr float reach = 30;
    const float near = std::max(reach - std::abs(a - b), 0.0F);
    return std::min(a, b) - near * near / (4 * reach);
}

/// The parts of one finger join plainly, and smoothly with what is there already.
void addFlesh(Field &skin, std::span<const Segment> parts)
{
    Box box = parts.front().box(42);
    for (const Segment &part : parts) {
        const Box other = part.box(42);
        box = {std::min(box.left, other.left), std::min(box.top, other.top), std::max(box.right, other.right),
               std::max(box.bottom, other.bottom)};
    }
    skin.change(box, [&](float &distance, Point point) {
        float nearest = distance + 1000;
        for (const Segment &part : parts) {
            const Beside place = beside(part, point);
            const float radius = std::lerp(part.fromRadius, part.toRadius, place.along);
            nearest = std::min(nearest, place.distance - radius);
        }
        distance = smoothUnion(distance, nearest);
    });
}

/// Length of the ray through a rod of radius 1 at this distance from its axis, as a share of the longest.
float chord(float distance)
{
    return std::sqrt(std::max(0.0F, 1 - distance * distance));
}

/// A long bone: wider at its ends, hollow in its shaft, so that its walls stand out.
void addBone(Field &bones, const Segment &bone)
{
    const float size = std::max(bone.fromRadius, bone.toRadius);
    const float full = 0.80F * std::sqrt(size / 18);
    bones.change(bone.box(size * 0.4F), [&](float &depth, Point point) {
        const Beside place = beside(bone, point);
        const float end = std::abs(2 * place.along - 1);
        const float flare = end * end * end;
        const float radius = std::lerp(bone.fromRadius, bone.toRadius, place.along) * (0.78F + 0.36F * flare);
        const float marrow = 0.5F * (1 - flare) * chord(place.distance / (0.66F * radius));
        depth = std::max(depth, full * (chord(place.distance / radius) - marrow));
    });
}

/// A short bone without a hollow.
void addPebble(Field &bones, const Segment &bone)
{
    const float full = 0.74F * std::sqrt(bone.fromRadius / 24);
    bones.change(bone.box(1), [&](float &depth, Point point) {
        const float distance = beside(bone, point).distance / bone.fromRadius;
        const float rim = distance < 1 ? 0.16F * distance * distance * distance * distance : 0.0F;
        depth = std::max(depth, full * (std::pow(chord(distance), 0.7F) + rim));
    });
}

/// The bone between two joints, short of both by the gap of the joint.
void addBoneBetween(Field &bones, Point from, Point to, float radius, float tipRadius)
{
    const float length = std::hypot(to.x - from.x, to.y - from.y);
    const float a = (radius * 1.06F + 2.0F) / length;
    const float b = 1 - (tipRadius * 1.06F + 2.0F) / length;
    const auto between = [&](float t) {
        return Point{std::lerp(from.x, to.x, t), std::lerp(from.y, to.y, t)};
    };
    addBone(bones, {between(a), between(b), radius, tipRadius});
}

void addFinger(Field &skin, Field &bones, const Finger &finger)
{
    float flesh = finger.flesh;
    float bone = finger.bone;
    std::vector<Segment> parts;
    for (std::size_t i = 0; i + 1 < finger.joints; ++i) {
        const Point from = finger.places[i];
        const Point to = finger.places[i + 1];
        const bool isTip = i + 2 == finger.joints;
        addBoneBetween(bones, from, to, bone, bone * (isTip ? 0.7F : 0.9F));
        bone *= 0.87F;
        if (i == 0) // the metacarpals lie in the palm
            continue;
        parts.push_back({from, to, flesh, flesh * (isTip ? 0.84F : 0.9F)});
        flesh *= 0.9F;
    }
    addFlesh(skin, parts);
}

void addHand(Field &skin, Field &bones)
{
    for (const Segment &part : palm)
        addFlesh(skin, std::span(&part, 1));
    for (const Finger &finger : fingers)
        addFinger(skin, bones, finger);
    for (const Segment &carpal : carpals)
        addPebble(bones, carpal);
    addBone(bones, {{556, 876}, {560, 1300}, 42, 38});
    addBone(bones, {{448, 870}, {434, 1300}, 28, 31});
}

void addMarks(Field &depths)
{
    addStroke(depths, {{350, 428}, {424, 447}, 9, 9}, 2.0F); // the ring
    addStepWedge(depths, {56, 84, 124, 564}, 12, 2.2F);
    float top = 84;
    for (const float pitch : {20.0F, 14.0F, 10.0F, 8.0F, 6.0F, 4.0F, 3.0F, 2.0F}) {
        const float width = (std::floor(100 / pitch) - 0.5F) * pitch; // ends with a bar
        addLinePairs(depths, {780, top, 780 + width, top + 34}, pitch, true, lead);
        addLinePairs(depths, {896, top, 972, top + 34}, pitch, false, lead);
        top += 42;
    }
    addStar(depths, {882, 720}, 88, 24, lead);
    for (int column = 0; column < 5; ++column) {
        const float depth = 0.36F / static_cast<float>(1 << column);
        const float x = 66 + 62 * static_cast<float>(column);
        addDisc(depths, {x, 800}, 24, depth);
        addDisc(depths, {x, 852}, 13, depth);
        addDisc(depths, {x, 886}, 7, depth);
    }
    addLetters(depths, "QV1K", {748, 900}, 60, lead);
    addLetters(depths, "L", {60, 930}, 48, lead);
    for (const Point corner : {Point{26, 26}, Point{998, 26}, Point{26, 998}, Point{998, 998}})
        addCross(depths, corner, 16, lead);
}

/// How much tissue stands in the way, 0 to 1, of the distance from the skin (negative inside).
float thickness(float distance)
{
    constexpr float roundness = 46;
    const float depth = std::clamp(-distance / roundness, 0.0F, 1.0F);
    return std::sqrt(depth * (2 - depth));
}

/// Grain of the spongy bone, around 0: a lattice of random values, smoothed between its points.
float grain(Point point)
{
    constexpr float mesh = 3.5F;
    const float u = point.x / mesh;
    const float v = point.y / mesh;
    const auto lattice = [](float i, float j) {
        return static_cast<float>(uniform(mixed(static_cast<quint64>(i), static_cast<quint64>(j)))) - 0.5F;
    };
    const float i = std::floor(u);
    const float j = std::floor(v);
    const float above = std::lerp(lattice(i, j), lattice(i + 1, j), u - i);
    const float below = std::lerp(lattice(i, j + 1), lattice(i + 1, j + 1), u - i);
    return std::lerp(above, below, v - j);
}

/// The beam is strongest left of the middle and above it, and falls off smoothly.
float beam(Point point)
{
    const float x = (point.x - 470) / sensorWidth;
    const float y = (point.y - 420) / sensorHeight;
    return openBeam * (1 - 0.22F * (x * x + y * y) - 0.04F * x);
}

} // namespace

std::vector<float> phantomCurrents()
{
    Field skin(1000);
    Field bones(0);
    Field marks(0);
    addHand(skin, bones);
    addMarks(marks);

    Field currents(0);
    qsizetype pixel = 0;
    currents.changeAll([&](float &current, Point point) {
        const float bone = bones.at(pixel);
        const float rough = bone > 0 ? bone * (1 + 0.35F * grain(point)) : 0.0F;
        current = beam(point) * std::exp(-0.62F * thickness(skin.at(pixel)) - rough - marks.at(pixel));
        ++pixel;
    });
    return currents.values();
}

} // namespace simulator
