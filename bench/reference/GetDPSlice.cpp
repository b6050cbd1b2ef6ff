#include "GetDPSlice.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegExp>
#include <QStandardPaths>
#include <QStringList>
#include <QTextStream>
#include <cmath>

#include "solver/AirGapForce.h"
#include "solver/FieldSolution.h"
#include "solver/FluxLinkage.h"
#include "solver/MCRCtrl/MatData.h"
#include "solver/MagnetostaticSolver.h"

using namespace mcrctrl;

namespace getdp {

namespace {

// Tags of the mesh file: regions from 1, then the point groups of the constraints.
constexpr int fixedTag = 10001;
constexpr int forwardTag = 10002;
constexpr int backwardTag = 10003;
constexpr int masterTag = 10004;

std::vector<solver::CoilSide> phaseA(const SliceModel &slice)
{
    std::vector<solver::CoilSide> sides;
    for (const PhaseSide &side : slice.sides) {
        if (side.phase == 0)
            sides.push_back({side.region, side.sign});
    }
    return sides;
}

void writeMesh(const solver::Problem &problem, const QString &path, double width)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        throw StepError(QStringLiteral("Can't write %1").arg(path));
    QTextStream out(&file);
    out.setRealNumberPrecision(17);
    out << "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n" << problem.mesh.nodes.size() << "\n";
    for (std::size_t n = 0; n < problem.mesh.nodes.size(); ++n)
        out << n + 1 << " " << problem.mesh.nodes[n].x() << " " << problem.mesh.nodes[n].y() << " 0\n";
    out << "$EndNodes\n$Elements\n";
    std::vector<std::pair<int, int>> points;
    for (const solver::FixedPotential &fixed : problem.fixed)
        points.emplace_back(fixedTag, fixed.node);
    for (const solver::NodePair &pair : problem.pairs) {
        const double shift = problem.mesh.nodes[std::size_t(pair.slave)].x() - problem.mesh.nodes[std::size_t(pair.master)].x();
        if (std::abs(std::abs(shift) - width) > 1e-9 * width)
            throw StepError(QStringLiteral("A seam pair is not one period apart"));
        points.emplace_back(shift > 0.0 ? forwardTag : backwardTag, pair.slave);
        points.emplace_back(masterTag, pair.master);
    }
    out << problem.mesh.triangles.size() + points.size() << "\n";
    std::size_t id = 1;
    for (const solver::Triangle &triangle : problem.mesh.triangles) {
        out << id++ << " 2 2 " << triangle.region + 1 << " " << triangle.region + 1;
        for (const int node : triangle.nodes)
            out << " " << node + 1;
        out << "\n";
    }
    for (const auto &[tag, node] : points)
        out << id++ << " 15 2 " << tag << " " << tag << " " << node + 1 << "\n";
    out << "$EndElements\n";
}

QString list(const std::vector<int> &regions)
{
    QStringList tags;
    for (const int region : regions)
        tags << QString::number(region + 1);
    return QStringLiteral("Region[{%1}]").arg(tags.join(','));
}

// A saturating iron as GetDP reads it: our reluctivity as a table over B squared,
// finely enough that linear interpolation stays within round-off of the curve.
QString reluctivityTable(const solver::ReluctivityCurve &curve)
{
    QStringList values;
    for (int k = 0; k <= 4000; ++k) {
        const double b = 4.0 * k / 4000.0;
        values << QString::number(b * b, 'g', 17) << QString::number(curve.reluctivity(b * b), 'g', 17);
    }
    for (const double b : {6.0, 10.0, 100.0})
        values << QString::number(b * b, 'g', 17) << QString::number(curve.reluctivity(b * b), 'g', 17);
    return values.join(QStringLiteral(", "));
}

void writeProblem(const SliceModel &slice, const solver::Problem &problem, const QString &path, bool linear)
{
    std::vector<int> all;
    std::vector<int> magnets;
    std::vector<int> coils;
    std::vector<Eigen::Vector2d> remanence(problem.regions.size(), Eigen::Vector2d::Zero());
    std::vector<char> hasMagnet(problem.regions.size(), 0);
    for (std::size_t e = 0; e < problem.mesh.triangles.size(); ++e) {
        const int region = problem.mesh.triangles[e].region;
        const Eigen::Vector2d br = problem.remanence.empty() ? Eigen::Vector2d::Zero() : problem.remanence[e];
        if (br.norm() == 0.0)
            continue;
        if (hasMagnet[std::size_t(region)] && (remanence[std::size_t(region)] - br).norm() > 1e-12)
            throw StepError(QStringLiteral("Region %1 is not magnetised in one direction").arg(region));
        hasMagnet[std::size_t(region)] = 1;
        remanence[std::size_t(region)] = br;
    }
    QString functions;
    QTextStream f(&functions);
    f.setRealNumberPrecision(17);
    for (std::size_t c = 0; c < problem.curves.size() && !linear; ++c) {
        f << "  nuTable" << c << "() = List[{" << reluctivityTable(problem.curves[c]) << "}];\n";
        f << "  nuCurve" << c << "[] = InterpolationLinear[SquNorm[$1]]{List[nuTable" << c << "()]};\n";
        f << "  dnuCurve" << c << "[] = dInterpolationLinear[SquNorm[$1]]{List[nuTable" << c << "()]};\n";
    }
    for (std::size_t r = 0; r < problem.regions.size(); ++r) {
        const solver::Region &region = problem.regions[r];
        all.push_back(int(r));
        if (!linear && region.curve >= 0) {
            f << "  nu[Region[" << r + 1 << "]] = nuCurve" << region.curve << "[$1];\n";
            f << "  dnudb2[Region[" << r + 1 << "]] = dnuCurve" << region.curve << "[$1];\n";
        } else {
            f << "  nu[Region[" << r + 1 << "]] = 1 / (mu0 * " << region.relativePermeability << ");\n";
            f << "  dnudb2[Region[" << r + 1 << "]] = 0;\n";
        }
        if (hasMagnet[r]) {
            magnets.push_back(int(r));
            f << "  br[Region[" << r + 1 << "]] = Vector[" << remanence[r].x() << ", " << remanence[r].y() << ", 0];\n";
        }
        if (region.currentDensity != 0.0) {
            coils.push_back(int(r));
            f << "  js[Region[" << r + 1 << "]] = Vector[0, 0, " << region.currentDensity << "];\n";
        }
    }
    std::vector<int> sidesA;
    for (const solver::CoilSide &side : phaseA(slice)) {
        sidesA.push_back(side.region);
        f << "  wA[Region[" << side.region + 1 << "]] = " << side.sign * slice.turnsPerCoil / slice.regionArea[std::size_t(side.region)]
          << ";\n";
    }
    const GapBand &band = slice.bands.front();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        throw StepError(QStringLiteral("Can't write %1").arg(path));
    QTextStream out(&file);
    out.setRealNumberPrecision(17);
    out << "Group {\n  Domain = " << list(all) << ";\n  Magnets = " << list(magnets) << ";\n  Coils = " << list(coils)
        << ";\n  CoilsA = " << list(sidesA) << ";\n  Band = " << list({band.region}) << ";\n"
        << "  Fixed = Region[" << fixedTag << "];\n  Forward = Region[" << forwardTag << "];\n  Backward = Region[" << backwardTag
        << "];\n  Masters = Region[" << masterTag << "];\n}\n"
        << "Function {\n  mu0 = 4e-7 * Pi;\n  w = " << slice.width << ";\n  h = " << band.height << ";\n" << functions << "}\n"
        << "Constraint {\n  { Name Fix; Case { { Region Fixed; Value 0; } } }\n"
        << "  { Name Seam; Case {\n"
        << "    { Type Link; Region Forward; RegionRef Masters; Coefficient " << slice.seamSign << "; Function Vector[X[] - w, Y[], Z[]]; }\n"
        << "    { Type Link; Region Backward; RegionRef Masters; Coefficient " << slice.seamSign << "; Function Vector[X[] + w, Y[], Z[]]; }\n"
        << "  } }\n}\n"
        << "Jacobian { { Name Vol; Case { { Region All; Jacobian Vol; } } } }\n"
        << "Integration { { Name I1; Case { { Type Gauss; Case { { GeoElement Triangle; NumberOfPoints 1; } } } } } }\n"
        << "FunctionSpace { { Name Hcurl_a; Type Form1P;\n"
        << "  BasisFunction { { Name se; NameOfCoef ae; Function BF_PerpendicularEdge; Support Domain; Entity NodesOf[All]; } }\n"
        << "  Constraint { { NameOfCoef ae; EntityType NodesOf; NameOfConstraint Fix; }\n"
        << "               { NameOfCoef ae; EntityType NodesOf; NameOfConstraint Seam; } } } }\n"
        << "Formulation { { Name MS; Type FemEquation; Quantity { { Name a; Type Local; NameOfSpace Hcurl_a; } }\n"
        << "  Equation {\n"
        << "    Galerkin { [ nu[{d a}] * Dof{d a}, {d a} ]; In Domain; Jacobian Vol; Integration I1; }\n";
    if (!linear)
        out << "    Galerkin { JacNL[ 2 * dnudb2[{d a}] * SquDyadicProduct[{d a}] * Dof{d a}, {d a} ]; In Domain; Jacobian Vol; Integration I1; }\n";
    if (!magnets.empty())
        out << "    Galerkin { [ -nu[{d a}] * br[], {d a} ]; In Magnets; Jacobian Vol; Integration I1; }\n";
    if (!coils.empty())
        out << "    Galerkin { [ -js[], {a} ]; In Coils; Jacobian Vol; Integration I1; }\n";
    out << "  } } }\n"
        << "Resolution { { Name MS; System { { Name A; NameOfFormulation MS; } } Operation { "
        << (linear ? "Generate[A]; Solve[A];" : "InitSolution[A]; IterativeLoop[50, 1e-10, 1] { GenerateJac[A]; SolveJac[A]; }")
        << " } } }\n"
        << "PostProcessing { { Name MS; NameOfFormulation MS; Quantity {\n"
        << "  { Name psiA; Value { Integral { [ wA[] * CompZ[{a}] ]; In CoilsA; Jacobian Vol; Integration I1; } } }\n"
        << "  { Name fx; Value { Integral { [ -CompX[{d a}] * CompY[{d a}] / (mu0 * h) ]; In Band; Jacobian Vol; Integration I1; } } }\n"
        << "} } }\n"
        << "PostOperation { { Name MS; NameOfPostProcessing MS; Operation {\n"
        << "  Print[ psiA[CoilsA], OnGlobal, Format Table, File \"psiA.txt\" ];\n"
        << "  Print[ fx[Band], OnGlobal, Format Table, File \"fx.txt\" ];\n"
        << "} } }\n";
}

double lastNumber(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        throw StepError(QStringLiteral("GetDP wrote no %1").arg(path));
    const QStringList parts = QString::fromUtf8(file.readAll()).split(QRegExp(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    if (parts.isEmpty())
        throw StepError(QStringLiteral("GetDP wrote nothing into %1").arg(path));
    return parts.last().toDouble();
}

} // namespace

bool installed()
{
    return !QStandardPaths::findExecutable(QStringLiteral("getdp")).isEmpty();
}

Answer ours(const SliceModel &slice, const solver::Problem &problem, bool linear)
{
    QElapsedTimer timer;
    timer.start();
    const solver::Solution solution = solver::MagnetostaticSolver(problem, {linear, 1e-10, 50}).solve();
    if (!solution.converged)
        throw StepError(QStringLiteral("Our solver did not converge"));
    const solver::FieldSolution field(problem, solution.potential, linear);
    Answer answer;
    answer.fluxLinkage = solver::fluxLinkage(field, phaseA(slice), slice.turnsPerCoil);
    answer.force = solver::airGapForce(field, {slice.bands.front().region}, slice.bands.front().height).x();
    answer.seconds = timer.elapsed() / 1000.0;
    return answer;
}

Answer reference(const SliceModel &slice, const solver::Problem &problem, const QString &folder, bool linear)
{
    writeMesh(problem, folder + QStringLiteral("/slice.msh"), slice.width);
    writeProblem(slice, problem, folder + QStringLiteral("/slice.pro"), linear);
    QElapsedTimer timer;
    timer.start();
    QProcess getdp;
    getdp.setWorkingDirectory(folder);
    getdp.setProcessChannelMode(QProcess::MergedChannels);
    getdp.start(QStringLiteral("getdp"), {QStringLiteral("slice.pro"), QStringLiteral("-msh"), QStringLiteral("slice.msh"),
                                          QStringLiteral("-solve"), QStringLiteral("MS"), QStringLiteral("-pos"), QStringLiteral("MS"),
                                          QStringLiteral("-v"), QStringLiteral("2")});
    if (!getdp.waitForFinished(600000) || getdp.exitCode() != 0)
        throw StepError(QStringLiteral("GetDP failed: %1").arg(QString::fromLocal8Bit(getdp.readAll())));
    Answer answer;
    answer.seconds = timer.elapsed() / 1000.0;
    answer.fluxLinkage = lastNumber(folder + QStringLiteral("/psiA.txt"));
    answer.force = lastNumber(folder + QStringLiteral("/fx.txt"));
    return answer;
}

} // namespace getdp
