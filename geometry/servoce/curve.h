#pragma once

#include <vector>

#include "geometry/servoce/shape.h"

// Edges and wires. Curves lie in the plane z = 0 unless their points say
// otherwise; arcs begin on the positive x axis; angles are radians.
namespace servoce {

edge_shape segment(const point3 &a, const point3 &b);
// Straight edges between neighbours; closed adds the edge from last to first.
wire_shape polysegment(const std::vector<point3> &points, bool closed);
// A smooth curve through the points, periodic when closed.
edge_shape interpolate(const std::vector<point3> &points, bool closed);
// The arc through three points.
edge_shape circle_arc(const point3 &a, const point3 &b, const point3 &c);

edge_shape circle_edge(double r);
edge_shape circle_edge(double r, double angle);
edge_shape circle_edge(double r, double a1, double a2);
// The major radius comes first.
edge_shape ellipse_edge(double r1, double r2);
edge_shape ellipse_edge(double r1, double r2, double a1, double a2);

// Joins wires and edges in the order given.
wire_shape make_wire(const std::vector<shape> &parts);

// Points along an edge, or a wire taken as one curve, no chord farther than
// `deflection` from it, the ends included; empty for any other shape.
std::vector<point3> deflection_points(const shape &curve, double deflection);

} // namespace servoce
