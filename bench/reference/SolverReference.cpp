// Solves one slice of the bundled example with our solver and with GetDP on the same
// mesh, materials and currents, and writes the comparison as JSON:
//   zds_solver_reference OUT.json WORKFOLDER
// The slice is taken at two rotor shifts with the rows of its band in line, linear and
// with saturating iron.
// Ends with 3 when a quantity differs by more than 1 %.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <cstdio>

#include "AssembledExample.h"
#include "GetDPSlice.h"
#include "solver/MCRCtrl/MatData.h"
#include "solver/MCRCtrl/SliceModel.h"
#include "solver/MCRCtrl/SolverSteps.h"

using namespace mcrctrl;

namespace {

QJsonObject comparison(const QString &name, const QString &quantity, double ours, double reference)
{
    return {{"name", name}, {"quantity", quantity}, {"ours", ours}, {"reference", reference},
            {"rel_error", std::abs(ours - reference) / std::max(std::abs(reference), 1e-300)}};
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: zds_solver_reference OUT.json WORKFOLDER\n");
        return 2;
    }
    const QString output = QString::fromLocal8Bit(argv[1]);
    const QString folder = QDir(QString::fromLocal8Bit(argv[2])).absolutePath();
    try {
        const SolverSteps steps = exampleSolverSteps();
        const QString exchange = assembledExample(steps, folder);
        if (exchange.isEmpty())
            return 1;
        const MatReader reader(exchange);
        const ExchangeData data{reader.value("Geometry"), reader.value("Mesh"), reader.value("Windings"),
                                reader.value("Materials"), reader.value("SubdomainProperty")};
        const MachineData machine = readMachine(data, true);
        const std::vector<SliceModel> slices = readSlices(data, machine);
        const SliceModel &slice = slices.front();
        QJsonArray cases;
        bool agree = true;
        double oursTime = 0.0;
        double referenceTime = 0.0;
        for (const auto &[steps, linear] : {std::pair<int, bool>{0, true}, {5, true}, {0, false}, {5, false}}) {
            const QString name = QStringLiteral("example slice 1, %1, rotor %2 band segments on")
                                     .arg(linear ? QStringLiteral("linear") : QStringLiteral("nonlinear"))
                                     .arg(steps);
            const solver::Problem problem = slice.problemAt(steps * slice.bandSegment() - slice.bandOffset(), {10.0, -5.0, -5.0});
            const getdp::Answer a = getdp::ours(slice, problem, linear);
            const getdp::Answer b = getdp::reference(slice, problem, folder, linear);
            oursTime += a.seconds;
            referenceTime += b.seconds;
            for (const QJsonObject &entry : {comparison(name, QStringLiteral("flux linkage of phase A per metre, Wb/m"), a.fluxLinkage, b.fluxLinkage),
                                             comparison(name, QStringLiteral("band force along the motion per metre, N/m"), a.force, b.force)}) {
                agree = agree && entry.value(QStringLiteral("rel_error")).toDouble() <= 0.01;
                cases.append(entry);
            }
        }
        QFile file(output);
        if (!file.open(QIODevice::WriteOnly))
            throw StepError(QStringLiteral("Can't write %1").arg(output));
        file.write(QJsonDocument(QJsonObject{{"cases", cases}, {"time_ours_s", oursTime}, {"time_reference_s", referenceTime}})
                       .toJson());
        if (!agree) {
            std::fprintf(stderr, "Our solver and GetDP differ by more than 1 %%: see %s\n", qPrintable(output));
            return 3;
        }
    } catch (const StepError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.text()));
        return 1;
    }
    return 0;
}
