#pragma once

#include "solver/FieldSolution.h"

#include <Eigen/Core>
#include <vector>

namespace solver {

// The force on everything above an air-gap band by the Maxwell stress tensor averaged
// over the band (Arkkio): F = -1/(mu0 h) times the integral over the band of
// (Bx By, (By^2 - Bx^2) / 2). The band is a layer of air of height h along y that runs
// across the whole model along x, the moving direction. N/m; the part below feels the
// opposite force, and a slice's torque is the x part times its radius and width.
Eigen::Vector2d airGapForce(const FieldSolution &solution, const std::vector<int> &bandRegions, double bandHeight);

} // namespace solver
