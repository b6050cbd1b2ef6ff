#include "solver/DofMap.h"

#include <QDebug>
#include <algorithm>

namespace solver {

namespace {

struct Link
{
    int master = -1;
    double sign = 1.0;
};

} // namespace

DofMap::DofMap(const Problem &problem)
{
    const std::size_t count = problem.mesh.nodes.size();
    std::vector<Link> links(count);
    for (const NodePair &pair : problem.pairs)
        links[static_cast<std::size_t>(pair.slave)] = {pair.master, pair.sign < 0.0 ? -1.0 : 1.0};

    // A chain that comes back to a node it passed (corners paired both ways) is cut at
    // the smallest node of its loop, which becomes the root of all of it.
    std::vector<int> passed;
    const auto follow = [&](int current, double *sign) {
        passed.clear();
        while (links[static_cast<std::size_t>(current)].master >= 0
               && std::find(passed.begin(), passed.end(), current) == passed.end()) {
            passed.push_back(current);
            if (sign)
                *sign *= links[static_cast<std::size_t>(current)].sign;
            current = links[static_cast<std::size_t>(current)].master;
        }
        return current;
    };
    for (std::size_t node = 0; node < count; ++node) {
        const int end = follow(static_cast<int>(node), nullptr);
        if (links[static_cast<std::size_t>(end)].master >= 0) {
            const int smallest = *std::min_element(std::find(passed.begin(), passed.end(), end), passed.end());
            links[static_cast<std::size_t>(smallest)].master = -1;
        }
    }
    m_root.resize(count);
    m_sign.assign(count, 1.0);
    for (std::size_t node = 0; node < count; ++node)
        m_root[node] = follow(static_cast<int>(node), &m_sign[node]);
    const std::vector<int> &root = m_root;

    // A root is known when any node that follows it is fixed (A = sign A_root) or when
    // no triangle uses it: such a node would make the matrix singular.
    std::vector<bool> used(count, false);
    for (const Triangle &triangle : problem.mesh.triangles) {
        for (const int node : triangle.nodes)
            used[static_cast<std::size_t>(root[static_cast<std::size_t>(node)])] = true;
    }
    std::vector<bool> rootKnown(count, false);
    std::vector<double> rootValue(count, 0.0);
    for (const FixedPotential &fixed : problem.fixed) {
        const auto node = static_cast<std::size_t>(fixed.node);
        const auto r = static_cast<std::size_t>(root[node]);
        const double value = fixed.value * m_sign[node];
        if (rootKnown[r] && rootValue[r] != value)
            qWarning().noquote() << "Solver: node" << fixed.node << "is held at two potentials;" << value
                                 << "is kept";
        rootKnown[r] = true;
        rootValue[r] = value;
    }

    std::vector<int> rootDof(count, -1);
    for (std::size_t node = 0; node < count; ++node) {
        if (root[node] == static_cast<int>(node) && used[node] && !rootKnown[node])
            rootDof[node] = m_dofCount++;
    }
    m_dof.resize(count);
    m_known.resize(count);
    for (std::size_t node = 0; node < count; ++node) {
        const auto r = static_cast<std::size_t>(root[node]);
        m_dof[node] = rootDof[r];
        m_known[node] = m_sign[node] * rootValue[r];
    }
}

double DofMap::potential(int node, const Eigen::VectorXd &unknowns) const
{
    const auto index = static_cast<std::size_t>(node);
    if (m_dof[index] < 0)
        return m_known[index];
    return m_sign[index] * unknowns(m_dof[index]);
}

Eigen::VectorXd DofMap::nodePotentials(const Eigen::VectorXd &unknowns) const
{
    Eigen::VectorXd potentials(static_cast<Eigen::Index>(m_dof.size()));
    for (std::size_t node = 0; node < m_dof.size(); ++node)
        potentials(static_cast<Eigen::Index>(node)) = potential(static_cast<int>(node), unknowns);
    return potentials;
}

Eigen::VectorXd DofMap::unknowns(const Eigen::VectorXd &nodePotentials) const
{
    Eigen::VectorXd unknowns = Eigen::VectorXd::Zero(m_dofCount);
    std::vector<char> taken(static_cast<std::size_t>(m_dofCount), 0);
    const std::size_t given = std::min(m_dof.size(), static_cast<std::size_t>(nodePotentials.size()));
    for (std::size_t node = 0; node < given; ++node) {
        const int dof = m_dof[node];
        if (dof < 0 || taken[static_cast<std::size_t>(dof)])
            continue;
        unknowns(dof) = m_sign[node] * nodePotentials(static_cast<Eigen::Index>(node));
        taken[static_cast<std::size_t>(dof)] = 1;
    }
    return unknowns;
}

} // namespace solver
