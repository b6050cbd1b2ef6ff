#include <gtest/gtest.h>

#include "solver/FieldSolution.h"
#include "solver/GridMesh.h"
#include "solver/IronData.h"
#include "solver/MagnetostaticSolver.h"

using namespace solver;

namespace {

// Air, a slab of saturating iron across the middle, air: along x one period.
struct SlabModel
{
    GridMesh grid{GridMesh::lines({0.0, 0.01}, {5}), GridMesh::lines({0.0, 0.003, 0.008, 0.01}, {3, 5, 2})};
    IronData data;
    Problem problem;

    SlabModel()
    {
        problem.mesh = grid.mesh([](const Eigen::Vector2d &p) { return p.y() > 0.003 && p.y() < 0.008 ? 1 : 0; });
        problem.regions = {Region{}, Region{0.0, 1000.0, 0}};
        problem.curves = {data.curve()};
    }

    // Flux across the slab: B = (0, b) through all layers.
    void crossFlux(double b)
    {
        fix(problem, grid.columnNodes(0), [](const Eigen::Vector2d &) { return 0.0; });
        fix(problem, grid.columnNodes(grid.columns() - 1), [b](const Eigen::Vector2d &) { return -b * 0.01; });
    }

    // A flux per metre along the slab, between bottom and top.
    void flux(double perMetre)
    {
        problem.pairs = grid.seam(1.0);
        fix(problem, grid.rowNodes(0), [](const Eigen::Vector2d &) { return 0.0; });
        fix(problem, grid.rowNodes(grid.rows() - 1), [perMetre](const Eigen::Vector2d &) { return perMetre; });
    }
};

SolverSettings tight()
{
    SolverSettings settings;
    settings.tolerance = 1e-12;
    return settings;
}

// The largest relative distance of a component of each field in a region from a value.
double deviation(const FieldSolution &fields, int region, bool fieldStrength, int component, double expected)
{
    double largest = 0.0;
    for (std::size_t e = 0; e < fields.problem().mesh.triangles.size(); ++e) {
        if (fields.problem().mesh.triangles[e].region != region)
            continue;
        const int element = static_cast<int>(e);
        const Eigen::Vector2d value = fieldStrength ? fields.fieldStrength(element) : fields.fluxDensity(element);
        largest = std::max(largest, std::abs(value(component) / expected - 1.0));
    }
    return largest;
}

} // namespace

TEST(NonlinearIron, FluxAcrossASaturatedSlabKeepsBAndTakesHFromTheCurve)
{
    // At a tabulated point the curve gives the tabulated H; past the table, H grows at
    // the slope of free space.
    SlabModel model;
    for (const auto &[b, h] : {std::pair{model.data.b[9], model.data.h[9]},
                              std::pair{model.data.b.back() + 0.5, model.data.h.back() + 0.5 / mu0}}) {
        model.problem.fixed.clear();
        model.crossFlux(b);
        const Solution solution = MagnetostaticSolver(model.problem, tight()).solve();
        EXPECT_TRUE(solution.converged);
        EXPECT_LE(solution.iterations, 12);
        const FieldSolution fields(model.problem, solution.potential, false);
        EXPECT_LT(deviation(fields, 0, false, 1, b), 1e-9);
        EXPECT_LT(deviation(fields, 1, false, 1, b), 1e-9);
        EXPECT_LT(deviation(fields, 1, true, 1, h), 1e-10);
        EXPECT_LT(deviation(fields, 0, true, 1, b / mu0), 1e-9);
    }
}

TEST(NonlinearIron, NewtonFindsTheCommonHOfAirAndSaturatingIronInAFewSteps)
{
    // Along the slab H is common: with H at a tabulated point the flux per metre is
    // mu0 H (air height) + B (iron height), and that flux must give back H and B.
    SlabModel model;
    for (const std::size_t point : {std::size_t(4), std::size_t(8), std::size_t(11)}) {
        const double h = model.data.h[point];
        const double b = model.data.b[point];
        model.problem.fixed.clear();
        model.flux(mu0 * h * 0.005 + b * 0.005);
        const Solution solution = MagnetostaticSolver(model.problem, tight()).solve();
        EXPECT_TRUE(solution.converged) << point;
        EXPECT_LE(solution.iterations, 10) << point;
        EXPECT_LE(solution.residual, 1e-12);
        const FieldSolution fields(model.problem, solution.potential, false);
        EXPECT_LT(deviation(fields, 1, false, 0, b), 1e-10) << point;
        EXPECT_LT(deviation(fields, 1, true, 0, h), 1e-10) << point;
        EXPECT_LT(deviation(fields, 0, false, 0, mu0 * h), 1e-10) << point;
        // The stored energy of the iron is the area under its curve up to B.
        const double airEnergy = mu0 * h * h / 2.0 * 0.005 * 0.01;
        const double ironEnergy = model.problem.curves[0].energyDensity(b) * 0.005 * 0.01;
        EXPECT_NEAR(fields.energy() / (airEnergy + ironEnergy), 1.0, 1e-10);
        EXPECT_NEAR((fields.energy() + fields.coenergy()) / (h * (mu0 * h + b) * 0.005 * 0.01), 1.0, 1e-10);
    }
}

TEST(NonlinearIron, LinearModeUsesTheRelativePermeabilityInOneStep)
{
    SlabModel model;
    model.flux(1e-3);
    SolverSettings settings;
    settings.linear = true;
    const Solution solution = MagnetostaticSolver(model.problem, settings).solve();
    EXPECT_TRUE(solution.converged);
    EXPECT_EQ(solution.iterations, 1);
    const FieldSolution fields(model.problem, solution.potential, true);
    const double h = 1e-3 / (mu0 * (0.005 + 1000.0 * 0.005));
    EXPECT_LT(deviation(fields, 1, false, 0, mu0 * 1000.0 * h), 1e-9);
}

TEST(NonlinearIron, TooFewIterationsAreReported)
{
    SlabModel model;
    model.flux(0.01);
    SolverSettings settings = tight();
    settings.maxIterations = 1;
    const Solution solution = MagnetostaticSolver(model.problem, settings).solve();
    EXPECT_FALSE(solution.converged);
    EXPECT_EQ(solution.iterations, 1);
    EXPECT_GT(solution.residual, 1e-12);
}

TEST(NonlinearIron, ACoilDrivesTheIronBetweenItsSidesDeepIntoSaturation)
{
    // Two conductor layers of a strip of period p carry N I and -N I: between them
    // H = N I / p whatever the material, so the iron there takes B from the curve. From
    // a zero field the first steps overshoot and the line search has to hold them.
    constexpr double period = 0.01;
    const IronData data;
    const double beyond = data.h.back() * 2.0;
    for (const auto &[h, b] : {std::pair{data.h[12], data.b[12]},
                              std::pair{beyond, data.b.back() + mu0 * (beyond - data.h.back())}}) {
        const GridMesh grid(GridMesh::lines({0.0, period}, {4}), GridMesh::lines({0.0, 0.002, 0.006, 0.008}, {4, 4, 4}));
        Problem problem;
        problem.mesh = grid.mesh([](const Eigen::Vector2d &p) { return p.y() < 0.002 ? 0 : (p.y() < 0.006 ? 1 : 2); });
        const double density = h * period / (0.002 * period);
        problem.regions = {Region{density, 1.0, -1}, Region{0.0, 1000.0, 0}, Region{-density, 1.0, -1}};
        problem.curves = {data.curve()};
        problem.pairs = grid.seam(1.0);
        fix(problem, grid.rowNodes(0), [](const Eigen::Vector2d &) { return 0.0; });

        const Solution solution = MagnetostaticSolver(problem, tight()).solve();
        EXPECT_TRUE(solution.converged);
        EXPECT_LE(solution.iterations, 15);
        const FieldSolution fields(problem, solution.potential, false);
        EXPECT_LT(deviation(fields, 1, true, 0, -h), 1e-10);
        EXPECT_LT(deviation(fields, 1, false, 0, -b), 1e-10);
    }
}

TEST(NonlinearIron, ASolveFromANearbyAnswerEndsWhereOneFromZeroDoes)
{
    // The strip above at two currents 2 % apart: started from the first answer, the
    // second takes fewer steps to the same potentials, seam pairs and fixed nodes kept.
    const IronData data;
    const GridMesh grid(GridMesh::lines({0.0, 0.01}, {4}), GridMesh::lines({0.0, 0.002, 0.006, 0.008}, {4, 4, 4}));
    const auto strip = [&](double density) {
        Problem problem;
        problem.mesh = grid.mesh([](const Eigen::Vector2d &p) { return p.y() < 0.002 ? 0 : (p.y() < 0.006 ? 1 : 2); });
        problem.regions = {Region{density, 1.0, -1}, Region{0.0, 1000.0, 0}, Region{-density, 1.0, -1}};
        problem.curves = {data.curve()};
        problem.pairs = grid.seam(1.0);
        fix(problem, grid.rowNodes(0), [](const Eigen::Vector2d &) { return 0.0; });
        return problem;
    };
    const double density = data.h[12] / 0.002;
    const Problem first = strip(density);
    const Solution near = MagnetostaticSolver(first, tight()).solve();
    const Problem second = strip(1.02 * density);
    const Solution fromZero = MagnetostaticSolver(second, tight()).solve();
    const Solution fromNear = MagnetostaticSolver(second, tight()).solveFrom(near.potential);
    ASSERT_TRUE(fromZero.converged);
    ASSERT_TRUE(fromNear.converged);
    EXPECT_GE(fromNear.iterations, 1);
    EXPECT_LT(fromNear.iterations, fromZero.iterations);
    EXPECT_LT((fromNear.potential - fromZero.potential).norm(), 1e-10 * fromZero.potential.norm());
    // A guess that covers only the first nodes leaves the others to the iterations.
    const Solution fromPart = MagnetostaticSolver(second, tight()).solveFrom(near.potential.head(near.potential.size() / 2));
    ASSERT_TRUE(fromPart.converged);
    EXPECT_LT((fromPart.potential - fromZero.potential).norm(), 1e-10 * fromZero.potential.norm());
}
