#include "solver/AirGapForce.h"

#include "solver/ReluctivityCurve.h"

#include <algorithm>
#include <map>
#include <utility>

namespace solver {

namespace {

Eigen::Vector2d stress(double area, const Eigen::Vector2d &b)
{
    return area * Eigen::Vector2d(b.x() * b.y(), (b.y() * b.y() - b.x() * b.x()) / 2.0);
}

// The stress integrated over a triangle of the mesh's nodes that need not be one of its
// triangles, with the solution's potentials.
Eigen::Vector2d stressOver(const FieldSolution &solution, const std::array<int, 3> &nodes)
{
    const ElementShape shape(solution.problem().mesh, Triangle{nodes, 0});
    const Eigen::VectorXd &potential = solution.potential();
    return stress(shape.area(), shape.curl(Eigen::Vector3d(potential(nodes[0]), potential(nodes[1]), potential(nodes[2]))));
}

std::vector<int> bandTriangles(const FieldSolution &solution, const std::vector<int> &bandRegions)
{
    const std::vector<Triangle> &triangles = solution.problem().mesh.triangles;
    std::vector<int> band;
    for (std::size_t e = 0; e < triangles.size(); ++e) {
        if (std::find(bandRegions.begin(), bandRegions.end(), triangles[e].region) != bandRegions.end())
            band.push_back(static_cast<int>(e));
    }
    return band;
}

} // namespace

Eigen::Vector2d airGapForce(const FieldSolution &solution, const std::vector<int> &bandRegions, double bandHeight)
{
    Eigen::Vector2d sum = Eigen::Vector2d::Zero();
    for (const int e : bandTriangles(solution, bandRegions))
        sum += stress(solution.area(e), solution.fluxDensity(e));
    return -sum / (mu0 * bandHeight);
}

Eigen::Vector2d recutBandForce(const FieldSolution &solution, const std::vector<int> &bandRegions, double bandHeight)
{
    const TriangleMesh &mesh = solution.problem().mesh;
    const std::vector<int> band = bandTriangles(solution, bandRegions);
    std::map<std::pair<int, int>, std::vector<int>> byEdge;
    for (const int e : band) {
        const std::array<int, 3> &nodes = mesh.triangles[static_cast<std::size_t>(e)].nodes;
        for (int k = 0; k < 3; ++k)
            byEdge[std::minmax(nodes[k], nodes[(k + 1) % 3])].push_back(e);
    }
    const auto opposite = [&](int e, const std::pair<int, int> &edge) {
        for (const int node : mesh.triangles[static_cast<std::size_t>(e)].nodes) {
            if (node != edge.first && node != edge.second)
                return node;
        }
        return edge.first;
    };

    Eigen::Vector2d sum = Eigen::Vector2d::Zero();
    std::vector<char> done(mesh.triangles.size(), 0);
    for (const auto &[edge, sharing] : byEdge) {
        if (sharing.size() != 2 || done[static_cast<std::size_t>(sharing[0])] || done[static_cast<std::size_t>(sharing[1])])
            continue;
        const int p = opposite(sharing[0], edge);
        const int q = opposite(sharing[1], edge);
        const Eigen::Vector2d &u = mesh.nodes[static_cast<std::size_t>(edge.first)];
        const Eigen::Vector2d &v = mesh.nodes[static_cast<std::size_t>(edge.second)];
        const Eigen::Vector2d &a = mesh.nodes[static_cast<std::size_t>(p)];
        const Eigen::Vector2d &b = mesh.nodes[static_cast<std::size_t>(q)];
        // Diagonals that halve each other and are equally long make a rectangle.
        const double tolerance = 1e-6 * (u - v).norm();
        if ((u + v - a - b).norm() > tolerance || std::abs((u - v).norm() - (a - b).norm()) > tolerance)
            continue;
        sum += (stressOver(solution, {edge.first, edge.second, p}) + stressOver(solution, {edge.first, edge.second, q})
                + stressOver(solution, {p, q, edge.first}) + stressOver(solution, {p, q, edge.second}))
               / 2.0;
        done[static_cast<std::size_t>(sharing[0])] = 1;
        done[static_cast<std::size_t>(sharing[1])] = 1;
    }
    for (const int e : band) {
        if (!done[static_cast<std::size_t>(e)])
            sum += stress(solution.area(e), solution.fluxDensity(e));
    }
    return -sum / (mu0 * bandHeight);
}

} // namespace solver
