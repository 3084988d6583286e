#include "imaging/rawrecording.h"
#include "imaging/stackdescription.h"
#include "log/logmanager.h"
#include "process/terminationsignals.h"
#include "tools/commands.h"
#include "tools/detectorsession.h"
#include "tools/framerecording.h"
#include "tools/recordingcheck.h"
#include "tools/standardoutput.h"
#include "tools/summary.h"
#include "tools/writablefolder.h"

#include <QFileInfo>
#include <QJsonObject>

namespace {

/// The log as long as something is replayed; no link.
struct LogOfReplay
{
    LogOfReplay() { LogManager::createInstance(); }
    ~LogOfReplay() { LogManager::destroyInstance(); }
    Q_DISABLE_COPY_MOVE(LogOfReplay)
};

/// Puts each frame through the pipeline; counts them and tells when, after the first, each had come.
class Replay
{
public:
    Replay(RawRecording &source, FrameRecording &recording, const StandardOutput &output)
        : m_source(source), m_recording(recording), m_output(output)
    {
    }

    RunResult run()
    {
        m_recording.begin(m_source.frameCount(), StackDescription::factsOf(m_source.description()));
        QDateTime first;
        for (int position = 0; position < m_source.frameCount(); ++position) {
            const RawRecording::Frame frame = m_source.read(position);
            if (const QString why = whyEnded(frame); !why.isEmpty())
                return cut(why);
            if (position == 0)
                first = frame.time;
            m_recording.pipeline().takeFrame(frame.bytes, frame.time.toMSecsSinceEpoch());
            ++m_frames;
            constexpr double milliseconds = 1000.0;
            m_seconds = static_cast<double>(first.msecsTo(frame.time)) / milliseconds;
            m_recording.tell(m_frames, m_seconds);
        }
        return {};
    }

    [[nodiscard]] int frames() const { return m_frames; }
    [[nodiscard]] double seconds() const { return m_seconds; }

private:
    [[nodiscard]] QString whyEnded(const RawRecording::Frame &frame) const
    {
        if (TerminationSignals::received() != 0)
            return QString::fromLatin1(EndReason::signal);
        if (!m_output.hasReader())
            return QString::fromLatin1(EndReason::outputClosed);
        return frame.problem;
    }

    RunResult cut(const QString &why)
    {
        m_recording.pipeline().stopSaving();
        return {QStringLiteral("%1, %2 of %3 replayed")
                    .arg(why, QString::number(m_frames), QString::number(m_source.frameCount())),
                ExitStatus::failed};
    }

    RawRecording &m_source;
    FrameRecording &m_recording;
    const StandardOutput &m_output;
    int m_frames = 0;
    double m_seconds = 0.0;
};

RunResult replayInto(QJsonObject &summary, const QString &file, const RecordingOptions &options,
                     StandardOutput &output)
{
    RawRecording source(file);
    if (!source.problem().isEmpty())
        return {source.problem(), ExitStatus::failed};
    if (options.forms.raw && QFileInfo(source.path()) == QFileInfo(options.files.raw()))
        return {
            QStringLiteral("the frames would be written over themselves: choose another --output or --name"),
            ExitStatus::failed};
    if (const QString problem = WritableFolder::check(options.files.root); !problem.isEmpty())
        return {problem, ExitStatus::failed};
    {
        const TerminationSignals endRequests;
        const LogOfReplay log;
        FrameRecording recording(options, output);
        RunResult result = recording.calibrate();
        Replay replay(source, recording, output);
        if (result.problem.isEmpty())
            result = replay.run();
        Summary::addFrames(summary, replay.frames(), replay.seconds());
        summary[QLatin1String("wanted")] = source.frameCount();
        summary[QLatin1String("source")] = file;
        recording.addTo(summary);
        if (result.problem.isEmpty())
            result = recording.report();
        if (!result.problem.isEmpty())
            return result;
    }
    const QString fault = RecordingCheck::check({options.files, source.frameCount(), options.forms});
    return {fault, fault.isEmpty() ? ExitStatus::complete : ExitStatus::failed};
}

} // namespace

RunResult Commands::replay(const CommandLine &line, StandardOutput &output)
{
    const RecordingOptions options = RecordingOptions::of(line);
    return Summary::tell(
        line.isSet(QStringLiteral("json")), output, [&](QJsonObject &summary, StandardOutput &told) {
            return replayInto(summary, line.value(QStringLiteral("recording")), options, told);
        });
}
