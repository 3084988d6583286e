#include "bench/benchstream.h"
#include "device/protocol/frameformat.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

// A recording as long as the save page allows, as fast as the virtual detector makes frames, and the system's
// own way to write as many bytes to the same disk: that of the folder for temporary files (TMPDIR). Neither
// waits until the bytes are on it.

namespace {

constexpr int frames = 1000;
constexpr int counterPattern = 5;

void tellRate(benchmark::State &state, qint64 nanoseconds)
{
    const double bytes = static_cast<double>(frames) * static_cast<double>(FrameFormat::frameBytes);
    state.counters["bytes_per_second"] =
        benchmark::Counter(bytes / (static_cast<double>(nanoseconds) * 1e-9), benchmark::Counter::kDefaults,
                           benchmark::Counter::kIs1000);
}

void record(benchmark::State &state, const RecordingForms &forms)
{
    BenchStream stream("Pacing=none\n", counterPattern, BenchStream::View::None);
    if (!stream.isRunning()) {
        state.SkipWithError("no virtual detector");
        return;
    }
    stream.showFrames(20);
    stream.pipeline().setSaveFrameTotal(frames);
    stream.pipeline().setTimeStamp(QStringLiteral("T"));
    QElapsedTimer timer;
    for (auto _ : state) {
        timer.start();
        stream.pipeline().startSaving(forms, {});
        stream.showFrames(frames);
        tellRate(state, timer.nsecsElapsed());
    }
    if (stream.pipeline().isSaving() || stream.pipeline().failedFiles() != 0)
        state.SkipWithError("files not written");
}

void recordNpy(benchmark::State &state)
{
    record(state, {.npy = true});
}

void recordTiff(benchmark::State &state)
{
    record(state, {.tiff = true});
}

void recordRaw(benchmark::State &state)
{
    record(state, {.raw = true});
}

void systemsOwn(benchmark::State &state)
{
    const QTemporaryDir folder;
    QProcess dd;
    QElapsedTimer timer;
    for (auto _ : state) {
        timer.start();
        dd.start(QStringLiteral("dd"), {QStringLiteral("if=/dev/zero"),
                                        QStringLiteral("of=") + folder.filePath(QStringLiteral("dd")),
                                        QStringLiteral("bs=%1").arg(FrameFormat::frameBytes),
                                        QStringLiteral("count=%1").arg(frames)});
        if (!dd.waitForFinished(-1) || dd.exitCode() != 0)
            state.SkipWithError("dd cannot be run");
        tellRate(state, timer.nsecsElapsed());
    }
}

BENCHMARK(recordNpy)->Name("formats/npy")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(recordTiff)->Name("formats/tiff")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(recordRaw)->Name("formats/raw")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(systemsOwn)->Name("formats/dd")->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
