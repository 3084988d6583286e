#pragma once

#include "simulator/geometry.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace simulator {

/// A place on the sensor in pixels: x to the right, y down; the centre of the first pixel is (0.5, 0.5).
struct Point
{
    float x = 0;
    float y = 0;
};

/// An upright rectangle on the sensor, in pixels.
struct Box
{
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;
};

/// One value per pixel, row by row.
class Field
{
public:
    explicit Field(float value) : m_values(static_cast<std::size_t>(sensorPixels), value) {}

    [[nodiscard]] const std::vector<float> &values() const { return m_values; }
    [[nodiscard]] float at(qsizetype pixel) const { return m_values[static_cast<std::size_t>(pixel)]; }

    /// Calls `change(value, point)` with each pixel of the box: a reference to its value and its centre.
    template <typename Change>
    void change(const Box &box, Change change)
    {
        const int left = std::max(0, static_cast<int>(std::floor(box.left)));
        const int right = std::min(sensorWidth, static_cast<int>(std::ceil(box.right)));
        const int top = std::max(0, static_cast<int>(std::floor(box.top)));
        const int bottom = std::min(sensorHeight, static_cast<int>(std::ceil(box.bottom)));
        for (int y = top; y < bottom; ++y) {
            float *row = m_values.data() + qsizetype{y} * sensorWidth;
            for (int x = left; x < right; ++x)
                change(row[x], Point{static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F});
        }
    }

    template <typename Change>
    void changeAll(Change change)
    {
        this->change(Box{0, 0, sensorWidth, sensorHeight}, change);
    }

private:
    std::vector<float> m_values;
};

/// A straight line of some width that may differ at its two ends.
struct Segment
{
    Point from;
    Point to;
    float fromRadius = 0;
    float toRadius = 0;

    /// The box around it with `margin` to spare.
    [[nodiscard]] Box box(float margin) const;
};

/// Where a point lies beside a segment: its distance from the line, and how far along it is, 0 to 1.
struct Beside
{
    float distance = 0;
    float along = 0;
};

[[nodiscard]] Beside beside(const Segment &segment, Point point);

} // namespace simulator
