#include "d2xx/arguments.h"
#include "device/d2xxlibrary.h"
#include "device/protocol/commandframes.h"
#include "device/protocol/frameformat.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <vector>

namespace {

/// The virtual detector without pacing, through the calls of its driver library. Runs in a temporary working
/// folder while it lives.
class UnpacedDetector
{
public:
    explicit UnpacedDetector(const char *scene) : m_before(QDir::currentPath())
    {
        QDir::setCurrent(m_folder.path());
        QFile file(QStringLiteral("virtual-detector.ini"));
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray("Pacing=none\nScene=") + scene + '\n');
        file.close();
        QThread::msleep(settingsAge);
        m_driver->open("QV1K", &m_handle);
        m_driver->setBitMode(m_handle, d2xx::allDataLines, d2xx::bitModeSyncFifo);
        m_driver->setLatencyTimer(m_handle, d2xx::shortestLatency);
        m_driver->setTimeouts(m_handle, 1000, 1000);
    }

    ~UnpacedDetector()
    {
        m_driver->close(m_handle);
        QDir::setCurrent(m_before);
    }
    Q_DISABLE_COPY_MOVE(UnpacedDetector)

    /// Starts with a test pattern, or with the scene for 0. False when the detector does not answer.
    [[nodiscard]] bool start(int pattern)
    {
        return (pattern == 0 ||
                exchange(CommandFrame::testPattern(pattern), m_frame.data(), AckFrame::commandBytes)) &&
               exchange(CommandFrame::startAcquisition(), m_frame.data(), AckFrame::commandBytes);
    }

    /// One frame by the block handshake. False when the stream broke off.
    [[nodiscard]] bool readFrame()
    {
        uchar *block = m_frame.data();
        for (int number = 0; number < FrameFormat::blocksPerFrame;
             ++number, block += FrameFormat::blockBytes) {
            if (!exchange(CommandFrame::blockRequest(number), block, FrameFormat::blockBytes))
                return false;
        }
        return true;
    }

private:
    static constexpr int settingsAge = 250; ///< ms; the virtual detector looks at its file more often

    [[nodiscard]] bool exchange(const QByteArray &command, uchar *answer, qsizetype length)
    {
        quint32 written = 0;
        quint32 count = 0;
        m_driver->write(m_handle, command.constData(), static_cast<quint32>(command.size()), &written);
        m_driver->read(m_handle, answer, static_cast<quint32>(length), &count);
        return count == length;
    }

    QTemporaryDir m_folder;
    QString m_before;
    std::shared_ptr<D2xx> m_driver = D2xxLibrary::load(QStringLiteral("virtual")).driver;
    d2xx::Handle m_handle = nullptr;
    std::vector<uchar> m_frame = std::vector<uchar>(FrameFormat::frameBytes);
};

/// One frame a round.
void simulator(benchmark::State &state, const char *scene, int pattern)
{
    UnpacedDetector detector(scene);
    if (!detector.start(pattern) || !detector.readFrame()) { // the first frame of a scene is drawn
        state.SkipWithError("no virtual detector");
        return;
    }
    for (auto _ : state) {
        if (!detector.readFrame()) {
            state.SkipWithError("the stream broke off");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * FrameFormat::frameBytes);
}

BENCHMARK_CAPTURE(simulator, dark, "dark", 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(simulator, flat, "flat", 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(simulator, chart, "chart", 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(simulator, phantom, "phantom", 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(simulator, horizontal_ramp, "dark", 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(simulator, vertical_ramp, "dark", 2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(simulator, checkerboard, "dark", 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(simulator, flat_pattern, "dark", 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(simulator, counter, "dark", 5)->Unit(benchmark::kMillisecond);

} // namespace
