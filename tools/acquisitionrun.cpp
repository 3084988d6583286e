#include "tools/acquisitionrun.h"

#include "device/conversations.h"
#include "device/d2xxlibrary.h"
#include "device/portmanager.h"
#include "imaging/processimage.h"
#include "log/logmanager.h"
#include "process/terminationsignals.h"
#include "tools/recordingcheck.h"
#include "tools/standardoutput.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QTemporaryFile>
#include <QThread>

#include <algorithm>
#include <numeric>

namespace {

constexpr int readinessPauseMs = 1000;
constexpr unsigned long watchIntervalMs = 20; ///< between two looks whether to wait on
constexpr int stopTimeoutMs = 1000;           ///< until the next block boundary, when the run ends early

constexpr const char *unplugged = "the detector was unplugged";
constexpr const char *endedBySignal = "ended by a signal";
constexpr const char *outputClosed = "nobody reads the standard output any more";

/// Makes the folder if it is missing and tries it out; says what is wrong with it.
QString checkWritable(const QString &folder)
{
    if (!QDir().mkpath(folder))
        return QStringLiteral("the folder %1 cannot be created").arg(folder);
    QTemporaryFile probe(folder + QStringLiteral("/.qv1k-XXXXXX"));
    if (!probe.open())
        return QStringLiteral("the folder %1 is not writable: %2").arg(folder, probe.errorString());
    return {};
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

} // namespace

AcquisitionRun::Result AcquisitionRun::run(const AcquireOptions &options, StandardOutput &output)
{
    const D2xxLibrary library = D2xxLibrary::load(options.library);
    if (!library.driver->isUsable())
        return {QStringLiteral("no driver library: %1").arg(library.problem), ExitStatus::failed};
    if (const QString problem = checkWritable(options.output); !problem.isEmpty())
        return {problem, ExitStatus::failed};
    if (library.isVirtual)
        output.print(QStringLiteral("Virtual detector: what follows is simulated, not measured."));

    Result result;
    {
        const TerminationSignals signalsToEnd;
        LogManager::createInstance();
        PortManager::setDriver(library.driver);
        PortManager::createInstance();
        LogManager::instance()->writeLog(library.provenance());
        {
            ProcessImage pipeline;
            pipeline.setProvenance(library.provenance());
            AcquisitionRun acquisition(options, *PortManager::instance(), pipeline, output, signalsToEnd);
            result = acquisition.acquire();
        }
        PortManager::destroyInstance();
        LogManager::destroyInstance();
    }
    if (!result.problem.isEmpty())
        return result;
    const QString fault = RecordingCheck::check(
        {{options.output, options.name}, options.frames, {options.data, options.picture, options.video}});
    return {fault, fault.isEmpty() ? ExitStatus::complete : ExitStatus::failed};
}

AcquisitionRun::AcquisitionRun(const AcquireOptions &options, PortManager &link, ProcessImage &pipeline,
                               StandardOutput &output, const TerminationSignals &signalsToEnd)
    : m_options(options), m_link(link), m_pipeline(pipeline), m_output(output)
{
    m_frameTimeout.setSingleShot(true);
    m_frameTimeout.setInterval(options.timeoutSeconds * 1000);
    connect(&m_frameTimeout, &QTimer::timeout, this, [this] {
        stopEarly(QStringLiteral("time-out: no frame for %1 s").arg(m_options.timeoutSeconds));
    });
    m_stopTimeout.setSingleShot(true);
    m_stopTimeout.setInterval(stopTimeoutMs);
    connect(&m_stopTimeout, &QTimer::timeout, this, &AcquisitionRun::haltNow);
    connect(&signalsToEnd, &TerminationSignals::requested, this,
            [this] { stopEarly(QString::fromLatin1(endedBySignal)); });
    // Once per frame, after its files are written.
    connect(&pipeline, &ProcessImage::saveMessage, this, &AcquisitionRun::onFrame);
    connect(&link, &PortManager::stop, this, &AcquisitionRun::onHalted);
    connect(&link, &PortManager::lost, this, &AcquisitionRun::onLost, Qt::QueuedConnection);
}

AcquisitionRun::Result AcquisitionRun::acquire()
{
    if (!m_output.hasReader())
        return {QString::fromLatin1(outputClosed), ExitStatus::failed};
    for (const auto step : {&AcquisitionRun::openDetector, &AcquisitionRun::waitUntilReady,
                            &AcquisitionRun::startDetector, &AcquisitionRun::receiveFrames}) {
        if (Result result = (this->*step)(); !result.problem.isEmpty()) {
            Conversation::haltIfStreaming(m_link); // there is no next try that would find it out
            return result;
        }
    }
    return reportFrames();
}

/// A detector that is gone is told as such, whatever it was asked for.
AcquisitionRun::Result AcquisitionRun::failure(const QString &problem) const
{
    if (m_link.checkLost())
        return {QString::fromLatin1(unplugged), ExitStatus::failed};
    return {problem, ExitStatus::failed};
}

AcquisitionRun::Result AcquisitionRun::openDetector()
{
    const QStringList attached = m_link.listDevices();
    const QStringList detectors = m_link.detectors();
    const QString numbers = attached.join(QStringLiteral(", "));
    if (attached.isEmpty())
        return {QStringLiteral("no detector found"), ExitStatus::failed};
    if (m_options.serial.isEmpty() && detectors.isEmpty())
        return {QStringLiteral("no detector found, but other bridges; --serial names one all the same: ") +
                    numbers,
                ExitStatus::failed};
    if (m_options.serial.isEmpty() && detectors.size() > 1)
        return {QStringLiteral("several detectors are attached, choose one with --serial: ") +
                    detectors.join(QStringLiteral(", ")),
                ExitStatus::wrongUsage};
    const QString serial = m_options.serial.isEmpty() ? detectors.constFirst() : m_options.serial;
    if (!attached.contains(serial))
        return {QStringLiteral("no detector %1 found; attached: %2").arg(serial, numbers),
                ExitStatus::failed};
    if (m_link.openDevice(serial))
        return {};
    const QString told = m_link.problem();
    const QString reason = told.isEmpty() ? QStringLiteral("another program may hold it") : told;
    return {QStringLiteral("the detector %1 cannot be opened; %2").arg(serial, reason), ExitStatus::failed};
}

AcquisitionRun::Result AcquisitionRun::waitUntilReady()
{
    if (m_options.testPattern > 0 && !Conversation::selectTestPattern(m_link, m_options.testPattern))
        return failure(QStringLiteral("time-out: the detector did not confirm the test pattern"));
    const QDeadlineTimer deadline(m_options.timeoutSeconds * 1000);
    const auto rest = [this, &deadline] {
        const QDeadlineTimer restEnd(readinessPauseMs);
        while (!restEnd.hasExpired() && !TerminationSignals::received() && !m_link.isLost())
            QThread::msleep(watchIntervalMs);
        return !deadline.hasExpired() && !TerminationSignals::received() && !m_link.isLost();
    };
    const bool isReady = Conversation::waitUntilReady(m_link, rest);
    if (TerminationSignals::received())
        return {QString::fromLatin1(endedBySignal), ExitStatus::failed};
    if (!isReady)
        return failure(QStringLiteral("time-out: the detector is busy, not ready after %1 s")
                           .arg(m_options.timeoutSeconds));
    return {};
}

AcquisitionRun::Result AcquisitionRun::startDetector()
{
    if (Conversation::start(m_link))
        return {};
    return failure(QStringLiteral("time-out: the detector did not confirm the start"));
}

AcquisitionRun::Result AcquisitionRun::receiveFrames()
{
    m_pipeline.setContrastRatio(1.0);
    m_pipeline.setLogPath(m_options.output);
    m_pipeline.setTimeStamp(m_options.name);
    m_pipeline.setSaveFrameTotal(m_options.frames);
    m_pipeline.startSaving(m_options.data, m_options.picture, m_options.video);

    m_clock.start();
    Conversation::beginReceiving(m_link);
    m_frameTimeout.start();
    m_loop.exec(); // a signal that came before is told here

    if (m_whyEarly.isEmpty())
        return {};
    return {m_whyEarly + QStringLiteral(", %1 of %2 received").arg(m_frames).arg(m_options.frames),
            ExitStatus::failed};
}

AcquisitionRun::Result AcquisitionRun::reportFrames()
{
    const double seconds = static_cast<double>(m_lastFrameMs) / 1000.0;
    m_output.print(QString::asprintf("%d frames in %.3f s: %.2f frames per second", m_frames, seconds,
                                     m_frames / seconds));
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

void AcquisitionRun::onFrame()
{
    if (m_isStopping)
        return;
    ++m_frames;
    m_lastFrameMs = m_clock.elapsed();
    m_output.print(
        lineOfFrame(m_frames, static_cast<double>(m_lastFrameMs) / 1000.0, m_pipeline.lastFrame()));
    m_frameTimeout.start();
    if (m_frames == m_options.frames) {
        m_isStopping = true;
        m_frameTimeout.stop();
        m_link.requestStop();
    } else if (!m_output.hasReader()) {
        stopEarly(QString::fromLatin1(outputClosed));
    }
}

void AcquisitionRun::onLost()
{
    if (!m_isStopping)
        m_whyEarly = QString::fromLatin1(unplugged);
    m_pipeline.stopSaving();
    end();
}

/// The recording ends here; the detector at the next block boundary, as by the button of the window, but is
/// not waited for as long.
void AcquisitionRun::stopEarly(const QString &why)
{
    if (m_isStopping)
        return;
    m_isStopping = true;
    m_whyEarly = why;
    m_frameTimeout.stop();
    m_pipeline.stopSaving();
    m_link.requestStop();
    m_stopTimeout.start();
}

void AcquisitionRun::haltNow()
{
    m_link.halt();
    onHalted();
}

void AcquisitionRun::onHalted()
{
    if (m_isEnded)
        return;
    Conversation::confirmHalt(m_link);
    end();
}

void AcquisitionRun::end()
{
    m_isEnded = true;
    m_frameTimeout.stop();
    m_stopTimeout.stop();
    m_link.closeDevice();
    m_loop.quit();
}
