#include "bench/benchstream.h"
#include "device/protocol/frameformat.h"
#include "ui/inspector/inspector.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <span>

namespace {

constexpr int counterPattern = 5;

/// The inspector as the window opens it.
std::unique_ptr<Inspector> openInspector(ProcessImage &pipeline)
{
    QElapsedTimer clock;
    clock.start();
    auto inspector =
        std::make_unique<Inspector>([&pipeline] { return std::span<const double>(pipeline.lastFrame()); },
                                    [clock] { return clock.elapsed(); }, [] { return FrameCounts(); });
    QObject::connect(&pipeline, &ProcessImage::sendImagetoMain, inspector.get(), &Inspector::frameArrived);
    inspector->show();
    return inspector;
}

/// As fast as it goes, without the inspector or with it. The rate is that of the wall clock: three threads
/// work on a frame, and one more on the inspector's figures.
void unpaced(benchmark::State &state, bool isInspected)
{
    BenchStream stream("Pacing=none\n", counterPattern);
    if (!stream.isRunning()) {
        state.SkipWithError("no virtual detector");
        return;
    }
    const std::unique_ptr<Inspector> inspector = isInspected ? openInspector(stream.pipeline()) : nullptr;
    constexpr int framesPerRound = 20;
    stream.showFrames(framesPerRound);
    QElapsedTimer timer;
    timer.start();
    for (auto _ : state)
        stream.showFrames(framesPerRound);
    const double seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    state.counters["bytes_per_second"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * framesPerRound *
                               static_cast<double>(FrameFormat::frameBytes) / seconds,
                           benchmark::Counter::kDefaults, benchmark::Counter::kIs1000);
}

/// How long the window would not have answered while everything is recorded at the detector's own pace, the
/// end of the recording included: the longest time between two ticks of a timer that is due every
/// millisecond.
void longestStall(benchmark::State &state)
{
    BenchStream stream("Pacing=timing\n", 0);
    if (!stream.isRunning()) {
        state.SkipWithError("no virtual detector");
        return;
    }
    constexpr int frames = 30;
    stream.showFrames(2);
    stream.pipeline().setSaveFrameTotal(frames);
    stream.pipeline().setTimeStamp(QStringLiteral("T"));

    QElapsedTimer sinceTick;
    qint64 longest = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &tick,
                     [&] { longest = std::max(longest, sinceTick.restart()); });
    sinceTick.start();
    tick.start(1);
    stream.pipeline().startSaving(true, true, true);
    for (auto _ : state) {
        stream.showFrames(frames);
        // The last frame is stored, the video closed and read back; the tick that had to wait is still to
        // come.
        longest = std::max(longest, sinceTick.elapsed());
    }
    state.counters["longest_stall_ms"] = static_cast<double>(longest);
    if (stream.pipeline().isSaving() || stream.pipeline().failedFiles() != 0)
        state.SkipWithError("files not written");
}

BENCHMARK_CAPTURE(unpaced, plain, false)->Name("stream/qv1k")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(unpaced, inspected, true)->Name("stream/inspected")->Unit(benchmark::kMillisecond);
BENCHMARK(longestStall)->Name("stall/recording")->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
