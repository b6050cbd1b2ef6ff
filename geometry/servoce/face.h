#pragma once

#include <vector>

#include "geometry/servoce/shape.h"

// Plane faces, in the plane z = 0 unless their arguments say otherwise.
// Sectors begin on the positive x axis; angles are radians.
namespace servoce {

face_shape circle(double r);
face_shape circle(double r, double angle);
face_shape circle(double r, double a1, double a2);
// The major radius comes first.
face_shape ellipse(double r1, double r2);
face_shape ellipse(double r1, double r2, double a1, double a2);
// n corners on the circle of radius r, the first on the positive x axis.
face_shape ngon(double r, int n);
face_shape polygon(const std::vector<point3> &points);
face_shape square(double a, bool center);
// A corner at the origin, or the centre there.
face_shape rectangle(double a, double b, bool center);
// The unbounded plane through pos with the normal dir.
face_shape infplane(const point3 &pos, const vector3 &dir);
// The face inside an edge or a wire; any other shape gives a null face.
face_shape fill(const shape &boundary);

} // namespace servoce
