#include "device/shortrest.h"

#include <benchmark/benchmark.h>

#include <QThread>

namespace {

/// A frame rests up to 32 times: what a millisecond really takes decides the frame rate.
void restShort(benchmark::State &state)
{
    ShortRest rest;
    for (auto _ : state)
        rest.oneMillisecond();
}

void restOfTheSystem(benchmark::State &state)
{
    for (auto _ : state)
        QThread::msleep(1);
}

BENCHMARK(restShort)->Name("rest/qv1k")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(restOfTheSystem)->Name("rest/system")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
