#include "solver/MCRCtrl/TimeStepping.h"

#include "solver/MCRCtrl/Harmonics.h"
#include "solver/MCRCtrl/MagnetLoss.h"
#include "solver/MCRCtrl/SliceTopology.h"

#include "solver/AirGapForce.h"
#include "solver/FieldSolution.h"
#include "solver/FluxLinkage.h"
#include "solver/MagnetostaticSolver.h"

#include <QtMath>
#include <algorithm>
#include <cmath>
#include <mutex>
#include <numeric>
#include "base/Tbb.h"

namespace mcrctrl {

namespace {

const QString notComputed = QStringLiteral("not computed");

QString textOf(const MatValue *value)
{
    return value && value->kind == MatValue::Text ? value->text : QString();
}

double numberOf(const MatValue &settings, const char *name, double fallback)
{
    const MatValue *value = settings.findField(QString::fromLatin1(name));
    return value && value->kind == MatValue::Numbers && value->numbers.size() == 1 ? value->numbers.front() : fallback;
}

double mean(const std::vector<double> &values)
{
    return values.empty() ? 0.0 : std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

// The angle of the space vector of three phase values (amplitude-invariant Clarke).
std::pair<double, double> spaceVector(const std::array<double, 3> &abc)
{
    const double alpha = (2.0 * abc[0] - abc[1] - abc[2]) / 3.0;
    const double beta = (abc[1] - abc[2]) / std::sqrt(3.0);
    return {alpha, beta};
}

double wrapped(double angle)
{
    return std::remainder(angle, 2.0 * M_PI);
}

// 120-degree conduction: each phase at +peak over the 120 degrees about its positive peak,
// 0 over the next 60, -peak over 120 and 0 over 60, so that two phases conduct at a time.
// The sixth of the period that phase A is in places all three, which keeps their sum at
// zero at the edges of the blocks too.
std::array<double, 3> blockCurrents(double phasor, double peak)
{
    static const std::array<double, 6> level{1.0, 1.0, 0.0, -1.0, -1.0, 0.0};
    // Sixths of the period from 60 degrees before phase A's positive peak.
    const long sixths = long(std::floor((phasor + M_PI / 3.0) / (M_PI / 3.0)));
    const std::size_t sector = std::size_t((sixths % 6 + 6) % 6);
    // Phase B lags phase A by two sixths, phase C leads it by two.
    return {peak * level[sector], peak * level[(sector + 4) % 6], peak * level[(sector + 2) % 6]};
}

// Gap g lies between the bodies g and g + 1 of the stack: the one on its rotor's side.
std::size_t rotorSide(const std::vector<GapBand> &bands, std::size_t g)
{
    return bands[g].rotorAbove ? g + 1 : g;
}

// The rotor of the stack, numbered from the bottom, that holds each magnet element of a
// slice: the one behind the gap whose rotor's row is in the element's piece of mesh;
// -1 for a magnet in none.
std::vector<int> magnetRotors(const SliceModel &slice, const std::vector<Body> &bodies)
{
    std::vector<int> rotors(slice.magnetElements.size(), -1);
    if (bodies.empty())
        return rotors;
    for (std::size_t g = 0; g < slice.bands.size(); ++g) {
        const auto body = bodies.begin() + std::ptrdiff_t(rotorSide(slice.bands, g));
        const int rotor = int(std::count(bodies.begin(), body, Body::Rotor));
        const std::vector<char> held = partsHolding(slice.base.mesh, slice.bands[g].rotorRow);
        for (std::size_t i = 0; i < rotors.size(); ++i) {
            const solver::Triangle &triangle = slice.base.mesh.triangles[std::size_t(slice.magnetElements[i])];
            if (held[std::size_t(triangle.nodes[0])])
                rotors[i] = rotor;
        }
    }
    return rotors;
}

using Fields = std::vector<std::pair<QString, matvar_t *>>;

// A cell of numbers: the program reads a row of a single number as that number, and
// these stay lists however short.
matvar_t *numberList(const std::vector<double> &values)
{
    std::vector<matvar_t *> items;
    for (const double value : values)
        items.push_back(mat::number(QString(), value));
    return mat::cell(QString(), items);
}

void writeIronLosses(Fields &fields, const std::optional<IronLosses> &losses, const QString &note)
{
    const auto number = [&](const char *name, double value) { fields.emplace_back(QString::fromLatin1(name), mat::number(QString(), value)); };
    fields.emplace_back(QStringLiteral("Piron_tooltip"), mat::text(QString(), note));
    if (!losses) {
        for (const char *name : {"Piron", "Piron_eddy", "Piron_hyst"})
            fields.emplace_back(QString::fromLatin1(name), mat::text(QString(), notComputed));
        return;
    }
    const LossParts total = losses->total();
    number("Piron", total.total());
    number("Piron_eddy", total.eddy);
    number("Piron_hyst", total.hysteresis);
    number("Piron_hyst_stator", losses->stator.hysteresis);
    number("Piron_hyst_rotor", losses->rotor.hysteresis);
    number("Piron_eddy_stator", losses->stator.eddy);
    number("Piron_eddy_rotor", losses->rotor.eddy);
}

// Output over input power, motoring or generating, with the losses that are known.
void writeEfficiency(Fields &fields, double mechanical, double copper, const std::optional<IronLosses> &iron,
                     const std::optional<double> &magnets)
{
    if (mechanical == 0.0) {
        fields.emplace_back(QStringLiteral("Efficiency"), mat::text(QString(), notComputed));
        return;
    }
    const double losses = copper + (iron ? iron->total().total() : 0.0) + magnets.value_or(0.0);
    const double efficiency = mechanical > 0.0 ? mechanical / (mechanical + losses) : (-mechanical - losses) / -mechanical;
    fields.emplace_back(QStringLiteral("Efficiency"), mat::number(QString(), 100.0 * efficiency));
    QString tip = mechanical > 0.0 ? QStringLiteral("Motoring: mechanical output power over itself plus the losses.\n")
                                   : QStringLiteral("Generating: mechanical input power less the losses over itself.\n");
    tip += QStringLiteral("Losses included: stator winding %1 W").arg(copper, 0, 'g', 4);
    tip += iron ? QStringLiteral(", iron core %1 W").arg(iron->total().total(), 0, 'g', 4)
                : QStringLiteral(" (the iron core loss is not computed)");
    tip += magnets ? QStringLiteral(", magnet eddy currents %1 W").arg(*magnets, 0, 'g', 4)
                   : QStringLiteral(" (the magnet loss is not computed)");
    tip += QStringLiteral(".\nNot included: friction and windage; other eddy current losses are none, as the rotors hold "
                          "only magnets and iron, whose eddy currents are part of the iron core loss.");
    fields.emplace_back(QStringLiteral("Efficiency_tooltip"), mat::text(QString(), tip));
}

} // namespace

RunSettings RunSettings::from(const MatValue &settings)
{
    RunSettings run;
    run.linear = textOf(settings.findField(QStringLiteral("MS_solvertype"))) == QLatin1String("Linear");
    run.tolerance = numberOf(settings, "MS_tol", 1e-3);
    run.points = std::max(1, int(std::lround(numberOf(settings, "MS_npoints", 1.0))));
    run.speed = numberOf(settings, "MS_speed", 1000.0);
    run.advanceAngle = numberOf(settings, "MS_gamma", 0.0);
    // Settings that name no waveform are those of a sinusoidal supply.
    const QString waveform = textOf(settings.findField(QStringLiteral("MS_currentwaveform")));
    if (waveform == QLatin1String("Trapezoidal"))
        run.waveform = Waveform::Trapezoidal;
    else if (!waveform.isEmpty() && waveform != QLatin1String("Sinusoidal"))
        throw StepError(QStringLiteral("The current waveform '%1' is not supported by this solver").arg(waveform));
    run.currentMethod = textOf(settings.findField(QStringLiteral("MS_currentinputmethod")));
    run.current = numberOf(settings, "MS_I", 0.0);
    run.definedPeriod = textOf(settings.findField(QStringLiteral("MS_timeselection"))) == QLatin1String("Define time period");
    run.coggingTorque = numberOf(settings, "MS_coggingtorque", 0.0) != 0.0;
    run.timeFrom = numberOf(settings, "MS_timefrom", 0.0);
    run.timeTo = numberOf(settings, "MS_timeto", 1.0);
    if (!(run.tolerance > 0.0))
        throw StepError(QStringLiteral("The convergence tolerance must be above 0"));
    if (!(run.speed > 0.0))
        throw StepError(QStringLiteral("The mechanical speed must be above 0"));
    return run;
}

TimeStepping::TimeStepping(std::vector<SliceModel> slices, MachineData machine, RunSettings settings)
    : m_slices(std::move(slices))
    , m_machine(machine)
    , m_settings(std::move(settings))
{
}

double TimeStepping::mechanicalSpeed() const
{
    return 2.0 * M_PI * m_settings.speed / 60.0;
}

double TimeStepping::electricalFrequency() const
{
    return m_machine.polePairs * m_settings.speed / 60.0;
}

double TimeStepping::crestFactor() const
{
    // A block of height I over two thirds of the period has an RMS of I sqrt(2/3).
    return m_settings.waveform == Waveform::Trapezoidal ? std::sqrt(1.5) : std::sqrt(2.0);
}

double TimeStepping::fundamentalPeak() const
{
    const double peak = crestFactor() * phaseCurrent();
    return m_settings.waveform == Waveform::Trapezoidal ? 2.0 * std::sqrt(3.0) / M_PI * peak : peak;
}

double TimeStepping::phaseCurrent() const
{
    const QString &method = m_settings.currentMethod;
    // The phase currents of a delta that is fed 120-degree blocks from the lines are
    // steps of a third and two thirds of the block, no blocks themselves.
    if (m_settings.waveform == Waveform::Trapezoidal && m_machine.delta)
        throw StepError(QStringLiteral("The trapezoidal current waveform needs a star-connected winding: in delta, "
                                       "120-degree blocks of the supply currents do not make blocks of the phase currents"));
    const double lineToPhase = m_machine.delta ? 1.0 / std::sqrt(3.0) : 1.0;
    if (method == QLatin1String("RMS phase current"))
        return m_settings.current;
    if (method == QLatin1String("RMS supply current"))
        return m_settings.current * lineToPhase;
    if (method == QLatin1String("Peak supply current"))
        return m_settings.current / crestFactor() * lineToPhase;
    if (method == QLatin1String("RMS current density")) {
        // The density is that of the conductors themselves, whatever the connection.
        const std::optional<double> area = conductorArea();
        if (!area)
            throw StepError(QStringLiteral("The current input method 'RMS current density' needs the diameter of the winding's "
                                           "strands, and the winding gives none: choose its wire, or give the current"));
        return m_settings.current * *area;
    }
    if (method == QLatin1String("DC supply current")) {
        if (m_settings.waveform != Waveform::Trapezoidal)
            throw StepError(QStringLiteral("The current input method 'DC supply current' needs the trapezoidal current waveform: "
                                           "a DC supply current gives a sinusoidal phase current only through the inverter's "
                                           "modulation, which this solver does not know"));
        // With 120-degree conduction the DC link current flows through two phases at a time.
        return m_settings.current / crestFactor();
    }
    throw StepError(QStringLiteral("The current input method '%1' is not supported by this solver").arg(method));
}

// Each parallel path carries its share of the phase current, split among its strands.
std::optional<double> TimeStepping::conductorArea() const
{
    const double diameter = m_machine.strandDiameter;
    if (!(diameter > 0.0))
        return std::nullopt;
    return m_machine.parallelPaths * m_machine.strands * M_PI * diameter * diameter / 4.0;
}

std::optional<double> TimeStepping::currentDensity() const
{
    const std::optional<double> area = conductorArea();
    if (!area)
        return std::nullopt;
    return phaseCurrent() / *area;
}

std::array<double, 3> TimeStepping::currentsAt(double electricalAngle) const
{
    const double peak = crestFactor() * phaseCurrent();
    const double phasor = electricalAngle + m_rotation * (M_PI / 2.0 + qDegreesToRadians(m_settings.advanceAngle));
    if (m_settings.waveform == Waveform::Trapezoidal)
        return blockCurrents(phasor, peak);
    return {peak * std::cos(phasor), peak * std::cos(phasor - 2.0 * M_PI / 3.0), peak * std::cos(phasor + 2.0 * M_PI / 3.0)};
}

SliceAnswer SliceAnswer::blend(const SliceAnswer &a, const SliceAnswer &b, double share)
{
    if (!a.converged)
        return a;
    if (!b.converged)
        return b;
    const auto mix = [share](double x, double y) { return x + share * (y - x); };
    SliceAnswer result = a;
    for (std::size_t phase = 0; phase < 3; ++phase)
        result.flux[phase] = mix(a.flux[phase], b.flux[phase]);
    for (std::size_t g = 0; g < result.torque.size(); ++g) {
        result.torque[g] = mix(a.torque[g], b.torque[g]);
        result.normal[g] = mix(a.normal[g], b.normal[g]);
    }
    result.coenergy = mix(a.coenergy, b.coenergy);
    result.discretisation = {mix(a.discretisation.error, b.discretisation.error),
                             mix(a.discretisation.energy, b.discretisation.energy)};
    result.bandArea = mix(a.bandArea, b.bandArea);
    result.bandIntegral = mix(a.bandIntegral, b.bandIntegral);
    result.bandMax = std::max(a.bandMax, b.bandMax);
    for (std::size_t e = 0; e < result.ironField.size(); ++e)
        result.ironField[e] = a.ironField[e] + share * (b.ironField[e] - a.ironField[e]);
    for (std::size_t e = 0; e < result.demagnetisingField.size(); ++e) {
        result.demagnetisingField[e] = mix(a.demagnetisingField[e], b.demagnetisingField[e]);
        result.magnetPotential[e] = mix(a.magnetPotential[e], b.magnetPotential[e]);
    }
    return result;
}

SliceAnswer TimeStepping::solveSlice(const SliceModel &slice, double shift, const std::array<double, 3> &currents,
                                     double tolerance, const Eigen::VectorXd &guess) const
{
    SliceAnswer answer;
    const solver::SolverSettings settings{m_machine.linear, tolerance, m_settings.maxIterations};
    const solver::Problem problem = slice.problemAt(shift, currents);
    const solver::MagnetostaticSolver solver(problem, settings);
    const solver::Solution solution = guess.size() > 0 ? solver.solveFrom(guess) : solver.solve();
    answer.converged = solution.converged;
    answer.residual = solution.residual;
    if (!solution.converged)
        return answer;
    answer.potential = solution.potential.head(Eigen::Index(slice.base.mesh.nodes.size()));
    const solver::FieldSolution field(problem, solution.potential, m_machine.linear);
    const double depth = slice.length * slice.copies();
    answer.coenergy = field.coenergy() * depth;
    const solver::DiscretisationError discretisation = solver::discretisationError(field);
    answer.discretisation = {discretisation.error * depth, discretisation.energy * depth};
    for (const GapBand &band : slice.bands) {
        const Eigen::Vector2d force = solver::recutBandForce(field, {band.region}, band.height);
        const double sense = band.rotorAbove ? 1.0 : -1.0;
        answer.torque.push_back(sense * force.x() * depth * slice.radius);
        answer.normal.push_back(sense * force.y() * depth);
    }
    for (int phase = 0; phase < 3; ++phase) {
        std::vector<solver::CoilSide> sides;
        for (const PhaseSide &side : slice.sides) {
            if (side.phase == phase)
                sides.push_back({side.region, side.sign});
        }
        answer.flux[std::size_t(phase)] = solver::fluxLinkage(field, sides, slice.turnsPerCoil) * depth;
    }
    answer.ironField.reserve(slice.ironElements.size());
    for (const int e : slice.ironElements)
        answer.ironField.push_back(field.fluxDensity(e));
    answer.demagnetisingField.reserve(slice.magnetElements.size());
    answer.magnetPotential.reserve(slice.magnetElements.size());
    for (const int e : slice.magnetElements) {
        const Eigen::Vector2d magnetisation = problem.remanence[std::size_t(e)].normalized();
        answer.demagnetisingField.push_back(-field.fieldStrength(e).dot(magnetisation));
        answer.magnetPotential.push_back(field.potentialIntegral(e) / field.area(e));
    }
    for (std::size_t e = 0; e < problem.mesh.triangles.size(); ++e) {
        const int region = problem.mesh.triangles[e].region;
        if (std::none_of(slice.bands.begin(), slice.bands.end(), [region](const GapBand &band) { return band.region == region; }))
            continue;
        const double b = field.fluxDensity(int(e)).norm();
        answer.bandArea += field.area(int(e)) * slice.length;
        answer.bandIntegral += b * field.area(int(e)) * slice.length;
        answer.bandMax = std::max(answer.bandMax, b);
    }
    return answer;
}

SliceAnswer TimeStepping::answerAt(const SliceModel &slice, double angle, const std::array<double, 3> &currents,
                                   bool virtualWork) const
{
    // The band is cut well only where the rows stand in line: between two such shifts
    // the answers are interpolated. Rows out of line are solved where they stand, and
    // moved by their mean spacing for the virtual work.
    const double shift = angle * slice.radius;
    const double segment = slice.bandSegment();
    const double step = segment > 0.0 ? segment : slice.width / double(slice.bands.front().statorRow.size() - 1);
    const double origin = segment > 0.0 ? -slice.bandOffset() : shift;
    const double steps = segment > 0.0 ? (shift - origin) / step : 0.0;
    const double lower = std::floor(steps + 1e-9);
    const double share = steps - lower;
    const bool between = share >= 1e-9;

    // At fixed currents the co-energy rises by the work that the field does on the
    // rotor: T = r dW'/dx, by central differences over the neighbouring in-line shifts,
    // and between two of them interpolated as the other answers are. The magnets'
    // co-energy, the integral of B dH from H = 0, moves with them.
    const double first = virtualWork ? lower - 1.0 : lower;
    const double last = lower + (between ? 1.0 : 0.0) + (virtualWork ? 1.0 : 0.0);
    // The first shift at or below the angle is solved from the zero field; the others,
    // a band segment or two away, start from the answer of their neighbour towards it,
    // the rotor's potentials carried along with its nodes, and take a few steps. The
    // co-energy changes over a segment by the torque's small work, which the run's
    // tolerance would drown: its solves go a hundred times further.
    const double tolerance = virtualWork ? 1e-2 * m_settings.tolerance : m_settings.tolerance;
    const std::size_t at = virtualWork ? 1 : 0;
    std::vector<SliceAnswer> solved(std::size_t(std::lround(last - first)) + 1);
    solved[at] = solveSlice(slice, origin + lower * step, currents, tolerance);
    if (!solved[at].converged)
        return solved[at];
    for (std::size_t n = 0; n < solved.size(); ++n) {
        if (n == at)
            continue;
        solved[n] = solveSlice(slice, origin + (first + double(n)) * step, currents, tolerance,
                               solved[n < at ? at : n - 1].potential);
        if (!solved[n].converged)
            return solved[n];
    }
    SliceAnswer answer = between ? SliceAnswer::blend(solved[at], solved[at + 1], share) : solved[at];
    if (virtualWork) {
        const auto torqueAt = [&](std::size_t k) {
            return slice.radius * (solved[k + 1].coenergy - solved[k - 1].coenergy) / (2.0 * step);
        };
        answer.virtualWorkTorque = between ? (1.0 - share) * torqueAt(1) + share * torqueAt(2) : torqueAt(1);
    }
    return answer;
}

PositionResult TimeStepping::solveAt(double time, double angle, const std::array<double, 3> &currents, int position,
                                     bool virtualWork) const
{
    PositionResult result;
    result.time = time;
    result.currents = currents;
    const std::size_t gaps = m_slices.front().bands.size();
    result.gapTorque.assign(gaps, 0.0);
    result.gapNormalForce.assign(gaps, 0.0);

    std::vector<SliceAnswer> answers(m_slices.size());
    tbb::parallel_for(std::size_t(0), m_slices.size(),
                      [&](std::size_t s) { answers[s] = answerAt(m_slices[s], angle, currents, virtualWork); });

    double bandArea = 0.0;
    double bandIntegral = 0.0;
    solver::DiscretisationError discretisation;
    result.ironField.resize(answers.size());
    result.demagnetisingField.resize(answers.size());
    result.magnetPotential.resize(answers.size());
    for (std::size_t s = 0; s < answers.size(); ++s) {
        SliceAnswer &answer = answers[s];
        if (!answer.converged)
            throw StepError(QStringLiteral("The Newton iterations did not converge at position %1 (rotor at %2 deg) in slice %3: "
                                           "the residual stayed at %4")
                                .arg(position + 1)
                                .arg(qRadiansToDegrees(angle), 0, 'g', 6)
                                .arg(s + 1)
                                .arg(answer.residual, 0, 'g', 3));
        for (std::size_t g = 0; g < gaps && g < answer.torque.size(); ++g) {
            result.gapTorque[g] += answer.torque[g];
            result.gapNormalForce[g] += answer.normal[g];
        }
        for (std::size_t phase = 0; phase < 3; ++phase)
            result.fluxLinkage[phase] += answer.flux[phase];
        if (virtualWork)
            result.virtualWorkTorque = result.virtualWorkTorque.value_or(0.0) + answer.virtualWorkTorque;
        bandArea += answer.bandArea;
        bandIntegral += answer.bandIntegral;
        discretisation.error += answer.discretisation.error;
        discretisation.energy += answer.discretisation.energy;
        result.bandFluxDensityMax = std::max(result.bandFluxDensityMax, answer.bandMax);
        result.ironField[s] = std::move(answer.ironField);
        result.demagnetisingField[s] = std::move(answer.demagnetisingField);
        result.magnetPotential[s] = std::move(answer.magnetPotential);
    }
    result.torque = std::accumulate(result.gapTorque.begin(), result.gapTorque.end(), 0.0);
    result.bandFluxDensity = bandArea > 0.0 ? bandIntegral / bandArea : 0.0;
    result.discretisationError = discretisation.percent();
    return result;
}

void TimeStepping::alignAxes(const Progress &progress)
{
    const double step = M_PI / 4.0 / m_machine.polePairs;
    const PositionResult first = solveAt(0.0, 0.0, {0.0, 0.0, 0.0}, 0);
    const PositionResult second = solveAt(0.0, step, {0.0, 0.0, 0.0}, 0);
    const auto [alpha0, beta0] = spaceVector(first.fluxLinkage);
    const auto [alpha1, beta1] = spaceVector(second.fluxLinkage);
    m_magnetFlux = std::hypot(alpha0, beta0);
    if (m_magnetFlux <= 1e-12) {
        progress(QStringLiteral("No magnet flux links the winding: the d-axis is taken at phase A"));
        return;
    }
    m_dAxis = std::atan2(beta0, alpha0);
    m_rotation = wrapped(std::atan2(beta1, alpha1) - m_dAxis) >= 0.0 ? 1.0 : -1.0;
    progress(QStringLiteral("Magnet flux linkage %1 Wb, d-axis at %2 el. deg")
                 .arg(m_magnetFlux, 0, 'g', 5)
                 .arg(qRadiansToDegrees(m_dAxis), 0, 'f', 1));
}

void TimeStepping::findInductances()
{
    MachineData linear = m_machine;
    linear.linear = true;
    const TimeStepping unsaturated(m_slices, linear, m_settings);
    const PositionResult none = unsaturated.solveAt(0.0, 0.0, {0.0, 0.0, 0.0}, 0);
    const PositionResult inA = unsaturated.solveAt(0.0, 0.0, {1.0, 0.0, 0.0}, 0);
    m_selfInductance = inA.fluxLinkage[0] - none.fluxLinkage[0];
    m_mutualInductance = inA.fluxLinkage[1] - none.fluxLinkage[1];
}

void TimeStepping::run(const Progress &progress)
{
    if (m_slices.empty())
        throw StepError(QStringLiteral("There is no slice to solve"));
    phaseCurrent();
    if (m_settings.coggingTorque)
        progress(QStringLiteral("The cogging torque is not computed on its own: a run at zero current gives it"));
    if (!currentDensity())
        progress(QStringLiteral("The current density is not computed: the winding gives no strand diameter"));
    if (hasMagnets() && !m_machine.magnetCoercivity)
        progress(QStringLiteral("The demagnetising field is not computed as a share of the coercivity: the magnet's file gives none"));
    alignAxes(progress);
    findInductances();
    if (!m_machine.linear)
        progress(QStringLiteral("Lself and Lmutual are those of unsaturated iron"));
    if (m_settings.waveform == Waveform::Trapezoidal)
        progress(QStringLiteral("Ld and Lq are not computed for a trapezoidal current, whose d-q currents ripple with its "
                                "blocks; Id and Iq are those of its fundamental"));
    const int count = m_settings.points;
    const double period = 1.0 / electricalFrequency();
    m_positions.clear();
    for (int k = 0; k < count; ++k) {
        const double time = m_settings.definedPeriod
                                ? m_settings.timeFrom + (count > 1 ? k * (m_settings.timeTo - m_settings.timeFrom) / (count - 1) : 0.0)
                                : k * period / count;
        const double angle = mechanicalSpeed() * time;
        const double electrical = m_dAxis + m_rotation * m_machine.polePairs * angle;
        m_positions.push_back(solveAt(time, angle, currentsAt(electrical), k, true));
        progress(QStringLiteral("Position %1 of %2: torque %3 N m").arg(k + 1).arg(count).arg(m_positions.back().torque, 0, 'g', 6));
    }
    findIronLosses(progress);
    findMagnetLosses(progress);
}

LossParts TimeStepping::ironLossOf(const SliceModel &slice, std::size_t s, IronPart part, const IronLossSide &iron) const
{
    LossParts loss;
    std::vector<Eigen::Vector2d> samples(m_positions.size());
    const solver::TriangleMesh &mesh = slice.base.mesh;
    const double depth = slice.length * slice.copies();
    for (std::size_t i = 0; i < slice.ironElements.size(); ++i) {
        const solver::Triangle &triangle = mesh.triangles[std::size_t(slice.ironElements[i])];
        if (slice.regionIron[std::size_t(triangle.region)] != part)
            continue;
        // The steel of a laminated core carries the flux of the whole section.
        for (std::size_t k = 0; k < samples.size(); ++k)
            samples[k] = m_positions[k].ironField[s][i] / iron.stacking;
        const double mass = iron.massDensity * solver::ElementShape(mesh, triangle).area() * depth * iron.stacking;
        loss += specificLoss(samples, electricalFrequency(), *iron.coefficients) * mass;
    }
    return loss;
}

void TimeStepping::findIronLosses(const Progress &progress)
{
    m_ironLosses.reset();
    const auto notComputedFor = [&](const QString &reason) {
        m_ironLossNote = QStringLiteral("The iron losses are not computed: %1").arg(reason);
        progress(m_ironLossNote);
    };
    if (m_settings.definedPeriod || m_positions.size() < 4) {
        notComputedFor(QStringLiteral("they need at least 4 positions over one electrical period"));
        return;
    }
    const std::pair<IronPart, const IronLossSide *> parts[] = {{IronPart::Stator, &m_machine.statorIron},
                                                               {IronPart::Rotor, &m_machine.rotorIron}};
    for (const auto &[part, iron] : parts) {
        const bool used = std::any_of(m_slices.begin(), m_slices.end(), [part = part](const SliceModel &slice) {
            return std::find(slice.regionIron.begin(), slice.regionIron.end(), part) != slice.regionIron.end();
        });
        if (used && !iron->coefficients) {
            notComputedFor(QStringLiteral("the iron '%1' has no iron loss data or no mass density").arg(iron->material));
            return;
        }
    }
    // The stator's field repeats after one electrical period. The rotor's sees the slots
    // pass at a frequency that need not be a harmonic of f1, so its loss is an estimate.
    std::vector<IronLosses> perSlice(m_slices.size());
    tbb::parallel_for(std::size_t(0), m_slices.size(), [&](std::size_t s) {
        if (m_machine.statorIron.coefficients)
            perSlice[s].stator = ironLossOf(m_slices[s], s, IronPart::Stator, m_machine.statorIron);
        if (m_machine.rotorIron.coefficients)
            perSlice[s].rotor = ironLossOf(m_slices[s], s, IronPart::Rotor, m_machine.rotorIron);
    });
    IronLosses losses;
    for (const IronLosses &slice : perSlice) {
        losses.stator += slice.stator;
        losses.rotor += slice.rotor;
    }
    m_ironLosses = losses;
    m_ironLossNote = QStringLiteral("From the flux density of every iron element over one electrical period, harmonic by "
                                    "harmonic, with each iron's loss equation kh f^a B^b + ke (f B)^2");
    progress(QStringLiteral("Iron losses: stator %1 W, rotor %2 W").arg(losses.stator.total(), 0, 'g', 4).arg(losses.rotor.total(), 0, 'g', 4));
}

bool TimeStepping::hasMagnets() const
{
    return std::any_of(m_slices.begin(), m_slices.end(), [](const SliceModel &slice) { return !slice.magnetElements.empty(); });
}

void TimeStepping::findMagnetLosses(const Progress &progress)
{
    m_magnetLosses.reset();
    m_rotorMagnetLosses.reset();
    const std::vector<Body> bodies = stack();
    const std::size_t rotors = std::size_t(std::count(bodies.begin(), bodies.end(), Body::Rotor));
    if (!hasMagnets()) {
        m_magnetLosses = std::vector<double>(m_positions.size(), 0.0);
        if (rotors > 0)
            m_rotorMagnetLosses = std::vector<double>(rotors, 0.0);
        return;
    }
    const auto notComputedFor = [&](const QString &reason) {
        progress(QStringLiteral("The magnet losses are not computed: %1").arg(reason));
    };
    if (m_settings.definedPeriod || m_positions.size() < 4) {
        notComputedFor(QStringLiteral("they need at least 4 positions over one electrical period"));
        return;
    }
    if (!m_machine.magnetResistivity) {
        notComputedFor(QStringLiteral("the magnet's file gives no electric resistivity"));
        return;
    }
    // Each rotor's, and last those of magnets in no rotor of the stack.
    std::vector<std::vector<double>> losses(rotors + 1, std::vector<double>(m_positions.size(), 0.0));
    bool strays = false;
    for (std::size_t s = 0; s < m_slices.size(); ++s) {
        const SliceModel &slice = m_slices[s];
        const std::vector<int> rotorOf = magnetRotors(slice, bodies);
        std::vector<MagnetElements> groups(rotors + 1);
        for (std::size_t i = 0; i < slice.magnetElements.size(); ++i) {
            MagnetElements &elements = groups[rotorOf[i] < 0 ? rotors : std::size_t(rotorOf[i])];
            const solver::Triangle &triangle = slice.base.mesh.triangles[std::size_t(slice.magnetElements[i])];
            elements.area.push_back(solver::ElementShape(slice.base.mesh, triangle).area());
            elements.piece.push_back(triangle.region);
            std::vector<double> potential;
            for (const PositionResult &at : m_positions)
                potential.push_back(at.magnetPotential[s][i]);
            elements.potential.push_back(std::move(potential));
        }
        strays = strays || !groups[rotors].area.empty();
        const double depth = slice.length * slice.copies();
        for (std::size_t r = 0; r < groups.size(); ++r) {
            const std::vector<double> perDepth =
                magnetEddyLoss(groups[r], 1.0 / *m_machine.magnetResistivity, 1.0 / electricalFrequency());
            for (std::size_t k = 0; k < perDepth.size(); ++k)
                losses[r][k] += perDepth[k] * depth;
        }
    }
    std::vector<double> total(m_positions.size(), 0.0);
    for (const std::vector<double> &group : losses) {
        for (std::size_t k = 0; k < total.size(); ++k)
            total[k] += group[k];
    }
    m_magnetLosses = total;
    if (rotors > 0 && !strays) {
        std::vector<double> perRotor;
        for (std::size_t r = 0; r < rotors; ++r)
            perRotor.push_back(mean(losses[r]));
        m_rotorMagnetLosses = perRotor;
    }
    progress(QStringLiteral("Magnet eddy-current losses: %1 W, limited by the magnets' resistance").arg(mean(total), 0, 'g', 4));
}

IronFluxDensities TimeStepping::ironFluxDensities() const
{
    IronFluxDensities peaks;
    const auto raise = [](std::optional<double> &peak, double value) { peak = std::max(peak.value_or(0.0), value); };
    // Areas times depth of each slice's iron elements; the rotor's keep their shape as it moves.
    std::vector<std::vector<double>> volumes;
    for (const SliceModel &slice : m_slices) {
        std::vector<double> volume;
        for (const int e : slice.ironElements)
            volume.push_back(solver::ElementShape(slice.base.mesh, slice.base.mesh.triangles[std::size_t(e)]).area() * slice.length);
        volumes.push_back(std::move(volume));
    }
    for (const PositionResult &at : m_positions) {
        // Sums of |B| V and of V over the stator's and the rotor's back iron.
        std::array<double, 2> backIronField{};
        std::array<double, 2> backIron{};
        for (std::size_t s = 0; s < m_slices.size(); ++s) {
            const SliceModel &slice = m_slices[s];
            std::vector<double> toothField;
            std::vector<double> tooth;
            for (std::size_t i = 0; i < slice.ironElements.size(); ++i) {
                const IronZone zone = slice.ironZones[i];
                // The steel of a laminated core carries the flux of the whole section.
                const double stacking = zone == IronZone::RotorBackIron ? m_machine.rotorIron.stacking : m_machine.statorIron.stacking;
                const double b = at.ironField[s][i].norm() / stacking;
                const double volume = volumes[s][i];
                if (zone == IronZone::Tooth) {
                    const std::size_t number = std::size_t(slice.teeth[i]);
                    toothField.resize(std::max(toothField.size(), number + 1), 0.0);
                    tooth.resize(toothField.size(), 0.0);
                    toothField[number] += b * volume;
                    tooth[number] += volume;
                } else if (zone != IronZone::Other) {
                    const std::size_t part = zone == IronZone::StatorBackIron ? 0 : 1;
                    backIronField[part] += b * volume;
                    backIron[part] += volume;
                }
            }
            for (std::size_t number = 0; number < tooth.size(); ++number) {
                if (tooth[number] > 0.0)
                    raise(peaks.tooth, toothField[number] / tooth[number]);
            }
        }
        if (backIron[0] > 0.0)
            raise(peaks.statorBackIron, backIronField[0] / backIron[0]);
        if (backIron[1] > 0.0)
            raise(peaks.rotorBackIron, backIronField[1] / backIron[1]);
    }
    return peaks;
}

std::optional<double> TimeStepping::demagnetisingField() const
{
    std::optional<double> largest;
    for (const PositionResult &at : m_positions) {
        for (const std::vector<double> &slice : at.demagnetisingField) {
            for (const double field : slice)
                largest = std::max(largest.value_or(0.0), field);
        }
    }
    return largest;
}

std::vector<std::array<double, 3>> TimeStepping::backEmf() const
{
    const std::size_t count = m_positions.size();
    std::vector<std::array<double, 3>> emf;
    if (count < 3)
        return emf;
    // Positions at equal steps over one electrical period: the derivative through the
    // harmonics keeps the fundamental at its size, whatever the number of positions.
    if (!m_settings.definedPeriod) {
        const double period = 1.0 / electricalFrequency();
        std::array<std::vector<double>, 3> rates;
        for (std::size_t phase = 0; phase < 3; ++phase) {
            std::vector<double> flux;
            for (const PositionResult &at : m_positions)
                flux.push_back(at.fluxLinkage[phase]);
            rates[phase] = periodicDerivative(flux, period);
        }
        for (std::size_t k = 0; k < count; ++k)
            emf.push_back({rates[0][k], rates[1][k], rates[2][k]});
        return emf;
    }
    // A span of time: difference quotients, one-sided at its ends.
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t before = k == 0 ? 0 : k - 1;
        const std::size_t after = k + 1 == count ? k : k + 1;
        const double dt = m_positions[after].time - m_positions[before].time;
        std::array<double, 3> value{};
        for (std::size_t phase = 0; phase < 3; ++phase)
            value[phase] = (m_positions[after].fluxLinkage[phase] - m_positions[before].fluxLinkage[phase]) / dt;
        emf.push_back(value);
    }
    return emf;
}

std::vector<std::array<double, 3>> TimeStepping::phaseVoltages() const
{
    std::vector<std::array<double, 3>> voltages = backEmf();
    for (std::size_t k = 0; k < voltages.size(); ++k) {
        for (std::size_t phase = 0; phase < 3; ++phase)
            voltages[k][phase] += m_machine.phaseResistance * m_positions[k].currents[phase];
    }
    return voltages;
}

double TimeStepping::phaseVoltage() const
{
    const std::vector<std::array<double, 3>> voltages = phaseVoltages();
    double sum = 0.0;
    for (const std::array<double, 3> &abc : voltages)
        sum += abc[0] * abc[0] + abc[1] * abc[1] + abc[2] * abc[2];
    return voltages.empty() ? 0.0 : std::sqrt(sum / (3.0 * double(voltages.size())));
}

std::vector<double> TimeStepping::inputPower() const
{
    const std::vector<std::array<double, 3>> voltages = phaseVoltages();
    std::vector<double> power;
    for (std::size_t k = 0; k < voltages.size(); ++k) {
        const std::array<double, 3> &i = m_positions[k].currents;
        power.push_back(voltages[k][0] * i[0] + voltages[k][1] * i[1] + voltages[k][2] * i[2]);
    }
    return power;
}

double TimeStepping::dqComponent(const std::array<double, 3> &abc, double time, bool quadrature) const
{
    const auto [alpha, beta] = spaceVector(abc);
    const double electrical = m_dAxis + m_rotation * m_machine.polePairs * mechanicalSpeed() * time;
    return quadrature ? m_rotation * (-alpha * std::sin(electrical) + beta * std::cos(electrical))
                      : alpha * std::cos(electrical) + beta * std::sin(electrical);
}

std::vector<Body> TimeStepping::stack() const
{
    if (m_slices.empty())
        return {};
    const std::vector<GapBand> &bands = m_slices.front().bands;
    std::vector<Body> bodies = m_machine.stack;
    if (bodies.empty() && bands.size() == 1)
        bodies = bands.front().rotorAbove ? std::vector<Body>{Body::Stator, Body::Rotor} : std::vector<Body>{Body::Rotor, Body::Stator};
    if (bodies.size() != bands.size() + 1)
        return {};
    for (std::size_t g = 0; g < bands.size(); ++g) {
        if (bodies[g] == bodies[g + 1] || bodies[rotorSide(bands, g)] != Body::Rotor)
            return {};
    }
    return bodies;
}

double TimeStepping::normalForce(const PositionResult &at, const std::vector<Body> &bodies, std::size_t body) const
{
    // The gaps below and above the body; the force of each is that on its rotor's side.
    const double sign = bodies[body] == Body::Rotor ? 1.0 : -1.0;
    double force = 0.0;
    for (std::size_t g = body == 0 ? 0 : body - 1; g <= body && g < at.gapNormalForce.size(); ++g)
        force += sign * at.gapNormalForce[g];
    return force;
}

double TimeStepping::fluxLinkageTorque(const PositionResult &at) const
{
    const double fluxD = dqComponent(at.fluxLinkage, at.time, false);
    const double fluxQ = dqComponent(at.fluxLinkage, at.time, true);
    return 1.5 * m_machine.polePairs * (fluxD * dqComponent(at.currents, at.time, true) - fluxQ * dqComponent(at.currents, at.time, false));
}

double TimeStepping::magnetTorque(const PositionResult &at) const
{
    return 1.5 * m_machine.polePairs * m_magnetFlux * dqComponent(at.currents, at.time, true);
}

double TimeStepping::reluctanceTorque(const PositionResult &at) const
{
    // The currents' own flux linkage on each axis, Ld id and Lq iq with the apparent
    // inductances of the position: (Ld - Lq) id iq.
    const double currentD = dqComponent(at.currents, at.time, false);
    const double currentQ = dqComponent(at.currents, at.time, true);
    const double ownFluxD = dqComponent(at.fluxLinkage, at.time, false) - m_magnetFlux;
    const double ownFluxQ = dqComponent(at.fluxLinkage, at.time, true);
    return 1.5 * m_machine.polePairs * (ownFluxD * currentQ - ownFluxQ * currentD);
}

matvar_t *TimeStepping::timesteppingData() const
{
    Fields fields;
    const auto series = [&](const QString &name, const std::function<double(const PositionResult &, std::size_t)> &value) {
        std::vector<double> values;
        for (std::size_t k = 0; k < m_positions.size(); ++k)
            values.push_back(value(m_positions[k], k));
        fields.emplace_back(name, mat::row(QString(), values));
    };
    const auto missing = [&](const QString &name) { fields.emplace_back(name, mat::text(QString(), notComputed)); };
    const auto dq = [&](const std::array<double, 3> &abc, const PositionResult &at, bool quadrature) {
        return dqComponent(abc, at.time, quadrature);
    };
    const std::vector<std::array<double, 3>> emf = backEmf();
    const std::vector<std::array<double, 3>> voltages = phaseVoltages();
    const double resistance = m_machine.phaseResistance;

    series(QStringLiteral("time"), [](const PositionResult &at, std::size_t) { return at.time; });
    const char *phases = "abc";
    for (std::size_t phase = 0; phase < 3; ++phase)
        series(QStringLiteral("I%1").arg(QLatin1Char(phases[phase])), [phase](const PositionResult &at, std::size_t) { return at.currents[phase]; });
    series(QStringLiteral("Id"), [&](const PositionResult &at, std::size_t) { return dq(at.currents, at, false); });
    series(QStringLiteral("Iq"), [&](const PositionResult &at, std::size_t) { return dq(at.currents, at, true); });
    if (emf.empty()) {
        for (const char *name : {"Va", "Vb", "Vc", "Vd", "Vq"})
            missing(QString::fromLatin1(name));
    } else {
        for (std::size_t phase = 0; phase < 3; ++phase)
            series(QStringLiteral("V%1").arg(QLatin1Char(phases[phase])), [&, phase](const PositionResult &, std::size_t k) {
                return voltages[k][phase];
            });
        series(QStringLiteral("Vd"), [&](const PositionResult &at, std::size_t k) { return dq(voltages[k], at, false); });
        series(QStringLiteral("Vq"), [&](const PositionResult &at, std::size_t k) { return dq(voltages[k], at, true); });
    }
    series(QStringLiteral("Gamma"), [&](const PositionResult &, std::size_t) { return m_settings.advanceAngle; });
    if (emf.empty()) {
        for (const char *name : {"BackEMFa", "BackEMFb", "BackEMFc", "BackEMFd", "BackEMFq", "Pinput"})
            missing(QString::fromLatin1(name));
    } else {
        for (std::size_t phase = 0; phase < 3; ++phase)
            series(QStringLiteral("BackEMF%1").arg(QLatin1Char(phases[phase])), [&, phase](const PositionResult &, std::size_t k) { return emf[k][phase]; });
        series(QStringLiteral("BackEMFd"), [&](const PositionResult &at, std::size_t k) { return dq(emf[k], at, false); });
        series(QStringLiteral("BackEMFq"), [&](const PositionResult &at, std::size_t k) { return dq(emf[k], at, true); });
        const std::vector<double> power = inputPower();
        series(QStringLiteral("Pinput"), [&](const PositionResult &, std::size_t k) { return power[k]; });
    }
    series(QStringLiteral("Pmech"), [&](const PositionResult &at, std::size_t) { return at.torque * mechanicalSpeed(); });
    series(QStringLiteral("Ps"), [&](const PositionResult &at, std::size_t) {
        return resistance * (at.currents[0] * at.currents[0] + at.currents[1] * at.currents[1] + at.currents[2] * at.currents[2]);
    });
    if (m_magnetLosses)
        series(QStringLiteral("MagnetLoss"), [&](const PositionResult &, std::size_t k) { return (*m_magnetLosses)[k]; });
    else
        missing(QStringLiteral("MagnetLoss"));
    series(QStringLiteral("Torque_maxwell"), [](const PositionResult &at, std::size_t) { return at.torque; });
    if (!m_positions.empty() && m_positions.front().virtualWorkTorque)
        series(QStringLiteral("Torque_vwork"), [](const PositionResult &at, std::size_t) { return *at.virtualWorkTorque; });
    else
        missing(QStringLiteral("Torque_vwork"));
    series(QStringLiteral("Torque_fluxlinkage"), [&](const PositionResult &at, std::size_t) { return fluxLinkageTorque(at); });
    series(QStringLiteral("Torque_magnet"), [&](const PositionResult &at, std::size_t) { return magnetTorque(at); });
    series(QStringLiteral("Torque_reluctance"), [&](const PositionResult &at, std::size_t) { return reluctanceTorque(at); });
    const std::size_t gaps = m_positions.empty() ? 0 : m_positions.front().gapTorque.size();
    for (std::size_t g = 0; g < gaps; ++g)
        series(QStringLiteral("Torque_airgap%1").arg(g + 1), [g](const PositionResult &at, std::size_t) { return at.gapTorque[g]; });
    for (std::size_t phase = 0; phase < 3; ++phase)
        series(QStringLiteral("Fluxlinkage_%1").arg(QLatin1Char(phases[phase])), [phase](const PositionResult &at, std::size_t) { return at.fluxLinkage[phase]; });
    series(QStringLiteral("Fluxlinkage_d"), [&](const PositionResult &at, std::size_t) { return dq(at.fluxLinkage, at, false); });
    series(QStringLiteral("Fluxlinkage_q"), [&](const PositionResult &at, std::size_t) { return dq(at.fluxLinkage, at, true); });
    // Numbered from the bottom where the machine has more than one of a kind.
    const std::vector<Body> bodies = stack();
    if (bodies.empty()) {
        missing(QStringLiteral("Fn_rotor"));
        missing(QStringLiteral("Fn_stator"));
    }
    const auto countOf = [&](Body kind) { return std::count(bodies.begin(), bodies.end(), kind); };
    std::array<int, 2> numbers{};
    for (std::size_t b = 0; b < bodies.size(); ++b) {
        const bool rotor = bodies[b] == Body::Rotor;
        const int number = ++numbers[rotor ? 1 : 0];
        QString name = rotor ? QStringLiteral("Fn_rotor") : QStringLiteral("Fn_stator");
        if (countOf(bodies[b]) > 1)
            name += QString::number(number);
        series(name, [&, b](const PositionResult &at, std::size_t) { return normalForce(at, bodies, b); });
    }
    return mat::structure(QStringLiteral("Timesteppingdata"), fields);
}

matvar_t *TimeStepping::results() const
{
    Fields fields;
    const auto value = [&](const char *name, double number) { fields.emplace_back(QString::fromLatin1(name), mat::number(QString(), number)); };
    const auto missing = [&](const char *name) { fields.emplace_back(QString::fromLatin1(name), mat::text(QString(), notComputed)); };

    std::vector<double> torques;
    std::vector<double> band;
    double bandMax = 0.0;
    for (const PositionResult &at : m_positions) {
        torques.push_back(at.torque);
        band.push_back(at.bandFluxDensity);
        bandMax = std::max(bandMax, at.bandFluxDensityMax);
    }
    const double torque = mean(torques);
    const double current = phaseCurrent();
    const double peak = fundamentalPeak();
    const double gamma = qDegreesToRadians(m_settings.advanceAngle);
    const double omega = 2.0 * M_PI * electricalFrequency();
    const double backEmf = omega * m_magnetFlux / std::sqrt(2.0);

    value("speed", m_settings.speed);
    value("gamma", m_settings.advanceAngle);
    value("f1", electricalFrequency());
    value("torque", torque);
    std::vector<double> reluctance;
    std::vector<double> magnet;
    for (const PositionResult &at : m_positions) {
        reluctance.push_back(reluctanceTorque(at));
        magnet.push_back(magnetTorque(at));
    }
    value("torque_reluctance", mean(reluctance));
    value("torque_magnet", mean(magnet));
    if (torques.size() > 1 && std::abs(torque) > 0.0)
        value("TorqueRipple", (*std::max_element(torques.begin(), torques.end()) - *std::min_element(torques.begin(), torques.end())) / std::abs(torque) * 100.0);
    else
        missing("TorqueRipple");
    if (const std::optional<double> density = currentDensity())
        value("CurrentDensity", *density);
    else
        missing("CurrentDensity");
    const std::optional<double> demagnetising = demagnetisingField();
    if (demagnetising)
        value("DemagH_max", *demagnetising);
    else
        missing("DemagH_max");
    if (demagnetising && m_machine.magnetCoercivity)
        value("DemagHpercent_max", 100.0 * *demagnetising / *m_machine.magnetCoercivity);
    else
        missing("DemagHpercent_max");
    if (m_positions.empty()) {
        missing("Error");
    } else {
        double error = 0.0;
        for (const PositionResult &at : m_positions)
            error = std::max(error, at.discretisationError);
        value("Error", error);
    }
    const double mechanical = torque * mechanicalSpeed();
    const double copper = 3.0 * current * current * m_machine.phaseResistance;
    writeEfficiency(fields, mechanical, copper, m_ironLosses, m_magnetLosses ? std::optional<double>(mean(*m_magnetLosses)) : std::nullopt);
    // Of the fundamental; the copper loss, the RMS current and the power factor are those
    // of the whole waveform.
    value("Id", -peak * std::sin(gamma));
    value("Iq", peak * std::cos(gamma));
    const std::vector<std::array<double, 3>> voltages = phaseVoltages();
    const double voltage = phaseVoltage();
    const double input = mean(inputPower());
    if (voltages.empty())
        missing("Pinput");
    else
        value("Pinput", input);
    writeIronLosses(fields, m_ironLosses, m_ironLossNote);
    value("Pmech", mechanical);
    if (voltage > 0.0 && current > 0.0)
        value("PowerFactor", std::abs(input) / (3.0 * voltage * current));
    else
        missing("PowerFactor");
    value("Ps", copper);
    if (voltages.empty()) {
        missing("Vd");
        missing("Vq");
    } else {
        std::vector<double> vd;
        std::vector<double> vq;
        for (std::size_t k = 0; k < voltages.size(); ++k) {
            vd.push_back(dqComponent(voltages[k], m_positions[k].time, false));
            vq.push_back(dqComponent(voltages[k], m_positions[k].time, true));
        }
        value("Vd", mean(vd));
        value("Vq", mean(vq));
    }
    value("backEMF", backEmf);
    if (m_magnetLosses)
        value("magnetloss_rotor", mean(*m_magnetLosses));
    else
        missing("magnetloss_rotor");
    if (m_rotorMagnetLosses)
        fields.emplace_back(QStringLiteral("MagnetLoss"), numberList(*m_rotorMagnetLosses));
    // The rotors hold only magnets and iron, whose eddy currents count in the iron loss.
    value("otherECloss_rotor", 0.0);
    const std::vector<Body> bodies = stack();
    if (!bodies.empty())
        fields.emplace_back(QStringLiteral("OtherECloss"),
                            numberList(std::vector<double>(std::size_t(std::count(bodies.begin(), bodies.end(), Body::Rotor)), 0.0)));
    value("Bav_airgap", mean(band));
    value("Bmax_airgap", bandMax);
    const IronFluxDensities iron = ironFluxDensities();
    for (const auto &[name, peak] : {std::pair<const char *, std::optional<double>>{"Bav_max_tooth", iron.tooth},
                                     {"Bav_max_backiron_stator", iron.statorBackIron},
                                     {"Bav_max_backiron_rotor", iron.rotorBackIron}}) {
        if (peak)
            value(name, *peak);
        else
            missing(name);
    }
    if (backEmf > 0.0) {
        value("Kv_rms", m_settings.speed / backEmf);
        value("Kv_rad", 1.0 / (m_machine.polePairs * m_magnetFlux));
        value("Ke_rms", backEmf / m_settings.speed);
        value("Ke_rad", m_machine.polePairs * m_magnetFlux);
    } else {
        for (const char *name : {"Kv_rms", "Kv_rad", "Ke_rms", "Ke_rad"})
            missing(name);
    }
    if (current > 0.0)
        value("Kt", torque / current);
    else
        missing("Kt");
    // Apparent inductances at the operating point: the flux linkage that the current
    // adds on its axis, over that current.
    std::vector<double> fluxD;
    std::vector<double> fluxQ;
    for (const PositionResult &at : m_positions) {
        fluxD.push_back(dqComponent(at.fluxLinkage, at.time, false));
        fluxQ.push_back(dqComponent(at.fluxLinkage, at.time, true));
    }
    const double currentD = -peak * std::sin(gamma);
    const double currentQ = peak * std::cos(gamma);
    // The d-q currents of 120-degree blocks ripple with the blocks: no one current on an
    // axis to divide by.
    const bool sinusoidal = m_settings.waveform == Waveform::Sinusoidal;
    if (sinusoidal && std::abs(currentD) > 1e-9 * peak && peak > 0.0)
        value("Ld", (mean(fluxD) - m_magnetFlux) / currentD);
    else
        missing("Ld");
    if (sinusoidal && std::abs(currentQ) > 1e-9 * peak && peak > 0.0)
        value("Lq", mean(fluxQ) / currentQ);
    else
        missing("Lq");
    value("Lself", m_selfInductance);
    value("Lmutual", m_mutualInductance);
    if (copper > 0.0)
        value("Km", torque / std::sqrt(copper));
    else
        missing("Km");
    // Supply and phase: in delta the line current, in star the line voltage is sqrt(3) times the phase's.
    const double lineFactor = std::sqrt(3.0);
    fields.emplace_back(QStringLiteral("Is"), mat::row(QString(), {m_machine.delta ? lineFactor * current : current, current}));
    if (voltages.empty())
        missing("Vs");
    else
        fields.emplace_back(QStringLiteral("Vs"), mat::row(QString(), {m_machine.delta ? voltage : lineFactor * voltage, voltage}));
    value("nWindingsInSeries", m_machine.windingsInSeries);
    std::vector<double> gapTorque;
    const std::size_t gaps = m_positions.empty() ? 0 : m_positions.front().gapTorque.size();
    for (std::size_t g = 0; g < gaps; ++g) {
        std::vector<double> values;
        for (const PositionResult &at : m_positions)
            values.push_back(at.gapTorque[g]);
        gapTorque.push_back(mean(values));
    }
    fields.emplace_back(QStringLiteral("torque_airgap"), numberList(gapTorque));
    return mat::structure(QStringLiteral("Results"), fields);
}

} // namespace mcrctrl
