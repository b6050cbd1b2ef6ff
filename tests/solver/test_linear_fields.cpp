#include <gtest/gtest.h>

#include "solver/FieldSolution.h"
#include "solver/FluxLinkage.h"
#include "solver/GridMesh.h"
#include "solver/SolvedLinear.h"
#include "solver/MagnetostaticSolver.h"

using namespace solver;

namespace {

// Fields that the elements hold exactly come out to round-off.
constexpr double roundOff = 1e-9;

// The largest distance of the flux density in a region's triangles from a value.
double deviation(const FieldSolution &fields, int region, const Eigen::Vector2d &expected)
{
    double largest = 0.0;
    const auto &triangles = fields.problem().mesh.triangles;
    for (std::size_t e = 0; e < triangles.size(); ++e) {
        if (triangles[e].region == region)
            largest = std::max(largest, (fields.fluxDensity(static_cast<int>(e)) - expected).norm());
    }
    return largest;
}

double regionArea(const FieldSolution &fields, int region)
{
    double area = 0.0;
    const auto &triangles = fields.problem().mesh.triangles;
    for (std::size_t e = 0; e < triangles.size(); ++e) {
        if (triangles[e].region == region)
            area += fields.area(static_cast<int>(e));
    }
    return area;
}

// Layers along y across the whole width: the region of a height.
std::function<int(const Eigen::Vector2d &)> layers(std::vector<double> tops)
{
    return [tops](const Eigen::Vector2d &p) {
        int region = 0;
        while (p.y() > tops[static_cast<std::size_t>(region)])
            ++region;
        return region;
    };
}

} // namespace

TEST(LinearFields, UniformFieldInARectangleIsExact)
{
    const GridMesh grid(GridMesh::lines({0.0, 0.01, 0.03}, {3, 7}), GridMesh::lines({0.0, 0.02}, {5}));
    const Eigen::Vector2d field(0.7, -0.4);
    Problem problem;
    problem.mesh = grid.mesh([](const Eigen::Vector2d &) { return 0; });
    // Linear elements hold a linear potential on any triangulation: the inner nodes
    // are moved off the grid, by up to a third of a cell.
    for (int row = 1; row + 1 < grid.rows(); ++row) {
        for (int column = 1; column + 1 < grid.columns(); ++column)
            problem.mesh.nodes[grid.node(column, row)] += 0.001 * Eigen::Vector2d(std::sin(7.0 * row + column), std::cos(3.0 * column - row));
    }
    problem.regions = {Region{}};
    // A = Bx y - By x has the curl (Bx, By).
    const auto potential = [&](const Eigen::Vector2d &p) { return field.x() * p.y() - field.y() * p.x(); };
    fix(problem, grid.rowNodes(0), potential);
    fix(problem, grid.rowNodes(grid.rows() - 1), potential);
    fix(problem, grid.columnNodes(0), potential);
    fix(problem, grid.columnNodes(grid.columns() - 1), potential);

    const FieldSolution fields = solvedLinear(problem);
    EXPECT_LT(deviation(fields, 0, field), roundOff);
    const double density = field.squaredNorm() / (2.0 * mu0);
    EXPECT_NEAR(fields.energy() / (density * 0.03 * 0.02), 1.0, roundOff);
    EXPECT_NEAR(fields.coenergy() / (density * 0.03 * 0.02), 1.0, roundOff);
}

TEST(LinearFields, IronSlabAcrossTheFieldKeepsBAndDividesH)
{
    // Flux crosses a slab of mu_r 500: B is the same on both sides, H jumps by mu_r.
    constexpr double muR = 500.0;
    constexpr double b0 = 0.8;
    const GridMesh grid(GridMesh::lines({0.0, 0.02}, {6}), GridMesh::lines({0.0, 0.004, 0.007, 0.01}, {4, 3, 4}));
    Problem problem;
    problem.mesh = grid.mesh(layers({0.004, 0.007, 0.01}));
    problem.regions = {Region{}, Region{0.0, muR, -1}, Region{}};
    const auto potential = [](const Eigen::Vector2d &p) { return -b0 * p.x(); };
    fix(problem, grid.columnNodes(0), potential);
    fix(problem, grid.columnNodes(grid.columns() - 1), potential);

    const FieldSolution fields = solvedLinear(problem);
    for (int region = 0; region < 3; ++region)
        EXPECT_LT(deviation(fields, region, {0.0, b0}), roundOff) << region;
    const auto &triangles = problem.mesh.triangles;
    for (std::size_t e = 0; e < triangles.size(); ++e) {
        const double expected = triangles[e].region == 1 ? b0 / (mu0 * muR) : b0 / mu0;
        EXPECT_NEAR(fields.fieldStrength(static_cast<int>(e)).y() / expected, 1.0, roundOff);
    }
}

TEST(LinearFields, IronSlabAlongTheFieldKeepsHAndMultipliesB)
{
    // Flux along a slab: H is the same in air and iron, B jumps by mu_r, and the flux
    // per metre between top and bottom is the difference of their potentials.
    constexpr double muR = 200.0;
    constexpr double flux = 1e-3;
    const GridMesh grid(GridMesh::lines({0.0, 0.02}, {6}), GridMesh::lines({0.0, 0.004, 0.007, 0.01}, {4, 3, 4}));
    Problem problem;
    problem.mesh = grid.mesh(layers({0.004, 0.007, 0.01}));
    problem.regions = {Region{}, Region{0.0, muR, -1}, Region{}};
    fix(problem, grid.rowNodes(0), [](const Eigen::Vector2d &) { return 0.0; });
    fix(problem, grid.rowNodes(grid.rows() - 1), [](const Eigen::Vector2d &) { return flux; });

    const double h = flux / (mu0 * (0.007 + muR * 0.003));
    const FieldSolution fields = solvedLinear(problem);
    EXPECT_LT(deviation(fields, 0, {mu0 * h, 0.0}), roundOff * mu0 * h);
    EXPECT_LT(deviation(fields, 1, {mu0 * muR * h, 0.0}), roundOff * mu0 * muR * h);
    EXPECT_LT(deviation(fields, 2, {mu0 * h, 0.0}), roundOff * mu0 * h);
}

TEST(LinearFields, CoilInAPeriodicStripFollowsAmpere)
{
    // A strip of period p along x with two conductor layers of N turns at current I,
    // go below, return above: between them Bx = -mu0 N I / p, outside nothing. A is
    // held at the bottom; the top is a flux line of no field.
    constexpr double period = 0.01;
    constexpr double width = 0.002;
    constexpr double spacing = 0.003;
    constexpr double turns = 20.0;
    constexpr double current = 5.0;
    const double density = turns * current / (width * period);
    const int parts = 8;
    const GridMesh grid(GridMesh::lines({0.0, period}, {5}),
                        GridMesh::lines({0.0, 0.001, 0.003, 0.006, 0.008, 0.01}, {2, parts, 6, parts, 2}));
    Problem problem;
    problem.mesh = grid.mesh(layers({0.001, 0.003, 0.006, 0.008, 0.01}));
    problem.regions = {Region{}, Region{density, 1.0, -1}, Region{}, Region{-density, 1.0, -1}, Region{}};
    problem.pairs = grid.seam(1.0);
    fix(problem, grid.rowNodes(0), [](const Eigen::Vector2d &) { return 0.0; });

    const FieldSolution fields = solvedLinear(problem);
    const double inside = -mu0 * turns * current / period;
    EXPECT_LT(deviation(fields, 2, {inside, 0.0}), roundOff * std::abs(inside));
    EXPECT_LT(deviation(fields, 0, {0.0, 0.0}), roundOff * std::abs(inside));
    EXPECT_LT(deviation(fields, 4, {0.0, 0.0}), roundOff * std::abs(inside));

    // psi = mu0 N^2 I (s + 2 w / 3) / p, less what linear elements lose on the
    // quadratic A of each layer: N mu0 J h^2 / 12 per layer of elements of height h.
    const double exact = mu0 * turns * turns * current * (spacing + 2.0 * width / 3.0) / period;
    const double step = width / parts;
    const double discrete = exact - turns * mu0 * density * step * step / 6.0;
    const double psi = fluxLinkage(fields, {{1, 1.0}, {3, -1.0}}, turns);
    EXPECT_NEAR(psi / discrete, 1.0, roundOff);
    EXPECT_NEAR(psi / exact, 1.0, 0.01);
    // The co-energy of a linear coil is half its flux linkage times its current.
    EXPECT_NEAR(fields.coenergy() / (psi * current / 2.0), 1.0, roundOff);
    EXPECT_NEAR(fields.energy() / fields.coenergy(), 1.0, roundOff);
    EXPECT_NEAR(regionArea(fields, 1), width * period, 1e-15);
}

TEST(LinearFields, MagnetInAGapOfAMagneticCircuit)
{
    // A pole of a magnet layer under an air gap between iron yokes, the next pole
    // reversed behind the antiperiodic seam: the flux runs up through one pole, along
    // the yokes and down the next. Away from the pole edges the field is that of the
    // series circuit, B = Br lm / (lm + mu_r g), with Hm lm + Hg g = 0; the iron of
    // mu_r 1e6 adds a few parts in a million of magnetic voltage.
    constexpr double br = 1.2;
    constexpr double muMagnet = 1.05;
    constexpr double lm = 0.003;
    constexpr double gap = 0.001;
    constexpr double pitch = 0.1;
    const std::vector<double> tops{0.01, 0.01 + lm, 0.01 + lm + gap, 0.02 + lm + gap};
    const GridMesh grid(GridMesh::lines({0.0, pitch}, {100}), GridMesh::lines({0.0, tops[0], tops[1], tops[2], tops[3]}, {2, 3, 2, 2}));
    Problem problem;
    problem.mesh = grid.mesh(layers(tops));
    problem.regions = {Region{0.0, 1e6, -1}, Region{0.0, muMagnet, -1}, Region{}, Region{0.0, 1e6, -1}};
    for (const Triangle &triangle : problem.mesh.triangles)
        problem.remanence.push_back(triangle.region == 1 ? Eigen::Vector2d(0.0, br) : Eigen::Vector2d::Zero());
    problem.pairs = grid.seam(-1.0);

    const double b = br * lm / (lm + muMagnet * gap);
    const FieldSolution fields = solvedLinear(problem);
    // The triangles of the middle column, the pole's centre.
    const int perRow = 2 * (grid.columns() - 1);
    for (int row = 0; row + 1 < grid.rows(); ++row) {
        for (const int e : {row * perRow + perRow / 2, row * perRow + perRow / 2 + 1}) {
            const int region = problem.mesh.triangles[static_cast<std::size_t>(e)].region;
            if (region != 1 && region != 2)
                continue;
            EXPECT_NEAR(fields.fluxDensity(e).y() / b, 1.0, 1e-5) << region;
            EXPECT_NEAR(fields.fluxDensity(e).x() / b, 0.0, 1e-5) << region;
            // The magnetic voltage of each layer, against that of the gap.
            const double voltage = fields.fieldStrength(e).y() * (region == 1 ? lm : gap);
            EXPECT_NEAR(voltage / (b / mu0 * gap), region == 1 ? -1.0 : 1.0, 1e-4) << region;
        }
    }
}

TEST(LinearFields, AntiperiodicSeamLetsAMagnetDriveItsOwnFlux)
{
    // A strip filled with a magnet of mu_r 1: across an antiperiodic seam the flux
    // returns through the neighbouring pole and B = Br with H = 0; across a periodic
    // seam it has no way back, B = 0 and H = -Br / mu0.
    const Eigen::Vector2d br(0.0, 1.1);
    const GridMesh grid(GridMesh::lines({0.0, 0.01}, {6}), GridMesh::lines({0.0, 0.005}, {4}));
    Problem problem;
    problem.mesh = grid.mesh([](const Eigen::Vector2d &) { return 0; });
    problem.regions = {Region{}};
    problem.remanence.assign(problem.mesh.triangles.size(), br);

    problem.pairs = grid.seam(-1.0);
    const FieldSolution anti = solvedLinear(problem);
    EXPECT_LT(deviation(anti, 0, br), roundOff);
    EXPECT_NEAR(anti.coenergy() / (br.squaredNorm() / (2.0 * mu0) * 0.01 * 0.005), 0.0, roundOff);

    problem.pairs = grid.seam(1.0);
    problem.fixed = {{0, 0.0}};
    const FieldSolution periodic = solvedLinear(problem);
    EXPECT_LT(deviation(periodic, 0, {0.0, 0.0}), roundOff);
    EXPECT_NEAR(periodic.fieldStrength(0).y() * mu0 / -br.y(), 1.0, roundOff);
}

TEST(LinearFields, HalfAPeriodWithAnAntiperiodicSeamIsTheWholePeriod)
{
    // Opposite magnets on an iron plate, a coil under an iron yoke: one pitch with an
    // antiperiodic seam gives the field of the first pitch of the periodic model of
    // two, and the second pitch is its negative.
    constexpr double pitch = 0.012;
    const auto regionAt = [](const Eigen::Vector2d &p) {
        const bool second = p.x() > pitch;
        const double x = (second ? p.x() - pitch : p.x()) / pitch;
        if (p.y() < 0.002 || p.y() > 0.008)
            return 1;
        if (p.y() < 0.005)
            return x > 0.2 && x < 0.7 ? 2 : 0;
        if (x > 0.75)
            return second ? 4 : 3;
        return 0;
    };
    const GridMesh cell(GridMesh::lines({0.0, 0.2 * pitch, 0.7 * pitch, 0.75 * pitch, pitch}, {2, 5, 1, 3}),
                        GridMesh::lines({0.0, 0.002, 0.005, 0.008, 0.011}, {2, 3, 3, 3}));
    const auto problemOf = [&](int pitches) {
        std::vector<double> xs = cell.xs();
        for (std::size_t i = 1; pitches == 2 && i < cell.xs().size(); ++i)
            xs.push_back(pitch + cell.xs()[i]);
        const GridMesh grid(xs, cell.ys());
        Problem problem;
        problem.mesh = grid.mesh(regionAt);
        problem.regions = {Region{}, Region{0.0, 1000.0, -1}, Region{0.0, 1.05, -1}, Region{3e6, 1.0, -1},
                           Region{-3e6, 1.0, -1}};
        for (const Triangle &triangle : problem.mesh.triangles) {
            const double pole = ElementShape(problem.mesh, triangle).centroid().x() < pitch ? 1.0 : -1.0;
            problem.remanence.push_back(triangle.region == 2 ? Eigen::Vector2d(0.0, 1.2 * pole) : Eigen::Vector2d::Zero());
        }
        problem.pairs = grid.seam(pitches == 1 ? -1.0 : 1.0);
        // A periodic model needs one node held; an antiperiodic one holds itself.
        if (pitches == 2)
            problem.fixed = {{0, 0.0}};
        return problem;
    };
    const Problem half = problemOf(1);
    const Problem whole = problemOf(2);
    const FieldSolution halfFields = solvedLinear(half);
    const FieldSolution wholeFields = solvedLinear(whole);

    // Triangles are numbered row by row; a row of the whole model holds two pitches.
    const int perRow = 2 * (cell.columns() - 1);
    double largest = 0.0;
    double scale = 0.0;
    for (int e = 0; e < static_cast<int>(half.mesh.triangles.size()); ++e) {
        const int first = (e / perRow) * 2 * perRow + e % perRow;
        largest = std::max(largest, (wholeFields.fluxDensity(first) - halfFields.fluxDensity(e)).norm());
        largest = std::max(largest, (wholeFields.fluxDensity(first + perRow) + halfFields.fluxDensity(e)).norm());
        scale = std::max(scale, halfFields.fluxDensity(e).norm());
    }
    EXPECT_GT(scale, 0.1);
    EXPECT_LT(largest, roundOff * scale);
}
