#pragma once

#include <QList>
#include <vector>

#include "geometry/servoce/shape.h"

// Booleans. A failed one logs its failure text and the kernel's report and
// gives a null shape. With simplify, edges and faces that continue each other
// are merged (angular tolerance 1e-9); where that fails the result stays as it
// was. The results of union, difference and intersection come unwrapped.
namespace servoce {

shape make_union(const shape &a, const shape &b, bool simplify);
shape make_difference(const shape &a, const shape &b, bool simplify);
// The first less all others in turn; an empty list gives a null shape.
shape make_difference(const std::vector<shape> &shapes, bool simplify);
shape make_intersect(const shape &a, const shape &b, bool simplify);
// What all have in common, taken in turn; an empty list gives a null shape.
shape make_intersect(const std::vector<shape> &shapes, bool simplify);
// The curves where the two meet; pretty approximates them. Not unwrapped.
shape make_section(const shape &a, const shape &b, bool pretty);
// All shapes fused in one run of the kernel. Not unwrapped.
shape general_fuse(const std::vector<shape> &shapes, bool simplify);
// The shapes split against each other in one run of the kernel: where solids touch
// or overlap they share faces, and each part is there once. A compound, or the one
// shape given; null when it fails or none is given.
shape make_fragments(const std::vector<shape> &shapes);
// general_fuse, unwrapped; an empty list gives a null shape.
shape makeUnion(const QList<shape> &shapes, bool simplify);

// The single shape inside the compound that booleans leave around it; any
// other shape comes back as it is.
shape unwrap(const shape &wrapped);

// Whether the point lies in the solid or on its boundary, within the tolerance;
// false for a shape that is not a solid.
bool holds_point(const shape &solid, const point3 &point, double tolerance);

} // namespace servoce
