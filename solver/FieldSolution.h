#pragma once

#include "solver/MaterialLaw.h"
#include "solver/Problem.h"

#include <Eigen/Core>
#include <vector>

namespace solver {

// The fields of a solved problem, per triangle, and the integrals over the mesh. All
// values are per metre of depth. The problem must outlive the solution.
class FieldSolution
{
public:
    FieldSolution(const Problem &problem, Eigen::VectorXd potential, bool linear);

    const Problem &problem() const { return m_problem; }
    const Eigen::VectorXd &potential() const { return m_potential; }
    const Eigen::Vector2d &fluxDensity(int triangle) const { return m_fluxDensity[static_cast<std::size_t>(triangle)]; }
    Eigen::Vector2d fieldStrength(int triangle) const;
    // nu of a triangle at its flux density.
    double reluctivity(int triangle) const;
    double area(int triangle) const { return m_area[static_cast<std::size_t>(triangle)]; }
    // The integral of A over a triangle.
    double potentialIntegral(int triangle) const;

    // Stored magnetic energy and co-energy, J/m.
    double energy() const;
    double coenergy() const;

private:
    const Problem &m_problem;
    MaterialLaw m_law;
    Eigen::VectorXd m_potential;
    std::vector<Eigen::Vector2d> m_fluxDensity;
    std::vector<double> m_area;
};

} // namespace solver
