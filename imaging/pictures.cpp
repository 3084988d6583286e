#include "imaging/pictures.h"

#include "imaging/failurelog.h"
#include "imaging/outputfile.h"

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <array>
#include <vector>

namespace {

/// The picture's rows of 8-bit samples, seen in place.
cv::Mat samples(const QImage &image)
{
    // cv::Mat has no read-only view; the samples are only read.
    return {image.height(), image.width(), CV_8UC1, const_cast<uchar *>(image.constBits()),
            static_cast<std::size_t>(image.bytesPerLine())};
}

} // namespace

QString Pictures::savePng(const QString &path, const QImage &image)
{
    // OpenCV's encoder takes less than a tenth of the time of Qt's on a detector's noisy picture, in which a
    // search for repetitions finds few: with Qt's a recording would stall the window for whole frames.
    std::vector<uchar> bytes;
    if (image.isNull() || !cv::imencode(".png", samples(image), bytes))
        return failureLine(QStringLiteral("图片保存失败"), path,
                           QStringLiteral("the picture cannot be encoded"));
    OutputFile file(path);
    file.write(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return file.finish();
}

cv::Mat Pictures::colourFrame(const QImage &image)
{
    cv::Mat colour;
    if (image.isNull())
        return colour;
    const cv::Mat gray = samples(image);
    cv::merge(std::array{gray, gray, gray}, colour);
    return colour;
}
