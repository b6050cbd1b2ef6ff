#pragma once

#include <QVector>
#include <array>

#include "winding/Winding.h"

namespace Winding {

// The wire in one coil cross-section: turns of strands of one diameter (mm), in each layer.
struct CoilWire
{
    double diameter = 0.0;
    int numberTurns = 1;
    int numberLayers = 1;
    int strands = 1;
};

// The bare copper of a coil cross-section, mm².
double copperArea(const CoilWire &wire);
// The diameter of the strands that fill a coil area of `coilArea` mm² to `fillFactor`;
// the diameter of `wire` is not read.
double diameterForFillFactor(double coilArea, double fillFactor, const CoilWire &wire);
// part / area, or 0 for an area that is not above 0.
double areaRatio(double part, double area);

// The conductor's resistivity in Ohm m at 20 degrees Celsius and its coefficient per kelvin.
struct Conductor
{
    double resistivity = 0.0;
    double temperatureCoefficient = 0.0;
};

// The factor by which the resistance at 20 degrees Celsius grows at `temperature`.
double temperatureFactor(double temperature, double coefficient);
// The resistance of a phase of `length` m of wire, made of `strands` strands of `diameter` mm
// in hand, its coils in `parallelPaths` equal paths. A phase of paths in parallel has
// 1 / paths of the length in each path and paths times the copper: hence paths squared.
// 0 without copper.
double phaseResistance(double length, double diameter, int strands, int parallelPaths, const Conductor &conductor,
                       double temperature);
// Whether two phases differ by more than one per cent.
bool isUnbalanced(const std::array<double, Count> &resistances);

// One coil: its phase, the lengths of its outer and inner end-turn paths and of one
// active run, in mm.
struct CoilLength
{
    Phase phase = A;
    double outerPath = 0.0;
    double innerPath = 0.0;
    double activeRun = 0.0;
};

// The wire of one turn of a coil, m: both end turns and both active runs.
double turnLength(const CoilLength &coil);
// The wire of each phase, m, when every coil has `numberTurns` turns.
std::array<double, Count> phaseWireLengths(const QVector<CoilLength> &coils, int numberTurns);

} // namespace Winding
