#include <gtest/gtest.h>

#include "solver/DofMap.h"
#include "solver/TriangleMesh.h"

using solver::DofMap;
using solver::ElementShape;
using solver::TriangleMesh;

TEST(ElementShape, GradientsAndAreaDoNotDependOnTheOrientation)
{
    TriangleMesh mesh;
    mesh.nodes = {{0.0, 0.0}, {2.0, 0.0}, {0.0, 1.0}};
    mesh.triangles = {{{0, 1, 2}, 0}, {{0, 2, 1}, 0}};
    // A = 3x + 5y is exact on a linear triangle: B = (5, -3).
    for (const auto &triangle : mesh.triangles) {
        const ElementShape shape(mesh, triangle);
        EXPECT_DOUBLE_EQ(shape.area(), 1.0);
        Eigen::Vector3d a;
        for (int i = 0; i < 3; ++i) {
            const Eigen::Vector2d &p = mesh.nodes[triangle.nodes[i]];
            a(i) = 3.0 * p.x() + 5.0 * p.y();
        }
        const Eigen::Vector2d b = shape.curl(a);
        EXPECT_NEAR(b.x(), 5.0, 1e-14);
        EXPECT_NEAR(b.y(), -3.0, 1e-14);
        // Rows of the stiffness sum to zero: a constant potential has no energy.
        EXPECT_NEAR(shape.stiffness().rowwise().sum().norm(), 0.0, 1e-14);
        EXPECT_NEAR(a.dot(shape.stiffness() * a), 34.0 * shape.area(), 1e-12);
    }
}

TEST(DofMap, ChainsOfSeamsFixedNodesAndLoopsShareUnknowns)
{
    // Six nodes of two triangles; node 5 belongs to no triangle.
    solver::Problem problem;
    problem.mesh.nodes = {{0, 0}, {1, 0}, {0, 1}, {1, 1}, {2, 2}, {3, 3}};
    problem.mesh.triangles = {{{0, 1, 2}, 0}, {{1, 3, 2}, 0}};
    // 3 = -1 = -(-0) = 0: a chain of an antiperiodic and a periodic seam.
    problem.pairs = {{3, 1, -1.0}, {1, 0, -1.0}};
    DofMap chained(problem);
    EXPECT_EQ(chained.dofCount(), 2);
    EXPECT_EQ(chained.dof(3), chained.dof(0));
    EXPECT_EQ(chained.dof(1), chained.dof(0));
    EXPECT_EQ(chained.sign(3), 1.0);
    EXPECT_EQ(chained.sign(1), -1.0);
    EXPECT_EQ(chained.dof(5), -1);
    // Unknowns are numbered in the order of their root nodes.
    EXPECT_EQ(chained.dof(2), 1);
    const Eigen::VectorXd unknowns = Eigen::Vector2d(2.0, 7.0);
    EXPECT_EQ(chained.nodePotentials(unknowns), (Eigen::VectorXd(6) << 2.0, -2.0, 7.0, 2.0, 0.0, 0.0).finished());

    // Holding a slave holds its root: 3 at 0.5 makes 0 = 0.5 and 1 = -0.5.
    problem.fixed = {{3, 0.5}};
    DofMap held(problem);
    EXPECT_EQ(held.dofCount(), 1);
    EXPECT_EQ(held.dof(0), -1);
    EXPECT_EQ(held.potential(1, Eigen::VectorXd::Zero(1)), -0.5);
    EXPECT_EQ(held.potential(0, Eigen::VectorXd::Zero(1)), 0.5);

    // Two nodes paired both ways are one unknown, not an endless chain.
    problem.fixed.clear();
    problem.pairs = {{2, 3, 1.0}, {3, 2, 1.0}};
    DofMap loop(problem);
    EXPECT_EQ(loop.dofCount(), 3);
    EXPECT_EQ(loop.dof(2), loop.dof(3));
}

TEST(ProblemErrors, NamesWhatTheSolverCannotRead)
{
    solver::Problem problem;
    problem.mesh.nodes = {{0, 0}, {1, 0}, {0, 1}, {2, 0}};
    problem.mesh.triangles = {{{0, 1, 2}, 0}};
    problem.regions = {solver::Region{}};
    EXPECT_TRUE(solver::problemErrors(problem).isEmpty());

    problem.mesh.triangles = {{{0, 1, 7}, 0}, {{0, 1, 3}, 0}, {{0, 1, 2}, 2}};
    problem.regions = {solver::Region{0.0, 1.0, 1}, solver::Region{0.0, 0.0, -1}};
    problem.remanence = {Eigen::Vector2d::Zero()};
    problem.fixed = {{9, 0.0}};
    problem.pairs = {{1, -1, 1.0}};
    const QStringList errors = solver::problemErrors(problem);
    EXPECT_EQ(errors.size(), 8) << errors.join("\n").toStdString();
    for (const char *text : {"Triangle 0 names a node", "Triangle 1 has no area", "Triangle 2 has no region 2",
                             "Region 0 has no curve 1", "Region 1 has a relative permeability of 0",
                             "1 remanence vectors for 3 triangles", "Fixed node 9", "Seam pair 1, -1"})
        EXPECT_TRUE(errors.join("\n").contains(text)) << text;
}
