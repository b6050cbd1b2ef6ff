#pragma once

#include <QColor>

#include <AIS_InteractiveObject.hxx>

#include "geometry/Piece.h"

// Translucent surfaces that show where the analysis cuts the machine: the cylinders of
// its slices and the plane of its radial model. Drawn over the pieces, never part of them.
namespace SectionGuides {

struct AxialExtent
{
    double bottom = 0.0;
    double top = 0.0;
    bool isEmpty() const { return top <= bottom; }
};

// The axial extent of the pieces, widened so that the guides stand out of the machine.
AxialExtent axialExtentOf(const PieceList &pieces);

// The cylinder of a radius about the machine's axis.
Handle(AIS_InteractiveObject) cylinder(double radius, const AxialExtent &extent, const QColor &color);
// The half plane through the axis in which the radial model lies, out to a radius.
Handle(AIS_InteractiveObject) radialPlane(double outerRadius, const AxialExtent &extent, const QColor &color);

} // namespace SectionGuides
