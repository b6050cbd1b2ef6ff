#include "winding/MmfSpectrum.h"
#include "winding/WindingFactor.h"

#include <cmath>

namespace Winding {

MmfSpectrum::MmfSpectrum(const LayoutSettings &settings, int turnsPerCoil)
    : m_settings(settings)
    , m_turnsPerCoil(turnsPerCoil)
{
}

std::complex<double> MmfSpectrum::turnsHarmonic(const CoilList &coils, int order) const
{
    if (m_settings.numberSlots <= 0 || m_settings.parallelPaths <= 0)
        return {};
    const double step = 2.0 * M_PI * order / m_settings.numberSlots;
    std::complex<double> sum;
    for (const Coil &coil : coils)
        sum += coilPhasor(coil, m_settings.type, step);
    return sum * double(m_turnsPerCoil) / double(m_settings.parallelPaths);
}

// A line of ampere-conductors is a step of the MMF; the steps' Fourier coefficient of
// order v, divided by v, is the MMF's: a steady current I gives the peak I |D| / (pi v).
double MmfSpectrum::phaseAmplitude(const CoilList &coils, double current, int order) const
{
    if (order <= 0)
        return 0.0;
    return std::abs(current * turnsHarmonic(coils, order)) / (M_PI * order);
}

// I cos(wt - 2 pi k / 3) is half of two counter-rotating phasors: the one turning with
// wt weights phase k by exp(-j 2 pi k / 3) and drives the forward wave, the other the
// backward one. Each has half the current, so a wave's peak is I |sum| / (2 pi v).
MmfHarmonic MmfSpectrum::harmonic(const Layout &layout, double peakCurrent, int order) const
{
    MmfHarmonic result;
    result.order = order;
    if (order <= 0)
        return result;
    std::complex<double> forward;
    std::complex<double> backward;
    for (int phase = A; phase < Count; ++phase) {
        const std::complex<double> turns = turnsHarmonic(layout.at(phase), order);
        const double shift = 2.0 * M_PI * phase / Count;
        forward += std::polar(1.0, -shift) * turns;
        backward += std::polar(1.0, shift) * turns;
    }
    const double scale = std::abs(peakCurrent) / (2.0 * M_PI * order);
    result.forward = std::abs(forward) * scale;
    result.backward = std::abs(backward) * scale;
    return result;
}

QVector<MmfHarmonic> MmfSpectrum::spectrum(const Layout &layout, double peakCurrent, int maxOrder) const
{
    QVector<MmfHarmonic> result;
    for (int order = 1; order <= maxOrder; ++order)
        result << harmonic(layout, peakCurrent, order);
    return result;
}

} // namespace Winding
