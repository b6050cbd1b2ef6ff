#pragma once

#include "solver/DofMap.h"
#include "solver/MaterialLaw.h"
#include "solver/Problem.h"

#include <Eigen/Core>
#include <Eigen/SparseCore>
#include <vector>

namespace solver {

struct SolverSettings
{
    // Every region at its relative permeability; one linear solve.
    bool linear = false;
    // Of the residual, relative to the residual of the zero field.
    double tolerance = 1e-6;
    int maxIterations = 50;
};

struct Solution
{
    // A_z at every node, Wb/m.
    Eigen::VectorXd potential;
    int iterations = 0;
    bool converged = false;
    // The last relative residual.
    double residual = 0.0;
};

// The vector potential of a problem by Newton iterations on the assembled system,
// with seam pairs and fixed nodes eliminated. A linear problem takes one step.
// The problem must outlive the solver.
class MagnetostaticSolver
{
public:
    MagnetostaticSolver(const Problem &problem, SolverSettings settings);

    Solution solve() const;
    // The same from a guess of the first nodes' potentials, such as the answer of a
    // problem that differs a little and numbers those nodes alike; at least one step.
    Solution solveFrom(const Eigen::VectorXd &guess) const;

private:
    using Matrix = Eigen::SparseMatrix<double>;

    Solution iterate(Eigen::VectorXd unknowns) const;
    // The residual K(a) a - f of the unknowns and, when asked, its Jacobian.
    Eigen::VectorXd assemble(const Eigen::VectorXd &unknowns, Matrix *jacobian) const;
    // The convex functional whose gradient the residual is: the field energy less the
    // work of the currents.
    double functional(const Eigen::VectorXd &unknowns) const;

    const Problem &m_problem;
    SolverSettings m_settings;
    MaterialLaw m_law;
    DofMap m_dofs;
    std::vector<ElementShape> m_shapes;
    bool m_nonlinear = false;
};

} // namespace solver
