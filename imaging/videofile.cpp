#include "imaging/videofile.h"

#include "device/protocol/frameformat.h"
#include "imaging/failurelog.h"
#include "imaging/pictures.h"

#include <QFile>

#include <opencv2/core.hpp>
#include <opencv2/videoio.hpp>
#include <opencv2/videoio/registry.hpp>

namespace {

constexpr double framesPerSecond = 0.5;

/// What OpenCV is to read and write videos with: FFmpeg where it has it, otherwise its own choice.
int videoLibrary()
{
    // Left to choose, OpenCV goes on to GStreamer when a file cannot be opened, which loads every plug-in
    // there is into the program and has one of them look at all USB devices.
    return cv::videoio_registry::hasBackend(cv::CAP_FFMPEG) ? cv::CAP_FFMPEG : cv::CAP_ANY;
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
        rest.remove(0, qMax(written, qint64{0}));
    }
    QString reason = rest.isEmpty() ? QString() : file.errorString();
    file.resize(size);
    return reason;
}

} // namespace

VideoFile::VideoFile(const QString &path)
    : m_path(path),
      m_writer(std::make_unique<cv::VideoWriter>(path.toStdString(), videoLibrary(),
                                                 cv::VideoWriter::fourcc('m', 'p', '4', 'v'), framesPerSecond,
                                                 cv::Size(FrameFormat::side, FrameFormat::side), true))
{
}

VideoFile::~VideoFile() = default;

QString VideoFile::openingFailure() const
{
    if (m_writer->isOpened())
        return {};
    // The video library gives no reason; writing the plain way does, when the file is the trouble.
    QFile file(m_path);
    QString reason = file.open(QIODevice::Append) ? writingProblem(m_path) : file.errorString();
    if (reason.isEmpty())
        reason = QStringLiteral("no usable video encoder");
    return failureLine(QStringLiteral("视频打开失败"), m_path, reason);
}

void VideoFile::append(const QImage &image)
{
    m_frames += 1;
    const cv::Mat frame = Pictures::colourFrame(image);
    if (!frame.empty() && m_writer->isOpened())
        m_writer->write(frame);
}

QString VideoFile::finish()
{
    const bool wasOpen = m_writer->isOpened();
    m_writer->release();
    return wasOpen && m_frames > 0 ? check(m_path, m_frames) : QString();
}

std::optional<int> VideoFile::countFrames(const QString &path, Count count)
{
    cv::VideoCapture video(path.toStdString(), videoLibrary());
    if (!video.isOpened())
        return std::nullopt;
    if (count == Count::Stated)
        return static_cast<int>(video.get(cv::CAP_PROP_FRAME_COUNT));
    int frames = 0;
    while (video.grab())
        ++frames;
    return frames;
}

QString VideoFile::check(const QString &path, int frames)
{
    const int found = countFrames(path, Count::Stated).value_or(0);
    if (found == frames)
        return {};
    // Here too the library gives no reason, but a full disk does.
    const QString reason = writingProblem(path);
    const QString frameCount = QStringLiteral("%1 / %2 frames").arg(found).arg(frames);
    return failureLine(QStringLiteral("视频不完整"), path,
                       reason.isEmpty() ? frameCount : frameCount + QStringLiteral(", ") + reason);
}
