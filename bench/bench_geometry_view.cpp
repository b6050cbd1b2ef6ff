#include <QSignalSpy>
#include <benchmark/benchmark.h>

#include "support/ScaledExample.h"
#include "QmlScripting/ScriptObject.h"
#include "ui/Viewer/ElementScenes.h"
#include "ui/Viewer/GeometryViewer.h"

// The 3D view of the example as a user meets it; run under an X server (xvfb-run).

namespace {

constexpr int drawTimeout = 300000;

// Until the scene shows the document's newest machine, then one picture of it.
bool waitUntilDrawn(GeometryViewer &viewer)
{
    QSignalSpy redrawn(viewer.scene(), &GeometryScene::redrawScene);
    while (viewer.scene()->isGenerating() || !viewer.scene()->document()->hasPieces()
           || viewer.scene()->objects().isEmpty()) {
        if (!redrawn.wait(drawTimeout))
            return false;
    }
    return !viewer.renderImage().isNull();
}

// From opening the document to the machine drawn in the view.
void BM_FirstDrawnMachine(benchmark::State &state)
{
    for (auto _ : state) {
        const std::unique_ptr<Document> doc = scaledExample(int(state.range(0)));
        if (!doc) {
            state.SkipWithError("the example did not load");
            return;
        }
        GeometryViewer viewer(new MotorGeometryScene(doc.get()));
        viewer.resize(1000, 700);
        viewer.show();
        if (!waitUntilDrawn(viewer)) {
            state.SkipWithError("the machine was not drawn");
            return;
        }
    }
}
BENCHMARK(BM_FirstDrawnMachine)->Arg(12)->Arg(48)->Unit(benchmark::kMillisecond)->UseRealTime();

// One parameter of the stator script changed, to the machine drawn again.
void BM_RedrawAfterChange(benchmark::State &state)
{
    const std::unique_ptr<Document> doc = scaledExample(int(state.range(0)));
    if (!doc) {
        state.SkipWithError("the example did not load");
        return;
    }
    GeometryViewer viewer(new MotorGeometryScene(doc.get()));
    viewer.resize(1000, 700);
    viewer.show();
    waitUntilDrawn(viewer);
    ScriptObject *script = doc->stator()->scriptObject();
    const double depth = script->property("slotDepth").toDouble();
    bool deeper = true;
    for (auto _ : state) {
        script->setProperty("slotDepth", deeper ? depth + 1.0 : depth);
        deeper = !deeper;
        if (!waitUntilDrawn(viewer)) {
            state.SkipWithError("the machine was not drawn again");
            return;
        }
    }
}
BENCHMARK(BM_RedrawAfterChange)->Arg(12)->Arg(48)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
