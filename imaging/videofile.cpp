#include "imaging/videofile.h"

#include "device/protocol/frameformat.h"
#include "imaging/failurelog.h"
#include "imaging/pictures.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

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

/// Why the disk takes no more of the file at `path`; empty when it does. Found out on a file without a name,
/// so that no one's is touched.
QString writingProblem(const QString &path)
{
    const QFileInfo file(path);
    QTemporaryFile probe(file.path() + QStringLiteral("/.qv1k-XXXXXX"));
    if (!probe.open())
        return probe.errorString();
    // As far out as the file has come: some disks refuse what is too large, and not what is more.
    // More than what may be left of the last block, and than what is written at once: Windows refuses that as
    // a whole.
    const QByteArray rest(FrameFormat::frameBytes, '\0');
    const bool taken = probe.seek(file.size()) && probe.write(rest) == rest.size() && probe.flush();
    return taken ? QString() : probe.errorString();
}

/// The same for a video that may not even be there.
QString closingProblem(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? writingProblem(path) : file.errorString();
}

QString incomplete(const QString &path, int found, int frames, const QString &reason)
{
    const QString count = QStringLiteral("%1 / %2 frames").arg(found).arg(frames);
    return failureLine(QStringLiteral("视频不完整"), path,
                       reason.isEmpty() ? count : count + QStringLiteral(", ") + reason);
}

std::unique_ptr<cv::VideoWriter> openWriter(const PartFile &place)
{
    if (!place.problem().isEmpty())
        return std::make_unique<cv::VideoWriter>();
    return std::make_unique<cv::VideoWriter>(place.partPath().toStdString(), videoLibrary(),
                                             cv::VideoWriter::fourcc('m', 'p', '4', 'v'), framesPerSecond,
                                             cv::Size(FrameFormat::side, FrameFormat::side), true);
}

} // namespace

VideoFile::VideoFile(const QString &path)
    : m_place(path, PartFile::Ending::PartKeepsLast), m_writer(openWriter(m_place))
{
}

VideoFile::~VideoFile() = default;

QString VideoFile::openingFailure() const
{
    if (m_writer->isOpened())
        return {};
    // The video library gives no reason; writing the plain way does, when the file is the trouble.
    QString reason = m_place.problem().isEmpty() ? writingProblem(m_place.partPath()) : m_place.problem();
    if (reason.isEmpty())
        reason = QStringLiteral("no usable video encoder");
    return failureLine(QStringLiteral("视频打开失败"), m_place.path(), reason);
}

void VideoFile::append(const QImage &image)
{
    m_frames += 1;
    try {
        const cv::Mat frame = Pictures::colourFrame(image);
        if (!frame.empty() && m_writer->isOpened())
            m_writer->write(frame);
    } catch (const std::exception &exception) {
        m_trouble = reasonOf(exception);
    }
}

QString VideoFile::finish()
{
    const bool wasOpen = m_writer->isOpened();
    m_writer->release();
    if (!wasOpen)
        return {};
    const std::optional<int> found = countFrames(m_place.partPath(), Count::Stated);
    QString failure;
    if (m_frames > 0 && !isWhole(found, m_frames)) {
        const QString reason = m_trouble.isEmpty() ? closingProblem(m_place.partPath()) : m_trouble;
        failure = incomplete(m_place.path(), found.value_or(0), m_frames, reason);
    }
    // What opens is a video, though it may lack frames: it is kept, and the line tells.
    if (found || m_frames == 0) {
        const QString reason = m_place.finish();
        if (failure.isEmpty() && !reason.isEmpty())
            failure = failureLine(QStringLiteral("视频改名失败"), m_place.path(), reason);
    }
    return failure;
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

bool VideoFile::isWhole(std::optional<int> found, int frames, bool exactCount)
{
    return found && (*found == frames || !exactCount);
}

bool VideoFile::countsExactly()
{
    return videoLibrary() == cv::CAP_FFMPEG;
}
