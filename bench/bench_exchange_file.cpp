#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>

#include "document/Document.h"

namespace {

// The bundled example from a freshly loaded document to its exchange file on disk:
// pieces, slice geometry, meshes and the writing of every variable.
void BM_Calculate(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("exchange.mat");
    for (auto _ : state) {
        state.PauseTiming();
        auto doc = std::make_unique<Document>(nullptr);
        doc->start();
        if (!doc->load(QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva"))) {
            state.SkipWithError("the example did not load");
            return;
        }
        state.ResumeTiming();
        if (!doc->writeExchangeFile(path)) {
            state.SkipWithError("the exchange file was not written");
            return;
        }
    }
}
BENCHMARK(BM_Calculate)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
