#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

#include "geometry/servoce/boolops.h"
#include "geometry/servoce/solid.h"
#include "geometry/servoce/step.h"
#include "geometry/servoce/unify.h"

using namespace servoce;

namespace {

constexpr int slotCount = 24;

std::vector<shape> slotCutters()
{
    std::vector<shape> result;
    for (int slot = 0; slot < slotCount; ++slot)
        result.push_back(box(20, 6, 10, false).translated(45, -3, 0).transformed(rotateZ(2 * M_PI * slot / slotCount)));
    return result;
}

// The disc less each slot in turn, as a stator script does it.
void BM_DiscOfSlotsCutInTurn(benchmark::State &state)
{
    const shape disc = tube(60, 25, 10);
    const std::vector<shape> cutters = slotCutters();
    for (auto _ : state) {
        std::vector<shape> parts{disc};
        parts.insert(parts.end(), cutters.begin(), cutters.end());
        benchmark::DoNotOptimize(make_difference(parts, true));
    }
}
BENCHMARK(BM_DiscOfSlotsCutInTurn)->Unit(benchmark::kMillisecond);

// All slots fused in one run, then cut out at once.
void BM_DiscOfSlotsCutAtOnce(benchmark::State &state)
{
    const shape disc = tube(60, 25, 10);
    const std::vector<shape> cutters = slotCutters();
    for (auto _ : state)
        benchmark::DoNotOptimize(make_difference(disc, general_fuse(cutters, false), true));
}
BENCHMARK(BM_DiscOfSlotsCutAtOnce)->Unit(benchmark::kMillisecond);

// The STEP round trip and face merging of a finished disc.
void BM_UnifyDiscOfSlots(benchmark::State &state)
{
    initialize();
    std::vector<shape> parts{tube(60, 25, 10)};
    const std::vector<shape> cutters = slotCutters();
    parts.insert(parts.end(), cutters.begin(), cutters.end());
    const shape disc = make_difference(parts, false);
    for (auto _ : state)
        benchmark::DoNotOptimize(unify(disc));
}
BENCHMARK(BM_UnifyDiscOfSlots)->Unit(benchmark::kMillisecond);

} // namespace
