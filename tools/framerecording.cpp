#include "tools/framerecording.h"

#include "tools/csvframe.h"
#include "tools/standardoutput.h"

#include <QDir>
#include <QJsonObject>

#include <algorithm>
#include <numeric>

namespace {

/// Reads a reference, if one is given, in place of what the pipeline has without one.
QString readReference(const QString &path, std::vector<double> &reference)
{
    if (path.isEmpty())
        return {};
    std::vector<double> values;
    values.reserve(reference.size());
    QString problem = CsvFrame::read(path, [&values](double value) { values.push_back(value); });
    if (problem.isEmpty())
        reference = std::move(values);
    return problem;
}

/// The number format does not depend on the locale.
QString lineOfFrame(int number, double seconds, const std::vector<double> &currents)
{
    const auto [lowest, highest] = std::minmax_element(currents.begin(), currents.end());
    const double mean =
        std::accumulate(currents.begin(), currents.end(), 0.0) / static_cast<double>(currents.size());
    return QString::asprintf("frame %4d  %8.3f s  min %10.4f nA  mean %10.4f nA  max %10.4f nA", number,
                             seconds, *lowest, mean, *highest);
}

QString folderOf(const RecordingFiles &files)
{
    return QDir(files.root).absoluteFilePath(files.name);
}

} // namespace

RunResult FrameRecording::calibrate()
{
    QString problem = readReference(m_options.dark, m_pipeline.fullOffData);
    if (problem.isEmpty())
        problem = readReference(m_options.bright, m_pipeline.fullOnData);
    if (!problem.isEmpty())
        return {problem, ExitStatus::failed};
    m_pipeline.caliEnabled = !m_options.dark.isEmpty() || !m_options.bright.isEmpty();
    return {};
}

void FrameRecording::begin(int frames, const RecordingFacts &facts)
{
    m_pipeline.setContrastRatio(1.0);
    m_pipeline.setLogPath(m_options.files.root);
    m_pipeline.setTimeStamp(m_options.files.name);
    m_pipeline.setSaveFrameTotal(frames);
    m_pipeline.startSaving(m_options.forms, facts);
}

void FrameRecording::tell(int number, double seconds)
{
    m_output.print(lineOfFrame(number, seconds, m_pipeline.lastFrame()));
}

RunResult FrameRecording::report()
{
    if (m_options.forms.any())
        m_output.print(QStringLiteral("Recorded in ") + folderOf(m_options.files));
    if (const int failed = m_pipeline.failedFiles(); failed > 0)
        return {QStringLiteral("%1 %2 could not be written; the log tells which")
                    .arg(failed)
                    .arg(failed == 1 ? QStringLiteral("file") : QStringLiteral("files")),
                ExitStatus::failed};
    return {};
}

void FrameRecording::addTo(QJsonObject &summary) const
{
    if (!m_options.forms.any())
        return;
    summary[QLatin1String("folder")] = folderOf(m_options.files);
    summary[QLatin1String("failedFiles")] = m_pipeline.failedFiles();
}
