#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cmath>
#include <optional>

#include "reference/GetDPSlice.h"
#include "solver/MCRCtrl/MatData.h"
#include "solver/MCRCtrl/SliceModel.h"
#include "solver/MCRCtrl/SolverSteps.h"
#include "solver/MCRCtrl/TimeStepping.h"

namespace {

// The bundled example after the solver's first step, in the folder; nothing when the
// step fails. The program's own writer dominates it, so it is done before the timing.
std::optional<mcrctrl::ExchangeData> assembledExample(const QString &folder)
{
    const QString path = folder + QStringLiteral("/exchange.mat");
    mcrctrl::writeMatFile(path, {mcrctrl::mat::text(QStringLiteral("file"), QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva")),
                                 mcrctrl::mat::number(QStringLiteral("motorProps"), 0.0)});
    const QString program = QStringLiteral(ZDS_EXECUTABLE);
    const mcrctrl::SolverSteps steps(program, QFileInfo(program).absolutePath() + QStringLiteral("/assets/materials"),
                                     [](const QString &) {}, [](const QString &) {});
    if (!steps.assemble(path))
        return std::nullopt;
    const mcrctrl::MatReader reader(path);
    return mcrctrl::ExchangeData{reader.value("Geometry"), reader.value("Mesh"), reader.value("Windings"),
                                 reader.value("Materials"), reader.value("SubdomainProperty")};
}

// The bundled example's three slices through 24 rotor positions over one electrical
// period, nonlinear, at 10 A: what the time-stepping step spends on solving. The
// assembly, which the program's own writer dominates, is done once beforehand.
void BM_TimeSteppingExample(benchmark::State &state)
{
    QTemporaryDir dir;
    const std::optional<mcrctrl::ExchangeData> data = assembledExample(dir.path());
    if (!data) {
        state.SkipWithError("the example was not assembled");
        return;
    }
    mcrctrl::RunSettings settings;
    settings.points = int(state.range(0));
    settings.current = 10.0;
    settings.currentMethod = QStringLiteral("RMS phase current");
    const mcrctrl::MachineData machine = mcrctrl::readMachine(*data, false);
    const std::vector<mcrctrl::SliceModel> slices = mcrctrl::readSlices(*data, machine);
    for (auto _ : state) {
        mcrctrl::TimeStepping stepping(slices, machine, settings);
        stepping.run([](const QString &) {});
        benchmark::DoNotOptimize(stepping.positions().back().torque);
    }
}
BENCHMARK(BM_TimeSteppingExample)->Arg(24)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

// The example's three slices with the band's rows in line at no shift and phase A at
// the peak of 10 A RMS, nonlinear, solved by our solver and, on the same meshes, by
// GetDP to the same tolerance. GetDP's time is that of its process, which reads the files first; the
// counter getdp_over_ours is how many times longer it takes.
void BM_SolverVersusGetDP(benchmark::State &state)
{
    if (!getdp::installed()) {
        state.SkipWithError("GetDP is not installed: scripts/install-deps.sh installs it");
        return;
    }
    QTemporaryDir dir;
    const std::optional<mcrctrl::ExchangeData> data = assembledExample(dir.path());
    if (!data) {
        state.SkipWithError("the example was not assembled");
        return;
    }
    const std::vector<mcrctrl::SliceModel> slices = mcrctrl::readSlices(*data, mcrctrl::readMachine(*data, false));
    const double peak = 10.0 * std::sqrt(2.0);
    std::vector<solver::Problem> problems;
    for (const mcrctrl::SliceModel &slice : slices)
        problems.push_back(slice.problemAt(-slice.bandOffset(), {peak, -peak / 2.0, -peak / 2.0}));
    double ours = 0.0;
    double reference = 0.0;
    try {
        for (auto _ : state) {
            for (std::size_t s = 0; s < slices.size(); ++s) {
                const QString folder = dir.filePath(QStringLiteral("slice%1").arg(s + 1));
                QDir().mkpath(folder);
                ours += getdp::ours(slices[s], problems[s], false).seconds;
                reference += getdp::reference(slices[s], problems[s], folder, false).seconds;
            }
        }
    } catch (const mcrctrl::StepError &error) {
        state.SkipWithError(qPrintable(error.text()));
        return;
    }
    const double runs = double(state.iterations());
    state.counters["ours_s"] = ours / runs;
    state.counters["getdp_s"] = reference / runs;
    state.counters["getdp_over_ours"] = reference / ours;
}
BENCHMARK(BM_SolverVersusGetDP)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

} // namespace
