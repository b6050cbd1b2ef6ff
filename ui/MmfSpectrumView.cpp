#include "ui/MmfSpectrumView.h"
#include "winding/MmfSpectrum.h"

#include <algorithm>

MmfSpectrumView::MmfSpectrumView(QWidget *parent)
    : HarmonicBarChart(tr("MMF"), tr("Mechanical order"), tr("MMF amplitude (A-turns)"), parent)
{
    setObjectName(QStringLiteral("chartMmfSpectrum"));
}

void MmfSpectrumView::setWinding(const Winding::LayoutSettings &settings, const Winding::Layout &layout,
                                 int turnsPerCoil, double peakCurrent)
{
    const int maxOrder = 2 * std::max(settings.numberSlots, 2 * settings.polePairs);
    QVector<int> orders;
    QVector<double> amplitudes;
    for (const Winding::MmfHarmonic &harmonic :
         Winding::MmfSpectrum(settings, turnsPerCoil).spectrum(layout, peakCurrent, maxOrder)) {
        orders << harmonic.order;
        amplitudes << harmonic.amplitude();
    }
    setBars(orders, amplitudes);
}
