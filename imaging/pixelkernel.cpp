#include "imaging/pixelkernel.h"

#include "device/protocol/frameformat.h"
#include "imaging/pixelmath.h"

#include <QtEndian>

#include <opencv2/core.hpp>

#include <cstring>
#include <vector>

// The rows are worked out block by block, each step in a loop of its own over data that stays in the first
// level cache: plain loops that the compiler turns into vector instructions. One body serves all
// instruction sets; it is inlined into one function for each.

namespace PixelKernel {
namespace {

constexpr int blockPixels = 256;
static_assert(FrameFormat::side % blockPixels == 0);

/// The value of the digits that are there: 0 to 4 bytes.
qint32 cutSample(std::span<const uchar> bytes, qsizetype offset)
{
    quint32 sample = 0;
    for (qsizetype i = offset;
         i < qMin(offset + FrameFormat::bytesPerPixel, static_cast<qsizetype>(bytes.size())); ++i)
        sample = sample << 8 | bytes[static_cast<std::size_t>(i)];
    return static_cast<qint32>(sample);
}

Q_ALWAYS_INLINE void loadSamples(std::span<const uchar> bytes, int firstPixel, qint32 *samples)
{
    const auto offset = static_cast<qsizetype>(firstPixel) * FrameFormat::bytesPerPixel;
    if (offset + blockPixels * FrameFormat::bytesPerPixel <= static_cast<qsizetype>(bytes.size())) {
        std::memcpy(samples, bytes.data() + offset, blockPixels * FrameFormat::bytesPerPixel);
        for (int i = 0; i < blockPixels; ++i)
            samples[i] = qFromBigEndian(samples[i]);
    } else {
        for (int i = 0; i < blockPixels; ++i)
            samples[i] = cutSample(bytes, offset + i * FrameFormat::bytesPerPixel);
    }
}

Q_ALWAYS_INLINE void decode(const qint32 *samples, double *currents, const Mapping &mapping)
{
    const double numerator = mapping.gainNumerator;
    const double denominator = mapping.gainDenominator;
    for (int i = 0; i < blockPixels; ++i)
        currents[i] = PixelMath::current(samples[i], numerator, denominator);
}

Q_ALWAYS_INLINE void accumulate(const double *currents, int firstPixel, const Capture &capture)
{
    if (capture.reference == nullptr)
        return;
    double *reference = capture.reference + firstPixel;
    for (int i = 0; i < blockPixels; ++i)
        reference[i] = capture.firstFrame ? currents[i] : reference[i] + currents[i];
    if (capture.divisor == 0)
        return;
    for (int i = 0; i < blockPixels; ++i)
        reference[i] /= capture.divisor;
}

Q_ALWAYS_INLINE void renderPlain(const double *currents, int *gray, int *levels, const Mapping &mapping)
{
    const double rangeMax = mapping.rangeMax;
    const double contrast = mapping.contrastRatio;
    for (int i = 0; i < blockPixels; ++i)
        gray[i] = PixelMath::plainLevel(currents[i], rangeMax);
    for (int i = 0; i < blockPixels; ++i)
        levels[i] = PixelMath::plainLevel(PixelMath::scaled(currents[i], contrast, rangeMax), rangeMax);
}

Q_ALWAYS_INLINE void renderCalibrated(const double *currents, const double *dark, const double *bright,
                                      int *gray, int *levels)
{
    for (int i = 0; i < blockPixels; ++i)
        levels[i] = PixelMath::calibratedLevel(currents[i], dark[i], bright[i]);
    for (int i = 0; i < blockPixels; ++i)
        gray[i] = levels[i] & 0xFF;
}

Q_ALWAYS_INLINE void processBlock(const Frame &frame, const Mapping &mapping, int firstPixel)
{
    qint32 scratch[blockPixels];
    double *currents = frame.currents + firstPixel;
    int *gray = frame.grayLevels + firstPixel;

    loadSamples(frame.bytes, firstPixel, scratch);
    decode(scratch, currents, mapping);
    accumulate(currents, firstPixel, frame.darkCapture);
    accumulate(currents, firstPixel, frame.brightCapture);
    if (mapping.calibrated)
        renderCalibrated(currents, frame.dark + firstPixel, frame.bright + firstPixel, gray, scratch);
    else
        renderPlain(currents, gray, scratch, mapping);
    for (int i = 0; i < blockPixels; ++i)
        frame.picture[firstPixel + i] = static_cast<uchar>(scratch[i]);
}

Q_ALWAYS_INLINE void processRows(const Frame &frame, const Mapping &mapping, int firstRow, int endRow)
{
    const Mapping constants = mapping; // a copy that no store to the pixels can change
    for (int pixel = firstRow * FrameFormat::side; pixel < endRow * FrameFormat::side; pixel += blockPixels)
        processBlock(frame, constants, pixel);
}

void portableRows(const Frame &frame, const Mapping &mapping, int firstRow, int endRow)
{
    processRows(frame, mapping, firstRow, endRow);
}

#ifdef QV1K_WIDE_VECTORS

__attribute__((target("avx2"))) void avx2Rows(const Frame &frame, const Mapping &mapping, int firstRow,
                                              int endRow)
{
    processRows(frame, mapping, firstRow, endRow);
}

__attribute__((target("avx512f,avx512bw,avx512dq,avx512vl"))) void
avx512Rows(const Frame &frame, const Mapping &mapping, int firstRow, int endRow)
{
    processRows(frame, mapping, firstRow, endRow);
}

std::vector<Variant> usableVariants()
{
    std::vector<Variant> usable{{"portable", &portableRows}};
    if (__builtin_cpu_supports("avx2"))
        usable.push_back({"avx2", &avx2Rows});
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl"))
        usable.push_back({"avx512", &avx512Rows});
    return usable;
}

#else

std::vector<Variant> usableVariants()
{
    return {{"portable", &portableRows}};
}

#endif

} // namespace

std::span<const Variant> variants()
{
    static const std::vector<Variant> usable = usableVariants();
    return usable;
}

void process(const Frame &frame, const Mapping &mapping)
{
    const RowsFunction rows = variants().back().rows;
    cv::parallel_for_(cv::Range(0, FrameFormat::side),
                      [&](const cv::Range &range) { rows(frame, mapping, range.start, range.end); });
}

} // namespace PixelKernel
