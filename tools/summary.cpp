#include "tools/summary.h"

#include "device/d2xxlibrary.h"
#include "tools/standardoutput.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// What could not be told is no success.
RunResult written(const RunResult &result, const StandardOutput &output)
{
    if (!result.problem.isEmpty() || output.problem().isEmpty() || !output.hasReader())
        return result;
    return {QStringLiteral("standard output cannot be written: ") + output.problem(), ExitStatus::failed};
}

} // namespace

RunResult Summary::tell(bool isWanted, StandardOutput &output, const Work &work)
{
    QJsonObject summary;
    output.setMuted(isWanted);
    RunResult result = work(summary, output);
    output.setMuted(false);
    if (!isWanted)
        return written(result, output);
    summary[QLatin1String("complete")] = result.problem.isEmpty();
    if (!result.problem.isEmpty())
        summary[QLatin1String("problem")] = result.problem;
    output.print(QString::fromUtf8(QJsonDocument(summary).toJson(QJsonDocument::Compact)));
    return written(result, output);
}

void Summary::addSource(QJsonObject &summary, const D2xxLibrary &library, const QString &serial)
{
    summary[QLatin1String("library")] = library.path;
    summary[QLatin1String("simulated")] = library.isVirtual;
    if (!serial.isEmpty())
        summary[QLatin1String("serial")] = serial;
}

void Summary::addFrames(QJsonObject &summary, int frames, double seconds)
{
    summary[QLatin1String("frames")] = frames;
    summary[QLatin1String("seconds")] = seconds;
    summary[QLatin1String("framesPerSecond")] = seconds > 0.0 ? frames / seconds : 0.0;
}
