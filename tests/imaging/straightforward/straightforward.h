#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <opencv2/core.hpp>

#include <vector>

/// The pipeline in the plainest words: pixels by way of hexadecimal text, numbers by way of a text stream,
/// colour frames by way of a PNG in memory. Slow, and easy to see right.
namespace Straightforward {

inline constexpr int side = 1024;
inline constexpr int pixels = side * side;

struct Pipeline
{
    bool fullOffFlag = false;
    bool fullOnFlag = false;
    bool caliEnabled = false;
    std::vector<double> fullOffData = std::vector<double>(pixels, 0.0);
    std::vector<double> fullOnData = std::vector<double>(pixels, 255.0);
    std::vector<double> frameData = std::vector<double>(pixels, 0.0);
    std::vector<int> grayData = std::vector<int>(pixels, 0);
    std::vector<double> lastFrameData;
    int caliFrameIndex = 0;
    int caliFrameCount = 1;
    int rangeMax = 150;
    int gainNumerator = 25;
    int gainDenominator = 166;
    double contrastRatio = 1048576.0;

    QImage processImage(const QByteArray &data);

private:
    void processPixel(const QByteArray &hex, int i, uchar *picture);
};

/// Sample `i` of a frame whose bytes stand in hexadecimal text.
[[nodiscard]] int sample(const QByteArray &hex, int i);

/// nA, with four decimals.
[[nodiscard]] double current(int sample, int gainNumerator, int gainDenominator);

struct Levels
{
    int gray;
    uchar picture;
};

/// Between 0 and the range; only the picture heeds the contrast.
[[nodiscard]] Levels plainLevels(double current, double contrastRatio, int rangeMax);

/// Between the references.
[[nodiscard]] Levels calibratedLevels(double current, double dark, double bright);

/// Toward zero; only the sign bit set for what does not fit.
[[nodiscard]] int truncated(double value);

/// The number as a text stream writes it.
[[nodiscard]] QByteArray text(double value);
[[nodiscard]] QByteArray text(int value);

void writeCsv(const QString &path, const std::vector<double> &values);
void writeCsv(const QString &path, const std::vector<int> &values);

[[nodiscard]] cv::Mat colourFrame(const QImage &image);

} // namespace Straightforward
