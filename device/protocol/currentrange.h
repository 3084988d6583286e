#pragma once

#include <QList>

#include <array>

/// The four current ranges that an operator chooses from, and the readout timing of each. Pure functions.
namespace CurrentRange {

struct Gear
{
    int nanoamperes;     ///< full scale
    int pcRangeIndex;    ///< index of the charge range, as kept under `comboBox_pcrange`
    int integrationTime; ///< base time T of the timing sequence
};

/// 150 nA and 50 nA share one ADC configuration on purpose: only their timing differs.
inline constexpr std::array<Gear, 4> gears{
    {{150, 0, 16600}, {50, 0, 50000}, {10, 3, 130000}, {1, 6, 400000}}};

/// The eighteen timing values t0 to t17 (fields 17 to 34) for the base time `integrationTime`, unscaled. Sums
/// wrap at 32 bits, which those of the gears do not reach.
[[nodiscard]] QList<int> timingSequence(int integrationTime);

/// The same values as they go over the wire: the two integration times at 80 %.
[[nodiscard]] QList<int> toWire(const QList<int> &sequence);

} // namespace CurrentRange
