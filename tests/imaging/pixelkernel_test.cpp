#include "device/protocol/frameformat.h"
#include "imaging/pixelkernel.h"
#include "tests/imaging/frames.h"
#include "tests/imaging/processor.h"
#include "tests/imaging/straightforward/straightforward.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>

namespace {

/// What the kernel made of a frame.
struct Output
{
    std::vector<double> currents = std::vector<double>(Frames::pixels, -1.0);
    std::vector<int> gray = std::vector<int>(Frames::pixels, -1);
    std::vector<uchar> picture = std::vector<uchar>(Frames::pixels, 0xAA);
};

PixelKernel::Frame frameOf(const QByteArray &bytes, Straightforward::Pipeline &state, Output &output)
{
    PixelKernel::Frame frame;
    frame.bytes = {reinterpret_cast<const uchar *>(bytes.constData()),
                   static_cast<std::size_t>(bytes.size())};
    frame.currents = output.currents.data();
    frame.grayLevels = output.gray.data();
    frame.picture = output.picture.data();
    frame.dark = state.fullOffData.data();
    frame.bright = state.fullOnData.data();
    return frame;
}

PixelKernel::Mapping mappingOf(const Straightforward::Pipeline &state)
{
    return {state.gainNumerator, state.gainDenominator, state.rangeMax, state.contrastRatio,
            state.caliEnabled};
}

template <typename Value>
int firstDifference(const std::vector<Value> &a, const Value *b)
{
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::memcmp(&a[i], &b[i], sizeof(Value)) != 0)
            return static_cast<int>(i);
    return -1;
}

void expectSame(const Output &output, const Straightforward::Pipeline &expected, const QImage &picture)
{
    EXPECT_EQ(firstDifference(output.currents, expected.frameData.data()), -1);
    EXPECT_EQ(firstDifference(output.gray, expected.grayData.data()), -1);
    EXPECT_EQ(firstDifference(output.picture, picture.constBits()), -1);
}

/// Every variant that this processor has gives what the plain words give.
void holdAgainstReference(const QByteArray &bytes, Straightforward::Pipeline state = {})
{
    const QImage picture = state.processImage(bytes);
    for (const PixelKernel::Variant &variant : PixelKernel::variants()) {
        SCOPED_TRACE(variant.name);
        Output output;
        variant.rows(frameOf(bytes, state, output), mappingOf(state), 0, FrameFormat::side);
        expectSame(output, state, picture);
    }
}

Straightforward::Pipeline plain(double contrastRatio)
{
    Straightforward::Pipeline state;
    state.contrastRatio = contrastRatio;
    return state;
}

/// References of every kind: ordered, equal, reversed, infinite, not a number.
Straightforward::Pipeline calibratedWithOddReferences()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double odd[] = {0,   -0.0,  1e-320, 12.3456,  150,       255,
                              -20, 1e300, -1e300, infinity, -infinity, nan};
    Straightforward::Pipeline state;
    state.caliEnabled = true;
    QRandomGenerator random(3);
    for (std::size_t i = 0; i < static_cast<std::size_t>(Frames::pixels); ++i) {
        const bool ordinary = random.bounded(2) == 0;
        state.fullOffData[i] =
            ordinary ? random.bounded(20.0) : odd[random.bounded(static_cast<quint32>(std::size(odd)))];
        state.fullOnData[i] =
            ordinary ? 60 + random.bounded(90.0) : odd[random.bounded(static_cast<quint32>(std::size(odd)))];
    }
    return state;
}

} // namespace

TEST(PixelKernel, the_portable_variant_comes_first_and_is_always_there)
{
    ASSERT_FALSE(PixelKernel::variants().empty());
    EXPECT_STREQ(PixelKernel::variants().front().name, "portable");
}

TEST(PixelKernel, each_instruction_set_of_this_processor_has_its_variant)
{
    QByteArrayList expected{"portable"};
    if (Processor::hasAvx2())
        expected << "avx2";
    if (Processor::hasAvx512())
        expected << "avx512";

    QByteArrayList names;
    for (const PixelKernel::Variant &variant : PixelKernel::variants())
        names << variant.name;
    EXPECT_EQ(names, expected);
}

TEST(PixelKernel, every_count_up_to_two_to_the_21_decodes_like_its_text)
{
    for (const quint32 first : {0u, 1u << 20, 2u << 20}) // 4096 and 2^21 more lie within
        holdAgainstReference(Frames::of([first](int i) { return first + static_cast<quint32>(i); }),
                             plain(1.0));
}

TEST(PixelKernel, samples_over_the_whole_32_bits_decode_like_their_text)
{
    for (const quint32 offset : {0u, 1u, 1234u})
        holdAgainstReference(Frames::of([offset](int i) { return static_cast<quint32>(i) * 4096u + offset; }),
                             plain(1.0));
}

TEST(PixelKernel, random_bytes_decode_like_their_text)
{
    for (const quint32 seed : {1u, 2u, 3u})
        holdAgainstReference(Frames::noise(seed), plain(1.5));
    for (const quint32 seed : {4u, 5u, 6u})
        holdAgainstReference(Frames::useful(seed), plain(3.7));
}

TEST(PixelKernel, every_edge_of_the_decoding_decodes_like_its_text)
{
    holdAgainstReference(Frames::edges(), plain(1.0));
}

TEST(PixelKernel, a_frame_cut_anywhere_decodes_like_its_text)
{
    const QByteArray whole = Frames::noise(9);
    for (const qsizetype length :
         {0,    1,    2,    3,    4,      5,      6,       7,       8,       1021,    1022,    1023,
          1024, 1025, 4093, 4099, 131072, 131073, 2097150, 4194297, 4194300, 4194301, 4194302, 4194303}) {
        SCOPED_TRACE(length);
        holdAgainstReference(whole.first(length), plain(1.0));
    }
}

TEST(PixelKernel, a_pixel_cut_in_the_middle_is_the_value_of_the_digits_that_are_there)
{
    const QByteArray frame = QByteArray::fromHex("00101000"
                                                 "101000");
    Straightforward::Pipeline state;
    Output output;
    PixelKernel::process(frameOf(frame, state, output), mappingOf(state));
    EXPECT_EQ(output.currents[0], output.currents[1]);
    EXPECT_EQ(output.currents[1], 150.6024 * 1048576 / 1048576);
    EXPECT_EQ(output.currents[2], 0.0);
}

TEST(PixelKernel, bytes_beyond_a_frame_are_ignored)
{
    QByteArray frame = Frames::useful(11);
    holdAgainstReference(frame + QByteArray(1, '\x7F'), plain(1.0));
    holdAgainstReference(frame + QByteArray(5000, '\x7F'), plain(1.0));
}

TEST(PixelKernel, every_contrast_renders_like_the_formula)
{
    constexpr double limits = std::numeric_limits<double>::max();
    for (const double contrast :
         {1.0, 2.0, 1.1, 99.99, 100.0, 1048576.0, 0.0, -1.0, -1e9, 0.001, limits,
          std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        SCOPED_TRACE(contrast);
        holdAgainstReference(Frames::edges(), plain(contrast));
    }
}

TEST(PixelKernel, ranges_and_gains_without_sense_render_like_the_formula)
{
    for (const int rangeMax : {0, 1, -150, 2147483647}) {
        SCOPED_TRACE(rangeMax);
        Straightforward::Pipeline state = plain(1.0);
        state.rangeMax = rangeMax;
        holdAgainstReference(Frames::edges(), state);
    }
    for (const auto &[numerator, denominator] : {std::pair(-25, 166), {2147483647, 1}, {25, 0}, {0, 0}}) {
        SCOPED_TRACE(numerator);
        Straightforward::Pipeline state = plain(1.0);
        state.gainNumerator = numerator;
        state.gainDenominator = denominator;
        const QByteArray frame = Frames::edges();
        // Bits of a NaN are nobody's promise; whether it is one is.
        const QImage picture = state.processImage(frame);
        for (const PixelKernel::Variant &variant : PixelKernel::variants()) {
            Output output;
            variant.rows(frameOf(frame, state, output), mappingOf(state), 0, FrameFormat::side);
            EXPECT_TRUE(std::ranges::equal(output.currents, state.frameData, [](double a, double b) {
                return a == b || (std::isnan(a) && std::isnan(b));
            }));
            EXPECT_EQ(output.gray, state.grayData);
            EXPECT_EQ(firstDifference(output.picture, picture.constBits()), -1);
        }
    }
}

TEST(PixelKernel, the_calibrated_mapping_renders_like_the_formula_with_references_of_every_kind)
{
    for (const QByteArray &frame : {Frames::useful(21), Frames::edges(), Frames::noise(22)})
        holdAgainstReference(frame, calibratedWithOddReferences());
}

TEST(PixelKernel, a_reference_over_several_frames_is_their_sum_divided_once)
{
    constexpr int frames = 3;
    for (const bool dark : {true, false}) {
        for (const PixelKernel::Variant &variant : PixelKernel::variants()) {
            SCOPED_TRACE(variant.name);
            Straightforward::Pipeline expected;
            Straightforward::Pipeline state;
            expected.caliFrameCount = frames;
            expected.caliEnabled = true;
            (dark ? expected.fullOffFlag : expected.fullOnFlag) = true;
            for (int n = 1; n <= frames; ++n) {
                const QByteArray bytes = Frames::useful(static_cast<quint32>(30 + n));
                const QImage picture = expected.processImage(bytes);
                Output output;
                PixelKernel::Frame frame = frameOf(bytes, state, output);
                std::vector<double> &reference = dark ? state.fullOffData : state.fullOnData;
                (dark ? frame.darkCapture : frame.brightCapture) = {reference.data(), n == 1,
                                                                    n == frames ? frames : 0};
                variant.rows(frame, mappingOf(expected), 0, FrameFormat::side);
                expectSame(output, expected, picture);
            }
            EXPECT_EQ(firstDifference(state.fullOffData, expected.fullOffData.data()), -1);
            EXPECT_EQ(firstDifference(state.fullOnData, expected.fullOnData.data()), -1);
        }
    }
}

TEST(PixelKernel, only_the_rows_asked_for_are_touched)
{
    const QByteArray bytes = Frames::useful(41);
    Straightforward::Pipeline state;
    for (const PixelKernel::Variant &variant : PixelKernel::variants()) {
        Output output;
        variant.rows(frameOf(bytes, state, output), mappingOf(state), 5, 7);
        const auto first = output.currents.begin() + 5 * 1024;
        const auto end = output.currents.begin() + 7 * 1024;
        EXPECT_EQ(std::count(output.currents.begin(), first, -1.0), 5 * 1024);
        EXPECT_EQ(std::count(first, end, -1.0), 0);
        EXPECT_EQ(std::count(end, output.currents.end(), -1.0), (1024 - 7) * 1024);
    }
}
