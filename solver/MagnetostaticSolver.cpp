#include "solver/MagnetostaticSolver.h"

#include <Eigen/SparseCholesky>
#include <Eigen/SparseLU>
#include <QDebug>

namespace solver {

namespace {

using Matrix = Eigen::SparseMatrix<double>;

// Solves with Jacobians of one sparsity pattern: the fill-reducing ordering is found
// once. The Jacobian is symmetric and positive definite for a monotone B-H curve; a
// matrix that is not (a floating potential) is left to the general solver.
class JacobianSolver
{
public:
    // Empty on failure.
    Eigen::VectorXd solve(const Matrix &jacobian, const Eigen::VectorXd &rightSide)
    {
        if (!m_analysed) {
            m_cholesky.analyzePattern(jacobian);
            m_analysed = true;
        }
        m_cholesky.factorize(jacobian);
        if (m_cholesky.info() == Eigen::Success) {
            Eigen::VectorXd solution = m_cholesky.solve(rightSide);
            if (m_cholesky.info() == Eigen::Success && solution.allFinite())
                return solution;
        }
        Eigen::SparseLU<Matrix> lu(jacobian);
        if (lu.info() != Eigen::Success)
            return {};
        Eigen::VectorXd solution = lu.solve(rightSide);
        if (lu.info() != Eigen::Success || !solution.allFinite())
            return {};
        return solution;
    }

private:
    Eigen::SimplicialLDLT<Matrix> m_cholesky;
    bool m_analysed = false;
};

} // namespace

MagnetostaticSolver::MagnetostaticSolver(const Problem &problem, SolverSettings settings)
    : m_problem(problem)
    , m_settings(settings)
    , m_law(problem, settings.linear)
    , m_dofs(problem)
{
    m_shapes.reserve(problem.mesh.triangles.size());
    for (const Triangle &triangle : problem.mesh.triangles)
        m_shapes.emplace_back(problem.mesh, triangle);
    if (!settings.linear) {
        for (const Triangle &triangle : problem.mesh.triangles)
            m_nonlinear = m_nonlinear || problem.regions[static_cast<std::size_t>(triangle.region)].curve >= 0;
    }
}

Eigen::VectorXd MagnetostaticSolver::assemble(const Eigen::VectorXd &unknowns, Matrix *jacobian) const
{
    Eigen::VectorXd residual = Eigen::VectorXd::Zero(m_dofs.dofCount());
    std::vector<Eigen::Triplet<double>> entries;
    if (jacobian)
        entries.reserve(9 * m_shapes.size());
    for (std::size_t e = 0; e < m_shapes.size(); ++e) {
        const ElementShape &shape = m_shapes[e];
        const Triangle &triangle = m_problem.mesh.triangles[e];
        const int element = static_cast<int>(e);
        Eigen::Vector3d a;
        for (int i = 0; i < 3; ++i)
            a(i) = m_dofs.potential(triangle.nodes[i], unknowns);

        const Eigen::Vector2d b = shape.curl(a);
        const Reluctivity nu = m_law.reluctivity(element, b.squaredNorm());
        const Eigen::Matrix3d stiffness = shape.stiffness();
        const Eigen::Vector3d stiffnessA = stiffness * a;
        // Sources: the current density against N_i, and the magnetisation as
        // nu Br . curl N_i, its equivalent currents.
        const Eigen::Vector2d br = m_law.remanence(element);
        const double current = m_problem.regions[static_cast<std::size_t>(triangle.region)].currentDensity;
        const Eigen::Vector3d source = Eigen::Vector3d::Constant(current * shape.area() / 3.0)
                                       + nu.value * (br.x() * shape.c() - br.y() * shape.b()) / 2.0;
        const Eigen::Vector3d local = nu.value * stiffnessA - source;
        Eigen::Matrix3d tangent;
        if (jacobian)
            tangent = nu.value * stiffness
                      + (2.0 * nu.derivative / shape.area()) * stiffnessA * stiffnessA.transpose();

        for (int i = 0; i < 3; ++i) {
            const int row = m_dofs.dof(triangle.nodes[i]);
            if (row < 0)
                continue;
            const double rowSign = m_dofs.sign(triangle.nodes[i]);
            residual(row) += rowSign * local(i);
            if (!jacobian)
                continue;
            for (int j = 0; j < 3; ++j) {
                const int column = m_dofs.dof(triangle.nodes[j]);
                if (column >= 0)
                    entries.emplace_back(row, column, rowSign * m_dofs.sign(triangle.nodes[j]) * tangent(i, j));
            }
        }
    }
    if (jacobian) {
        jacobian->resize(m_dofs.dofCount(), m_dofs.dofCount());
        jacobian->setFromTriplets(entries.begin(), entries.end());
    }
    return residual;
}

double MagnetostaticSolver::functional(const Eigen::VectorXd &unknowns) const
{
    double sum = 0.0;
    for (std::size_t e = 0; e < m_shapes.size(); ++e) {
        const Triangle &triangle = m_problem.mesh.triangles[e];
        Eigen::Vector3d a;
        for (int i = 0; i < 3; ++i)
            a(i) = m_dofs.potential(triangle.nodes[i], unknowns);
        const double current = m_problem.regions[static_cast<std::size_t>(triangle.region)].currentDensity;
        sum += m_shapes[e].area()
               * (m_law.energyDensity(static_cast<int>(e), m_shapes[e].curl(a)) - current * a.sum() / 3.0);
    }
    return sum;
}

Solution MagnetostaticSolver::solve() const
{
    return iterate(Eigen::VectorXd::Zero(m_dofs.dofCount()));
}

Solution MagnetostaticSolver::solveFrom(const Eigen::VectorXd &guess) const
{
    return iterate(m_dofs.unknowns(guess));
}

Solution MagnetostaticSolver::iterate(Eigen::VectorXd unknowns) const
{
    Solution solution;
    JacobianSolver linearSolver;
    Matrix jacobian;
    Eigen::VectorXd residual = assemble(unknowns, &jacobian);
    // The tolerance is relative to the residual of the zero field, wherever the
    // iterations start.
    const double reference = unknowns.isZero(0.0) ? residual.norm() : assemble(Eigen::VectorXd::Zero(unknowns.size()), nullptr).norm();
    solution.converged = reference == 0.0;
    while (!solution.converged && solution.iterations < m_settings.maxIterations) {
        const Eigen::VectorXd step = linearSolver.solve(jacobian, -residual);
        if (step.size() != unknowns.size()) {
            qWarning().noquote() << "Solver: the system matrix is singular; is any potential fixed?";
            break;
        }
        ++solution.iterations;
        // Damped line search on the functional (Armijo): the residual alone is a poor
        // judge where air and saturated iron differ in reluctivity by thousands. Near
        // the solution the functional changes below its round-off; a slack lets the
        // full step through there.
        const double start = functional(unknowns);
        const double slope = residual.dot(step);
        const double slack = 1e-13 * std::abs(start);
        double damping = 1.0;
        Eigen::VectorXd trial = unknowns + step;
        for (int halving = 0; m_nonlinear && halving < 20 && functional(trial) > start + 1e-4 * damping * slope + slack;
             ++halving) {
            damping /= 2.0;
            trial = unknowns + damping * step;
        }
        unknowns = trial;
        const double relativeStep = damping * step.norm() / std::max(unknowns.norm(), 1e-300);
        residual = assemble(unknowns, &jacobian);
        const double norm = residual.norm();
        solution.residual = norm / reference;
        // A full step at round-off size is as far as a tolerance below it can get.
        solution.converged = !m_nonlinear || solution.residual <= m_settings.tolerance
                             || (damping == 1.0 && relativeStep <= 1e-13);
    }
    if (!solution.converged)
        qWarning().noquote() << "Solver: no convergence after" << solution.iterations
                             << "iterations; relative residual" << solution.residual;
    solution.potential = m_dofs.nodePotentials(unknowns);
    return solution;
}

} // namespace solver
