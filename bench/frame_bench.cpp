#include "imaging/pixelkernel.h"
#include "imaging/processimage.h"
#include "tests/imaging/frames.h"
#include "tests/imaging/straightforward/straightforward.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

namespace {

void frameStraightforward(benchmark::State &state)
{
    Straightforward::Pipeline pipeline;
    pipeline.contrastRatio = 1.0;
    const QByteArray frame = Frames::useful(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(pipeline.processImage(frame));
}

void frameOurs(benchmark::State &state, bool calibrated)
{
    ProcessImage pipeline;
    pipeline.setContrastRatio(1.0);
    pipeline.caliEnabled = calibrated;
    QByteArray frame = Frames::useful(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(pipeline.processImage(frame));
}

/// A whole frame on this thread alone, by the code for one instruction set.
void frameKernel(benchmark::State &state, PixelKernel::RowsFunction rows)
{
    const QByteArray bytes = Frames::useful(1);
    std::vector<double> currents(FrameFormat::pixels);
    std::vector<int> grayLevels(FrameFormat::pixels);
    std::vector<uchar> picture(FrameFormat::pixels);
    PixelKernel::Frame frame;
    frame.bytes = {reinterpret_cast<const uchar *>(bytes.constData()),
                   static_cast<std::size_t>(bytes.size())};
    frame.currents = currents.data();
    frame.grayLevels = grayLevels.data();
    frame.picture = picture.data();
    for (auto _ : state) {
        rows(frame, {}, 0, FrameFormat::side);
        benchmark::ClobberMemory();
    }
}

/// One benchmark for each instruction set that this processor has.
bool registerKernels()
{
    for (const PixelKernel::Variant &variant : PixelKernel::variants()) {
        const std::string name = std::string("frame/kernel/") + variant.name;
        benchmark::RegisterBenchmark(name.c_str(), frameKernel, variant.rows)->Unit(benchmark::kMillisecond);
    }
    return true;
}

/// The bytes that go in and those that come out: 4 MiB are read and 13 MiB are written.
void frameCopy(benchmark::State &state)
{
    const QByteArray frame = Frames::useful(1);
    const auto size = static_cast<std::size_t>(frame.size());
    std::vector<char> out(3 * size + size / 4);
    for (auto _ : state) {
        for (std::size_t part = 0; part < 3; ++part)
            std::memcpy(out.data() + part * size, frame.constData(), size);
        std::memcpy(out.data() + 3 * size, frame.constData(), size / 4);
        benchmark::ClobberMemory();
    }
}

BENCHMARK(frameStraightforward)->Name("frame/straightforward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(frameOurs, plain, false)->Name("frame/qv1k")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(frameOurs, calibrated, true)->Name("frame/calibrated")->Unit(benchmark::kMillisecond);
[[maybe_unused]] const bool kernelsRegistered = registerKernels();
BENCHMARK(frameCopy)->Name("frame/copy")->Unit(benchmark::kMillisecond);

} // namespace
