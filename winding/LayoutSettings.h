#pragma once

#include "winding/Winding.h"

namespace Winding {

// What the layout of a winding depends on: the slots of the stator, the pole pairs
// of the rotor and the winding's own settings. A plain value, so that the layout
// code can be run and tested without a document.
struct LayoutSettings
{
    // The layers a slot position has: a toroidal coil always has its two sides there.
    int effectiveNumberLayers() const { return type == Toroidal ? 2 : numberLayers; }
    bool isDoubleLayer() const { return numberLayers == 2; }

    // A three-phase winding needs Q / (3 gcd(Q, p)) to be whole.
    bool isFeasible() const;
    // Each parallel path must get the same share of the coils of a phase.
    bool isParallelPathsValid() const;
    // The span that the layers allow: side-by-side coils span one slot, stacked ones
    // at least two, and none spans more than half the slots.
    int clippedCoilSpan(int span) const;

    int numberSlots = 0;
    int polePairs = 0;
    Type type = Planar;
    int numberLayers = 1;
    LayersOrientation layersOrientation = UpperLower;
    bool autoCalcCoilSpan = true;
    int coilSpan = 0;
    int parallelPaths = 1;
};

} // namespace Winding
