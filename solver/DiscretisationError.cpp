#include "solver/DiscretisationError.h"

#include "solver/DofMap.h"
#include "solver/FieldSolution.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <utility>
#include <vector>

namespace solver {

double DiscretisationError::percent() const
{
    const double whole = error + energy;
    return whole > 0.0 ? 100.0 * std::sqrt(error / whole) : 0.0;
}

namespace {

// The group of each region within which the field is averaged: one per material without
// magnets, one per region of a magnet.
std::vector<int> averagingGroups(const Problem &problem)
{
    std::vector<bool> magnet(problem.regions.size(), false);
    for (std::size_t e = 0; e < problem.remanence.size(); ++e) {
        const auto region = std::size_t(problem.mesh.triangles[e].region);
        if (problem.regions[region].curve < 0 && !problem.remanence[e].isZero())
            magnet[region] = true;
    }
    std::map<std::pair<int, double>, int> materials;
    std::vector<int> groups(problem.regions.size());
    int next = 0;
    for (std::size_t region = 0; region < problem.regions.size(); ++region) {
        if (magnet[region]) {
            groups[region] = next++;
            continue;
        }
        const Region &r = problem.regions[region];
        const auto [material, added] = materials.try_emplace({r.curve, r.relativePermeability}, next);
        if (added)
            ++next;
        groups[region] = material->second;
    }
    return groups;
}

} // namespace

DiscretisationError discretisationError(const FieldSolution &solution)
{
    const Problem &problem = solution.problem();
    const TriangleMesh &mesh = problem.mesh;
    const std::vector<int> groups = averagingGroups(problem);
    const auto groupOf = [&](int e) { return groups[std::size_t(mesh.triangles[std::size_t(e)].region)]; };
    std::vector<int> byGroup(mesh.triangles.size());
    std::iota(byGroup.begin(), byGroup.end(), 0);
    std::stable_sort(byGroup.begin(), byGroup.end(), [&](int a, int b) { return groupOf(a) < groupOf(b); });
    const DofMap seams(problem);

    // Area-weighted sums at the seams' root nodes of the group at hand, cleared after it.
    std::vector<Eigen::Vector2d> weighted(mesh.nodes.size(), Eigen::Vector2d::Zero());
    std::vector<double> area(mesh.nodes.size(), 0.0);
    DiscretisationError result;
    for (auto first = byGroup.begin(); first != byGroup.end();) {
        const int group = groupOf(*first);
        const auto last = std::find_if(first, byGroup.end(), [&](int e) { return groupOf(e) != group; });
        for (auto e = first; e != last; ++e) {
            for (const int node : mesh.triangles[std::size_t(*e)].nodes) {
                const auto root = std::size_t(seams.root(node));
                weighted[root] += seams.sign(node) * solution.area(*e) * solution.fluxDensity(*e);
                area[root] += solution.area(*e);
            }
        }
        for (auto e = first; e != last; ++e) {
            const Eigen::Vector2d &b = solution.fluxDensity(*e);
            const std::array<int, 3> &nodes = mesh.triangles[std::size_t(*e)].nodes;
            std::array<Eigen::Vector2d, 3> difference;
            for (std::size_t k = 0; k < 3; ++k) {
                const auto root = std::size_t(seams.root(nodes[k]));
                difference[k] = seams.sign(nodes[k]) * weighted[root] / area[root] - b;
            }
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
                weighted[std::size_t(seams.root(node))].setZero();
                area[std::size_t(seams.root(node))] = 0.0;
            }
        }
        first = last;
    }
    return result;
}

} // namespace solver
