#pragma once

#include "solver/FieldSolution.h"

#include <Eigen/Core>
#include <vector>

namespace solver {

// The force on everything above an air-gap band by the Maxwell stress tensor averaged
// over the band (Arkkio): F = -1/(mu0 h) times the integral over the band of
// (Bx By, (By^2 - Bx^2) / 2). The band is a layer of air of height h along y that runs
// across the whole model along x, the moving direction. N/m; the part below feels the
// opposite force, and a slice's torque is the x part times its radius and width. This
// is the derivative of the co-energy as the band's elements stretch with the motion.
Eigen::Vector2d airGapForce(const FieldSolution &solution, const std::vector<int> &bandRegions, double bandHeight);

// The same for a band that is cut anew as the rotor moves rather than stretched. Where
// two of its triangles make a rectangle, either diagonal would have cut it, and both
// cuts give the same field (their stiffness matrices are equal), but the stress of one
// cut leans to the side of its diagonal by the field's twist across the rectangle:
// such a rectangle is integrated over both of its cuts.
Eigen::Vector2d recutBandForce(const FieldSolution &solution, const std::vector<int> &bandRegions, double bandHeight);

} // namespace solver
