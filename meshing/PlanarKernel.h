#pragma once

#include <QLineF>
#include <QList>

#include "meshing/Shape2D.h"

// Plane predicates and constructions of the triangulation's kernel, for code
// that must not see the kernel's headers.
namespace planar {

// Nothing, the crossing point, or the two ends of the overlap.
QList<PointF> segmentIntersection(const QLineF &a, const QLineF &b);
// The closed polygon through the points does not touch or cross itself;
// decided exactly.
bool isSimple(const QList<PointF> &polygon);
// Decided exactly; the polygon must be simple.
bool isCounterClockwise(const QList<PointF> &polygon);

} // namespace planar
