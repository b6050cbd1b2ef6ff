#include "solver/FieldSolution.h"

#include "solver/TriangleMesh.h"

#include <utility>

namespace solver {

FieldSolution::FieldSolution(const Problem &problem, Eigen::VectorXd potential, bool linear)
    : m_problem(problem)
    , m_law(problem, linear)
    , m_potential(std::move(potential))
{
    m_fluxDensity.reserve(problem.mesh.triangles.size());
    m_area.reserve(problem.mesh.triangles.size());
    for (const Triangle &triangle : problem.mesh.triangles) {
        const ElementShape shape(problem.mesh, triangle);
        const Eigen::Vector3d a(m_potential(triangle.nodes[0]), m_potential(triangle.nodes[1]),
                                m_potential(triangle.nodes[2]));
        m_fluxDensity.push_back(shape.curl(a));
        m_area.push_back(shape.area());
    }
}

Eigen::Vector2d FieldSolution::fieldStrength(int triangle) const
{
    return m_law.fieldStrength(triangle, fluxDensity(triangle));
}

double FieldSolution::reluctivity(int triangle) const
{
    return m_law.reluctivity(triangle, fluxDensity(triangle).squaredNorm()).value;
}

double FieldSolution::potentialIntegral(int triangle) const
{
    const Triangle &t = m_problem.mesh.triangles[static_cast<std::size_t>(triangle)];
    return area(triangle) * (m_potential(t.nodes[0]) + m_potential(t.nodes[1]) + m_potential(t.nodes[2])) / 3.0;
}

double FieldSolution::energy() const
{
    double sum = 0.0;
    for (std::size_t e = 0; e < m_area.size(); ++e)
        sum += m_area[e] * m_law.energyDensity(static_cast<int>(e), m_fluxDensity[e]);
    return sum;
}

double FieldSolution::coenergy() const
{
    double sum = 0.0;
    for (std::size_t e = 0; e < m_area.size(); ++e)
        sum += m_area[e] * m_law.coenergyDensity(static_cast<int>(e), m_fluxDensity[e]);
    return sum;
}

} // namespace solver
