#include "imaging/recordinglog.h"

#include "log/logmanager.h"

#include <QStringList>

namespace {

void tell(const QString &line)
{
    if (LogManager *log = LogManager::instance())
        log->writeLog(line);
}

} // namespace

void RecordingLog::begun(const RecordingFiles &files, const RecordingForms &forms, int wanted,
                         const QString &provenance)
{
    QStringList kinds;
    if (forms.data)
        kinds << QStringLiteral("数据");
    if (forms.picture)
        kinds << QStringLiteral("图片");
    if (forms.video)
        kinds << QStringLiteral("视频");
    if (forms.tiff)
        kinds << QStringLiteral("TIFF");
    if (forms.npy)
        kinds << QStringLiteral("NumPy");
    if (forms.raw)
        kinds << QStringLiteral("原始帧");
    QStringList parts{QStringLiteral("开始保存：") + files.folder(), kinds.join(QStringLiteral("、")),
                      QStringLiteral("目标 %1 帧").arg(wanted)};
    if (!provenance.isEmpty())
        parts << provenance;
    tell(parts.join(QStringLiteral("，")));
}

void RecordingLog::ended(const RecordingFiles &files, const RecordingResult &result)
{
    const QString what = result.complete() ? QStringLiteral("保存完成：") : QStringLiteral("保存中止：");
    tell(what + files.folder() +
         QStringLiteral("，已存 %1 / %2 帧，失败文件 %3 个")
             .arg(result.stored)
             .arg(result.wanted)
             .arg(result.failed));
}
