#include "imaging/csvwriter.h"
#include "tests/imaging/frames.h"
#include "tests/imaging/straightforward/straightforward.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

namespace {

std::vector<double> currents()
{
    Straightforward::Pipeline pipeline;
    (void)pipeline.processImage(Frames::useful(1));
    return pipeline.lastFrameData;
}

void csvStraightforward(benchmark::State &state)
{
    const QTemporaryDir folder;
    const std::vector<double> values = currents();
    for (auto _ : state)
        Straightforward::writeCsv(folder.filePath("data.csv"), values);
}

void csvOurs(benchmark::State &state)
{
    const QTemporaryDir folder;
    const std::vector<double> values = currents();
    CsvWriter writer;
    for (auto _ : state) {
        if (!writer.write(folder.filePath("data.csv"), values).isEmpty()) {
            state.SkipWithError("file not written");
            break;
        }
    }
}

BENCHMARK(csvStraightforward)->Name("csv/straightforward")->Unit(benchmark::kMillisecond);
BENCHMARK(csvOurs)->Name("csv/qv1k")->Unit(benchmark::kMillisecond);

} // namespace
