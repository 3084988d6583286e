#include "tools/acquisitionrun.h"

#include "device/portmanager.h"
#include "tools/commands.h"
#include "tools/detectorsession.h"
#include "tools/recordingcheck.h"
#include "tools/standardoutput.h"
#include "tools/summary.h"
#include "tools/writablefolder.h"

#include <QCoreApplication>
#include <QJsonObject>

namespace {

RunResult acquireInto(QJsonObject &summary, const AcquireOptions &options, StandardOutput &output)
{
    const D2xxLibrary library = D2xxLibrary::load(options.library);
    if (RunResult result = DetectorSession::check(library); !result.problem.isEmpty())
        return result;
    const RecordingOptions &recording = options.recording;
    if (recording.forms.any())
        if (const QString problem = WritableFolder::check(recording.files.root); !problem.isEmpty())
            return {problem, ExitStatus::failed};
    DetectorSession::tellWhetherSimulated(library, output);

    int frames = 0;
    {
        DetectorSession session(library);
        AcquisitionRun run(options, library, session, output);
        RunResult result = run.run();
        run.addTo(summary);
        Summary::addSource(summary, library, session.serial());
        if (!result.problem.isEmpty())
            return result;
        frames = run.frames();
    }
    if (!recording.forms.any())
        return {};
    const QString fault = RecordingCheck::check({recording.files, frames, recording.forms});
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
    : m_options(options), m_library(library), m_session(session), m_output(output),
      m_progress(!options.verbose), m_stream(options.publish, session),
      m_recording(options.recording, output), m_frameRun(session, output, options.wanted,
                                                         {.begin = [this] { begin(); },
                                                          .frame = [this](bool isLast) { onFrame(isLast); },
                                                          .cut =
                                                              [this] {
                                                                  m_recording.pipeline().stopSaving();
                                                              }})
{
    m_recording.pipeline().setProvenance(library.provenance());
    // Once per frame, after its files are written; where none are, when it is through.
    if (options.recording.forms.any())
        QObject::connect(&m_recording.pipeline(), &ProcessImage::saveMessage, &m_frameRun,
                         &FrameRun::onFrame);
    else
        QObject::connect(&m_recording.pipeline(), &ProcessImage::sendImagetoMain, &m_frameRun,
                         &FrameRun::onFrame);
}

RunResult AcquisitionRun::run()
{
    RunResult result = m_recording.calibrate();
    tellReceivers();
    if (result.problem.isEmpty())
        result = m_stream.begin();
    if (result.problem.isEmpty())
        result = m_frameRun.run();
    m_progress.clear();
    if (const RunResult streamed = m_stream.end(result.problem.isEmpty()); result.problem.isEmpty())
        result = streamed;
    if (!result.problem.isEmpty())
        return result;
    const int frames = m_frameRun.frames();
    m_output.print(QString::asprintf("%d frames in %.3f s: %.2f frames per second", frames,
                                     m_frameRun.seconds(), frames / m_frameRun.seconds()));
    return m_recording.report();
}

/// What is known by now.
void AcquisitionRun::tellReceivers()
{
    QJsonObject facts;
    Summary::addSource(facts, m_library,
                       m_session.serial().isEmpty() ? m_options.wanted.serial : m_session.serial());
    facts[QLatin1String("program")] =
        QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion();
    m_stream.setFacts(facts);
}

void AcquisitionRun::begin()
{
    tellReceivers();
    m_recording.begin(m_options.wanted.frames, {.serial = m_session.serial(),
                                                .library = m_library.path,
                                                .isSimulated = m_library.isVirtual,
                                                .testPattern = m_options.wanted.testPattern});
}

void AcquisitionRun::onFrame(bool isLast)
{
    if (isLast) // which only now is known of so many seconds
        m_recording.pipeline().setSaveFrameTotal(m_frameRun.frames());
    m_progress.clear();
    m_recording.tell(m_frameRun.frames(), m_frameRun.seconds());
    if (!m_stream.send(m_recording.pipeline().lastFrame()))
        m_frameRun.stopEarly(m_stream.failure().problem);
    m_progress.show({.frames = m_frameRun.frames(),
                     .wantedFrames = m_options.wanted.frames,
                     .seconds = m_frameRun.seconds(),
                     .wantedSeconds = m_options.wanted.seconds,
                     .waiting = m_session.link().framesWaiting()});
}

void AcquisitionRun::addTo(QJsonObject &summary) const
{
    Summary::addFrames(summary, m_frameRun.frames(), m_frameRun.seconds());
    if (m_options.wanted.frames > 0)
        summary[QLatin1String("wanted")] = m_options.wanted.frames;
    m_stream.addTo(summary);
    m_recording.addTo(summary);
}
