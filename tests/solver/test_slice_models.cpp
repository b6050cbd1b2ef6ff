#include <gtest/gtest.h>

#include <QStringList>
#include <QtMath>
#include <cmath>

#include "solver/GridMesh.h"
#include "solver/IronData.h"
#include "solver/MCRCtrl/SliceModel.h"
#include "solver/MCRCtrl/SliceTopology.h"
#include "solver/MCRCtrl/TimeStepping.h"
#include "solver/SlotlessExchange.h"

using namespace mcrctrl;

namespace {

// A very permeable iron for linear runs: mu_r near 8e5.
const std::vector<double> stiffH{0.0, 1.0};
const std::vector<double> stiffB{0.0, 1.0};

QString stepError(const std::function<void()> &work)
{
    try {
        work();
    } catch (const StepError &error) {
        return error.text();
    }
    return QString();
}

RunSettings settings(bool linear)
{
    RunSettings run;
    run.linear = linear;
    run.tolerance = 1e-9;
    run.currentMethod = QStringLiteral("RMS phase current");
    return run;
}

// The results of a run as plain values.
MatValue resultsOf(const TimeStepping &stepping)
{
    matvar_t *results = stepping.results();
    const MatValue value = MatValue::from(results);
    mat::release(results);
    return value;
}

double bandArea(const solver::Problem &problem, int region)
{
    double area = 0.0;
    for (const solver::Triangle &triangle : problem.mesh.triangles) {
        if (triangle.region == region)
            area += solver::ElementShape(problem.mesh, triangle).area();
    }
    return area;
}

} // namespace

// The band between the rows covers one period exactly at any shift, without a
// degenerate triangle, and the images of moved nodes follow them with the seam sign.
TEST(SliceTopology, BandClosesOverOnePeriodAtAnyShift)
{
    const GridMesh grid(GridMesh::lines({0.0, 0.05}, {20}), {0.0, 0.001});
    for (const double shift : {0.0, 0.0011, 0.0125, 0.0499, 0.061, -0.0173}) {
        for (const double sign : {1.0, -1.0}) {
            solver::Problem problem;
            problem.mesh = grid.mesh([](const Eigen::Vector2d &) { return 0; });
            problem.mesh.triangles.clear();
            std::vector<int> upper = grid.rowNodes(1);
            for (const int node : upper)
                problem.mesh.nodes[std::size_t(node)].x() += shift;
            closeBand(problem, grid.rowNodes(0), upper, 0.05, sign, 0);
            EXPECT_NEAR(bandArea(problem, 0), 0.05 * 0.001, 1e-12) << "shift " << shift;
            for (const solver::Triangle &triangle : problem.mesh.triangles)
                EXPECT_GT(solver::ElementShape(problem.mesh, triangle).area(), 1e-12);
            for (const solver::NodePair &pair : problem.pairs) {
                const double periods = std::round((problem.mesh.nodes[std::size_t(pair.slave)].x()
                                                   - problem.mesh.nodes[std::size_t(pair.master)].x()) / 0.05);
                EXPECT_DOUBLE_EQ(pair.sign, std::pow(sign, periods));
                EXPECT_NE(periods, 0.0);
            }
        }
    }
}

TEST(SliceTopology, SeamsPairSidesAndFindHoles)
{
    const GridMesh grid(GridMesh::lines({0.0, 0.05}, {10}), GridMesh::lines({0.0, 0.01}, {5}));
    solver::TriangleMesh mesh = grid.mesh([](const Eigen::Vector2d &centroid) { return centroid.y() > 0.005 ? 2 : 1; });
    Seams seams = findSeams(mesh, 0.05, -1.0, {}, 1e-9);
    EXPECT_TRUE(seams.holeRegions.empty());
    // Four inner rows pair across; the corners belong to the flux faces.
    ASSERT_EQ(seams.pairs.size(), 4u);
    for (const solver::NodePair &pair : seams.pairs) {
        EXPECT_EQ(pair.sign, -1.0);
        EXPECT_NEAR(mesh.nodes[std::size_t(pair.slave)].x() - mesh.nodes[std::size_t(pair.master)].x(), 0.05, 1e-12);
    }
    EXPECT_EQ(seams.flux.size(), 22u);

    // Two triangles out of the upper region leave a hole beside it.
    mesh.triangles.erase(mesh.triangles.begin() + 2 * (3 * 10 + 4), mesh.triangles.begin() + 2 * (3 * 10 + 4) + 2);
    seams = findSeams(mesh, 0.05, -1.0, {}, 1e-9);
    ASSERT_FALSE(seams.holeRegions.empty());
    EXPECT_EQ(seams.holeRegions.front(), 2);
}

TEST(SliceModels, SlotlessModelMatchesTheClosedForms)
{
    SlotlessExchange exchange(stiffH, stiffB);
    const MachineData machine = readMachine(exchange.data, true);
    std::vector<SliceModel> slices = readSlices(exchange.data, machine);
    ASSERT_EQ(slices.size(), 1u);
    EXPECT_EQ(slices.front().seamSign, -1.0);
    EXPECT_NEAR(slices.front().width, SlotlessExchange::width(), 1e-12);
    EXPECT_NEAR(slices.front().copies(), 2.0 * SlotlessExchange::polePairs, 1e-9);
    ASSERT_EQ(slices.front().bands.size(), 1u);
    EXPECT_FALSE(slices.front().bands.front().rotorAbove);
    const TimeStepping stepping(slices, machine, settings(true));

    // The Lorentz force on the coil; the pole's edges, where the magnets of the model and
    // of its image meet, bring the flux under the coil a little below the closed form.
    const PositionResult loaded = stepping.solveAt(0.0, 0.0, {100.0, 0.0, 0.0}, 0);
    const double rated = SlotlessExchange::lorentzTorque(100.0);
    EXPECT_NEAR(loaded.torque, rated, 0.03 * rated);
    // The co-energy's rise as the rotor moves a band segment either way, at the same
    // currents and magnets, gives the same torque, in line or between two such shifts:
    // the stress over both cuts of the band's rectangles is that of a band cut anew.
    for (const double angle : {0.0, 0.003, 0.0105}) {
        const PositionResult at = stepping.solveAt(0.0, angle, {100.0, 0.0, 0.0}, 0, true);
        ASSERT_TRUE(at.virtualWorkTorque);
        EXPECT_NEAR(*at.virtualWorkTorque, at.torque, 1e-5 * rated) << "angle " << angle;
    }
    EXPECT_FALSE(loaded.virtualWorkTorque) << "not asked for";
    // Where the mesh is its own mirror image about the pole's middle, nothing pulls the
    // rotor along at no load.
    EXPECT_NEAR(stepping.solveAt(0.0, 0.0, {0.0, 0.0, 0.0}, 0).torque, 0.0, 1e-6 * rated);

    const double segment = slices.front().bandSegment() / SlotlessExchange::radius;
    EXPECT_NEAR(segment, SlotlessExchange::width() / 80.0 / SlotlessExchange::radius, 1e-12);
    for (const double angle : {0.0, 0.37 * segment, 7.5 * segment, -3.2 * segment}) {
        const PositionResult result = stepping.solveAt(0.0, angle, {0.0, 0.0, 0.0}, 0);
        EXPECT_NEAR(result.bandFluxDensity, SlotlessExchange::gapFluxDensity(), 0.01 * SlotlessExchange::gapFluxDensity())
            << "angle " << angle;
        EXPECT_NEAR(result.torque, 0.0, 0.02 * rated) << "angle " << angle;
        EXPECT_GT(result.gapNormalForce.front(), 0.0) << "the magnet pulls the rotor up to the stator";
        // The flux of the magnet links the coil, which spans the pole, whatever the shift.
        EXPECT_GT(std::abs(result.fluxLinkage[0]), 0.0);
    }
}

// The gap's flux closes through the yokes along the pole: |Bx| in each rises linearly
// from the pole's middle to Bg w / (2 t) at its edges, a mean of Bg w / (4 t). Without
// iron among the coils the stator has no teeth.
TEST(SliceModels, SlotlessYokesCarryThePoleFlux)
{
    SlotlessExchange exchange(stiffH, stiffB);
    const MachineData machine = readMachine(exchange.data, true);
    TimeStepping stepping(readSlices(exchange.data, machine), machine, settings(true));
    stepping.run([](const QString &) {});
    const IronFluxDensities iron = stepping.ironFluxDensities();
    const double yoke = SlotlessExchange::gapFluxDensity() * SlotlessExchange::width() / (4.0 * SlotlessExchange::rotorIron);
    EXPECT_FALSE(iron.tooth);
    ASSERT_TRUE(iron.statorBackIron && iron.rotorBackIron);
    EXPECT_NEAR(*iron.statorBackIron, yoke, 0.01 * yoke);
    EXPECT_NEAR(*iron.rotorBackIron, yoke, 0.01 * yoke);
}

// Mutual inductances from the flux linkage of one coil when the other carries the
// current: equal both ways, as the energy of a linear field demands.
TEST(SliceModels, MutualInductancesAreSymmetric)
{
    SlotlessExchange exchange(stiffH, stiffB);
    // Two coils of half a pitch each, in the lower and the upper half of the coil layer.
    exchange.field(exchange.data.windings, "layout2") = mat_values::cell({mat_values::matrix(1, 4, {1, 2, 3, 1})});
    MatValue &types = exchange.field(exchange.data.subdomains, "MaterialType").items[0];
    MatValue &properties = exchange.field(exchange.data.subdomains, "Properties").items[0];
    types.items.push_back(mat_values::text("Winding"));
    std::map<QString, MatValue> second = properties.elements[3];
    second["slot"] = mat_values::number(2);
    properties.elements.push_back(second);
    MatValue &triangles = exchange.field(exchange.data.mesh, "t").items[0];
    MatValue &points = exchange.field(exchange.data.mesh, "p").items[0];
    for (int e = 0; e < triangles.columns; ++e) {
        double x = 0.0;
        for (int k = 0; k < 3; ++k)
            x += points.at(0, int(triangles.at(k, e)) - 1) / 3.0;
        if (triangles.at(3, e) == 4.0 && x > SlotlessExchange::width() / 2.0)
            triangles.numbers[std::size_t(3 + 4 * e)] = 5.0;
    }
    const MachineData machine = readMachine(exchange.data, true);
    const TimeStepping stepping(readSlices(exchange.data, machine), machine, settings(true));
    const PositionResult none = stepping.solveAt(0.0, 0.0, {0.0, 0.0, 0.0}, 0);
    const PositionResult inA = stepping.solveAt(0.0, 0.0, {1.0, 0.0, 0.0}, 0);
    const PositionResult inB = stepping.solveAt(0.0, 0.0, {0.0, 1.0, 0.0}, 0);
    const double selfA = inA.fluxLinkage[0] - none.fluxLinkage[0];
    const double mutualAB = inA.fluxLinkage[1] - none.fluxLinkage[1];
    const double mutualBA = inB.fluxLinkage[0] - none.fluxLinkage[0];
    EXPECT_GT(selfA, 0.0);
    EXPECT_GT(std::abs(mutualAB), 1e-3 * selfA);
    EXPECT_NEAR(mutualAB, mutualBA, 1e-9 * selfA);
}

TEST(SliceModels, SaturatingSlotlessModelConvergesBelowTheLinearFlux)
{
    const IronData iron;
    std::vector<double> h{0.0};
    std::vector<double> b{0.0};
    h.insert(h.end(), iron.h.begin(), iron.h.end());
    b.insert(b.end(), iron.b.begin(), iron.b.end());
    SlotlessExchange exchange(h, b);
    const MachineData machine = readMachine(exchange.data, false);
    const TimeStepping stepping(readSlices(exchange.data, machine), machine, settings(false));
    const PositionResult result = stepping.solveAt(0.0, 0.0, {0.0, 0.0, 0.0}, 0);
    EXPECT_LT(result.bandFluxDensity, 0.95 * SlotlessExchange::gapFluxDensity()) << "the yokes saturate";
    EXPECT_GT(result.bandFluxDensity, 0.1);

    // Iterations that end before the tolerance end the run with the position and the
    // slice named.
    RunSettings impossible = settings(false);
    impossible.maxIterations = 1;
    const TimeStepping failing(readSlices(exchange.data, machine), machine, impossible);
    const QString error = stepError([&] { failing.solveAt(0.0, 0.01, {0.0, 0.0, 0.0}, 2); });
    EXPECT_TRUE(error.contains("position 3")) << error.toStdString();
    EXPECT_TRUE(error.contains("slice 1")) << error.toStdString();
}

TEST(SliceModels, UnfitInputGivesAnErrorNamingTheRegion)
{
    {
        SlotlessExchange exchange(stiffH, stiffB);
        exchange.field(exchange.data.subdomains, "MaterialType").items[0].items[2].text = QStringLiteral("Not assigned");
        const QString error = stepError([&] { readSlices(exchange.data, readMachine(exchange.data, true)); });
        EXPECT_TRUE(error.contains("region 3", Qt::CaseInsensitive)) << error.toStdString();
        EXPECT_TRUE(error.contains("has no material")) << error.toStdString();
    }
    {
        SlotlessExchange exchange(stiffH, stiffB);
        exchange.data.materials.elements.front().erase(QStringLiteral("magnetBr"));
        const QString error = stepError([&] { readSlices(exchange.data, readMachine(exchange.data, true)); });
        EXPECT_TRUE(error.contains("region 2")) << error.toStdString();
        EXPECT_TRUE(error.contains("no remanence")) << error.toStdString();
    }
    {
        SlotlessExchange exchange(stiffH, stiffB);
        exchange.field(exchange.data.windings, "W") = mat_values::number(0);
        EXPECT_TRUE(stepError([&] { readMachine(exchange.data, true); }).contains("winding is empty"));
        SlotlessExchange noCoils(stiffH, stiffB);
        noCoils.field(noCoils.data.windings, "layout1") = mat_values::cell({mat_values::matrix(0, 0, {})});
        EXPECT_TRUE(stepError([&] { readSlices(noCoils.data, readMachine(noCoils.data, true)); }).contains("winding is empty"));
    }
    {
        // Two triangles of the stator iron (region 3) go missing.
        SlotlessExchange exchange(stiffH, stiffB);
        MatValue &triangles = exchange.field(exchange.data.mesh, "t").items[0];
        const int first = 2 * (12 * 80 + 17);
        ASSERT_EQ(triangles.numbers[std::size_t(4 * first + 3)], 3.0);
        triangles.numbers.erase(triangles.numbers.begin() + 4 * first, triangles.numbers.begin() + 4 * (first + 2));
        triangles.columns -= 2;
        const QString error = stepError([&] { readSlices(exchange.data, readMachine(exchange.data, true)); });
        EXPECT_TRUE(error.contains("hole")) << error.toStdString();
        EXPECT_TRUE(error.contains("region 3")) << error.toStdString();
    }
}

// The current of one phase from each way of giving it, in star and in delta.
TEST(SliceModels, PhaseCurrentFollowsTheInputMethodAndConnection)
{
    SlotlessExchange exchange(stiffH, stiffB);
    MachineData machine = readMachine(exchange.data, true);
    const std::vector<SliceModel> slices = readSlices(exchange.data, machine);
    RunSettings run = settings(true);
    run.current = 10.0;
    const auto current = [&](const char *method, bool delta) {
        run.currentMethod = QString::fromLatin1(method);
        machine.delta = delta;
        return TimeStepping(slices, machine, run).phaseCurrent();
    };
    EXPECT_DOUBLE_EQ(current("RMS phase current", true), 10.0);
    EXPECT_DOUBLE_EQ(current("RMS supply current", false), 10.0);
    EXPECT_DOUBLE_EQ(current("RMS supply current", true), 10.0 / std::sqrt(3.0));
    EXPECT_DOUBLE_EQ(current("Peak supply current", false), 10.0 / std::sqrt(2.0));
    EXPECT_DOUBLE_EQ(current("Peak supply current", true), 10.0 / std::sqrt(6.0));
    // Without blocks a DC link current says nothing of the phase current.
    EXPECT_TRUE(stepError([&] { current("DC supply current", false); }).contains("inverter's modulation"));

    // 120-degree blocks: a peak of I over two thirds of the period, an RMS of I sqrt(2/3).
    // Fed such blocks from the lines, a delta's phases would carry steps, no blocks.
    run.waveform = Waveform::Trapezoidal;
    EXPECT_DOUBLE_EQ(current("Peak supply current", false), 10.0 * std::sqrt(2.0 / 3.0));
    EXPECT_DOUBLE_EQ(current("RMS supply current", false), 10.0);
    EXPECT_DOUBLE_EQ(current("RMS phase current", false), 10.0);
    EXPECT_TRUE(stepError([&] { current("Peak supply current", true); }).contains("star-connected"));
    EXPECT_TRUE(stepError([&] { current("RMS phase current", true); }).contains("star-connected"));
    // Two phases at a time carry the DC link current: their blocks are as high.
    EXPECT_DOUBLE_EQ(current("DC supply current", false), 10.0 * std::sqrt(2.0 / 3.0));
    EXPECT_NEAR(TimeStepping(slices, machine, run).currentsAt(0.0)[1], 10.0, 1e-12) << "phase B in its block";
}

// Each phase at +I over the 120 degrees about its positive peak, 0 over 60, -I over 120
// and 0 over 60; the rotor's d-axis at phase A puts A's current on the q-axis, 90
// degrees ahead, and the advance angle further ahead.
TEST(SliceModels, TrapezoidalCurrentsAreBlocksOf120Degrees)
{
    SlotlessExchange exchange(stiffH, stiffB);
    const MachineData machine = readMachine(exchange.data, true);
    RunSettings run = settings(true);
    run.waveform = Waveform::Trapezoidal;
    run.currentMethod = QStringLiteral("Peak supply current");
    run.current = 10.0;
    const auto currentsAt = [&](double advance, double degrees) {
        run.advanceAngle = advance;
        return TimeStepping({}, machine, run).currentsAt(qDegreesToRadians(degrees));
    };
    // The settings' text names the waveform; one that the solver does not know stops the run.
    const auto waveformOf = [](const char *text) {
        matvar_t *variable = mat::structure(QStringLiteral("settingsMagnetostatic"),
                                            {{QStringLiteral("MS_currentwaveform"), mat::text(QString(), QString::fromLatin1(text))}});
        const MatValue value = MatValue::from(variable);
        mat::release(variable);
        return RunSettings::from(value).waveform;
    };
    EXPECT_EQ(waveformOf("Trapezoidal"), Waveform::Trapezoidal);
    EXPECT_EQ(waveformOf("Sinusoidal"), Waveform::Sinusoidal);
    EXPECT_TRUE(stepError([&] { waveformOf("UnknowWaveformCurrent"); }).contains("UnknowWaveformCurrent"));

    using Currents = std::array<double, 3>;
    const auto expectCurrents = [&](double advance, double degrees, const Currents &expected) {
        const Currents currents = currentsAt(advance, degrees);
        for (std::size_t phase = 0; phase < 3; ++phase)
            EXPECT_NEAR(currents[phase], expected[phase], 1e-12) << "phase " << phase << " at " << degrees << " deg";
    };
    // Phase A 30 degrees past its peak, B in its gap, C in its negative block; then 90
    // degrees past A's peak: A in its gap, B in its positive block.
    expectCurrents(0.0, -60.0, {10.0, 0.0, -10.0});
    expectCurrents(0.0, 0.0, {0.0, 10.0, -10.0});
    expectCurrents(0.0, 100.0, {-10.0, 0.0, 10.0});
    expectCurrents(0.0, 170.0, {0.0, -10.0, 10.0});
    expectCurrents(30.0, -90.0, {10.0, 0.0, -10.0});

    // Over a period: nothing else, two phases conduct at a time and the currents sum to
    // nothing at any angle, each phase a third of the time at +I and a third at -I.
    run.advanceAngle = 0.0;
    const TimeStepping stepping({}, machine, run);
    std::array<int, 3> positive{};
    std::array<int, 3> negative{};
    double squares = 0.0;
    const int samples = 720;
    for (int n = 0; n < samples; ++n) {
        const Currents currents = stepping.currentsAt(qDegreesToRadians((n + 0.5) * 360.0 / samples));
        int conducting = 0;
        for (std::size_t phase = 0; phase < 3; ++phase) {
            ASSERT_TRUE(std::abs(std::abs(currents[phase]) - 10.0) < 1e-12 || currents[phase] == 0.0) << currents[phase];
            positive[phase] += currents[phase] > 0.0;
            negative[phase] += currents[phase] < 0.0;
            conducting += currents[phase] != 0.0;
            squares += currents[phase] * currents[phase] / (3.0 * samples);
        }
        EXPECT_EQ(conducting, 2);
        EXPECT_EQ(currents[0] + currents[1] + currents[2], 0.0);
    }
    EXPECT_EQ(positive, (std::array<int, 3>{samples / 3, samples / 3, samples / 3}));
    EXPECT_EQ(negative, positive);
    EXPECT_NEAR(std::sqrt(squares), stepping.phaseCurrent(), 1e-12);
}

TEST(SliceModels, MachineTakesTheLayoutsInSeriesAndTheIronLossData)
{
    SlotlessExchange exchange(stiffH, stiffB);
    std::map<QString, MatValue> &windings = exchange.data.windings.elements.front();
    std::map<QString, MatValue> &materials = exchange.data.materials.elements.front();
    EXPECT_EQ(readMachine(exchange.data, true).windingsInSeries, 1);
    for (const auto &[connection, inSeries] : {std::pair("1-2-3", 3), std::pair("1||2||3", 1), std::pair("(1-2)||(3-4)", 2)}) {
        windings["statorconnection"] = mat_values::text(QString::fromLatin1(connection));
        EXPECT_EQ(readMachine(exchange.data, true).windingsInSeries, inSeries) << connection;
    }

    materials["statorironmaterial"] = mat_values::text(QStringLiteral("Steel"));
    materials["statorironLoss"] = mat_values::matrix(1, 4, {0.02, 5e-5, 1.1, 1.9});
    materials["k_st_stator"] = mat_values::number(0.95);
    EXPECT_FALSE(readMachine(exchange.data, true).statorIron.coefficients) << "no mass density";
    materials["statorironDensity"] = mat_values::number(7650.0);
    const MachineData machine = readMachine(exchange.data, true);
    ASSERT_TRUE(machine.statorIron.coefficients);
    EXPECT_EQ(machine.statorIron.coefficients->b, 1.9);
    EXPECT_EQ(machine.statorIron.massDensity, 7650.0);
    EXPECT_EQ(machine.statorIron.stacking, 0.95);
    EXPECT_EQ(machine.statorIron.material, QStringLiteral("Steel"));
    EXPECT_FALSE(machine.rotorIron.coefficients);

    // The rotor's and the stator's iron elements apart, and no other.
    const SliceModel slice = readSlices(exchange.data, machine).front();
    int rotor = 0;
    int stator = 0;
    for (const int e : slice.ironElements) {
        const IronPart part = slice.regionIron[std::size_t(slice.base.mesh.triangles[std::size_t(e)].region)];
        rotor += part == IronPart::Rotor;
        stator += part == IronPart::Stator;
    }
    EXPECT_GT(rotor, 0);
    EXPECT_GT(stator, 0);
    EXPECT_EQ(rotor + stator, int(slice.ironElements.size()));
    int iron = 0;
    for (const solver::Triangle &triangle : slice.base.mesh.triangles)
        iron += triangle.region == 1 || triangle.region == 3;
    EXPECT_EQ(iron, int(slice.ironElements.size()));
}

// RMS current density: the phase current of a delta winding (the supply's over sqrt 3)
// shared by two parallel paths of three strands of 0.8 mm: 10 / sqrt(3) / (6 pi 0.16) A/mm^2.
TEST(SliceModels, CurrentDensityIsThePhaseCurrentOverTheCopperOfItsStrands)
{
    SlotlessExchange exchange(stiffH, stiffB);
    std::map<QString, MatValue> &windings = exchange.data.windings.elements.front();
    windings["Npp"] = mat_values::number(2);
    windings["nstrands"] = mat_values::number(3);
    windings["statorcircuit"] = mat_values::text("DeltaConnection");
    RunSettings run = settings(true);
    run.currentMethod = QStringLiteral("RMS supply current");
    run.current = 10.0;
    const auto density = [&]() {
        const MachineData machine = readMachine(exchange.data, true);
        return resultsOf(TimeStepping(readSlices(exchange.data, machine), machine, run)).field("CurrentDensity", "Results");
    };
    EXPECT_EQ(density().text, QStringLiteral("not computed")) << "no strand diameter";
    windings["strandDiameter"] = mat_values::number(0.8);
    EXPECT_NEAR(density().number("CurrentDensity"), 1.9143364424, 1e-9);
}

// At no load the magnet's flux crosses the air of gap and coil, g: B = Br hm / (hm + mu_r g),
// and in the magnet H = (B - Br) / (mu0 mu_r) = -Br g / (mu0 (hm + mu_r g)), along the
// whole middle of the pole. At the pole's edges, where the magnets of the model and of
// its image meet, B across them falls towards nothing: there H opposes the magnetisation
// more, yet in a linear magnet never beyond Br / (mu0 mu_r).
TEST(SliceModels, DemagnetisingFieldOfASlotlessMagnetFollowsItsMagneticCircuit)
{
    SlotlessExchange exchange(stiffH, stiffB);
    std::map<QString, MatValue> &materials = exchange.data.materials.elements.front();
    // 1 MA/m at 20 C, 0.5 %/K less: 0.8 MA/m at 60 C.
    materials["magnetHcj"] = mat_values::number(1.0e6);
    materials["magnetAlphaHcj"] = mat_values::number(-0.005);
    materials["Tpm"] = mat_values::number(60.0);
    const MachineData machine = readMachine(exchange.data, true);
    const std::vector<SliceModel> slices = readSlices(exchange.data, machine);
    const SliceModel &slice = slices.front();
    ASSERT_FALSE(slice.magnetElements.empty());
    TimeStepping stepping(slices, machine, settings(true));
    stepping.run([](const QString &) {});
    ASSERT_EQ(stepping.positions().size(), 1u);
    const std::vector<double> &field = stepping.positions().front().demagnetisingField.front();
    ASSERT_EQ(field.size(), slice.magnetElements.size());

    const double mu0 = 4e-7 * M_PI;
    const double air = SlotlessExchange::gap + SlotlessExchange::coil;
    const double circuit = SlotlessExchange::remanence * air / (mu0 * (SlotlessExchange::magnet + SlotlessExchange::recoil * air));
    const double shorted = SlotlessExchange::remanence / (mu0 * SlotlessExchange::recoil);
    int middle = 0;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const solver::Triangle &triangle = slice.base.mesh.triangles[std::size_t(slice.magnetElements[i])];
        double x = 0.0;
        for (const int node : triangle.nodes)
            x += slice.base.mesh.nodes[std::size_t(node)].x() / 3.0;
        if (std::abs(x - SlotlessExchange::width() / 2.0) < SlotlessExchange::width() / 20.0) {
            EXPECT_NEAR(field[i], circuit, 0.005 * circuit) << "at x = " << x;
            ++middle;
        }
    }
    EXPECT_GT(middle, 0);

    const MatValue results = resultsOf(stepping);
    const double largest = results.field("DemagH_max", "Results").number("DemagH_max");
    EXPECT_EQ(largest, *std::max_element(field.begin(), field.end()));
    EXPECT_GT(largest, 1.05 * circuit) << "the edges";
    EXPECT_LT(largest, shorted);
    EXPECT_NEAR(results.field("DemagHpercent_max", "Results").number("DemagHpercent_max"), 100.0 * largest / 0.8e6, 1e-9);
}

namespace {

// The time-stepping rows of a run as plain values.
MatValue timesteppingOf(const TimeStepping &stepping)
{
    matvar_t *data = stepping.timesteppingData();
    const MatValue value = MatValue::from(data);
    mat::release(data);
    return value;
}

} // namespace

// Two rotors about one stator: each magnet pulls its rotor to the stator by the stress
// B^2 / (2 mu0) over the ring's area of the gap, B that of one magnet's circuit, and
// the stator, pulled both ways alike, feels nothing. The machine type names them from
// the bottom up; a type that does not fit the gaps names none.
TEST(SliceModels, NormalForcesAreNamedForEachBodyOfTheMachine)
{
    SlotlessExchange exchange(stiffH, stiffB, 80, SlotlessExchange::TwoRotors);
    const MachineData machine = readMachine(exchange.data, true);
    const std::vector<SliceModel> slices = readSlices(exchange.data, machine);
    ASSERT_EQ(slices.front().bands.size(), 2u);
    TimeStepping stepping(slices, machine, settings(true));
    stepping.run([](const QString &) {});
    const MatValue data = timesteppingOf(stepping);
    const auto force = [&](const char *name) { return data.field(QString::fromLatin1(name), "Timesteppingdata").numbers.at(0); };
    const double b = SlotlessExchange::gapFluxDensity();
    const double pull = b * b / (2.0 * 4e-7 * M_PI) * 2.0 * M_PI * SlotlessExchange::radius * SlotlessExchange::length;
    EXPECT_NEAR(force("Fn_rotor1"), pull, 0.1 * pull);
    EXPECT_NEAR(force("Fn_rotor2"), -force("Fn_rotor1"), 1e-3 * pull);
    EXPECT_NEAR(force("Fn_stator"), 0.0, 1e-3 * pull);
    EXPECT_EQ(data.findField("Fn_rotor"), nullptr);

    exchange.field(exchange.data.geometry, "motortype") = mat_values::text("stator-rotor-stator");
    const MachineData unfit = readMachine(exchange.data, true);
    TimeStepping wrong(readSlices(exchange.data, unfit), unfit, settings(true));
    wrong.run([](const QString &) {});
    const MatValue unnamed = timesteppingOf(wrong);
    EXPECT_EQ(unnamed.field("Fn_rotor", "Timesteppingdata").text, QStringLiteral("not computed"));
    EXPECT_EQ(unnamed.field("Fn_stator", "Timesteppingdata").text, QStringLiteral("not computed"));
    EXPECT_EQ(unnamed.findField("Fn_rotor1"), nullptr);
}

// Two rotors about one stator, images of each other across it: the coil's field
// sweeps both rotors' magnets alike, and the results give the loss of each, from the
// bottom up, which make up the whole. The rotors hold nothing but magnets and iron: no
// other eddy losses in either. A machine type that does not fit the gaps names no rotor.
TEST(SliceModels, MagnetLossesAreGivenForEachRotor)
{
    SlotlessExchange exchange(stiffH, stiffB, 80, SlotlessExchange::TwoRotors);
    exchange.field(exchange.data.materials, "magnetResistivity") = mat_values::number(1.5e-6);
    RunSettings run = settings(true);
    // The pulsating field of the single phase sweeps the magnets at twice the
    // frequency, which four positions would sample at its nodes.
    run.points = 6;
    run.current = 10.0;
    const auto resultsFor = [&]() {
        const MachineData machine = readMachine(exchange.data, true);
        TimeStepping stepping(readSlices(exchange.data, machine), machine, run);
        stepping.run([](const QString &) {});
        return resultsOf(stepping);
    };
    const MatValue results = resultsFor();
    const double total = results.field("magnetloss_rotor", "Results").number("magnetloss_rotor");
    const MatValue &perRotor = results.field("MagnetLoss", "Results");
    ASSERT_EQ(perRotor.kind, MatValue::Cell);
    ASSERT_EQ(perRotor.items.size(), 2u);
    const double bottom = perRotor.items[0].number("MagnetLoss");
    const double top = perRotor.items[1].number("MagnetLoss");
    EXPECT_GT(bottom, 0.0);
    EXPECT_NEAR(top / bottom, 1.0, 1e-3);
    EXPECT_NEAR(bottom + top, total, 1e-12 * total);
    EXPECT_EQ(results.field("otherECloss_rotor", "Results").number("otherECloss_rotor"), 0.0);
    const MatValue &other = results.field("OtherECloss", "Results");
    ASSERT_EQ(other.items.size(), 2u);
    for (const MatValue &rotor : other.items)
        EXPECT_EQ(rotor.number("OtherECloss"), 0.0);

    exchange.field(exchange.data.geometry, "motortype") = mat_values::text("stator-rotor-stator");
    const MatValue unnamed = resultsFor();
    EXPECT_NEAR(unnamed.field("magnetloss_rotor", "Results").number("magnetloss_rotor"), total, 1e-12 * total);
    EXPECT_EQ(unnamed.findField("MagnetLoss"), nullptr);
    EXPECT_EQ(unnamed.findField("OtherECloss"), nullptr);
    EXPECT_EQ(unnamed.field("otherECloss_rotor", "Results").number("otherECloss_rotor"), 0.0);
}

// Without magnets there is no magnet loss and no field against a magnetisation.
TEST(SliceModels, MachineWithoutMagnetsLosesNothingInThem)
{
    SlotlessExchange exchange(stiffH, stiffB);
    exchange.field(exchange.data.subdomains, "MaterialType").items[0].items[1] = mat_values::text("General");
    const MachineData machine = readMachine(exchange.data, true);
    RunSettings run = settings(true);
    run.points = 4;
    run.current = 10.0;
    TimeStepping stepping(readSlices(exchange.data, machine), machine, run);
    stepping.run([](const QString &) {});
    ASSERT_TRUE(stepping.magnetLosses());
    EXPECT_EQ(*stepping.magnetLosses(), std::vector<double>(4, 0.0));
    const MatValue results = resultsOf(stepping);
    EXPECT_EQ(results.field("magnetloss_rotor", "Results").number("magnetloss_rotor"), 0.0);
    ASSERT_EQ(results.field("MagnetLoss", "Results").items.size(), 1u);
    EXPECT_EQ(results.field("MagnetLoss", "Results").items.front().number("MagnetLoss"), 0.0);
    EXPECT_EQ(results.field("DemagH_max", "Results").text, QStringLiteral("not computed"));
}

// A run with 120-degree blocks of 10 A: two phases conduct at every position, so the
// copper loses 2 R I^2 throughout, the 3 R I_rms^2 of the RMS current I sqrt(2/3); the
// d-q currents are those of the fundamental, 2 sqrt(3) / pi of the block, on the q-axis.
TEST(SliceModels, TrapezoidalRunLosesTheCopperLossOfItsTrueRms)
{
    SlotlessExchange exchange(stiffH, stiffB);
    MachineData machine = readMachine(exchange.data, true);
    machine.phaseResistance = 0.5;
    RunSettings run = settings(true);
    run.points = 6;
    run.waveform = Waveform::Trapezoidal;
    run.currentMethod = QStringLiteral("Peak supply current");
    run.current = 10.0;
    TimeStepping stepping(readSlices(exchange.data, machine), machine, run);
    QStringList messages;
    stepping.run([&](const QString &text) { messages << text; });

    const MatValue data = timesteppingOf(stepping);
    const auto row = [&](const char *name) { return data.field(QString::fromLatin1(name), "Timesteppingdata").numbers; };
    const std::vector<double> a = row("Ia");
    const std::vector<double> b = row("Ib");
    const std::vector<double> c = row("Ic");
    const std::vector<double> copper = row("Ps");
    ASSERT_EQ(a.size(), 6u);
    for (std::size_t k = 0; k < a.size(); ++k) {
        EXPECT_EQ(a[k] + b[k] + c[k], 0.0) << "position " << k;
        EXPECT_NEAR(copper[k], 2.0 * 0.5 * 10.0 * 10.0, 1e-9) << "position " << k;
    }
    const MatValue results = resultsOf(stepping);
    const auto number = [&](const char *name) { return results.field(QString::fromLatin1(name), "Results").number(name); };
    EXPECT_NEAR(number("Ps"), 3.0 * 0.5 * 10.0 * 10.0 * 2.0 / 3.0, 1e-9);
    EXPECT_NEAR(results.field("Is", "Results").numbers.at(1), 10.0 * std::sqrt(2.0 / 3.0), 1e-12);
    EXPECT_NEAR(number("Iq"), 2.0 * std::sqrt(3.0) / M_PI * 10.0, 1e-12);
    EXPECT_NEAR(number("Id"), 0.0, 1e-12);
    EXPECT_EQ(results.field("Ld", "Results").text, QStringLiteral("not computed"));
    EXPECT_EQ(results.field("Lq", "Results").text, QStringLiteral("not computed"));
    EXPECT_EQ(messages.filter(QStringLiteral("Ld and Lq are not computed")).size(), 1) << messages.join('\n').toStdString();
}
