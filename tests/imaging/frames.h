#pragma once

#include <QByteArray>
#include <QRandomGenerator>
#include <QtEndian>

#include <functional>

/// Raw frames to try the pipeline with.
namespace Frames {

inline constexpr int pixels = 1024 * 1024;

/// A whole frame with one sample a pixel.
inline QByteArray of(const std::function<quint32(int pixel)> &sample)
{
    QByteArray bytes(static_cast<qsizetype>(pixels) * 4, Qt::Uninitialized);
    for (int i = 0; i < pixels; ++i)
        qToBigEndian(sample(i), bytes.data() + static_cast<qsizetype>(i) * 4);
    return bytes;
}

inline QByteArray flat(quint32 sample)
{
    return of([sample](int) { return sample; });
}

/// The sample whose current is nearest to `nanoamperes`; one count is 0.000144 nA.
inline quint32 sampleOf(double nanoamperes)
{
    return 4096 + static_cast<quint32>(nanoamperes * 1048576.0 * 166 / 25 / 1000 + 0.5);
}

/// Samples of the useful range: what a detector sends.
inline QByteArray useful(quint32 seed)
{
    QRandomGenerator random(seed);
    return of([&](int) { return 4096 + random.bounded(1u << 20); });
}

/// Any bytes at all.
inline QByteArray noise(quint32 seed)
{
    QRandomGenerator random(seed);
    return of([&](int) { return random.generate(); });
}

/// Every number of digits, and every edge of the decoding.
inline QByteArray edges()
{
    static constexpr quint32 samples[] = {
        0,          1,          4095,       4096,       4097,       4098,       0x000FFFFF,
        0x00100000, 0x00100FFF, 0x00101000, 0x00101001, 0x001FFFFF, 0x00200000, 0x00FFFFFF,
        0x01000000, 0x7FFFFFFE, 0x7FFFFFFF, 0x80000000, 0x80001001, 0xFFFFFFFE, 0xFFFFFFFF};
    QRandomGenerator random(7);
    return of([&](int i) {
        if (static_cast<std::size_t>(i) < std::size(samples))
            return samples[i];
        return random.generate() >> random.bounded(32);
    });
}

} // namespace Frames
