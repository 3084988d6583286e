#include "tools/summary.h"

#include "device/d2xxlibrary.h"
#include "tools/standardoutput.h"

#include <QJsonDocument>
#include <QJsonObject>

RunResult Summary::tell(bool isWanted, StandardOutput &output, const Work &work)
{
    QJsonObject summary;
    output.setMuted(isWanted);
    RunResult result = work(summary, output);
    output.setMuted(false);
    if (!isWanted)
        return result;
    summary[QLatin1String("complete")] = result.problem.isEmpty();
    if (!result.problem.isEmpty())
        summary[QLatin1String("problem")] = result.problem;
    output.print(QString::fromUtf8(QJsonDocument(summary).toJson(QJsonDocument::Compact)));
    return result;
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
