#include "tools/recordingcheck.h"

#include "device/protocol/frameformat.h"
#include "imaging/videofile.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QList>

namespace {

using FrameFormat::side;

/// Counts lines and values without storing them; every value must read as a number.
QString checkCsv(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return path + QStringLiteral(" is missing: ") + file.errorString();
    int lines = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const QList<QByteArray> values = line.chopped(line.endsWith('\n') ? 1 : 0).split(',');
        ++lines;
        if (!line.endsWith('\n') || values.size() != side)
            return path +
                   QStringLiteral(" is incomplete: line %1 holds %2 values").arg(lines).arg(values.size());
        for (const QByteArray &value : values) {
            bool ok = false;
            value.toDouble(&ok);
            if (!ok)
                return path + QStringLiteral(" holds no number in line %1").arg(lines);
        }
    }
    if (lines != side)
        return path + QStringLiteral(" is incomplete: it holds %1 lines").arg(lines);
    return {};
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
    return recording.forms.video ? checkVideo(files.video(), recording.frames) : QString();
}

} // namespace RecordingCheck
