#include <benchmark/benchmark.h>

#include "support/ScaledExample.h"
#include "meshing/Mesh.h"

namespace {

// Three slices and the radial model of the example grown with its slot count, so
// that the pitches keep their ratio. The pieces are built once; each run remakes
// the meshes alone.
void BM_MeshSlices(benchmark::State &state)
{
    const std::unique_ptr<Document> doc = scaledExample(int(state.range(0)));
    if (!doc) {
        state.SkipWithError("the example did not load");
        return;
    }
    Mesh *mesh = doc->mesh();
    mesh->setNumberSlices(3);
    doc->pieces();
    for (auto _ : state) {
        mesh->setMeshInvalid(true);
        mesh->createMeshSlices();
    }
    if (mesh->meshErrors())
        state.SkipWithError("the mesh failed");
}
BENCHMARK(BM_MeshSlices)->Arg(12)->Arg(24)->Arg(48)->Arg(96)->Unit(benchmark::kMillisecond);

} // namespace
