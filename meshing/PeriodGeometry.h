#pragma once

#include <QVector>

#include "geometry/Piece.h"
#include "meshing/ShapeList.h"

// One stator or rotor body as its part of the period's volume sees it.
struct PeriodBody
{
    // In their place in the machine.
    PieceList pieces;
    // Degrees.
    double displacement = 0.0;
    double bottom = 0.0;
    double top = 0.0;
    // How far the body's air reaches beyond its two faces.
    double extensionBelow = 0.0;
    double extensionAbove = 0.0;
};

// The solids of one period of the machine: for each body a sector of air about
// Z, and the body's pieces within it.
class PeriodGeometry
{
public:
    // The sectors have the radius and the angle span (degrees).
    PeriodGeometry(double radius, double angleSpan);

    // The sector around the body, turned by its displacement.
    servoce::shape boundingSolid(const PeriodBody &body) const;
    // The pieces cut to their bodies' sectors and, for each body, the air of its sector.
    ShapeList solids(const QVector<PeriodBody> &bodies) const;

private:
    bool isWholeTurn() const;

    double m_radius;
    double m_angleSpan;
};
