#include "winding/WireResistance.h"

#include <QtMath>

namespace Winding {

namespace {

double roundWireArea(double diameter)
{
    return M_PI * (diameter / 2.0) * (diameter / 2.0);
}

} // namespace

double copperArea(const CoilWire &wire)
{
    return roundWireArea(wire.diameter) * wire.numberTurns * wire.numberLayers * wire.strands;
}

double diameterForFillFactor(double coilArea, double fillFactor, const CoilWire &wire)
{
    const double wires = double(wire.numberLayers) * wire.strands * wire.numberTurns;
    return 2.0 * std::sqrt(coilArea * fillFactor / wires / M_PI);
}

double areaRatio(double part, double area)
{
    return area > 0.0 ? part / area : 0.0;
}

double temperatureFactor(double temperature, double coefficient)
{
    return (temperature - 20.0) * coefficient + 1.0;
}

double phaseResistance(double length, double diameter, int strands, int parallelPaths, const Conductor &conductor,
                       double temperature)
{
    const double area = strands * roundWireArea(diameter) / 1e6;
    if (qAbs(area) <= 1e-12)
        return 0.0;
    const double paths = parallelPaths;
    return temperatureFactor(temperature, conductor.temperatureCoefficient) * (length * conductor.resistivity / area)
           / (paths * paths);
}

bool isUnbalanced(const std::array<double, Count> &resistances)
{
    const double a = resistances[A];
    const double b = resistances[B];
    const double c = resistances[C];
    return qAbs(a - b) > 0.01 * a || qAbs(b - c) > 0.01 * b || qAbs(c - a) > 0.01 * c;
}

double turnLength(const CoilLength &coil)
{
    return (coil.outerPath + coil.innerPath) / 1000.0 + 2.0 * coil.activeRun / 1000.0;
}

std::array<double, Count> phaseWireLengths(const QVector<CoilLength> &coils, int numberTurns)
{
    std::array<double, Count> lengths{};
    for (const CoilLength &coil : coils)
        lengths[coil.phase] += turnLength(coil) * numberTurns;
    return lengths;
}

} // namespace Winding
