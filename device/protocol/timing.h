#pragma once

#include <QList>
#include <QtGlobal>

#include <array>

/// The eighteen values that time one readout, all in the device's timing units of one nanosecond. Plain
/// value; all functions are pure. Nothing is checked: sums wrap at 32 bits, and an impossible timing comes
/// out negative.
struct Timing
{
    qint32 framePeriod = 0;
    qint32 frameHead = 0;
    qint32 frameTail = 0;
    qint32 clkCycle = 0;
    qint32 clkHigh = 0;
    qint32 outGap = 0;
    qint32 outpCkGap = 0;
    qint32 ckHigh = 0;
    qint32 ckGap = 0;
    qint32 ckOutnGap = 0;
    qint32 ckpMuxGap = 0;
    qint32 muxHigh = 0;
    qint32 muxGap = 0;
    qint32 muxCknGap = 0;
    qint32 adcStartDelay = 0;
    qint32 adcIntA = 0; ///< integration time; 80 % of it goes over the wire
    qint32 adcEndDelay = 0;
    qint32 adcIntB = 0; ///< the same of the second sample

    using Field = qint32 Timing::*;
    static constexpr int count = 18;
    /// All of them in the order in which they go over the wire.
    static const std::array<Field, count> fields;
    /// Those that calculated() works out.
    static const std::array<Field, 10> derived;

    /// The operator's page: everything from the integration time of a current range alone.
    [[nodiscard]] static Timing ofRange(qint32 integrationTime);

    /// The engineer's calculator: the ten derived values from the eight others, which stay. It has gaps of
    /// its own and is kept apart from ofRange() on purpose.
    [[nodiscard]] Timing calculated() const;

    /// A value as it goes over the wire: 80 % of the two integration times, truncated toward zero, and the
    /// value itself of all others.
    [[nodiscard]] static qint32 toWire(Field field, qint32 value);
    /// The inverse: the two integration times divided by 0.8 and truncated, at most what 32 bits hold.
    [[nodiscard]] static qint32 fromWire(Field field, qint32 word);

    /// All eighteen words as they go over the wire.
    [[nodiscard]] QList<qint32> toWire() const;

    friend bool operator==(const Timing &, const Timing &) = default;
};

inline constexpr std::array<Timing::Field, Timing::count> Timing::fields{
    &Timing::framePeriod, &Timing::frameHead, &Timing::frameTail,     &Timing::clkCycle,
    &Timing::clkHigh,     &Timing::outGap,    &Timing::outpCkGap,     &Timing::ckHigh,
    &Timing::ckGap,       &Timing::ckOutnGap, &Timing::ckpMuxGap,     &Timing::muxHigh,
    &Timing::muxGap,      &Timing::muxCknGap, &Timing::adcStartDelay, &Timing::adcIntA,
    &Timing::adcEndDelay, &Timing::adcIntB};

inline constexpr std::array<Timing::Field, 10> Timing::derived{
    &Timing::framePeriod, &Timing::clkCycle, &Timing::clkHigh, &Timing::ckHigh,    &Timing::ckGap,
    &Timing::ckOutnGap,   &Timing::muxHigh,  &Timing::muxGap,  &Timing::muxCknGap, &Timing::adcEndDelay};
