#include "imaging/pictures.h"

#include "imaging/failurelog.h"
#include "imaging/outputfile.h"

#include <QDataStream>

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

/// The check sum of a PNG's chunk.
quint32 chunkSum(QByteArrayView bytes)
{
    constexpr quint32 polynomial = 0xEDB88320;
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? polynomial : 0);
    }
    return ~sum;
}

/// The chunk that tells a PNG's resolution, whole.
QByteArray resolutionChunk(const QImage &image)
{
    constexpr quint8 perMetre = 1;
    QByteArray body("pHYs");
    QByteArray chunk;
    QDataStream(&body, QIODevice::Append) << static_cast<quint32>(image.dotsPerMeterX())
                                          << static_cast<quint32>(image.dotsPerMeterY()) << perMetre;
    QDataStream(&chunk, QIODevice::WriteOnly) << static_cast<quint32>(body.size() - 4);
    chunk += body;
    QDataStream(&chunk, QIODevice::Append) << chunkSum(body);
    return chunk;
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
    // The encoder knows no resolution; it stands behind the header, which comes first and is of fixed size.
    constexpr qsizetype headerSize = 33;
    const QByteArrayView encoded(bytes.data(), static_cast<qsizetype>(bytes.size()));
    OutputFile file(path);
    file.write(encoded.first(headerSize));
    file.write(resolutionChunk(image));
    file.write(encoded.sliced(headerSize));
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
