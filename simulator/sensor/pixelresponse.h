#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

namespace simulator {

/// Random numbers of normal distribution, ready made: noise costs one look-up a pixel.
class NoiseTable
{
public:
    /// A value of 1 standard deviation.
    static constexpr qint16 one = 4096;

    explicit NoiseTable(quint64 seed);

    /// `sensorWidth` values in a row, which ones is chosen by `random`.
    [[nodiscard]] std::span<const qint16> row(quint64 random) const;
    /// One value, standard deviations.
    [[nodiscard]] float value(quint64 random) const;

private:
    std::vector<qint16> m_values;
};

/// How each pixel differs from the perfect one: gain from pixel to pixel and from column to column, a dark
/// current, and a few pixels that are dead (never any charge) or hot (always full). All from the seed.
class PixelResponse
{
public:
    static constexpr int deadPixels = 12;
    static constexpr int hotPixels = 12;
    static constexpr float darkCurrent = 0.02F; ///< mean, nA

    PixelResponse(quint64 seed, const NoiseTable &noise);

    [[nodiscard]] const std::vector<float> &gains() const { return m_gains; }
    [[nodiscard]] const std::vector<float> &darkCurrents() const { return m_darkCurrents; } ///< nA

private:
    std::vector<float> m_gains;
    std::vector<float> m_darkCurrents;
};

/// How long and into which capacity the photocurrent is collected.
struct Exposure
{
    double light = 1;            ///< share of the scene's photocurrent
    double integrationNs = 0;    ///< ns
    double fullScaleCharge = 25; ///< pC

    /// Counts above the offset per nA.
    [[nodiscard]] double countsPerNanoampere() const;
    friend bool operator==(const Exposure &, const Exposure &) = default;
};

/// Mean and noise of every pixel's sample under one exposure of one scene.
class ExposedPixels
{
public:
    ExposedPixels(const std::vector<float> &currents, const PixelResponse &response,
                  const Exposure &exposure);

    /// Writes the samples of the pixels from `firstPixel` on, all within one row, most significant byte
    /// first. `noise` holds one value for each.
    void write(qsizetype firstPixel, std::span<const qint16> noise, std::span<uchar> samples) const;

private:
    std::vector<qint32> m_means;
    std::vector<qint16> m_deviations; ///< 1/64 count
};

} // namespace simulator
