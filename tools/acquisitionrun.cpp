#include "tools/acquisitionrun.h"

#include "device/conversations.h"
#include "device/d2xxlibrary.h"
#include "device/portmanager.h"
#include "imaging/processimage.h"
#include "log/logmanager.h"
#include "tools/recordingcheck.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QTemporaryFile>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace {

constexpr unsigned long readinessPauseMs = 1000;

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

/// The number format does not depend on the locale, which std::printf() follows.
void printLine(const QString &line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

void printFrame(int number, double seconds, const std::vector<double> &currents)
{
    const auto [lowest, highest] = std::minmax_element(currents.begin(), currents.end());
    const double mean =
        std::accumulate(currents.begin(), currents.end(), 0.0) / static_cast<double>(currents.size());
    printLine(QString::asprintf("frame %4d  %8.3f s  min %10.4f nA  mean %10.4f nA  max %10.4f nA", number,
                                seconds, *lowest, mean, *highest));
}

} // namespace

QString AcquisitionRun::run(const AcquireOptions &options)
{
    const D2xxLibrary library = D2xxLibrary::load(options.library);
    if (!library.driver->isUsable())
        return QStringLiteral("no driver library: %1").arg(library.problem);
    if (QString problem = checkWritable(options.output); !problem.isEmpty())
        return problem;
    if (library.isVirtual)
        printLine(QStringLiteral("Virtual detector: what follows is simulated, not measured."));

    LogManager::createInstance();
    PortManager::setDriver(library.driver);
    PortManager::createInstance();
    LogManager::instance()->writeLog(library.provenance());
    QString problem;
    {
        ProcessImage pipeline;
        pipeline.setProvenance(library.provenance());
        AcquisitionRun acquisition(options, *PortManager::instance(), pipeline);
        problem = acquisition.acquire();
    }
    PortManager::destroyInstance();
    LogManager::destroyInstance();
    return problem;
}

AcquisitionRun::AcquisitionRun(const AcquireOptions &options, PortManager &link, ProcessImage &pipeline)
    : m_options(options), m_link(link), m_pipeline(pipeline)
{
    m_frameTimeout.setSingleShot(true);
    m_frameTimeout.setInterval(options.timeoutSeconds * 1000);
    connect(&m_frameTimeout, &QTimer::timeout, this, [this] {
        m_timedOut = true;
        m_loop.quit();
    });
    // Once per frame, after its files are written.
    connect(&pipeline, &ProcessImage::saveMessage, this, &AcquisitionRun::onFrame);
    connect(&link, &PortManager::stop, this, &AcquisitionRun::onStop);
}

QString AcquisitionRun::acquire()
{
    for (const auto step : {&AcquisitionRun::openFirstDetector, &AcquisitionRun::waitUntilReady,
                            &AcquisitionRun::startDetector, &AcquisitionRun::receiveFrames}) {
        if (QString problem = (this->*step)(); !problem.isEmpty())
            return problem;
    }
    return RecordingCheck::check({{m_options.output, m_options.name},
                                  m_options.frames,
                                  {m_options.data, m_options.picture, m_options.video}});
}

QString AcquisitionRun::openFirstDetector()
{
    const QStringList serialNumbers = m_link.listDevices();
    if (serialNumbers.isEmpty())
        return QStringLiteral("no detector found");
    if (!m_link.openDevice(serialNumbers.constFirst())) {
        return QStringLiteral("the detector %1 cannot be opened; another program may hold it")
            .arg(serialNumbers.constFirst());
    }
    return {};
}

QString AcquisitionRun::waitUntilReady()
{
    if (m_options.testPattern > 0 && !Conversation::selectTestPattern(m_link, m_options.testPattern))
        return QStringLiteral("time-out: the detector did not confirm the test pattern");
    const QDeadlineTimer deadline(m_options.timeoutSeconds * 1000);
    const auto rest = [&deadline] {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(readinessPauseMs);
        return true;
    };
    if (!Conversation::waitUntilReady(m_link, rest)) {
        return QStringLiteral("time-out: the detector is busy, not ready after %1 s")
            .arg(m_options.timeoutSeconds);
    }
    return {};
}

QString AcquisitionRun::startDetector()
{
    if (!Conversation::start(m_link))
        return QStringLiteral("time-out: the detector did not confirm the start");
    return {};
}

QString AcquisitionRun::receiveFrames()
{
    m_pipeline.setContrastRatio(1.0);
    m_pipeline.setLogPath(m_options.output);
    m_pipeline.setTimeStamp(m_options.name);
    m_pipeline.setSaveFrameTotal(m_options.frames);
    m_pipeline.startSaving(m_options.data, m_options.picture, m_options.video);

    Conversation::beginReceiving(m_link);
    m_clock.start();
    m_frameTimeout.start();
    m_loop.exec();

    if (m_timedOut) {
        m_pipeline.stopSaving();
        return QStringLiteral("time-out: no frame for %1 s, %2 of %3 received")
            .arg(m_options.timeoutSeconds)
            .arg(m_frames)
            .arg(m_options.frames);
    }
    const double seconds = static_cast<double>(m_clock.elapsed()) / 1000.0;
    printLine(QString::asprintf("%d frames in %.3f s: %.2f frames per second", m_frames, seconds,
                                m_frames / seconds));
    printLine(QStringLiteral("Recorded in ") + QDir(m_options.output).absoluteFilePath(m_options.name));
    if (const int failed = m_pipeline.failedFiles(); failed > 0)
        return QStringLiteral("%1 %2 could not be written; the log tells which")
            .arg(failed)
            .arg(failed == 1 ? QStringLiteral("file") : QStringLiteral("files"));
    return {};
}

void AcquisitionRun::onFrame()
{
    ++m_frames;
    printFrame(m_frames, static_cast<double>(m_clock.elapsed()) / 1000.0, m_pipeline.lastFrame());
    m_frameTimeout.start();
    if (m_frames == m_options.frames)
        m_link.requestStop();
}

void AcquisitionRun::onStop()
{
    m_frameTimeout.stop();
    Conversation::confirmHalt(m_link);
    m_link.closeDevice();
    m_loop.quit();
}
