#pragma once

#include <QList>

#include "geometry/Piece.h"
#include "geometry/servoce/shape.h"

// Shapes to cut. Copies share the shapes, which never change in place.
class ShapeList : public QList<servoce::shape>
{
public:
    using QList<servoce::shape>::QList;

    // The solids of the pieces, in their order.
    static ShapeList of(const PieceList &pieces);

    // Along Z; a move of 1e-7 or less gives a copy.
    ShapeList translatedZ(double z) const;
    // About Z, in radians; a turn of 1e-7 or less gives a copy.
    ShapeList rotatedZ(double angle) const;
    // One compound of all shapes; null ones are left out.
    servoce::shape toCompound() const;
    // What lies within the sector about Z of the radius, from angle from through
    // sweep (radians), between the two heights; each shape cut on its own worker.
    ShapeList cutToSector(double radius, double bottom, double top, double from, double sweep) const;
};
