#include "tools/acquisitionrun.h"

#include "device/portmanager.h"
#include "tools/commands.h"
#include "tools/csvframe.h"
#include "tools/detectorsession.h"
#include "tools/recordingcheck.h"
#include "tools/standardoutput.h"
#include "tools/summary.h"
#include "tools/writablefolder.h"

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

RunResult acquireInto(QJsonObject &summary, const AcquireOptions &options, StandardOutput &output)
{
    const D2xxLibrary library = D2xxLibrary::load(options.library);
    if (RunResult result = DetectorSession::check(library); !result.problem.isEmpty())
        return result;
    if (const QString problem = WritableFolder::check(options.output); !problem.isEmpty())
        return {problem, ExitStatus::failed};
    DetectorSession::tellWhetherSimulated(library, output);

    int frames = 0;
    {
        DetectorSession session(library);
        AcquisitionRun run(options, library, session, output);
        RunResult result = run.calibrate();
        if (result.problem.isEmpty())
            result = run.run();
        run.addTo(summary);
        Summary::addSource(summary, library, session.serial());
        if (!result.problem.isEmpty())
            return result;
        frames = run.frames();
    }
    const QString fault = RecordingCheck::check(
        {{options.output, options.name}, frames, {options.data, options.picture, options.video}});
    return {fault, fault.isEmpty() ? ExitStatus::complete : ExitStatus::failed};
}

} // namespace

RunResult Commands::acquire(const CommandLine &line, StandardOutput &output)
{
    const AcquireOptions options = AcquireOptions::of(line);
    return Summary::tell(options.json, output, [&options](QJsonObject &summary, StandardOutput &told) {
        return acquireInto(summary, options, told);
    });
}

AcquisitionRun::AcquisitionRun(const AcquireOptions &options, const D2xxLibrary &library,
                               DetectorSession &session, StandardOutput &output)
    : m_options(options), m_output(output), m_progress(!options.verbose),
      m_frameRun(session, output,
                 {.serial = options.serial,
                  .frames = options.frames,
                  .seconds = options.seconds,
                  .testPattern = options.testPattern,
                  .timeoutSeconds = options.timeoutSeconds},
                 {.begin = [this] { begin(); },
                  .frame = [this](bool isLast) { onFrame(isLast); },
                  .cut =
                      [this] {
                          m_pipeline.stopSaving();
                      }}),
      m_link(session.link())
{
    m_pipeline.setProvenance(library.provenance());
    // Once per frame, after its files are written.
    QObject::connect(&m_pipeline, &ProcessImage::saveMessage, &m_frameRun, &FrameRun::onFrame);
}

RunResult AcquisitionRun::calibrate()
{
    QString problem = readReference(m_options.dark, m_pipeline.fullOffData);
    if (problem.isEmpty())
        problem = readReference(m_options.bright, m_pipeline.fullOnData);
    if (!problem.isEmpty())
        return {problem, ExitStatus::failed};
    m_pipeline.caliEnabled = !m_options.dark.isEmpty() || !m_options.bright.isEmpty();
    return {};
}

RunResult AcquisitionRun::run()
{
    RunResult result = m_frameRun.run();
    m_progress.clear();
    return result.problem.isEmpty() ? report() : result;
}

void AcquisitionRun::begin()
{
    m_pipeline.setContrastRatio(1.0);
    m_pipeline.setLogPath(m_options.output);
    m_pipeline.setTimeStamp(m_options.name);
    m_pipeline.setSaveFrameTotal(m_options.frames);
    m_pipeline.startSaving(m_options.data, m_options.picture, m_options.video);
}

void AcquisitionRun::onFrame(bool isLast)
{
    if (isLast)
        m_pipeline.setSaveFrameTotal(m_frameRun.frames()); // which only now is known of so many seconds
    m_progress.clear();
    m_output.print(lineOfFrame(m_frameRun.frames(), m_frameRun.seconds(), m_pipeline.lastFrame()));
    m_progress.show({.frames = m_frameRun.frames(),
                     .wantedFrames = m_options.frames,
                     .seconds = m_frameRun.seconds(),
                     .wantedSeconds = m_options.seconds,
                     .waiting = m_link.framesWaiting()});
}

RunResult AcquisitionRun::report()
{
    const int frames = m_frameRun.frames();
    m_output.print(QString::asprintf("%d frames in %.3f s: %.2f frames per second", frames,
                                     m_frameRun.seconds(), frames / m_frameRun.seconds()));
    m_output.print(QStringLiteral("Recorded in ") + QDir(m_options.output).absoluteFilePath(m_options.name));
    if (const int failed = m_pipeline.failedFiles(); failed > 0)
        return {QStringLiteral("%1 %2 could not be written; the log tells which")
                    .arg(failed)
                    .arg(failed == 1 ? QStringLiteral("file") : QStringLiteral("files")),
                ExitStatus::failed};
    if (!m_output.problem().isEmpty())
        return {QStringLiteral("standard output cannot be written: ") + m_output.problem(),
                ExitStatus::failed};
    return {};
}

void AcquisitionRun::addTo(QJsonObject &summary) const
{
    Summary::addFrames(summary, m_frameRun.frames(), m_frameRun.seconds());
    if (m_options.frames > 0)
        summary[QLatin1String("wanted")] = m_options.frames;
    summary[QLatin1String("folder")] = QDir(m_options.output).absoluteFilePath(m_options.name);
    summary[QLatin1String("failedFiles")] = m_pipeline.failedFiles();
}
