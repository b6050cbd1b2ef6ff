#pragma once

#include "winding/LayoutSettings.h"

// The settings of a layout with the given slots, pole pairs and layers.
inline Winding::LayoutSettings settings(int numberSlots, int polePairs, int layers = 1,
                                        Winding::LayersOrientation orientation = Winding::UpperLower)
{
    Winding::LayoutSettings result;
    result.numberSlots = numberSlots;
    result.polePairs = polePairs;
    result.numberLayers = layers;
    result.layersOrientation = orientation;
    return result;
}
