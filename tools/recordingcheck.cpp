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
        return QStringLiteral("%1 is missing: %2").arg(path, file.errorString());
    int lines = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const QList<QByteArray> values = line.chopped(line.endsWith('\n') ? 1 : 0).split(',');
        ++lines;
        if (!line.endsWith('\n') || values.size() != side)
            return QStringLiteral("%1 is incomplete: line %2 holds %3 values")
                .arg(path)
                .arg(lines)
                .arg(values.size());
        for (const QByteArray &value : values) {
            bool ok = false;
            value.toDouble(&ok);
            if (!ok)
                return QStringLiteral("%1 holds no number in line %2").arg(path).arg(lines);
        }
    }
    if (lines != side)
        return QStringLiteral("%1 is incomplete: it holds %2 lines").arg(path).arg(lines);
    return {};
}

QString checkPicture(const QString &path)
{
    const QImage image(path);
    if (image.size() != QSize(side, side))
        return QStringLiteral("%1 is missing or incomplete").arg(path);
    return {};
}

QString checkVideo(const QString &path, int frames)
{
    const std::optional<int> found = VideoFile::countFrames(path, VideoFile::Count::Decoded);
    if (!found)
        return QStringLiteral("%1 is missing or unreadable").arg(path);
    if (*found != frames)
        return QStringLiteral("%1 is incomplete: it holds %2 of %3 frames").arg(path).arg(*found).arg(frames);
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
