#pragma once

#include "device/protocol/frameformat.h"

#include <QtGlobal>

#include <span>

/// From the bytes of a raw frame to photocurrents, grey levels and the picture: one pass, no intermediate
/// text. Results are those of the formulas below in double precision, to the last bit, whatever the
/// processor. Free functions, any thread.
namespace PixelKernel {

/// What turns a sample into a current and a current into a grey level.
struct Mapping
{
    int gainNumerator = 25;
    int gainDenominator = 166;
    int rangeMax = 150;         ///< nA, shown as grey 255
    double contrastRatio = 1.0; ///< scales the picture, not the grey levels; plain mapping only
    bool calibrated = false;    ///< grey levels between the dark and the bright reference
};

/// A reference that is being captured: a running sum over frames, divided once at the last of them.
struct Capture
{
    double *reference = nullptr; ///< FrameFormat::pixels elements; null when none is being captured
    bool firstFrame = true;      ///< replaces what stands there
    int divisor = 0;             ///< number of frames when this is the last, otherwise 0
};

/// One frame's input and output. Every pointer leads to FrameFormat::pixels elements.
struct Frame
{
    std::span<const uchar> bytes; ///< 4 a pixel, most significant first; of any length
    double *currents = nullptr;   ///< out: nA with four decimals
    int *grayLevels = nullptr;    ///< out
    uchar *picture = nullptr;     ///< out
    const double *dark = nullptr;
    const double *bright = nullptr;
    Capture darkCapture;
    Capture brightCapture;
};

/// Works out the whole frame on OpenCV's workers; returns when all is done.
///
/// A sample of 4096 or less, or with the top bit set, counts 0; what is left of a pixel that the frame's end
/// cuts is its value; pixels beyond the end are 0.
void process(const Frame &frame, const Mapping &mapping);

/// The same for the rows [firstRow, endRow), on the calling thread.
using RowsFunction = void (*)(const Frame &frame, const Mapping &mapping, int firstRow, int endRow);

/// The same code, translated for one instruction set.
struct Variant
{
    const char *name;
    RowsFunction rows;
};

/// What this processor can run, the portable one first, the fastest last. process() uses the last.
[[nodiscard]] std::span<const Variant> variants();

} // namespace PixelKernel
