#include "imaging/pictures.h"

#include "imaging/outputfile.h"
#include "imaging/pixelkernel.h"

#include <QFile>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/videoio.hpp>

namespace {

constexpr double framesPerSecond = 0.5;

QString problem(const QString &what, const QString &path, const QString &reason)
{
    return QStringLiteral("%1：%2（%3）").arg(what, path, reason);
}

/// The picture's rows of 8-bit samples, seen in place.
cv::Mat samples(const QImage &image)
{
    // cv::Mat has no read-only view; the samples are only read.
    return {image.height(), image.width(), CV_8UC1, const_cast<uchar *>(image.constBits()),
            size_t(image.bytesPerLine())};
}

} // namespace

QString Pictures::savePng(const QString &path, const QImage &image)
{
    // OpenCV's encoder takes a fifth of the time of Qt's on a noisy picture, whose search for repetitions
    // finds next to none: with Qt's a recording of all three forms would stall the window for whole frames.
    std::vector<uchar> bytes;
    if (image.isNull() || !cv::imencode(".png", samples(image), bytes))
        return problem(QStringLiteral("图片保存失败"), path, QStringLiteral("the picture cannot be encoded"));
    OutputFile file(path);
    file.write(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
    return file.finish();
}

std::unique_ptr<cv::VideoWriter> Pictures::openVideo(const QString &path)
{
    return std::make_unique<cv::VideoWriter>(path.toStdString(), cv::VideoWriter::fourcc('m', 'p', '4', 'v'),
                                             framesPerSecond,
                                             cv::Size(PixelKernel::imageSide, PixelKernel::imageSide), true);
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

void Pictures::appendToVideo(cv::VideoWriter &video, const QImage &image)
{
    const cv::Mat frame = colourFrame(image);
    if (!frame.empty() && video.isOpened())
        video.write(frame);
}

QString Pictures::videoNotOpened(const QString &path)
{
    // The video library gives no reason; opening the file the plain way does, when the file is the trouble.
    QFile file(path);
    const QString reason =
        file.open(QIODevice::Append) ? QStringLiteral("no usable video encoder") : file.errorString();
    return problem(QStringLiteral("视频打开失败"), path, reason);
}

QString Pictures::checkVideo(const QString &path, int frames)
{
    cv::VideoCapture video(path.toStdString());
    const int found = video.isOpened() ? int(video.get(cv::CAP_PROP_FRAME_COUNT)) : 0;
    if (found == frames)
        return {};
    return problem(QStringLiteral("视频不完整"), path,
                   QStringLiteral("%1 / %2 frames").arg(found).arg(frames));
}
