#pragma once

#include <QVector>
#include <functional>

#include "base/Machine.h"
#include "winding/Winding.h"

namespace Winding {

// A layout is the winding on one slotted face of a stator body. A yokeless body or
// a toroidal winding has one layout for both faces of a body.
int countLayouts(Machine::Type type, bool onePerBody);
// The id of the stator body whose face the layout lies on; 0 for an index the
// machine has no layout for.
int statorItemOfLayout(Machine::Type type, bool onePerBody, int index);
// The number N of the configuration flag "layoutReverseN" that turns the layout
// round; 0 when no flag does.
int reverseKeyOfLayout(Machine::Type type, int countLayouts, int index);

// Every coil runs the other way: sides, layers and orientation swap.
void reverseLayout(Layout &layout);
// The two sides of each coil trade their layers: the user's "reverse layers top to bottom".
void swapLayers(Layout &layout);

// What decides how the base layout is copied onto the faces.
struct FaceSettings
{
    Machine::Type machineType = Machine::SR;
    int countLayouts = 1;
    // Whether the configuration flag of the given number is set.
    std::function<bool(int key)> reverseFlag;
    // Whether to swap the layers, one flag a layout.
    QVector<bool> reverseLayers;
    // Only stacked layers can be swapped.
    bool layersSwappable = false;
};

// The four coil layouts: copies of the base layout for the faces in use, reversed
// where the configuration says so; the rest empty.
QVector<Layout> faceLayouts(const Layout &base, const FaceSettings &settings);

} // namespace Winding
