#include <benchmark/benchmark.h>

#include "support/ScaledExample.h"
#include "meshing/Mesh.h"
#include "meshing/Mesh3D.h"

namespace {

// The volume mesh of one period of the example at its own size bound. The pieces
// are built once; each run cuts the period and meshes it.
void BM_Mesh3D(benchmark::State &state)
{
    const std::unique_ptr<Document> doc = scaledExample(12);
    if (!doc) {
        state.SkipWithError("the example did not load");
        return;
    }
    Mesh3D *mesh3D = doc->mesh()->mesh3D();
    doc->pieces();
    std::size_t tetrahedra = 0;
    for (auto _ : state) {
        const std::shared_ptr<VolumeMesh> mesh = mesh3D->createMesh(mesh3D->periodShapes());
        tetrahedra = mesh->tetrahedra.size();
    }
    if (tetrahedra == 0)
        state.SkipWithError("the mesh failed");
    state.counters["tetrahedra"] = double(tetrahedra);
    state.counters["sizeBound"] = doc->mesh()->sizeBound();
}
BENCHMARK(BM_Mesh3D)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
