#include "solver/DiscretisationError.h"

#include "solver/FieldSolution.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

namespace solver {

double DiscretisationError::percent() const
{
    const double whole = error + energy;
    return whole > 0.0 ? 100.0 * std::sqrt(error / whole) : 0.0;
}

DiscretisationError discretisationError(const FieldSolution &solution)
{
    const TriangleMesh &mesh = solution.problem().mesh;
    std::vector<int> byRegion(mesh.triangles.size());
    std::iota(byRegion.begin(), byRegion.end(), 0);
    std::stable_sort(byRegion.begin(), byRegion.end(), [&](int a, int b) {
        return mesh.triangles[std::size_t(a)].region < mesh.triangles[std::size_t(b)].region;
    });

    // Area-weighted sums at the nodes of the region at hand, cleared after it.
    std::vector<Eigen::Vector2d> weighted(mesh.nodes.size(), Eigen::Vector2d::Zero());
    std::vector<double> area(mesh.nodes.size(), 0.0);
    DiscretisationError result;
    for (auto first = byRegion.begin(); first != byRegion.end();) {
        const int region = mesh.triangles[std::size_t(*first)].region;
        const auto last = std::find_if(first, byRegion.end(), [&](int e) { return mesh.triangles[std::size_t(e)].region != region; });
        for (auto e = first; e != last; ++e) {
            for (const int node : mesh.triangles[std::size_t(*e)].nodes) {
                weighted[std::size_t(node)] += solution.area(*e) * solution.fluxDensity(*e);
                area[std::size_t(node)] += solution.area(*e);
            }
        }
        for (auto e = first; e != last; ++e) {
            const Eigen::Vector2d &b = solution.fluxDensity(*e);
            const std::array<int, 3> &nodes = mesh.triangles[std::size_t(*e)].nodes;
            std::array<Eigen::Vector2d, 3> difference;
            for (std::size_t k = 0; k < 3; ++k)
                difference[k] = weighted[std::size_t(nodes[k])] / area[std::size_t(nodes[k])] - b;
            // The square of a linear function: the rule of the edges' midpoints is exact.
            double squares = 0.0;
            for (std::size_t k = 0; k < 3; ++k)
                squares += (0.5 * (difference[k] + difference[(k + 1) % 3])).squaredNorm();
            const double nu = solution.reluctivity(*e);
            result.error += nu * solution.area(*e) * squares / 3.0;
            result.energy += nu * solution.area(*e) * b.squaredNorm();
        }
        for (auto e = first; e != last; ++e) {
            for (const int node : mesh.triangles[std::size_t(*e)].nodes) {
                weighted[std::size_t(node)].setZero();
                area[std::size_t(node)] = 0.0;
            }
        }
        first = last;
    }
    return result;
}

} // namespace solver
