#pragma once

#include "solver/Problem.h"

#include <Eigen/Core>
#include <vector>

namespace solver {

// Which unknown each node's potential follows. Seam pairs are followed to the node at
// the end of their chain (its root); a node is then sign times its root. Fixed nodes
// and nodes of no triangle have no unknown; their potential is a known value.
class DofMap
{
public:
    explicit DofMap(const Problem &problem);

    int dofCount() const { return m_dofCount; }
    // The unknown of a node, or -1 for a known potential.
    int dof(int node) const { return m_dof[static_cast<std::size_t>(node)]; }
    double sign(int node) const { return m_sign[static_cast<std::size_t>(node)]; }
    // The node at the end of a node's chain of seam pairs: itself when it follows none.
    int root(int node) const { return m_root[static_cast<std::size_t>(node)]; }

    double potential(int node, const Eigen::VectorXd &unknowns) const;
    Eigen::VectorXd nodePotentials(const Eigen::VectorXd &unknowns) const;
    // The unknowns from the potentials of the first nodes: each takes that of the first
    // node that follows it; those that no given node follows are 0.
    Eigen::VectorXd unknowns(const Eigen::VectorXd &nodePotentials) const;

private:
    std::vector<int> m_root;
    std::vector<int> m_dof;
    std::vector<double> m_sign;
    std::vector<double> m_known;
    int m_dofCount = 0;
};

} // namespace solver
