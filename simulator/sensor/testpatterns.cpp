#include "simulator/sensor/testpatterns.h"

#include "simulator/geometry.h"

#include <QtEndian>

namespace simulator {

namespace {

constexpr quint32 rampStep = 1025; // 1023 steps reach the largest sample
constexpr quint32 squareSize = 64;

/// `sample` is a function of the pixel's index, plain enough for the compiler to do several at once.
template <typename Sample>
void write(qsizetype firstPixel, std::span<uchar> samples, Sample sample)
{
    uchar *out = samples.data();
    const auto first = static_cast<quint32>(firstPixel);
    const auto count = static_cast<quint32>(samples.size() / sampleBytes);
    for (quint32 i = 0; i < count; ++i)
        qToBigEndian<quint32>(sample(first + i), out + std::size_t{i} * sampleBytes);
}

} // namespace

void writeTestPattern(TestPattern pattern, quint64 frame, qsizetype firstPixel, std::span<uchar> samples)
{
    constexpr quint32 offset = sampleOffset;
    constexpr quint32 width = sensorWidth;
    switch (pattern) {
    case TestPattern::HorizontalRamp:
        return write(firstPixel, samples, [](quint32 i) { return offset + rampStep * (i % width); });
    case TestPattern::VerticalRamp:
        return write(firstPixel, samples, [](quint32 i) { return offset + rampStep * (i / width); });
    case TestPattern::Checkerboard:
        return write(firstPixel, samples, [](quint32 i) {
            const quint32 odd = ((i / width / squareSize) ^ (i % width / squareSize)) & 1U;
            return offset + odd * (quint32{fullScale} - 1U);
        });
    case TestPattern::Counter:
        return write(firstPixel, samples, [frame](quint32 i) { return counterSample(frame, i); });
    case TestPattern::Flat:
    case TestPattern::None:
        break;
    }
    write(firstPixel, samples, [](quint32) { return offset + quint32{fullScale} / 2U; });
}

} // namespace simulator
