#pragma once

#include "ui/HarmonicBarChart.h"
#include "winding/LayoutSettings.h"
#include "winding/Winding.h"

// The air-gap MMF of a winding by mechanical order under balanced three-phase
// currents: each bar is the peak an order reaches over a period of the currents.
class MmfSpectrumView : public HarmonicBarChart
{
    Q_OBJECT
public:
    explicit MmfSpectrumView(QWidget *parent = nullptr);

    // Shows orders 1 to twice the larger of the slots and the poles, which takes in
    // the subharmonics, the working order and the first slot harmonics.
    void setWinding(const Winding::LayoutSettings &settings, const Winding::Layout &layout, int turnsPerCoil,
                    double peakCurrent);
};
