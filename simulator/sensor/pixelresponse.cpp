#include "simulator/sensor/pixelresponse.h"

#include "simulator/geometry.h"
#include "simulator/random.h"
#include "simulator/sensor/samples.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace simulator {

namespace {

constexpr std::size_t noiseValues = std::size_t{1} << 18U;
constexpr float readNoise = 15;                // counts
constexpr double electronCharge = 1.602177e-7; // pC
constexpr float hotCurrent = 1e6F;             // nA, full in every range
constexpr int deviationBits = 6;               // binary places of a deviation
constexpr int noiseBits = 12;                  // binary places of NoiseTable

enum Purpose : quint64 { ForNoise = 1, ForGain, ForColumn, ForDark, ForDefect };

} // namespace

NoiseTable::NoiseTable(quint64 seed) : m_values(noiseValues + sensorWidth)
{
    for (std::size_t i = 0; i < noiseValues; i += 2) {
        const double u = 1 - uniform(mixed(seed + ForNoise, i));
        const double angle = 2 * std::numbers::pi * uniform(mixed(seed + ForNoise, i + 1));
        const double radius = one * std::sqrt(-2 * std::log(u));
        const auto stored = [](double value) {
            return static_cast<qint16>(std::lround(std::clamp(value, -32767.0, 32767.0)));
        };
        m_values[i] = stored(radius * std::cos(angle));
        m_values[i + 1] = stored(radius * std::sin(angle));
    }
    std::copy_n(m_values.begin(), sensorWidth, m_values.begin() + noiseValues);
}

std::span<const qint16> NoiseTable::row(quint64 random) const
{
    return std::span(m_values).subspan(random % noiseValues, sensorWidth);
}

float NoiseTable::value(quint64 random) const
{
    return static_cast<float>(m_values[random % noiseValues]) / one;
}

PixelResponse::PixelResponse(quint64 seed, const NoiseTable &noise)
{
    m_gains.reserve(static_cast<std::size_t>(sensorPixels));
    m_darkCurrents.reserve(static_cast<std::size_t>(sensorPixels));
    std::vector<float> columnGains;
    for (quint64 x = 0; x < sensorWidth; ++x)
        columnGains.push_back(1 + 0.004F * noise.value(mixed(seed + ForColumn, x)));
    for (quint64 i = 0; i < sensorPixels; ++i) {
        const float gain = 1 + 0.01F * noise.value(mixed(seed + ForGain, i));
        m_gains.push_back(gain * columnGains[i % sensorWidth]);
        const float dark = darkCurrent * (1 + 0.2F * noise.value(mixed(seed + ForDark, i)));
        m_darkCurrents.push_back(std::max(0.0F, dark));
    }
    for (quint64 i = 0; i < deadPixels + hotPixels; ++i) {
        const auto pixel = static_cast<std::size_t>(mixed(seed + ForDefect, i) % sensorPixels);
        m_gains[pixel] = 0;
        m_darkCurrents[pixel] = i < deadPixels ? 0 : hotCurrent;
    }
}

double Exposure::countsPerNanoampere() const
{
    constexpr double picocoulombs = 1e-6; // of one nA in one ns
    return integrationNs * picocoulombs / fullScaleCharge * fullScale;
}

ExposedPixels::ExposedPixels(const std::vector<float> &currents, const PixelResponse &response,
                             const Exposure &exposure)
    : m_means(currents.size()), m_deviations(currents.size())
{
    constexpr float overfull = 4.0F * fullScale; // far enough above full scale that noise does not show
    const auto countsPerNa = static_cast<float>(exposure.countsPerNanoampere());
    const auto light = static_cast<float>(exposure.light);
    // A charge of N electrons varies by sqrt(N) of them.
    const auto shotVariance = static_cast<float>(fullScale * electronCharge / exposure.fullScaleCharge);
    const float *gains = response.gains().data();
    const float *darkCurrents = response.darkCurrents().data();
    for (std::size_t i = 0; i < currents.size(); ++i) {
        const float current = currents[i] * light * gains[i] + darkCurrents[i];
        const float counts = std::min(current * countsPerNa, overfull);
        const float deviation = std::sqrt(readNoise * readNoise + counts * shotVariance);
        m_means[i] = sampleOffset + static_cast<qint32>(counts);
        m_deviations[i] = static_cast<qint16>(std::min(deviation * (1 << deviationBits), 32767.0F));
    }
}

void ExposedPixels::write(qsizetype firstPixel, std::span<const qint16> noise, std::span<uchar> samples) const
{
    const qint32 *means = m_means.data() + firstPixel;
    const qint16 *deviations = m_deviations.data() + firstPixel;
    uchar *out = samples.data();
    const auto count = samples.size() / sampleBytes;
    for (std::size_t i = 0; i < count; ++i) {
        const qint32 offset = (qint32{deviations[i]} * qint32{noise[i]}) >> (deviationBits + noiseBits);
        const qint32 sample = std::min(means[i] + offset, largestSample);
        qToBigEndian<quint32>(static_cast<quint32>(sample), out + i * sampleBytes);
    }
}

} // namespace simulator
