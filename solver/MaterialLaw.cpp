#include "solver/MaterialLaw.h"

namespace solver {

MaterialLaw::MaterialLaw(const Problem &problem, bool linear)
    : m_problem(problem)
    , m_linear(linear)
{
}

const Region &MaterialLaw::regionOf(int triangle) const
{
    return m_problem.regions[static_cast<std::size_t>(m_problem.mesh.triangles[static_cast<std::size_t>(triangle)].region)];
}

const ReluctivityCurve *MaterialLaw::curveOf(int triangle) const
{
    const Region &region = regionOf(triangle);
    if (m_linear || region.curve < 0)
        return nullptr;
    return &m_problem.curves[static_cast<std::size_t>(region.curve)];
}

Reluctivity MaterialLaw::reluctivity(int triangle, double b2) const
{
    if (const ReluctivityCurve *curve = curveOf(triangle))
        return {curve->reluctivity(b2), curve->reluctivityDerivative(b2)};
    return {1.0 / (mu0 * regionOf(triangle).relativePermeability), 0.0};
}

Eigen::Vector2d MaterialLaw::remanence(int triangle) const
{
    if (m_problem.remanence.empty() || curveOf(triangle))
        return Eigen::Vector2d::Zero();
    return m_problem.remanence[static_cast<std::size_t>(triangle)];
}

Eigen::Vector2d MaterialLaw::fieldStrength(int triangle, const Eigen::Vector2d &b) const
{
    return reluctivity(triangle, b.squaredNorm()).value * (b - remanence(triangle));
}

double MaterialLaw::energyDensity(int triangle, const Eigen::Vector2d &b) const
{
    if (const ReluctivityCurve *curve = curveOf(triangle))
        return curve->energyDensity(b.norm());
    return reluctivity(triangle, 0.0).value * (b - remanence(triangle)).squaredNorm() / 2.0;
}

double MaterialLaw::coenergyDensity(int triangle, const Eigen::Vector2d &b) const
{
    return fieldStrength(triangle, b).dot(b) - energyDensity(triangle, b);
}

} // namespace solver
