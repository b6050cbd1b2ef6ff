#pragma once

#include <QVector>
#include <ostream>

#include "winding/Winding.h"

namespace Winding {

// Readable coils in failure messages; layouts print as lists of them.
inline void PrintTo(const Coil &coil, std::ostream *os)
{
    *os << coil.toString().toStdString();
}

} // namespace Winding

inline Winding::Coil coil(int slotFrom, int slotTo, int layerFrom = 0, int layerTo = 0, int parallelPath = 1)
{
    Winding::Coil result;
    result.slotFrom = slotFrom;
    result.slotTo = slotTo;
    result.layerFrom = layerFrom;
    result.layerTo = layerTo;
    result.parallelPath = parallelPath;
    return result;
}

// Two coils of phase A, one with two parallel paths, and a toroidal one of phase C.
inline Winding::Layout sampleLayout()
{
    Winding::Layout layout;
    Winding::Coil first = coil(1, 0, 1, 0, 1);
    first.orientation = Winding::Coil::CW;
    Winding::Coil second = coil(6, 7, 0, 1, 2);
    second.orientation = Winding::Coil::CCW;
    layout[Winding::A] << first << second;
    layout[Winding::C] << coil(3, 3, 0, 1);
    return layout;
}

// What a file keeps of a layout: orientations are worked out again after reading.
inline Winding::Layout withoutOrientations(Winding::Layout layout)
{
    for (Winding::CoilList &list : layout) {
        for (Winding::Coil &c : list)
            c.orientation = Winding::Coil::Zero;
    }
    return layout;
}

inline QVector<Winding::Layout> withoutOrientations(QVector<Winding::Layout> layouts)
{
    for (Winding::Layout &layout : layouts)
        layout = withoutOrientations(layout);
    return layouts;
}
