#pragma once

#include <QtGlobal>

/// Derives the dependent timing values of one readout line from the independent ones, all in the device's
/// timing units. Pure function, any thread.
namespace TimingCalculator {

struct Inputs
{
    qint32 frameHead = 0;
    qint32 frameTail = 0;
    qint32 outGap = 0;
    qint32 outpCkGap = 0;
    qint32 ckpMuxGap = 0;
    qint32 adcStartDelay = 0;
    qint32 adcIntA = 0;
    qint32 adcIntB = 0;
};

struct Results
{
    qint32 framePeriod = 0;
    qint32 clkCycle = 0;
    qint32 clkHigh = 0;
    qint32 ckHigh = 0;
    qint32 ckGap = 0;
    qint32 ckOutnGap = 0;
    qint32 muxHigh = 0;
    qint32 muxGap = 0;
    qint32 muxCknGap = 0;
    qint32 adcEndDelay = 0;
};

/// Nothing is checked: sums wrap at 32 bits, and an impossible timing comes out negative.
[[nodiscard]] Results calculate(const Inputs &inputs);

} // namespace TimingCalculator
