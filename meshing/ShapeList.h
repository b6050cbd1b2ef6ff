#pragma once

#include <QList>

#include "geometry/servoce/shape.h"

// Shapes to cut. Copies share the shapes, which never change in place.
class ShapeList : public QList<servoce::shape>
{
public:
    using QList<servoce::shape>::QList;

    // Along Z; a move of 1e-7 or less gives a copy.
    ShapeList translatedZ(double z) const;
    // About Z, in radians; a turn of 1e-7 or less gives a copy.
    ShapeList rotatedZ(double angle) const;
    // One compound of all shapes; null ones are left out.
    servoce::shape toCompound() const;
};
