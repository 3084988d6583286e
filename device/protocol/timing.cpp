#include "device/protocol/timing.h"

namespace {

constexpr quint32 linesPerFrame = 258;

/// Unsigned arithmetic is what wraps; the values are signed only where they come in and go out.
quint32 wrapping(qint32 value)
{
    return static_cast<quint32>(value);
}

qint32 plain(quint32 value)
{
    return static_cast<qint32>(value);
}

} // namespace

TimingCalculator::Results TimingCalculator::calculate(const Inputs &inputs)
{
    const quint32 outGap = wrapping(inputs.outGap);
    const quint32 outpCkGap = wrapping(inputs.outpCkGap);
    const quint32 ckpMuxGap = wrapping(inputs.ckpMuxGap);

    const quint32 ckGap = 2 * outpCkGap + outGap;
    const quint32 muxGap = ckGap + 2 * ckpMuxGap;
    const quint32 rest = wrapping(inputs.adcIntB) - muxGap;
    const quint32 muxHigh = rest + wrapping(inputs.adcIntA);
    const quint32 ckHigh = 2 * ckpMuxGap + 3 * muxGap + 4 * muxHigh;
    const quint32 clkCycle = 2 * outpCkGap + 3 * ckGap + 4 * ckHigh + outGap;

    Results results;
    results.framePeriod =
        plain(clkCycle * linesPerFrame + wrapping(inputs.frameTail) + wrapping(inputs.frameHead));
    results.clkCycle = plain(clkCycle);
    results.clkHigh = plain(clkCycle) / 2;
    results.ckHigh = plain(ckHigh);
    results.ckGap = plain(ckGap);
    results.ckOutnGap = inputs.outpCkGap;
    results.muxHigh = plain(muxHigh);
    results.muxGap = plain(muxGap);
    results.muxCknGap = inputs.ckpMuxGap;
    results.adcEndDelay = plain(rest - wrapping(inputs.adcStartDelay));
    return results;
}
