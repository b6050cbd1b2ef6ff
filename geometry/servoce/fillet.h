#pragma once

#include <vector>

#include "geometry/servoce/shape.h"

// Rounds and bevels. Solids and compounds have their edges rounded, faces their
// corners. A radius the kernel cannot build, or whose result is no valid shape,
// gives a null shape.
namespace servoce {

// Every edge of a solid, every corner of a face.
shape fillet(const shape &model, double r);
// The edge (of a solid) or the corner (of a face) nearest to each point. On a
// solid a radius above half an edge's length is cut to that half, for all edges.
shape fillet(const shape &model, double r, const std::vector<point3> &points);
// The edges of the given shapes (of a solid), or the corners at their vertices
// (of a face).
shape fillet(const shape &model, double r, const std::vector<shape> &edges);

// Every edge of a solid or compound.
shape chamfer(const shape &model, double r);
// The edge nearest to each point.
shape chamfer(const shape &model, double r, const std::vector<point3> &points);

} // namespace servoce
