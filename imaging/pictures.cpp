#include "imaging/pictures.h"

#include "imaging/failurelog.h"
#include "imaging/outputfile.h"
#include "imaging/pixelkernel.h"

#include <QFile>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/videoio.hpp>
#include <opencv2/videoio/registry.hpp>

#include <array>
#include <vector>

namespace {

constexpr double framesPerSecond = 0.5;

/// The picture's rows of 8-bit samples, seen in place.
cv::Mat samples(const QImage &image)
{
    // cv::Mat has no read-only view; the samples are only read.
    return {image.height(), image.width(), CV_8UC1, const_cast<uchar *>(image.constBits()),
            size_t(image.bytesPerLine())};
}

/// Why the disk takes no more of a file; empty when it does. What is written to find out is taken back.
QString writingProblem(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::Append | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return file.errorString();
    const qint64 size = file.size();
    QByteArray rest(65536, '\0'); // more than what may be left of the last block
    qint64 written = 1;
    while (written > 0 && !rest.isEmpty()) {
        written = file.write(rest);
        rest.remove(0, qMax(written, qint64(0)));
    }
    const QString reason = rest.isEmpty() ? QString() : file.errorString();
    file.resize(size);
    return reason;
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
    file.write(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
    return file.finish();
}

int Pictures::videoLibrary()
{
    // Left to choose, OpenCV goes on to GStreamer when a file cannot be opened, which loads every plug-in
    // there is into the program and has one of them look at all USB devices.
    return cv::videoio_registry::hasBackend(cv::CAP_FFMPEG) ? cv::CAP_FFMPEG : cv::CAP_ANY;
}

std::unique_ptr<cv::VideoWriter> Pictures::openVideo(const QString &path)
{
    return std::make_unique<cv::VideoWriter>(path.toStdString(), videoLibrary(),
                                             cv::VideoWriter::fourcc('m', 'p', '4', 'v'), framesPerSecond,
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
    // The video library gives no reason; writing the plain way does, when the file is the trouble.
    QFile file(path);
    QString reason = file.open(QIODevice::Append) ? writingProblem(path) : file.errorString();
    if (reason.isEmpty())
        reason = QStringLiteral("no usable video encoder");
    return failureLine(QStringLiteral("视频打开失败"), path, reason);
}

QString Pictures::checkVideo(const QString &path, int frames)
{
    cv::VideoCapture video(path.toStdString(), videoLibrary());
    const int found = video.isOpened() ? int(video.get(cv::CAP_PROP_FRAME_COUNT)) : 0;
    if (found == frames)
        return {};
    // Here too the library gives no reason, but a full disk does.
    const QString reason = writingProblem(path);
    const QString frameCount = QStringLiteral("%1 / %2 frames").arg(found).arg(frames);
    return failureLine(QStringLiteral("视频不完整"), path,
                       reason.isEmpty() ? frameCount : frameCount + QStringLiteral(", ") + reason);
}
