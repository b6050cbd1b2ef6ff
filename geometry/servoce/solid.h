#pragma once

#include <vector>

#include "geometry/servoce/shape.h"

// Solids and sweeps. With center, a solid is placed with its middle at z = 0
// (a box with its middle at the origin); otherwise it stands on z = 0.
// Angles are radians.
namespace servoce {

solid_shape box(double x, double y, double z, bool center);
solid_shape cylinder(double r, double h, bool center);
// A sector of a cylinder, swept by angle from the positive x axis.
solid_shape cylinder(double r, double h, double angle, bool center);
solid_shape cone(double r1, double r2, double h, bool center);
solid_shape cone(double r1, double r2, double h, double angle, bool center);
// The kernel's sphere: a sweep angle, then latitude limits, then both.
solid_shape sphere(double r);
solid_shape sphere(double r, double angle);
solid_shape sphere(double r, double a1, double a2);
solid_shape sphere(double r, double a1, double a2, double angle);
// The kernel's torus: r1 to the middle of the tube, r2 of the tube; ua sweeps
// about the axis, va1 to va2 limits the tube's own circle.
solid_shape torus(double r1, double r2);
solid_shape torus(double r1, double r2, double ua);
solid_shape torus(double r1, double r2, double va1, double va2);
solid_shape torus(double r1, double r2, double va1, double va2, double ua);
// A cylinder of radius r1 less the one of radius r2, from z = 0, simplified.
shape tube(double r1, double r2, double h);
shape tube(double r1, double r2, double h, double angle);

// A prism of a face, wire or edge along v; a solid only if it has exactly one
// face. A zero vector gives the shape back.
shape linear_extrude(const shape &profile, const vector3 &v, bool center);

// Sweeps the profiles (wires, or vertices at the ends) along the spine; the
// result is a shell.
shape pipe_shell(const std::vector<shape> &profiles, const wire_shape &spine, bool frenet, bool force_approx_c1,
                 int max_degree);

// A box filling the bounding box.
solid_shape bounding_box_shape(const boundbox &box);

} // namespace servoce
