#include <QFileInfo>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include "solver/MCRCtrl/MatData.h"
#include "solver/MCRCtrl/SliceModel.h"
#include "solver/MCRCtrl/SolverSteps.h"
#include "solver/MCRCtrl/TimeStepping.h"

namespace {

// The bundled example's three slices through 24 rotor positions over one electrical
// period, nonlinear, at 10 A: what the time-stepping step spends on solving. The
// assembly, which the program's own writer dominates, is done once beforehand.
void BM_TimeSteppingExample(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("exchange.mat"));
    mcrctrl::writeMatFile(path, {mcrctrl::mat::text(QStringLiteral("file"), QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva")),
                                 mcrctrl::mat::number(QStringLiteral("motorProps"), 0.0)});
    const QString program = QStringLiteral(ZDS_EXECUTABLE);
    const mcrctrl::SolverSteps steps(program, QFileInfo(program).absolutePath() + QStringLiteral("/assets/materials"),
                                     [](const QString &) {}, [](const QString &) {});
    if (!steps.assemble(path)) {
        state.SkipWithError("the example was not assembled");
        return;
    }
    const mcrctrl::MatReader reader(path);
    const mcrctrl::ExchangeData data{reader.value("Geometry"), reader.value("Mesh"), reader.value("Windings"),
                                     reader.value("Materials"), reader.value("SubdomainProperty")};
    mcrctrl::RunSettings settings;
    settings.points = int(state.range(0));
    settings.current = 10.0;
    settings.currentMethod = QStringLiteral("RMS phase current");
    const mcrctrl::MachineData machine = mcrctrl::readMachine(data, false);
    const std::vector<mcrctrl::SliceModel> slices = mcrctrl::readSlices(data, machine);
    for (auto _ : state) {
        mcrctrl::TimeStepping stepping(slices, machine, settings);
        stepping.run([](const QString &) {});
        benchmark::DoNotOptimize(stepping.positions().back().torque);
    }
}
BENCHMARK(BM_TimeSteppingExample)->Arg(24)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

} // namespace
