#include "tools/recordingcheck.h"

#include "device/protocol/frameformat.h"
#include "imaging/rawrecording.h"
#include "imaging/videofile.h"
#include "tools/csvframe.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>

namespace {

using FrameFormat::side;

QString checkCsv(const QString &path)
{
    return CsvFrame::read(path, [](double) {});
}

QString checkPicture(const QString &path)
{
    const QImage image(path);
    if (image.size() != QSize(side, side))
        return path + QStringLiteral(" is missing or incomplete");
    return {};
}

QString checkVideo(const QString &path, int frames)
{
    const std::optional<int> found = VideoFile::countFrames(path, VideoFile::Count::Decoded);
    if (!found)
        return path + QStringLiteral(" is missing or unreadable");
    if (!VideoFile::isWhole(found, frames))
        return path + QStringLiteral(" is incomplete: it holds %1 of %2 frames").arg(*found).arg(frames);
    return {};
}

/// A file of all frames: what it is read by is there too, and it has room for them. Raw frames are held
/// against their checksums.
QString checkStack(const RecordingFiles &files, const QString &path, int frames)
{
    for (const QString &file : {path, RecordingFiles::description(path)}) {
        if (!QFile::exists(file))
            return file + QStringLiteral(" is missing");
    }
    if (QFileInfo(path).size() < frames * FrameFormat::frameBytes)
        return path + QStringLiteral(" is incomplete: it has no room for %1 frames").arg(frames);
    if (path != files.raw())
        return {};
    RawRecording recording(path);
    if (recording.problem().isEmpty() && recording.frameCount() != frames)
        return path + QStringLiteral(" is incomplete: it holds %1 of %2 frames")
                          .arg(recording.frameCount())
                          .arg(frames);
    QString problem = recording.problem();
    for (int position = 0; problem.isEmpty() && position < frames; ++position)
        problem = recording.read(position).problem;
    return problem;
}

} // namespace

namespace RecordingCheck {

QString check(const Recording &recording)
{
    const RecordingFiles files{QDir(recording.files.root).absolutePath(), recording.files.name};
    for (int n = 1; n <= recording.frames; ++n) {
        QString problem;
        if (recording.forms.data)
            problem = checkCsv(files.data(n));
        if (recording.forms.data && problem.isEmpty())
            problem = checkCsv(files.grayData(n));
        if (recording.forms.picture && problem.isEmpty())
            problem = checkPicture(files.picture(n));
        if (!problem.isEmpty())
            return problem;
    }
    for (const QString &path : files.stacks(recording.forms)) {
        if (QString problem = checkStack(files, path, recording.frames); !problem.isEmpty())
            return problem;
    }
    return recording.forms.video ? checkVideo(files.video(), recording.frames) : QString();
}

} // namespace RecordingCheck
