#include <gtest/gtest.h>

#include "solver/AirGapForce.h"
#include "solver/FieldSolution.h"
#include "solver/GridMesh.h"
#include "solver/IronData.h"
#include "solver/MagnetostaticSolver.h"

using namespace solver;

namespace {

// One pole pitch of a linear machine with an antiperiodic seam. Lower row: iron plate
// and a magnet that covers half the pitch; upper row: an iron tooth between two coil
// sides, under an iron yoke. The air gap between the rows is the band of region 4.
// The upper row can be moved by (dx, dy): the gap's elements are stretched to follow.
class TwoRows
{
public:
    static constexpr double pitch = 0.02;
    static constexpr double gapBottom = 0.006;
    static constexpr double gapTop = 0.007;
    static constexpr int band = 4;

    explicit TwoRows(bool saturating)
        : m_grid(GridMesh::lines({0.0, 0.2 * pitch, 0.3 * pitch, 0.6 * pitch, 0.7 * pitch, pitch}, {6, 3, 9, 3, 9}),
                 GridMesh::lines({0.0, 0.003, gapBottom, gapTop, 0.010, 0.013}, {3, 3, 4, 3, 3}))
    {
        m_problem.mesh = m_grid.mesh(regionAt);
        const int iron = saturating ? 0 : -1;
        m_problem.regions = {Region{}, Region{0.0, 1000.0, iron}, Region{0.0, 1.05, -1}, Region{6e6, 1.0, -1},
                             Region{}, Region{-6e6, 1.0, -1}};
        m_problem.curves = {IronData().curve()};
        for (const Triangle &triangle : m_problem.mesh.triangles)
            m_problem.remanence.push_back(triangle.region == 2 ? Eigen::Vector2d(0.0, 1.25) : Eigen::Vector2d::Zero());
        m_problem.pairs = m_grid.seam(-1.0);
        m_reference = m_problem.mesh.nodes;
        m_settings.linear = !saturating;
        m_settings.tolerance = 1e-13;
    }

    void move(const Eigen::Vector2d &shift)
    {
        for (std::size_t node = 0; node < m_reference.size(); ++node) {
            const double y = m_reference[node].y();
            const double share = std::clamp((y - gapBottom) / (gapTop - gapBottom), 0.0, 1.0);
            m_problem.mesh.nodes[node] = m_reference[node] + share * shift;
        }
    }

    FieldSolution solve() const
    {
        const Solution solution = MagnetostaticSolver(m_problem, m_settings).solve();
        EXPECT_TRUE(solution.converged);
        return FieldSolution(m_problem, solution.potential, m_settings.linear);
    }

    // Cuts the band's cells along their other diagonals: the grid gives each cell as
    // (a, b, c) and (a, c, d) in turn.
    void flipBandCuts()
    {
        std::vector<Triangle> &triangles = m_problem.mesh.triangles;
        for (std::size_t e = 0; e + 1 < triangles.size(); ++e) {
            if (triangles[e].region != band)
                continue;
            const auto [a, b, c] = triangles[e].nodes;
            const int d = triangles[e + 1].nodes[2];
            triangles[e].nodes = {a, b, d};
            triangles[e + 1].nodes = {b, c, d};
            ++e;
        }
    }

    // The force on the upper row by virtual work: the rise of the co-energy at fixed
    // currents and magnets, by central differences.
    Eigen::Vector2d virtualWork(double step)
    {
        Eigen::Vector2d force;
        for (int axis = 0; axis < 2; ++axis) {
            const Eigen::Vector2d shift = step * Eigen::Vector2d::Unit(axis);
            move(shift);
            const double ahead = solve().coenergy();
            move(-shift);
            const double behind = solve().coenergy();
            force(axis) = (ahead - behind) / (2.0 * step);
        }
        move(Eigen::Vector2d::Zero());
        return force;
    }

private:
    static int regionAt(const Eigen::Vector2d &p)
    {
        const double x = p.x() / pitch;
        if (p.y() < 0.003 || p.y() > 0.010)
            return 1;
        if (p.y() < gapBottom)
            return x > 0.2 && x < 0.7 ? 2 : 0;
        if (p.y() < gapTop)
            return band;
        if (x < 0.3)
            return 3;
        return x < 0.6 ? 1 : 5;
    }

    GridMesh m_grid;
    Problem m_problem;
    std::vector<Eigen::Vector2d> m_reference;
    SolverSettings m_settings;
};

} // namespace

TEST(AirGapForce, MaxwellStressInTheBandIsTheDerivativeOfTheCoenergy)
{
    // Arkkio's band average is the virtual work of stretching the band: with the same
    // band both agree but for the difference quotient's error.
    for (const bool saturating : {false, true}) {
        TwoRows rows(saturating);
        const Eigen::Vector2d stress = airGapForce(rows.solve(), {TwoRows::band}, TwoRows::gapTop - TwoRows::gapBottom);
        const Eigen::Vector2d work = rows.virtualWork(1e-7);
        // A pull towards the magnets and a sideways force of about a hundredth of it.
        EXPECT_LT(stress.y(), 0.0);
        EXPECT_GT(std::abs(stress.x()), 0.005 * std::abs(stress.y()));
        EXPECT_NEAR(stress.x() / work.x(), 1.0, 1e-6) << saturating;
        EXPECT_NEAR(stress.y() / work.y(), 1.0, 1e-6) << saturating;
    }
}

TEST(AirGapForce, ABandCutAnewFeelsNoSideOfItsCut)
{
    // Either diagonal of a rectangle gives the same field, but the stress of each cut
    // leans to its own side; over both cuts it does not.
    TwoRows rows(false);
    const double height = TwoRows::gapTop - TwoRows::gapBottom;
    const FieldSolution one = rows.solve();
    const Eigen::Vector2d oneCut = airGapForce(one, {TwoRows::band}, height);
    const Eigen::Vector2d oneRecut = recutBandForce(one, {TwoRows::band}, height);
    rows.flipBandCuts();
    const FieldSolution other = rows.solve();
    EXPECT_NEAR(other.coenergy() / one.coenergy(), 1.0, 1e-12);
    const Eigen::Vector2d otherCut = airGapForce(other, {TwoRows::band}, height);
    const Eigen::Vector2d otherRecut = recutBandForce(other, {TwoRows::band}, height);
    EXPECT_GT(std::abs(otherCut.x() - oneCut.x()), 1e-3 * std::abs(oneCut.x()));
    EXPECT_NEAR(otherRecut.x() / oneRecut.x(), 1.0, 1e-9);
    EXPECT_NEAR(otherRecut.y() / oneRecut.y(), 1.0, 1e-9);
    EXPECT_NEAR(oneRecut.x(), (oneCut.x() + otherCut.x()) / 2.0, 1e-9 * std::abs(oneCut.x()));
}

TEST(AirGapForce, AUniformFieldAcrossTheBandPullsByBSquaredOverTwoMu0)
{
    // B = (0, b) across a band of any height: the upper part is pulled down by
    // b^2 / (2 mu0) per square metre, with no sideways force; a tilted field adds
    // -Bx By / mu0 sideways.
    const GridMesh grid(GridMesh::lines({0.0, 0.01}, {4}), GridMesh::lines({0.0, 0.002, 0.004}, {2, 3}));
    Problem problem;
    problem.mesh = grid.mesh([](const Eigen::Vector2d &p) { return p.y() > 0.002 ? 1 : 0; });
    problem.regions = {Region{}, Region{}};
    const Eigen::Vector2d b(0.3, 0.9);
    const auto potential = [&](const Eigen::Vector2d &p) { return b.x() * p.y() - b.y() * p.x(); };
    for (const auto &nodes : {grid.rowNodes(0), grid.rowNodes(grid.rows() - 1), grid.columnNodes(0),
                              grid.columnNodes(grid.columns() - 1)})
        fix(problem, nodes, potential);
    SolverSettings settings;
    settings.linear = true;
    const FieldSolution fields(problem, MagnetostaticSolver(problem, settings).solve().potential, true);
    const Eigen::Vector2d force = airGapForce(fields, {1}, 0.002);
    EXPECT_NEAR(force.x() / (-b.x() * b.y() / mu0 * 0.01), 1.0, 1e-9);
    EXPECT_NEAR(force.y() / (-(b.y() * b.y() - b.x() * b.x()) / (2.0 * mu0) * 0.01), 1.0, 1e-9);
}
