#pragma once

#include "device/protocol/adcselection.h"

#include <array>

/// The four current ranges that an operator chooses from.
namespace CurrentRange {

/// What a range sets on the detector.
struct Gear
{
    int nanoamperes; ///< full scale
    AdcSelection::PcRange pcRange;
    int integrationTime; ///< base time T of Timing::ofRange()
};

/// 150 nA and 50 nA share one ADC configuration on purpose: only their timing differs.
inline constexpr std::array<Gear, 4> gears{{{150, AdcSelection::PcRange::Pc25, 16600},
                                            {50, AdcSelection::PcRange::Pc25, 50000},
                                            {10, AdcSelection::PcRange::Pc13, 130000},
                                            {1, AdcSelection::PcRange::Pc4, 400000}}};

} // namespace CurrentRange
