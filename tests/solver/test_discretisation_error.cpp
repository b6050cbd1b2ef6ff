#include <gtest/gtest.h>

#include "solver/DiscretisationError.h"
#include "solver/FieldSolution.h"
#include "solver/GridMesh.h"
#include "solver/SolvedLinear.h"
#include "solver/MagnetostaticSolver.h"

using namespace solver;

namespace {

void fixEdges(Problem &problem, const GridMesh &grid, const std::function<double(const Eigen::Vector2d &)> &potential)
{
    fix(problem, grid.rowNodes(0), potential);
    fix(problem, grid.rowNodes(grid.rows() - 1), potential);
    fix(problem, grid.columnNodes(0), potential);
    fix(problem, grid.columnNodes(grid.columns() - 1), potential);
}

// A square of air of side 10 mm in n x n cells, held at A = (x^2 - y^2) / m on its
// edges: A is harmonic, so it is the field inside, B = (-2y, -2x) / m, 0 to 0.4 T.
// On this grid the elements take A at the nodes exactly.
struct SaddleField
{
    static constexpr double side = 0.01;
    static constexpr double scale = 0.05;

    Problem problem;

    explicit SaddleField(int cells)
    {
        const GridMesh grid(GridMesh::lines({0.0, side}, {cells}), GridMesh::lines({0.0, side}, {cells}));
        problem.mesh = grid.mesh([](const Eigen::Vector2d &) { return 0; });
        problem.regions = {Region{}};
        fixEdges(problem, grid, [](const Eigen::Vector2d &p) { return (p.x() * p.x() - p.y() * p.y()) / scale; });
    }

    static Eigen::Vector2d exact(const Eigen::Vector2d &p) { return Eigen::Vector2d(-2.0 * p.y(), -2.0 * p.x()) / scale; }

    // The integral of nu |B - Bh|^2, the exact error in the same measure: B - Bh is
    // linear over each triangle, its square integrated by the edges' midpoints.
    static double trueError(const FieldSolution &fields)
    {
        const TriangleMesh &mesh = fields.problem().mesh;
        double sum = 0.0;
        for (std::size_t e = 0; e < mesh.triangles.size(); ++e) {
            const auto &nodes = mesh.triangles[e].nodes;
            double squares = 0.0;
            for (std::size_t k = 0; k < 3; ++k) {
                const Eigen::Vector2d middle = (mesh.nodes[std::size_t(nodes[k])] + mesh.nodes[std::size_t(nodes[(k + 1) % 3])]) / 2.0;
                squares += (exact(middle) - fields.fluxDensity(int(e))).squaredNorm();
            }
            sum += fields.area(int(e)) * squares / 3.0 / mu0;
        }
        return sum;
    }
};

} // namespace

// Fields that the elements hold exactly have nothing to recover: a uniform field on a
// skewed grid, and flux along an iron slab, where B jumps at the slab's faces by its
// permeability, which an average across the faces would smear.
TEST(DiscretisationError, FieldsTheElementsHoldExactlyHaveNoError)
{
    const GridMesh grid(GridMesh::lines({0.0, 0.01, 0.03}, {3, 7}), GridMesh::lines({0.0, 0.02}, {5}));
    Problem uniform;
    uniform.mesh = grid.mesh([](const Eigen::Vector2d &) { return 0; });
    for (int row = 1; row + 1 < grid.rows(); ++row) {
        for (int column = 1; column + 1 < grid.columns(); ++column)
            uniform.mesh.nodes[grid.node(column, row)] += 0.001 * Eigen::Vector2d(std::sin(7.0 * row + column), std::cos(3.0 * column - row));
    }
    uniform.regions = {Region{}};
    const Eigen::Vector2d field(0.7, -0.4);
    fixEdges(uniform, grid, [&](const Eigen::Vector2d &p) { return field.x() * p.y() - field.y() * p.x(); });
    const DiscretisationError none = discretisationError(solvedLinear(uniform));
    // The energy of 0.65 T^2 over 6 cm^2 of air.
    EXPECT_NEAR(none.energy, field.squaredNorm() / mu0 * 0.03 * 0.02, 1e-9 * none.energy);
    EXPECT_LT(none.percent(), 1e-6);

    constexpr double muR = 200.0;
    const GridMesh layered(GridMesh::lines({0.0, 0.02}, {6}), GridMesh::lines({0.0, 0.004, 0.007, 0.01}, {4, 3, 4}));
    Problem slab;
    slab.mesh = layered.mesh([](const Eigen::Vector2d &p) { return p.y() < 0.004 ? 0 : p.y() < 0.007 ? 1 : 2; });
    slab.regions = {Region{}, Region{0.0, muR, -1}, Region{}};
    fix(slab, layered.rowNodes(0), [](const Eigen::Vector2d &) { return 0.0; });
    fix(slab, layered.rowNodes(layered.rows() - 1), [](const Eigen::Vector2d &) { return 1e-3; });
    const FieldSolution slabFields = solvedLinear(slab);
    const DiscretisationError jump = discretisationError(slabFields);
    // H is the same in air and iron; nu B^2 = mu0 mu_r H^2 weighs the iron mu_r times.
    const double h = slabFields.fieldStrength(0).x();
    EXPECT_NEAR(jump.energy, mu0 * h * h * 0.02 * (0.007 + muR * 0.003), 1e-9 * jump.energy);
    EXPECT_LT(jump.percent(), 1e-6);
    EXPECT_EQ(DiscretisationError{}.percent(), 0.0) << "no field";
}

// A field that varies: the estimate follows the true error of the elements, and with
// it falls in proportion to their size, halving with each halving of the cells.
TEST(DiscretisationError, FallsWithTheSizeOfTheElementsAsTheTrueErrorDoes)
{
    std::vector<double> percents;
    for (const int cells : {8, 16, 32}) {
        const SaddleField saddle(cells);
        const FieldSolution fields = solvedLinear(saddle.problem);
        const DiscretisationError estimate = discretisationError(fields);
        // |B|^2 = 4 (x^2 + y^2) / m^2 over the square: 8 a^4 / (3 m^2).
        const double energy = 8.0 * std::pow(SaddleField::side, 4) / (3.0 * SaddleField::scale * SaddleField::scale) / mu0;
        EXPECT_NEAR(estimate.energy / energy, 1.0, 0.01) << cells;
        const double truth = SaddleField::trueError(fields);
        // The averages at the nodes of this regular grid are nearly exact inside it.
        EXPECT_NEAR(std::sqrt(estimate.error / truth), 1.0, 0.05) << cells << " cells";
        percents.push_back(estimate.percent());
    }
    EXPECT_GT(percents[0], percents[1]);
    EXPECT_GT(percents[1], percents[2]);
    EXPECT_NEAR(percents[0] / percents[1], 2.0, 0.05);
    EXPECT_NEAR(percents[1] / percents[2], 2.0, 0.05);
    EXPECT_GT(percents[2], 0.0);
}

namespace {

// A strip of air over a number of periods of A = a cos(kx) e^(ky), harmonic, with its
// far edge tied to its near one and its top and bottom held at the field's values.
struct PeriodicStrip
{
    static constexpr double period = 0.02;
    static constexpr double height = 0.005;

    Problem problem;

    PeriodicStrip(double periods, double seamSign)
    {
        const GridMesh grid(GridMesh::lines({0.0, periods * period}, {int(std::lround(16 * periods))}),
                            GridMesh::lines({0.0, height}, {6}));
        problem.mesh = grid.mesh([](const Eigen::Vector2d &) { return 0; });
        problem.regions = {Region{}};
        problem.pairs = grid.seam(seamSign);
        const auto potential = [](const Eigen::Vector2d &p) {
            const double k = 2.0 * M_PI / period;
            return 1e-3 * std::cos(k * p.x()) * std::exp(k * p.y());
        };
        fix(problem, grid.rowNodes(0), potential);
        fix(problem, grid.rowNodes(grid.rows() - 1), potential);
    }
};

} // namespace

// Where the model is cut, at a seam or between regions of one material such as the air
// gap's rows and the moving band, the field goes on: its average at a node there takes
// in both sides, or the cut would count as error.
TEST(DiscretisationError, SeamsAndRegionsOfOneMaterialAddNoError)
{
    const PeriodicStrip half(0.5, -1.0);
    const PeriodicStrip one(1.0, 1.0);
    const PeriodicStrip two(2.0, 1.0);
    const DiscretisationError halfError = discretisationError(solvedLinear(half.problem));
    const DiscretisationError oneError = discretisationError(solvedLinear(one.problem));
    const DiscretisationError twoError = discretisationError(solvedLinear(two.problem));
    ASSERT_GT(oneError.error, 0.0);
    EXPECT_NEAR(twoError.error / oneError.error, 2.0, 1e-9) << "the seam of one period is an inner line of two";
    EXPECT_NEAR(oneError.error / halfError.error, 2.0, 1e-9) << "an antiperiodic seam";
    EXPECT_NEAR(halfError.percent(), twoError.percent(), 1e-9 * twoError.percent());

    const SaddleField whole(16);
    SaddleField split(16);
    // The upper half a region of its own, of air too.
    split.problem.regions = {Region{}, Region{}};
    const TriangleMesh &mesh = split.problem.mesh;
    for (Triangle &triangle : split.problem.mesh.triangles) {
        const double centroidY = (mesh.nodes[std::size_t(triangle.nodes[0])].y() + mesh.nodes[std::size_t(triangle.nodes[1])].y()
                                  + mesh.nodes[std::size_t(triangle.nodes[2])].y()) / 3.0;
        if (centroidY > 0.5 * SaddleField::side)
            triangle.region = 1;
    }
    const FieldSolution wholeFields = solvedLinear(whole.problem);
    const FieldSolution splitFields = solvedLinear(split.problem);
    EXPECT_NEAR(discretisationError(splitFields).error, discretisationError(wholeFields).error,
                1e-9 * discretisationError(wholeFields).error);
}
