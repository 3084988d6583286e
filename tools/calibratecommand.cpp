#include "device/portmanager.h"
#include "imaging/csvwriter.h"
#include "imaging/failurelog.h"
#include "imaging/processimage.h"
#include "tools/commands.h"
#include "tools/detectorsession.h"
#include "tools/framerun.h"
#include "tools/progressline.h"
#include "tools/standardoutput.h"
#include "tools/summary.h"
#include "tools/writablefolder.h"

#include <QFileInfo>
#include <QJsonObject>

namespace {

struct CalibrateOptions
{
    bool isDark;
    QString to; ///< the file of the reference
    FrameRun::Wanted wanted;
    bool verbose;

    [[nodiscard]] static CalibrateOptions of(const CommandLine &line)
    {
        return {.isDark = line.value(QStringLiteral("which")) == QStringLiteral("dark"),
                .to = line.value(QStringLiteral("to")),
                .wanted = {.serial = line.value(QStringLiteral("serial")),
                           .frames = line.number(QStringLiteral("frames"), 1, 1000),
                           .timeoutSeconds = line.number(QStringLiteral("timeout"), 1, 86'400)},
                .verbose = line.isSet(QStringLiteral("verbose"))};
    }
};

/// Takes a reference as the window does: by the pipeline's own capture.
class CalibrationRun
{
public:
    CalibrationRun(const CalibrateOptions &options, DetectorSession &session, const StandardOutput &output)
        : m_options(options), m_progress(!options.verbose),
          m_frameRun(session, output, options.wanted,
                     {.begin = [this] { begin(); },
                      .frame = [this](bool) { showProgress(); },
                      .cut =
                          [] {
                          }}),
          m_link(session.link())
    {
        QObject::connect(&m_pipeline, &ProcessImage::sendImagetoMain, &m_frameRun, &FrameRun::onFrame);
    }

    RunResult run()
    {
        RunResult result = m_frameRun.run();
        m_progress.clear();
        return result.problem.isEmpty() ? write() : result;
    }

    [[nodiscard]] const FrameRun &frames() const { return m_frameRun; }

private:
    void begin()
    {
        m_pipeline.setCaliFrameCount(m_options.wanted.frames);
        (m_options.isDark ? m_pipeline.fullOffFlag : m_pipeline.fullOnFlag) = true;
    }

    void showProgress()
    {
        m_progress.show({.frames = m_frameRun.frames(),
                         .wantedFrames = m_options.wanted.frames,
                         .seconds = m_frameRun.seconds(),
                         .waiting = m_link.framesWaiting()});
    }

    RunResult write()
    {
        const std::vector<double> &reference =
            m_options.isDark ? m_pipeline.fullOffData : m_pipeline.fullOnData;
        const QString failure =
            guardedFile(m_options.to, [&] { return CsvWriter().write(m_options.to, reference); });
        if (failure.isEmpty())
            return {};
        reportFailure(failure);
        return {QStringLiteral("the reference %1 could not be written; the log tells why").arg(m_options.to),
                ExitStatus::failed};
    }

    const CalibrateOptions &m_options;
    ProgressLine m_progress;
    ProcessImage m_pipeline;
    FrameRun m_frameRun;
    const PortManager &m_link;
};

RunResult calibrateInto(QJsonObject &summary, const CalibrateOptions &options, const QString &libraryName,
                        StandardOutput &output)
{
    const D2xxLibrary library = D2xxLibrary::load(libraryName);
    if (RunResult result = DetectorSession::check(library); !result.problem.isEmpty())
        return result;
    const QFileInfo file(options.to);
    if (const QString problem = WritableFolder::check(file.path()); !problem.isEmpty())
        return {problem, ExitStatus::failed};
    DetectorSession::tellWhetherSimulated(library, output);
    DetectorSession session(library);
    CalibrationRun run(options, session, output);
    RunResult result = run.run();
    Summary::addSource(summary, library, session.serial());
    Summary::addFrames(summary, run.frames().frames(), run.frames().seconds());
    summary[QLatin1String("wanted")] = options.wanted.frames;
    if (!result.problem.isEmpty())
        return result;
    summary[QLatin1String("file")] = file.absoluteFilePath();
    output.print(
        (options.isDark ? QStringLiteral("Dark reference in ") : QStringLiteral("Bright reference in ")) +
        file.absoluteFilePath());
    return {};
}

} // namespace

RunResult Commands::calibrate(const CommandLine &line, StandardOutput &output)
{
    const CalibrateOptions options = CalibrateOptions::of(line);
    return Summary::tell(
        line.isSet(QStringLiteral("json")), output, [&](QJsonObject &summary, StandardOutput &told) {
            return calibrateInto(summary, options, line.value(QStringLiteral("library")), told);
        });
}
