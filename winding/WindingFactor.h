#pragma once

#include <complex>

#include "winding/LayoutSettings.h"
#include "winding/Winding.h"

namespace Winding {

// The sum of a coil's sides in the air gap as phasors, the side in slot k at the
// angle (k + 1) x step: a planar coil adds its first side and takes its second; a
// toroidal coil has one side in the slot, whose sense is the coil's orientation.
std::complex<double> coilPhasor(const Coil &coil, Type type, double step);

// The winding factor of the given harmonic order, worked out from the coils of
// phase A: the phasor sum of its coil sides over the number of sides a phase has.
double windingFactor(const LayoutSettings &settings, const CoilList &phaseA, int harmonic);

// For display beside the factor: gcd(Q, 2p), and Q / gcd(Q, 2p) x 2p, which is 0
// when Q or p is 0.
int slotPoleGcd(int numberSlots, int polePairs);
int slotPoleLcm(int numberSlots, int polePairs);

} // namespace Winding
