#pragma once

#include <functional>
#include <vector>

#include "solver/Problem.h"

// A rectangle cut by grid lines into cells of two triangles each: the meshes of the
// solver's tests, whose closed-form answers are fields of layers and strips.
class GridMesh
{
public:
    GridMesh(std::vector<double> xs, std::vector<double> ys)
        : m_xs(std::move(xs))
        , m_ys(std::move(ys))
    {
    }

    // Lines from the first to the last break, each span cut into equal parts.
    static std::vector<double> lines(const std::vector<double> &breaks, const std::vector<int> &parts)
    {
        std::vector<double> result{breaks.front()};
        for (std::size_t span = 0; span < parts.size(); ++span) {
            for (int k = 1; k <= parts[span]; ++k)
                result.push_back(breaks[span] + (breaks[span + 1] - breaks[span]) * k / parts[span]);
        }
        return result;
    }

    int columns() const { return static_cast<int>(m_xs.size()); }
    int rows() const { return static_cast<int>(m_ys.size()); }
    int node(int column, int row) const { return row * columns() + column; }
    const std::vector<double> &xs() const { return m_xs; }
    const std::vector<double> &ys() const { return m_ys; }

    // The region of a triangle is chosen by its centroid.
    solver::TriangleMesh mesh(const std::function<int(const Eigen::Vector2d &)> &regionAt) const
    {
        solver::TriangleMesh mesh;
        for (const double y : m_ys) {
            for (const double x : m_xs)
                mesh.nodes.emplace_back(x, y);
        }
        for (int row = 0; row + 1 < rows(); ++row) {
            for (int column = 0; column + 1 < columns(); ++column) {
                const int a = node(column, row);
                const int b = node(column + 1, row);
                const int c = node(column + 1, row + 1);
                const int d = node(column, row + 1);
                for (const std::array<int, 3> &nodes : {std::array<int, 3>{a, b, c}, std::array<int, 3>{a, c, d}}) {
                    const Eigen::Vector2d centroid = (mesh.nodes[nodes[0]] + mesh.nodes[nodes[1]] + mesh.nodes[nodes[2]]) / 3.0;
                    mesh.triangles.push_back({nodes, regionAt(centroid)});
                }
            }
        }
        return mesh;
    }

    // The right edge follows the left edge, node by node.
    std::vector<solver::NodePair> seam(double sign) const
    {
        std::vector<solver::NodePair> pairs;
        for (int row = 0; row < rows(); ++row)
            pairs.push_back({node(columns() - 1, row), node(0, row), sign});
        return pairs;
    }

    std::vector<int> columnNodes(int column) const
    {
        std::vector<int> nodes;
        for (int row = 0; row < rows(); ++row)
            nodes.push_back(node(column, row));
        return nodes;
    }

    std::vector<int> rowNodes(int row) const
    {
        std::vector<int> nodes;
        for (int column = 0; column < columns(); ++column)
            nodes.push_back(node(column, row));
        return nodes;
    }

private:
    std::vector<double> m_xs;
    std::vector<double> m_ys;
};

// Holds the given nodes at the potential that a function of position gives.
inline void fix(solver::Problem &problem, const std::vector<int> &nodes,
                const std::function<double(const Eigen::Vector2d &)> &potential)
{
    for (const int node : nodes)
        problem.fixed.push_back({node, potential(problem.mesh.nodes[static_cast<std::size_t>(node)])});
}
