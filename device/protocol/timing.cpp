#include "device/protocol/timing.h"

#include "device/protocol/saturated.h"

namespace {

constexpr quint32 linesPerFrame = 258;
constexpr double integrationScale = 0.8; ///< of the two ADC integration times, on the wire

/// Unsigned arithmetic is what wraps; the values are signed only where they come in and go out.
quint32 wrapping(qint32 value)
{
    return static_cast<quint32>(value);
}

qint32 plain(quint32 value)
{
    return static_cast<qint32>(value);
}

bool isIntegrationTime(Timing::Field field)
{
    return field == &Timing::adcIntA || field == &Timing::adcIntB;
}

} // namespace

Timing Timing::ofRange(qint32 integrationTime)
{
    const quint32 wideMuxHigh = wrapping(integrationTime) + 15700;
    const quint32 wideCkHigh = 4 * wideMuxHigh + 20000;
    const quint32 wideClkCycle = 4 * wideCkHigh + 16000;
    return {.framePeriod = plain(linesPerFrame * wideClkCycle + 2000),
            .frameHead = 1000,
            .frameTail = 1000,
            .clkCycle = plain(wideClkCycle),
            .clkHigh = plain(wideClkCycle) / 2,
            .outGap = 2000,
            .outpCkGap = 1000,
            .ckHigh = plain(wideCkHigh),
            .ckGap = 4000,
            .ckOutnGap = 1000,
            .ckpMuxGap = 1000,
            .muxHigh = plain(wideMuxHigh),
            .muxGap = 6000,
            .muxCknGap = 1000,
            .adcStartDelay = 300,
            .adcIntA = integrationTime,
            .adcEndDelay = 15400,
            .adcIntB = 21700};
}

Timing Timing::calculated() const
{
    const quint32 wideCkGap = 2 * wrapping(outpCkGap) + wrapping(outGap);
    const quint32 wideMuxGap = wideCkGap + 2 * wrapping(ckpMuxGap);
    const quint32 rest = wrapping(adcIntB) - wideMuxGap;
    const quint32 wideMuxHigh = rest + wrapping(adcIntA);
    const quint32 wideCkHigh = 2 * wrapping(ckpMuxGap) + 3 * wideMuxGap + 4 * wideMuxHigh;
    const quint32 wideClkCycle = 2 * wrapping(outpCkGap) + 3 * wideCkGap + 4 * wideCkHigh + wrapping(outGap);

    Timing result = *this;
    result.framePeriod = plain(wideClkCycle * linesPerFrame + wrapping(frameTail) + wrapping(frameHead));
    result.clkCycle = plain(wideClkCycle);
    result.clkHigh = plain(wideClkCycle) / 2;
    result.ckHigh = plain(wideCkHigh);
    result.ckGap = plain(wideCkGap);
    result.ckOutnGap = outpCkGap;
    result.muxHigh = plain(wideMuxHigh);
    result.muxGap = plain(wideMuxGap);
    result.muxCknGap = ckpMuxGap;
    result.adcEndDelay = plain(rest - wrapping(adcStartDelay));
    return result;
}

qint32 Timing::toWire(Field field, qint32 value)
{
    return isIntegrationTime(field) ? saturatedToInt(value * integrationScale) : value;
}

qint32 Timing::fromWire(Field field, qint32 word)
{
    return isIntegrationTime(field) ? saturatedToInt(word / integrationScale) : word;
}

QList<qint32> Timing::toWire() const
{
    QList<qint32> words;
    for (const Field field : fields)
        words.append(toWire(field, this->*field));
    return words;
}
