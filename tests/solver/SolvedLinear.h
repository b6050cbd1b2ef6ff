#pragma once

#include <gtest/gtest.h>

#include "solver/FieldSolution.h"
#include "solver/MagnetostaticSolver.h"

// The fields of a problem solved with linear materials, which must converge.
inline solver::FieldSolution solvedLinear(const solver::Problem &problem)
{
    solver::SolverSettings settings;
    settings.linear = true;
    const solver::Solution solution = solver::MagnetostaticSolver(problem, settings).solve();
    EXPECT_TRUE(solution.converged);
    return solver::FieldSolution(problem, solution.potential, true);
}
