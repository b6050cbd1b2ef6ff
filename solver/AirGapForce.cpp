#include "solver/AirGapForce.h"

#include "solver/ReluctivityCurve.h"

#include <algorithm>

namespace solver {

Eigen::Vector2d airGapForce(const FieldSolution &solution, const std::vector<int> &bandRegions, double bandHeight)
{
    const std::vector<Triangle> &triangles = solution.problem().mesh.triangles;
    Eigen::Vector2d stress = Eigen::Vector2d::Zero();
    for (std::size_t e = 0; e < triangles.size(); ++e) {
        if (std::find(bandRegions.begin(), bandRegions.end(), triangles[e].region) == bandRegions.end())
            continue;
        const Eigen::Vector2d &b = solution.fluxDensity(static_cast<int>(e));
        stress += solution.area(static_cast<int>(e)) * Eigen::Vector2d(b.x() * b.y(), (b.y() * b.y() - b.x() * b.x()) / 2.0);
    }
    return -stress / (mu0 * bandHeight);
}

} // namespace solver
