#pragma once

#include "base/LossFit.h"
#include "solver/MCRCtrl/MatData.h"
#include "solver/Problem.h"

#include <array>
#include <optional>
#include <vector>

namespace mcrctrl {

// The moving band of one air gap in one slice: the rows that the two sides bring,
// numbered by rising x, each ending on the image of its first node one period on.
struct GapBand
{
    std::vector<int> statorRow;
    std::vector<int> rotorRow;
    int region = 0;
    double height = 0.0;
    bool rotorAbove = true;
};

// A coil side of a phase in one slice.
struct PhaseSide
{
    int phase = 0;
    int region = 0;
    // Direction of the conductors, +1 along +z.
    double sign = 1.0;
};

enum class IronPart { None, Stator, Rotor };

// Which part of a core an iron element is, for the flux densities of the teeth and the
// back irons. Rotor iron between the magnets is neither.
enum class IronZone { Tooth, StatorBackIron, RotorBackIron, Other };

// What the iron losses need of the iron of the stator or of the rotor.
struct IronLossSide
{
    QString material;
    // Empty when the material's file gives no loss data.
    std::optional<IronLossCoefficients> coefficients;
    // kg/m^3.
    double massDensity = 0.0;
    double stacking = 1.0;
};

enum class Body { Stator, Rotor };

// The machine data that all slices share.
struct MachineData
{
    // The stators and rotors from the bottom up, as the machine type names them; empty
    // when the exchange file does not name it.
    std::vector<Body> stack;
    int polePairs = 1;
    double turnsPerCoil = 1.0;
    int parallelPaths = 1;
    // Strands in hand of a conductor and their diameter, mm: 0 when the exchange file
    // gives none.
    int strands = 1;
    double strandDiameter = 0.0;
    bool delta = false;
    double phaseResistance = 0.0;
    bool linear = false;
    // Layouts of the winding in series in one phase.
    int windingsInSeries = 1;
    IronLossSide statorIron;
    IronLossSide rotorIron;
    // Of the magnets at their temperature, A/m; empty when the magnet's file gives none.
    std::optional<double> magnetCoercivity;
    // Ohm m; empty when the magnet's file gives none.
    std::optional<double> magnetResistivity;
};

// One slice of the machine as the solver sees it: the problem of the period model
// without its moving bands, the bands, the coil sides, and which nodes move with the
// rotor. `problemAt` gives the problem at a rotor shift along x with given phase
// currents of one parallel path.
class SliceModel
{
public:
    int index = 0;
    double radius = 0.0;
    // Radial width: the depth of the 2D model, m.
    double length = 0.0;
    // Period width along x, m.
    double width = 0.0;
    double seamSign = 1.0;
    solver::Problem base;
    std::vector<GapBand> bands;
    std::vector<PhaseSide> sides;
    std::vector<double> regionArea;
    std::vector<char> moving;
    // Which iron each region is, and the triangles of the base mesh in iron, which keep
    // their numbers at any shift.
    std::vector<IronPart> regionIron;
    std::vector<int> ironElements;
    // Of each iron element, in the order of ironElements: its zone and, in a tooth, the
    // tooth's number from 0 in the slice, else -1.
    std::vector<IronZone> ironZones;
    std::vector<int> teeth;
    // The triangles of the base mesh in magnets.
    std::vector<int> magnetElements;
    double turnsPerCoil = 1.0;

    // The length of the segments of the band's rows where both rows have equal ones,
    // else 0.
    double bandSegment() const;
    // How far the rotor's row starts after the stator's at no shift.
    double bandOffset() const;
    // How many copies of the model make the whole ring.
    double copies() const;
    solver::Problem problemAt(double shift, const std::array<double, 3> &currents) const;
};

// The names of the exchange file's variables that make the slice models.
struct ExchangeData
{
    MatValue geometry;
    MatValue mesh;
    MatValue windings;
    MatValue materials;
    // Struct with the fields Properties and MaterialType, a cell per slice each.
    MatValue subdomains;
};

// How much of the ring a slice model spans: the period of the mesh, or two of them side
// by side, the second the image of the first across the seam (magnets and currents
// reversed behind an antiperiodic one), which makes a periodic model of the same field.
enum class ModelSpan { MeshedPeriod, TwoPeriods };

MachineData readMachine(const ExchangeData &data, bool linear);
// Throws a StepError that names the slice and region for unfit data: a region without
// a material, a magnet without remanence, an empty winding, a mesh with a hole.
std::vector<SliceModel> readSlices(const ExchangeData &data, const MachineData &machine,
                                   ModelSpan span = ModelSpan::MeshedPeriod);

} // namespace mcrctrl
