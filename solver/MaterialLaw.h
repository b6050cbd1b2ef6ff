#pragma once

#include "solver/Problem.h"

#include <Eigen/Core>

namespace solver {

// The reluctivity nu of one triangle as a function of B squared and its derivative with
// respect to B squared, which the Newton matrix needs.
struct Reluctivity
{
    double value = 0.0;
    double derivative = 0.0;
};

// H(B) of each triangle: nu(|B|^2) B for iron, nu (B - Br) for linear regions and
// magnets. In the linear mode every region keeps its relative permeability and curves
// are not read. The problem must outlive the law.
class MaterialLaw
{
public:
    MaterialLaw(const Problem &problem, bool linear);

    Reluctivity reluctivity(int triangle, double b2) const;
    Eigen::Vector2d remanence(int triangle) const;
    Eigen::Vector2d fieldStrength(int triangle, const Eigen::Vector2d &b) const;
    // The integral of H dB from the state without field strength (B = Br) to B, and of
    // B dH from H = 0: their sum is H . B.
    double energyDensity(int triangle, const Eigen::Vector2d &b) const;
    double coenergyDensity(int triangle, const Eigen::Vector2d &b) const;

private:
    const ReluctivityCurve *curveOf(int triangle) const;
    const Region &regionOf(int triangle) const;

    const Problem &m_problem;
    bool m_linear;
};

} // namespace solver
