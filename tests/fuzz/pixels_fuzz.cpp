// A row of pixels by every instruction set of this processor against the formula, one pixel after the other.
// Input: gain, range, contrast, what is captured and how, two references' beginnings, and the row's bytes.

#include "imaging/pixelkernel.h"
#include "tests/fuzz/target.h"
#include "tests/imaging/straightforward/straightforward.h"

#include <array>
#include <bit>
#include <vector>

namespace {

constexpr std::size_t rowPixels = FrameFormat::side;
constexpr std::size_t givenReferences = 4;

struct Row
{
    PixelKernel::Mapping mapping;
    bool capturesDark = false;
    bool capturesBright = false;
    bool isFirstFrame = false;
    int divisor = 0;
    std::array<double, givenReferences> dark{};
    std::array<double, givenReferences> bright{};
    QByteArray bytes;
};

/// Where references, levels and currents of a row stand.
struct Output
{
    explicit Output(const Row &row) : currents(rowPixels), gray(rowPixels), picture(rowPixels)
    {
        for (std::size_t i = 0; i < rowPixels; ++i) {
            dark.push_back(row.dark[i % givenReferences]);
            bright.push_back(row.bright[i / givenReferences % givenReferences]);
        }
    }

    std::vector<double> currents;
    std::vector<int> gray;
    std::vector<uchar> picture;
    std::vector<double> dark;
    std::vector<double> bright;
};

Row rowOf(QByteArrayView input)
{
    Fuzz::Reader reader(input);
    Row row;
    row.mapping.gainNumerator = reader.next<qint32>();
    row.mapping.gainDenominator = reader.next<qint32>();
    row.mapping.rangeMax = reader.next<qint32>();
    row.mapping.contrastRatio = reader.next<double>();
    const auto choices = reader.next<uchar>();
    row.mapping.calibrated = (choices & 1) != 0;
    row.capturesDark = (choices & 2) != 0;
    row.capturesBright = (choices & 4) != 0;
    row.isFirstFrame = (choices & 8) != 0;
    row.divisor = (choices & 16) != 0 ? choices >> 5 : 0;
    for (double &reference : row.dark)
        reference = reader.next<double>();
    for (double &reference : row.bright)
        reference = reader.next<double>();
    row.bytes = reader.rest().toByteArray();
    return row;
}

Output byVariant(const Row &row, const PixelKernel::Variant &variant)
{
    Output output(row);
    PixelKernel::Frame frame;
    frame.bytes = {reinterpret_cast<const uchar *>(row.bytes.constData()),
                   static_cast<std::size_t>(row.bytes.size())};
    frame.currents = output.currents.data();
    frame.grayLevels = output.gray.data();
    frame.picture = output.picture.data();
    frame.dark = output.dark.data();
    frame.bright = output.bright.data();
    if (row.capturesDark)
        frame.darkCapture = {output.dark.data(), row.isFirstFrame, row.divisor};
    if (row.capturesBright)
        frame.brightCapture = {output.bright.data(), row.isFirstFrame, row.divisor};
    variant.rows(frame, row.mapping, 0, 1);
    return output;
}

void capture(double &reference, double current, const Row &row)
{
    reference = row.isFirstFrame ? current : reference + current;
    if (row.divisor != 0)
        reference = reference / row.divisor;
}

Output byFormula(const Row &row)
{
    Output output(row);
    const QByteArray hex = row.bytes.toHex();
    const PixelKernel::Mapping &mapping = row.mapping;
    for (std::size_t i = 0; i < rowPixels; ++i) {
        const double current = Straightforward::current(Straightforward::sample(hex, static_cast<int>(i)),
                                                        mapping.gainNumerator, mapping.gainDenominator);
        output.currents[i] = current;
        if (row.capturesDark)
            capture(output.dark[i], current, row);
        if (row.capturesBright)
            capture(output.bright[i], current, row);
        const Straightforward::Levels levels =
            mapping.calibrated
                ? Straightforward::calibratedLevels(current, output.dark[i], output.bright[i])
                : Straightforward::plainLevels(current, mapping.contrastRatio, mapping.rangeMax);
        output.gray[i] = levels.gray;
        output.picture[i] = levels.picture;
    }
    return output;
}

/// To the last bit; what is no number has no last bit.
bool areSame(const std::vector<double> &a, const std::vector<double> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double one, double other) {
        return std::bit_cast<quint64>(one) == std::bit_cast<quint64>(other) || (one != one && other != other);
    });
}

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    const Row row = rowOf(input);
    const Output expected = byFormula(row);
    for (const PixelKernel::Variant &variant : PixelKernel::variants()) {
        const Output output = byVariant(row, variant);
        require(areSame(output.currents, expected.currents), "currents are those of the formula");
        require(areSame(output.dark, expected.dark), "dark references are those of the formula");
        require(areSame(output.bright, expected.bright), "bright references are those of the formula");
        require(output.gray == expected.gray, "grey levels are those of the formula");
        require(output.picture == expected.picture, "the picture is that of the formula");
    }
}
