#include "tests/imaging/straightforward/straightforward.h"

#include <QFile>
#include <QTextStream>

#include <opencv2/imgcodecs.hpp>

#include <cmath>
#include <limits>

namespace Straightforward {
namespace {

template <typename Number>
void writeLines(const QString &path, const std::vector<Number> &values)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    QTextStream stream(&file);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const int index = row * side + column;
            stream << values[static_cast<std::size_t>(index)];
            if (column != side - 1)
                stream << ",";
        }
        stream << "\n";
    }
}

template <typename Number>
QByteArray written(Number value)
{
    QByteArray bytes;
    QTextStream(&bytes) << value;
    return bytes;
}

} // namespace

QImage Pipeline::processImage(const QByteArray &data)
{
    QImage image(side, side, QImage::Format_Grayscale8);
    uchar *picture = image.bits();
    const QByteArray hex = data.toHex().toUpper();
    if (fullOnFlag || fullOffFlag)
        caliFrameIndex += 1;
    cv::parallel_for_(cv::Range(0, pixels), [&](const cv::Range &range) {
        for (int i = range.start; i < range.end; ++i)
            processPixel(hex, i, picture);
    });
    if (caliFrameIndex == caliFrameCount) {
        caliFrameIndex = 0;
        fullOffFlag = false;
        fullOnFlag = false;
    }
    lastFrameData = frameData;
    return image;
}

void Pipeline::processPixel(const QByteArray &hex, int i, uchar *picture)
{
    const auto place = static_cast<std::size_t>(i);
    const double v = current(sample(hex, i), gainNumerator, gainDenominator);

    const auto accumulate = [&](std::vector<double> &reference) {
        double &r = reference[place];
        r = caliFrameIndex == 1 ? v : r + v;
        if (caliFrameIndex == caliFrameCount)
            r = r / caliFrameCount;
    };
    if (fullOffFlag)
        accumulate(fullOffData);
    if (fullOnFlag)
        accumulate(fullOnData);

    frameData[place] = v;
    const Levels levels = caliEnabled ? calibratedLevels(v, fullOffData[place], fullOnData[place])
                                      : plainLevels(v, contrastRatio, rangeMax);
    grayData[place] = levels.gray;
    picture[i] = levels.picture;
}

int sample(const QByteArray &hex, int i)
{
    return hex.mid(8 * i, 8).toInt(nullptr, 16);
}

double current(int sample, int gainNumerator, int gainDenominator)
{
    const int counts = sample > 4096 ? sample - 4096 : 0;
    return std::round(counts / 1048576.0 * gainNumerator / gainDenominator * 1000 * 10000) / 10000;
}

Levels plainLevels(double current, double contrastRatio, int rangeMax)
{
    double s = current * contrastRatio;
    if (s > rangeMax)
        s = rangeMax;
    return {truncated(current / rangeMax * 255), static_cast<uchar>(truncated(s / rangeMax * 255))};
}

Levels calibratedLevels(double current, double dark, double bright)
{
    double d = current - dark;
    if (d < 0)
        d = 0;
    else if (d > bright - dark)
        d = bright - dark;
    const auto level = static_cast<uchar>(truncated(d / (bright - dark) * 255));
    return {level, level};
}

int truncated(double value)
{
    const double whole = std::trunc(value);
    if (!(whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::min();
    return static_cast<int>(whole);
}

QByteArray text(double value)
{
    return written(value);
}

QByteArray text(int value)
{
    return written(value);
}

void writeCsv(const QString &path, const std::vector<double> &values)
{
    writeLines(path, values);
}

void writeCsv(const QString &path, const std::vector<int> &values)
{
    writeLines(path, values);
}

cv::Mat colourFrame(const QImage &image)
{
    const cv::Mat gray(image.height(), image.width(), CV_8UC1, const_cast<uchar *>(image.constBits()),
                       static_cast<std::size_t>(image.bytesPerLine()));
    std::vector<uchar> png;
    cv::imencode(".png", gray, png);
    return cv::imdecode(png, 1);
}

} // namespace Straightforward
