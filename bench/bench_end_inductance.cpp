#include <benchmark/benchmark.h>
#include <cmath>

#include "support/ScaledExample.h"
#include "winding/EndInductance.h"
#include "winding/WindingObject.h"

namespace {

// A loop of `count` straight pieces, mm: the pair count of a coil end grows with its square.
Winding::CoilEndWires loopOfPieces(int count)
{
    Winding::CoilEndWires coil;
    const double radius = 100.0;
    for (int i = 0; i < count; ++i) {
        const double t0 = 2.0 * M_PI * i / count;
        const double t1 = 2.0 * M_PI * (i + 1) / count;
        coil.outer.filaments << Winding::Filament{{radius * std::cos(t0), radius * std::sin(t0), 0.0},
                                                  {radius * std::cos(t1), radius * std::sin(t1), 0.0}};
    }
    return coil;
}

void BM_NeumannOfSkewSegments(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Winding::evalNeumann({0.01, 0.02, 0.03}, {0.09, 0.05, 0.04}, {0.02, 0.07, 0.08},
                                                      {0.11, 0.06, 0.02}));
}
BENCHMARK(BM_NeumannOfSkewSegments);

// All pairs of pieces of one coil end with itself, in parallel over the first.
void BM_FilamentSumOfALoop(benchmark::State &state)
{
    const Winding::CoilEndWires coil = loopOfPieces(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(
            Winding::EndInductanceCalculator::calcFilamentMutualInductanceOuter(coil, coil, 0.0001));
}
BENCHMARK(BM_FilamentSumOfALoop)->Arg(30)->Arg(120)->Unit(benchmark::kMillisecond);

// The end-winding inductance of a whole winding, its end turns made beforehand: with 12 the
// bundled example (tooth coils), with 48 its machine grown to 48 slots and 8 poles with a
// distributed winding in two layers one above the other.
void BM_EndInductance(benchmark::State &state)
{
    const int slotCount = int(state.range(0));
    const std::unique_ptr<Document> doc = scaledExample(slotCount);
    if (!doc) {
        state.SkipWithError("the example did not load");
        return;
    }
    WindingObject *winding = doc->winding();
    if (slotCount != 12) {
        doc->rotor()->setNumberPolePairs(4);
        winding->setNumberLayers(2);
        winding->setLayersOrientation(Winding::UpperLower);
    }
    doc->pieces();
    winding->updateEndturns();
    if (winding->endturns().value(0).isEmpty()) {
        state.SkipWithError("the winding has no end turns");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(winding->calcEndInductance());
    state.counters["coils"] = double(winding->endturns().value(0).size());
}
BENCHMARK(BM_EndInductance)->Arg(12)->Arg(48)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
