#include "solver/MCRCtrl/SliceTopology.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace mcrctrl {

using solver::TriangleMesh;

namespace {

struct SideNode
{
    int node;
    double y;
};

int findRoot(std::vector<int> &parent, int node)
{
    while (parent[std::size_t(node)] != node) {
        parent[std::size_t(node)] = parent[std::size_t(parent[std::size_t(node)])];
        node = parent[std::size_t(node)];
    }
    return node;
}

} // namespace

Seams findSeams(const TriangleMesh &mesh, double width, double sign, const std::vector<char> &ignored, double tolerance)
{
    // Each edge with the triangle and the third node of its first use; a second use
    // makes it inner.
    struct EdgeUse
    {
        int count = 0;
        int triangle = 0;
        int third = 0;
    };
    std::map<std::pair<int, int>, EdgeUse> edges;
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t) {
        const auto &nodes = mesh.triangles[t].nodes;
        for (int k = 0; k < 3; ++k) {
            const int a = nodes[std::size_t(k)];
            const int b = nodes[std::size_t((k + 1) % 3)];
            EdgeUse &use = edges[{std::min(a, b), std::max(a, b)}];
            if (use.count++ == 0) {
                use.triangle = int(t);
                use.third = nodes[std::size_t((k + 2) % 3)];
            }
        }
    }
    double low = mesh.nodes.empty() ? 0.0 : mesh.nodes.front().y();
    double high = low;
    for (const Eigen::Vector2d &node : mesh.nodes) {
        low = std::min(low, node.y());
        high = std::max(high, node.y());
    }

    Seams seams;
    std::vector<char> isFlux(mesh.nodes.size(), 0);
    std::vector<SideNode> left;
    std::vector<SideNode> right;
    std::vector<char> sided(mesh.nodes.size(), 0);
    const auto holeBeside = [&](const EdgeUse &use) {
        seams.holeRegions.push_back(mesh.triangles[std::size_t(use.triangle)].region);
    };
    for (const auto &[edge, use] : edges) {
        if (use.count != 1)
            continue;
        const auto [a, b] = edge;
        if (!ignored.empty() && ignored[std::size_t(a)] && ignored[std::size_t(b)])
            continue;
        const Eigen::Vector2d &pa = mesh.nodes[std::size_t(a)];
        const Eigen::Vector2d &pb = mesh.nodes[std::size_t(b)];
        const bool bottom = std::abs(pa.y() - low) <= tolerance && std::abs(pb.y() - low) <= tolerance;
        const bool top = std::abs(pa.y() - high) <= tolerance && std::abs(pb.y() - high) <= tolerance;
        if (bottom || top) {
            isFlux[std::size_t(a)] = isFlux[std::size_t(b)] = 1;
            continue;
        }
        if (std::abs(pa.x() - pb.x()) > tolerance) {
            holeBeside(use);
            continue;
        }
        const bool onLeft = mesh.nodes[std::size_t(use.third)].x() > pa.x();
        for (const int node : {a, b}) {
            if (sided[std::size_t(node)] & (onLeft ? 1 : 2))
                continue;
            sided[std::size_t(node)] |= onLeft ? 1 : 2;
            (onLeft ? left : right).push_back({node, mesh.nodes[std::size_t(node)].y()});
        }
    }
    for (std::size_t node = 0; node < isFlux.size(); ++node) {
        if (isFlux[node])
            seams.flux.push_back(int(node));
    }

    const auto byY = [](const SideNode &a, const SideNode &b) { return a.y < b.y; };
    std::sort(left.begin(), left.end(), byY);
    for (const SideNode &slave : right) {
        if (isFlux[std::size_t(slave.node)])
            continue;
        const Eigen::Vector2d &ps = mesh.nodes[std::size_t(slave.node)];
        auto candidate = std::lower_bound(left.begin(), left.end(), SideNode{0, slave.y - tolerance}, byY);
        bool paired = false;
        for (; candidate != left.end() && candidate->y <= slave.y + tolerance; ++candidate) {
            const Eigen::Vector2d &pm = mesh.nodes[std::size_t(candidate->node)];
            if (std::abs(ps.x() - width - pm.x()) <= tolerance && candidate->node != slave.node) {
                seams.pairs.push_back({slave.node, candidate->node, sign});
                paired = true;
                break;
            }
        }
        if (!paired)
            seams.holeRegions.push_back(-1);
    }
    return seams;
}

std::vector<char> partsHolding(const TriangleMesh &mesh, const std::vector<int> &seeds)
{
    std::vector<int> parent(mesh.nodes.size());
    std::iota(parent.begin(), parent.end(), 0);
    for (const solver::Triangle &triangle : mesh.triangles) {
        const int root = findRoot(parent, triangle.nodes[0]);
        for (int k = 1; k < 3; ++k)
            parent[std::size_t(findRoot(parent, triangle.nodes[std::size_t(k)]))] = root;
    }
    std::vector<char> seedRoot(mesh.nodes.size(), 0);
    for (const int seed : seeds)
        seedRoot[std::size_t(findRoot(parent, seed))] = 1;
    std::vector<char> held(mesh.nodes.size(), 0);
    for (std::size_t node = 0; node < mesh.nodes.size(); ++node)
        held[node] = seedRoot[std::size_t(findRoot(parent, int(node)))];
    return held;
}

std::vector<int> groupsOf(const solver::Problem &problem, const std::vector<int> &triangles)
{
    std::vector<int> parent(problem.mesh.nodes.size());
    std::iota(parent.begin(), parent.end(), 0);
    const auto join = [&](int a, int b) { parent[std::size_t(findRoot(parent, a))] = findRoot(parent, b); };
    for (const int t : triangles) {
        const auto &nodes = problem.mesh.triangles[std::size_t(t)].nodes;
        join(nodes[1], nodes[0]);
        join(nodes[2], nodes[0]);
    }
    for (const solver::NodePair &pair : problem.pairs)
        join(pair.slave, pair.master);
    std::map<int, int> numbers;
    std::vector<int> groups;
    for (const int t : triangles) {
        const int root = findRoot(parent, problem.mesh.triangles[std::size_t(t)].nodes[0]);
        groups.push_back(numbers.emplace(root, int(numbers.size())).first->second);
    }
    return groups;
}

void closeBand(solver::Problem &problem, const std::vector<int> &stayingRow, const std::vector<int> &movingRow,
               double width, double sign, int region)
{
    std::vector<Eigen::Vector2d> &nodes = problem.mesh.nodes;
    const double start = nodes[std::size_t(stayingRow.front())].x();
    const double tolerance = 1e-9 * std::max(1.0, width);

    // The moving row's nodes once each (its last node is the image of its first), and
    // their images over the periods near the staying row.
    struct Image
    {
        double x;
        int node;
        int period;
    };
    std::vector<Image> images;
    const std::size_t unique = movingRow.size() - 1;
    for (std::size_t i = 0; i < unique; ++i) {
        const double x = nodes[std::size_t(movingRow[i])].x();
        const int shift = int(std::floor((x - start + tolerance) / width));
        for (int period = -shift - 1; period <= -shift + 1; ++period)
            images.push_back({x + period * width, movingRow[i], period});
    }
    std::sort(images.begin(), images.end(), [](const Image &a, const Image &b) { return a.x < b.x; });
    const auto first = std::find_if(images.begin(), images.end(),
                                    [&](const Image &image) { return image.x >= start - tolerance; });
    const double y = nodes[std::size_t(movingRow.front())].y();
    std::vector<int> row;
    for (auto image = first; image != first + std::ptrdiff_t(unique) + 1; ++image) {
        if (image->period == 0) {
            row.push_back(image->node);
            continue;
        }
        row.push_back(int(nodes.size()));
        nodes.emplace_back(image->x, y);
        problem.pairs.push_back({row.back(), image->node, std::pow(sign, image->period)});
    }

    // Zip the two rows, each quadrilateral cut along its shorter diagonal; where both
    // are equal, as for rows in line, the cuts alternate, so that the band leans to
    // neither side.
    std::size_t i = 0;
    std::size_t j = 0;
    const auto distance = [&](int a, int b) { return (nodes[std::size_t(a)] - nodes[std::size_t(b)]).norm(); };
    while (i + 1 < stayingRow.size() || j + 1 < row.size()) {
        bool stayingStep = j + 1 >= row.size();
        if (!stayingStep && i + 1 < stayingRow.size()) {
            const double stayingDiagonal = distance(stayingRow[i + 1], row[j]);
            const double movingDiagonal = distance(stayingRow[i], row[j + 1]);
            stayingStep = std::abs(stayingDiagonal - movingDiagonal) <= tolerance ? i % 2 == 0
                                                                                    : stayingDiagonal < movingDiagonal;
        }
        if (stayingStep) {
            problem.mesh.triangles.push_back({{stayingRow[i], stayingRow[i + 1], row[j]}, region});
            ++i;
        } else {
            problem.mesh.triangles.push_back({{stayingRow[i], row[j + 1], row[j]}, region});
            ++j;
        }
    }
}

} // namespace mcrctrl
