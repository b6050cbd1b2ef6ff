#include <QString>
#include <benchmark/benchmark.h>

#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/MotorItem.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"

namespace {

QString scriptFile(const char *folder, const char *name)
{
    return Document::scriptsPath() + QStringLiteral("/%1/%2").arg(QLatin1String(folder), QLatin1String(name));
}

// Three slices of a slotted stator beside a surface magnet rotor, with 5 pole
// pairs to every 12 slots, so that the pitches keep their ratio. The pieces are
// built once; each run remakes the meshes alone.
void BM_MeshSlices(benchmark::State &state)
{
    const int slotCount = int(state.range(0));
    Document doc(nullptr);
    doc.start();
    doc.setMachineType(Machine::SR);
    doc.stator()->setNumberSlots(slotCount);
    doc.rotor()->setNumberPolePairs(slotCount * 5 / 12);
    if (!doc.stator()->readScript(scriptFile("stator", "SlottedStator.js"))
        || !doc.rotor()->readScript(scriptFile("rotor", "SurfaceMagnetRotor.js"))) {
        state.SkipWithError("the shipped scripts did not load");
        return;
    }
    Mesh *mesh = doc.mesh();
    mesh->setNumberSlices(3);
    doc.pieces();
    for (auto _ : state) {
        mesh->setMeshInvalid(true);
        mesh->createMeshSlices();
    }
    if (mesh->meshErrors())
        state.SkipWithError("the mesh failed");
}
BENCHMARK(BM_MeshSlices)->Arg(12)->Arg(24)->Arg(48)->Arg(96)->Unit(benchmark::kMillisecond);

} // namespace
