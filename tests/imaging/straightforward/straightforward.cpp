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
    const int raw = hex.mid(8 * i, 8).toInt(nullptr, 16);
    const int counts = raw > 4096 ? raw - 4096 : 0;
    const double v = std::round(counts / 1048576.0 * gainNumerator / gainDenominator * 1000 * 10000) / 10000;

    const auto accumulate = [&](std::vector<double> &reference) {
        double &r = reference[static_cast<std::size_t>(i)];
        r = caliFrameIndex == 1 ? v : r + v;
        if (caliFrameIndex == caliFrameCount)
            r = r / caliFrameCount;
    };
    if (fullOffFlag)
        accumulate(fullOffData);
    if (fullOnFlag)
        accumulate(fullOnData);

    frameData[static_cast<std::size_t>(i)] = v;
    if (caliEnabled)
        mapCalibrated(v, i, picture);
    else
        mapPlain(v, i, picture);
}

void Pipeline::mapPlain(double v, int i, uchar *picture)
{
    grayData[static_cast<std::size_t>(i)] = truncated(v / rangeMax * 255);
    double s = v * contrastRatio;
    if (s > rangeMax)
        s = rangeMax;
    picture[i] = static_cast<uchar>(truncated(s / rangeMax * 255));
}

void Pipeline::mapCalibrated(double v, int i, uchar *picture)
{
    const double off = fullOffData[static_cast<std::size_t>(i)];
    const double on = fullOnData[static_cast<std::size_t>(i)];
    double d = v - off;
    if (d < 0)
        d = 0;
    else if (d > on - off)
        d = on - off;
    const double g = d / (on - off) * 255;
    picture[i] = static_cast<uchar>(truncated(g));
    grayData[static_cast<std::size_t>(i)] = picture[i];
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
    QByteArray bytes;
    QTextStream(&bytes) << value;
    return bytes;
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
