#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>
#include <memory>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/RotorItem.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"

namespace {

// A 12-slot 10-pole single-sided machine with the first scripts of the catalogues,
// grown with its slot count: diameters scale so that slot and pole shapes stay the same.
std::unique_ptr<Document> machineOf(int slotCount)
{
    auto doc = std::make_unique<Document>(nullptr);
    doc->start();
    doc->setMachineType(Machine::SR);
    const double scale = slotCount / 12.0;
    Stator *stator = doc->stator();
    Rotor *rotor = doc->rotor();
    stator->readScript(Document::scriptsPath() + QStringLiteral("/stator/SlottedStator.js"));
    rotor->readScript(Document::scriptsPath() + QStringLiteral("/rotor/SurfaceMagnetRotor.js"));
    for (MotorElement *element : {static_cast<MotorElement *>(stator), static_cast<MotorElement *>(rotor)}) {
        element->setInnerDiameter(100.0 * scale);
        element->setOuterDiameter(300.0 * scale);
    }
    stator->setNumberSlots(slotCount);
    rotor->setNumberPolePairs(slotCount * 5 / 12);
    return doc;
}

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
        const std::unique_ptr<Document> doc = machineOf(int(state.range(0)));
        state.ResumeTiming();
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
    const std::unique_ptr<Document> doc = machineOf(int(state.range(0)));
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
