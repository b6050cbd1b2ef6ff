#pragma once

#include "solver/MCRCtrl/IronLoss.h"
#include "solver/MCRCtrl/MatData.h"
#include "solver/MCRCtrl/SliceModel.h"
#include "solver/DiscretisationError.h"

#include <QString>
#include <array>
#include <functional>
#include <optional>
#include <vector>

struct matvar_t;

namespace mcrctrl {

// The shape of the phase currents over an electrical period: a sinusoid, or the 120-degree
// conduction blocks of a brushless DC drive.
enum class Waveform
{
    Sinusoidal,
    Trapezoidal
};

// The analysis settings of a run.
struct RunSettings
{
    bool linear = false;
    double tolerance = 1e-3;
    int maxIterations = 50;
    int points = 1;
    // rpm.
    double speed = 1000.0;
    // Electrical degrees, of the current phasor ahead of the q-axis.
    double advanceAngle = 0.0;
    Waveform waveform = Waveform::Sinusoidal;
    QString currentMethod;
    double current = 0.0;
    bool definedPeriod = false;
    bool coggingTorque = false;
    double timeFrom = 0.0;
    double timeTo = 1.0;

    static RunSettings from(const MatValue &settings);
};

// What one rotor position gives, for the whole machine.
struct PositionResult
{
    double time = 0.0;
    std::array<double, 3> currents{};
    std::array<double, 3> fluxLinkage{};
    // Of the rotor in each air gap, N m, and the normal forces on the rotor, N.
    std::vector<double> gapTorque;
    std::vector<double> gapNormalForce;
    double torque = 0.0;
    // By the rise of the co-energy at fixed currents, N m, when asked for.
    std::optional<double> virtualWorkTorque;
    // Mean |B| across the bands and the largest |B| in them.
    double bandFluxDensity = 0.0;
    double bandFluxDensityMax = 0.0;
    // B of the iron elements of each slice, in the order of the slice's ironElements.
    std::vector<std::vector<Eigen::Vector2d>> ironField;
    // H against the magnetisation in the magnet elements of each slice, in the order of
    // the slice's magnetElements, A/m: negative where H runs with it.
    std::vector<std::vector<double>> demagnetisingField;
    // The mean potential A of the magnet elements of each slice, Wb/m, in the same order.
    std::vector<std::vector<double>> magnetPotential;
    // Of the field of all slices, %.
    double discretisationError = 0.0;
};

// What one slice gives at one shift, before the slices are summed.
struct SliceAnswer
{
    bool converged = true;
    double residual = 0.0;
    std::array<double, 3> flux{};
    std::vector<double> torque;
    std::vector<double> normal;
    // Of the whole machine's share of the slice, J.
    double coenergy = 0.0;
    // N m; set where the neighbouring shifts are solved.
    double virtualWorkTorque = 0.0;
    double bandArea = 0.0;
    double bandIntegral = 0.0;
    double bandMax = 0.0;
    std::vector<Eigen::Vector2d> ironField;
    std::vector<double> demagnetisingField;
    std::vector<double> magnetPotential;
    // Of the whole machine's share of the slice.
    solver::DiscretisationError discretisation;
    // The potentials of the slice's own nodes, which keep their numbers at any shift: a
    // start for the solves at the neighbouring shifts.
    Eigen::VectorXd potential;

    // Linear between two answers; a failed one stands for both.
    static SliceAnswer blend(const SliceAnswer &a, const SliceAnswer &b, double share);
};

// The peaks over the positions of the mean |B| in the steel of one tooth in a slice and
// of the whole back iron of the stator and of the rotor; empty for a part that the
// machine lacks.
struct IronFluxDensities
{
    std::optional<double> tooth;
    std::optional<double> statorBackIron;
    std::optional<double> rotorBackIron;
};

// The whole machine over the positions of a run: solves every slice at every position
// and sums the slices. Throws a StepError that names position and slice when the
// Newton iterations fail.
class TimeStepping
{
public:
    using Progress = std::function<void(const QString &)>;

    TimeStepping(std::vector<SliceModel> slices, MachineData machine, RunSettings settings);

    // The RMS phase current, from the current input method, the waveform and the
    // connection; a trapezoidal current needs a star connection.
    double phaseCurrent() const;
    // RMS, in the copper of the strands, A/mm^2; empty without their diameter.
    std::optional<double> currentDensity() const;
    // Of one parallel path of each phase, with the rotor's d-axis at an electrical angle
    // from phase A's axis: the advance angle puts the current ahead of the q-axis.
    std::array<double, 3> currentsAt(double electricalAngle) const;
    // The whole machine at a mechanical angle with phase currents: torque and forces,
    // and the flux linkages of one parallel path of each phase. The torque by virtual
    // work costs two more solves per slice, which start from their neighbour's answer.
    PositionResult solveAt(double time, double angle, const std::array<double, 3> &currents, int position,
                           bool virtualWork = false) const;

    void run(const Progress &progress);
    const std::vector<PositionResult> &positions() const { return m_positions; }
    // Empty when the run or the materials do not allow them.
    const std::optional<IronLosses> &ironLosses() const { return m_ironLosses; }
    // Of the magnets' eddy currents at each position, W, nothing without magnets; empty
    // when the run or the magnet does not allow them.
    const std::optional<std::vector<double>> &magnetLosses() const { return m_magnetLosses; }
    IronFluxDensities ironFluxDensities() const;
    // The largest H against the magnetisation in any magnet at any position, A/m, 0 when
    // H nowhere opposes it; empty without magnets.
    std::optional<double> demagnetisingField() const;

    // The two variables of the answer.
    matvar_t *timesteppingData() const;
    matvar_t *results() const;

private:
    // From the zero field, or from the potentials of a solve at a nearby shift.
    SliceAnswer solveSlice(const SliceModel &slice, double shift, const std::array<double, 3> &currents, double tolerance,
                           const Eigen::VectorXd &guess = {}) const;
    // The slice at a rotor angle, its band cut where it is in line.
    SliceAnswer answerAt(const SliceModel &slice, double angle, const std::array<double, 3> &currents, bool virtualWork) const;
    double electricalFrequency() const;
    double mechanicalSpeed() const;
    // The waveform's peak over its RMS.
    double crestFactor() const;
    // Of the currents' fundamental, which a trapezoidal current has above its own peak.
    double fundamentalPeak() const;
    // The d-axis angle at angle 0 and the sense in which the flux linkage turns, from
    // two solves without current.
    void alignAxes(const Progress &progress);
    void findInductances();
    std::vector<std::array<double, 3>> backEmf() const;
    // R i + e at each position; empty with the back-EMF.
    std::vector<std::array<double, 3>> phaseVoltages() const;
    // The phase RMS voltage over the positions; 0 without voltages.
    double phaseVoltage() const;
    std::vector<double> inputPower() const;
    // From the iron fields over one electrical period; says why when it can't.
    void findIronLosses(const Progress &progress);
    // The copper of all strands of all parallel paths, mm^2; empty without the strands' diameter.
    std::optional<double> conductorArea() const;
    bool hasMagnets() const;
    // From the potentials in the magnets over one electrical period; says why when it can't.
    void findMagnetLosses(const Progress &progress);
    // Of the iron elements of one part in slice s.
    LossParts ironLossOf(const SliceModel &slice, std::size_t s, IronPart part, const IronLossSide &iron) const;
    // The d or q part of three phase values at a time (amplitude-invariant).
    double dqComponent(const std::array<double, 3> &abc, double time, bool quadrature) const;
    // 1.5 p (psi_d iq - psi_q id), and its parts: the magnets' flux linkage with the
    // q-axis current, 1.5 p psi_m iq, and the rest, 1.5 p (Ld - Lq) id iq.
    double fluxLinkageTorque(const PositionResult &at) const;
    double magnetTorque(const PositionResult &at) const;
    double reluctanceTorque(const PositionResult &at) const;
    // The stators and rotors from the bottom up, each facing the next across a gap of
    // the slices; from the one gap where the machine type is not given, and empty where
    // it does not fit the gaps.
    std::vector<Body> stack() const;
    // Along +y, N, on one body of the stack: from the gaps on both of its faces.
    double normalForce(const PositionResult &at, const std::vector<Body> &bodies, std::size_t body) const;

    std::vector<SliceModel> m_slices;
    MachineData m_machine;
    RunSettings m_settings;
    std::vector<PositionResult> m_positions;
    double m_dAxis = 0.0;
    double m_rotation = 1.0;
    double m_magnetFlux = 0.0;
    // Of phase A and between phases A and B, with the iron unsaturated, at the first
    // position: H.
    double m_selfInductance = 0.0;
    double m_mutualInductance = 0.0;
    std::optional<IronLosses> m_ironLosses;
    // How the iron losses were found, or why not.
    QString m_ironLossNote;
    std::optional<std::vector<double>> m_magnetLosses;
    // The magnet losses' mean in each rotor of the stack from the bottom up; empty without
    // them or the stack, or with a magnet outside the rotors.
    std::optional<std::vector<double>> m_rotorMagnetLosses;
};

} // namespace mcrctrl
