#include "winding/WindingFactor.h"

#include <QDebug>
#include <cmath>
#include <numeric>

namespace Winding {

namespace {

// The phasor of a slot side; slots are counted from 1 here.
std::complex<double> sidePhasor(int slot, double step)
{
    return std::polar(1.0, (slot + 1) * step);
}

} // namespace

std::complex<double> coilPhasor(const Coil &coil, Type type, double step)
{
    if (type == Planar)
        return sidePhasor(coil.slotFrom, step) - sidePhasor(coil.slotTo, step);
    switch (coil.orientation) {
    case Coil::CW:
        return sidePhasor(coil.slotFrom, step);
    case Coil::CCW:
        return -sidePhasor(coil.slotTo, step);
    case Coil::Zero:
        break;
    }
    qWarning() << "coil orientation is zero";
    return {};
}

double windingFactor(const LayoutSettings &settings, const CoilList &phaseA, int harmonic)
{
    if (settings.numberSlots <= 0 || settings.numberLayers <= 0)
        return 0.0;
    const double step = 2.0 * M_PI * settings.polePairs * harmonic / settings.numberSlots;
    std::complex<double> sum;
    for (const Coil &coil : phaseA)
        sum += coilPhasor(coil, settings.type, step);
    return std::abs(sum) * 3.0 / settings.numberSlots / settings.numberLayers;
}

int slotPoleGcd(int numberSlots, int polePairs)
{
    return std::gcd(numberSlots, 2 * polePairs);
}

int slotPoleLcm(int numberSlots, int polePairs)
{
    if (numberSlots == 0 || polePairs == 0)
        return 0;
    return numberSlots / slotPoleGcd(numberSlots, polePairs) * 2 * polePairs;
}

} // namespace Winding
