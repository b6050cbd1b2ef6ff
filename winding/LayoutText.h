#pragma once

#include <QColor>
#include <QString>
#include <QVector>

#include "winding/Winding.h"

namespace Winding {

// The layouts of the faces in use as a table for people: coils by phase, slots and
// layers counted from 1. Written for the clipboard and for files, never read back.
QString layoutsToText(const QVector<Layout> &layouts, int countLayouts, int parallelPaths);

// What the slot picture writes into one side of a slot: "+A2" is the first side of
// a coil of phase A on parallel path 2.
struct SlotMark
{
    bool isEmpty() const { return text.isEmpty(); }

    int slot = -1;
    int layer = -1;
    Phase phase = Count;
    QString text;
    QColor color;
};

// One mark a slot position, at numberLayers x slot + layer; positions without a
// coil side stay empty.
QVector<SlotMark> slotMarks(const Layout &layout, int numberSlots, int numberLayers);

} // namespace Winding
