#pragma once

#include <QVector>
#include <complex>

#include "winding/LayoutSettings.h"
#include "winding/Winding.h"

namespace Winding {

// One mechanical order of the air-gap MMF under balanced three-phase currents
// i_k = I cos(wt - 2 pi k / 3) in the phases k = A, B, C. An order is in general the
// sum of two travelling waves; a symmetric winding drives only one of them.
struct MmfHarmonic
{
    // The largest value the order reaches along the gap over a period of the currents.
    double amplitude() const { return forward + backward; }

    int order = 0;
    // Peak amplitudes of the waves that travel towards higher slot numbers and lower ones.
    double forward = 0.0;
    double backward = 0.0;
};

// The spectrum of the magnetomotive force that a winding drives along the air-gap
// circumference, by mechanical order: order 1 has one period per turn of the machine,
// the working order is the number of pole pairs p, and orders below it are
// subharmonics.
//
// Each coil side is a line of ampere-conductors at its slot's centre (slot openings
// are left out) carrying the coil's turns times the phase current over the parallel
// paths; the MMF is the integral of that distribution around the gap. Amplitudes are
// peak ampere-turns. So, with N the series turns of a phase, I its peak current and
// kw the winding factor, order p of a planar winding has the classic amplitude
// (3/2) (4/pi) N I kw / (2p). A toroidal coil has only one side in this gap and
// drives half of what a planar coil of the same turns drives.
class MmfSpectrum
{
public:
    MmfSpectrum(const LayoutSettings &settings, int turnsPerCoil);

    // The peak of the given order of one phase's MMF under a steady current.
    double phaseAmplitude(const CoilList &coils, double current, int order) const;
    // The travelling waves of one order under balanced currents of the given peak.
    MmfHarmonic harmonic(const Layout &layout, double peakCurrent, int order) const;
    // Orders 1 to maxOrder.
    QVector<MmfHarmonic> spectrum(const Layout &layout, double peakCurrent, int maxOrder) const;

private:
    // The order's Fourier coefficient of the turns of the coil sides around the gap,
    // scaled to the current of one ampere in the phase.
    std::complex<double> turnsHarmonic(const CoilList &coils, int order) const;

    LayoutSettings m_settings;
    int m_turnsPerCoil = 1;
};

} // namespace Winding
