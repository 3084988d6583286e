#pragma once

#include "device/protocol/frameformat.h"
#include "ui/inspector/inspection.h"

#include <span>
#include <vector>

/// Frames for the inspector.
namespace InspectedFrames {

inline constexpr int side = FrameFormat::side;

[[nodiscard]] inline std::vector<double> flat(double current)
{
    return std::vector<double>(static_cast<std::size_t>(FrameFormat::pixels), current);
}

/// Every pixel tells where it is: row + column / 10000 nA.
[[nodiscard]] inline std::vector<double> places()
{
    std::vector<double> frame;
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column)
            frame.push_back(row + column / 10000.0);
    return frame;
}

[[nodiscard]] inline double &at(std::vector<double> &frame, int row, int column)
{
    return frame[static_cast<std::size_t>(row) * side + static_cast<std::size_t>(column)];
}

} // namespace InspectedFrames
