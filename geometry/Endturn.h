#pragma once

#include <QVector>

#include "geometry/servoce/shape.h"
#include "winding/EndturnChecks.h"
#include "winding/Winding.h"

namespace Winding {

// Where a coil leaves or enters its slot at one radius.
struct CoilSide
{
    int slot = 0;
    int layer = 0;
    double angle = 0.0; // of the slot position, radians
    Point3 center;
    // The sense along the axis, 1 or -1, from the air gap of the face the coil side lies at into
    // the stator body: the end turns have room that way. -1 on the face of a lower body.
    int towardsBack = -1;
    // The coil's cross-section there, in its own plane.
    servoce::shape profile;
};

// One end of a coil, at the inner or the outer radius, and the path that the end-turn
// script gave it.
struct Endturn
{
    EndturnKind kind = EndturnKind::Unknown;
    CoilSide begin;
    CoilSide end;
    Coil::Orientation dir = Coil::Zero;
    QVector<Filament> filaments;
    servoce::shape path;

    EndturnEnds ends() const
    {
        EndturnEnds result;
        result.kind = kind;
        result.beginSlot = begin.slot;
        result.beginLayer = begin.layer;
        result.endSlot = end.slot;
        result.endLayer = end.layer;
        result.dir = dir;
        return result;
    }
};

// One coil: its outer end turn runs from slotFrom to slotTo, the inner one back.
struct Endturns
{
    Phase phase = A;
    Endturn outer;
    Endturn inner;
};

} // namespace Winding
