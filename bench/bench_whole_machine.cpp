#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>
#include <memory>

#include "support/ScaledExample.h"

namespace {

// Processor time of the whole process, all threads.
double processSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

// All pieces of a fresh document.
void BM_WholeMachine(benchmark::State &state)
{
    double cpu = 0.0;
    double wall = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<Document> doc = scaledExample(int(state.range(0)));
        state.ResumeTiming();
        if (!doc) {
            state.SkipWithError("the example did not load");
            return;
        }
        const double cpuStart = processSeconds();
        const auto wallStart = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(doc->pieces());
        wall += std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
        cpu += processSeconds() - cpuStart;
    }
    state.counters["cpu_per_wall"] = wall > 0.0 ? cpu / wall : 0.0;
}
BENCHMARK(BM_WholeMachine)->Arg(12)->Arg(24)->Arg(48)->Arg(96)->Unit(benchmark::kMillisecond)->UseRealTime();

// The pieces again after one stator parameter changed.
void BM_RebuildAfterStatorChange(benchmark::State &state)
{
    const std::unique_ptr<Document> doc = scaledExample(int(state.range(0)));
    if (!doc) {
        state.SkipWithError("the example did not load");
        return;
    }
    doc->pieces();
    double outer = doc->stator()->outerDiameter();
    for (auto _ : state) {
        state.PauseTiming();
        outer += 1.0;
        doc->stator()->setOuterDiameter(outer);
        state.ResumeTiming();
        benchmark::DoNotOptimize(doc->pieces());
    }
}
BENCHMARK(BM_RebuildAfterStatorChange)->Arg(12)->Arg(48)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
