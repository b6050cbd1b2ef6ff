#include <CGAL/exceptions.h>
#include <gtest/gtest.h>
#include <limits>

#include "geometry/ShapeLayerSupport.h"
#include "meshing/CDT.h"
#include "meshing/CdtOperations.h"
#include "meshing/MeshStep.h"
#include "MeshingSupport.h"

namespace {

CDT rectangle(double x, double y, double width, double height, CDT::VertexType type = CDT::VertexBase)
{
    CDT cdt;
    for (const QSharedPointer<Shape2D> &line : rectangleLines(x, y, width, height))
        cdt.insert_base_constraint(line->p1(), line->p2(), type);
    return cdt;
}

int verticesOfType(const CDT &cdt, CDT::VertexType type)
{
    int count = 0;
    for (const CDT::Vertex &vertex : cdt.snapshot().vertices)
        count += vertex.type == type ? 1 : 0;
    return count;
}

QList<PointF> points(const CDT &cdt)
{
    QList<PointF> result;
    for (const CDT::Vertex &vertex : cdt.snapshot().vertices)
        result.append(vertex.point);
    return result;
}

} // namespace

TEST(CDT, InsertsWithATolerance)
{
    CDT cdt;
    ASSERT_TRUE(cdt.insert(PointF(0, 0)));
    EXPECT_EQ(*cdt.insert(PointF(5e-8, -5e-8)), PointF(0, 0));
    ASSERT_TRUE(cdt.insert(PointF(10, 0)));
    ASSERT_TRUE(cdt.insert(PointF(0, 10)));
    EXPECT_EQ(*cdt.insert(PointF(10 + 9e-8, 0)), PointF(10, 0));
    EXPECT_EQ(*cdt.insert(PointF(2e-8, 10)), PointF(0, 10));
    EXPECT_EQ(cdt.numberOfVertices(), 3);
    EXPECT_EQ(*cdt.insert(PointF(3, 3)), PointF(3, 3));
    EXPECT_EQ(cdt.numberOfVertices(), 4);
}

// Just outside a long straight side, a point sees every edge of that side; whichever one
// the search lands on, a point a rounding error off the far corner is still that corner.
TEST(CDT, SnapsToTheHullCornerAPointOutsideIsARoundingErrorOff)
{
    CDT cdt = rectangle(0, 0, 10, 10);
    for (int k = 1; k < 10; ++k)
        cdt.insert(PointF(10, k));
    const int vertices = cdt.numberOfVertices();
    for (const PointF &offCorner : {PointF(10 + 1e-14, 10), PointF(10 + 1e-14, 0), PointF(10 + 5e-8, 10 + 5e-8),
                                    PointF(-1e-14, 10), PointF(5, 10 + 1e-14)}) {
        SCOPED_TRACE(offCorner.x());
        const std::optional<PointF> vertex = cdt.insert(offCorner);
        ASSERT_TRUE(vertex);
        EXPECT_NEAR(vertex->x(), offCorner.x(), 1e-7);
        EXPECT_NEAR(vertex->y(), offCorner.y(), 1e-7);
    }
    EXPECT_EQ(cdt.numberOfVertices(), vertices + 1);
    EXPECT_EQ(*cdt.insert(PointF(10 + 1e-6, 5)), PointF(10 + 1e-6, 5));
}

TEST(CDT, RejectsDegenerateInputWithoutHarm)
{
    ShapeLog log;
    CDT cdt = rectangle(0, 0, 10, 10);
    const int constraints = cdt.numberOfConstraints();
    EXPECT_FALSE(cdt.insert_constraint(PointF(3, 3), PointF(3, 3 + 1e-8)));
    EXPECT_TRUE(log.contains("Error: v1 == v2"));
    EXPECT_FALSE(cdt.insert(PointF(std::numeric_limits<double>::quiet_NaN(), 1)));
    EXPECT_FALSE(cdt.insert_constraint(PointF(1, 1), PointF(std::numeric_limits<double>::infinity(), 1)));
    EXPECT_EQ(cdt.numberOfConstraints(), constraints);
    EXPECT_EQ(cdt.numberOfVertices(), 5);
    cdt.setVertexType(PointF(7, 7), CDT::VertexAirgapRow);
    EXPECT_TRUE(log.contains("Vertex not found at"));
}

TEST(CDT, CrossingConstraintsSplitEachOther)
{
    CDT cdt;
    cdt.insert_constraint(PointF(0, 0), PointF(2, 2));
    cdt.insert_constraint(PointF(0, 2), PointF(2, 0));
    EXPECT_EQ(cdt.numberOfVertices(), 5);
    EXPECT_EQ(cdt.numberOfConstraints(), 4);
    EXPECT_TRUE(points(cdt).contains(PointF(1, 1)));
}

TEST(CDT, RefinedRectangleIsAConformingMeshWithinTheSizeBound)
{
    CDT cdt = rectangle(0, 0, 100, 20);
    cdt.insert_constraint(PointF(30, 0), PointF(30, 20));
    const int steps = cdt.refine(0.125, 5.0, 50000);
    EXPECT_GT(steps, 0);
    EXPECT_LT(steps, 50000);
    const MeshMeasures mesh = measure(cdt);
    EXPECT_EQ(mesh.faces, cdt.numberOfFaces());
    EXPECT_NEAR(mesh.area, 2000.0, 1e-9);
    EXPECT_GT(mesh.smallestArea, 0.0);
    EXPECT_LE(mesh.longestSide, 5.0 + 1e-9);
    EXPECT_EQ(mesh.overusedSides, 0);
    EXPECT_NEAR(mesh.boundaryLength, 240.0, 1e-9);
    // The inner constraint stands in the mesh, divided but whole.
    const CDT::Snapshot snapshot = cdt.snapshot();
    double wall = 0.0;
    for (const CDT::Edge &edge : snapshot.constraints) {
        const QPointF a = snapshot.vertices.at(edge.vertex0).point;
        const QPointF b = snapshot.vertices.at(edge.vertex1).point;
        if (a.x() == 30.0 && b.x() == 30.0)
            wall += QLineF(a, b).length();
    }
    EXPECT_NEAR(wall, 20.0, 1e-12);
    EXPECT_EQ(cdt.refine(0.125, 5.0, 0), 0);
}

TEST(CDT, RefinementStopsAtItsStepLimit)
{
    CDT cdt = rectangle(0, 0, 100, 100);
    EXPECT_EQ(cdt.refine(0.125, 0.5, 30), 30);
    EXPECT_GT(measure(cdt).smallestArea, 0.0);
}

TEST(CDT, DomainIsEverythingWithinTheOuterConstraints)
{
    CDT cdt = rectangle(0, 0, 10, 10);
    cdt.insert(PointF(20, 5));
    cdt.markDomain();
    const MeshMeasures domain = measure(cdt, true);
    EXPECT_NEAR(domain.area, 100.0, 1e-9);
    EXPECT_GT(measure(cdt, false).area, 100.0);
}

TEST(CDT, SmallMovesAreNotApplied)
{
    const CDT cdt = rectangle(0, 0, 10, 10);
    EXPECT_EQ(points(cdt.translated(1e-8)), points(cdt));
    EXPECT_EQ(points(cdt.translated(0.005)), points(cdt));
    const QList<PointF> moved = points(cdt.translated(0.02));
    ASSERT_EQ(moved.size(), 4);
    for (int i = 0; i < moved.size(); ++i)
        EXPECT_EQ(moved.at(i), points(cdt).at(i) + QPointF(0.02, 0));
}

TEST(CDT, MirrorsAreValidTriangulations)
{
    CDT cdt = rectangle(0, 0, 10, 4);
    cdt.insert_constraint(PointF(2, 1), PointF(6, 3));
    cdt.refine(0.125, 2.0, 50000);
    const MeshMeasures original = measure(cdt);

    for (const CDT &mirror : {cdt.reflectedAbscissa(10.0), cdt.reflectedOrdinate(0.0)}) {
        EXPECT_EQ(mirror.numberOfVertices(), cdt.numberOfVertices());
        EXPECT_EQ(mirror.numberOfConstraints(), cdt.numberOfConstraints());
        const MeshMeasures mirrored = measure(mirror, false);
        EXPECT_GT(mirrored.smallestArea, 0.0);
        EXPECT_NEAR(mirrored.area, original.area, 1e-9);
    }
    for (const PointF &point : points(cdt.reflectedAbscissa(10.0)))
        EXPECT_TRUE(point.x() >= 10.0 - 1e-12 && point.x() <= 20.0 + 1e-12);
    for (const PointF &point : points(cdt.reflectedOrdinate(0.0)))
        EXPECT_TRUE(point.y() <= 1e-12 && point.y() >= -4.0 - 1e-12);
}

TEST(CDT, MergeKeepsTypesConstraintsAndSharedBorders)
{
    const CDT left = rectangle(0, 0, 10, 10, CDT::VertexAirgapRow);
    CDT copy;
    copy.merge(left);
    EXPECT_EQ(copy.numberOfConstraints(), 4);
    EXPECT_EQ(verticesOfType(copy, CDT::VertexAirgapRow), 4);

    CDT right = rectangle(10, 0, 10, 10);
    right.insert_constraint(PointF(10, 5), PointF(20, 5));
    copy.merge(right);
    // Two corners and the split point of the shared side are one vertex each.
    EXPECT_EQ(copy.numberOfVertices(), 4 + 2 + 2);
    EXPECT_EQ(copy.numberOfConstraints(), 4 + 3 + 2 + 1);
    copy.markDomain();
    const MeshMeasures merged = measure(copy);
    EXPECT_NEAR(merged.area, 200.0, 1e-9);
    EXPECT_EQ(merged.overusedSides, 0);
}

TEST(CDT, RemovesConstraintsAndFreeVerticesByPosition)
{
    CDT cdt = rectangle(0, 0, 10, 10);
    cdt.insert_constraint(PointF(0, 5), PointF(10, 5));
    cdt.insert(PointF(5, 2));
    cdt.insert(PointF(5, 8));
    cdt::removeConstraintsAbscissas(cdt, {0.0});
    EXPECT_EQ(cdt.numberOfConstraints(), 7 - 2);
    cdt::removeConstraintsInBox(cdt, {10.0}, 0.0, 5.0);
    EXPECT_EQ(cdt.numberOfConstraints(), 7 - 3);

    cdt::markRowVertices(cdt, {5.0}, CDT::VertexAirgapRow);
    EXPECT_EQ(verticesOfType(cdt, CDT::VertexAirgapRow), 2);

    // The row vertices keep their constraint and survive; the free one below goes.
    cdt::removeVerticesOrdinateRange(cdt, 1.0, 5.0, false, true);
    EXPECT_EQ(cdt.numberOfVertices(), 8 - 1);
    EXPECT_FALSE(points(cdt).contains(PointF(5, 2)));
    cdt::removeConstraintsOrdinates(cdt, {5.0});
    EXPECT_EQ(cdt.numberOfConstraints(), 7 - 4);
}

TEST(CDT, BuildsFromTheLinesOfASection)
{
    Shape2DList lines = rectangleLines(0, 0, 10, 10);
    lines += linesOf({QLineF(0, 5, 10, 5), QLineF(10, 5, 14, 5)});
    const CDT cdt = cdt::createCDT(lines);
    // The offshoot is gone; the middle line splits both sides.
    EXPECT_EQ(cdt.numberOfConstraints(), 7);
    EXPECT_EQ(verticesOfType(cdt, CDT::VertexBase), 6);
}

TEST(MeshStep, ReportsKernelFailuresAndGoesOn)
{
    QString reported;
    std::string expression;
    const MeshStepError onError = [&](const QString &text, const CGAL::Failure_exception *failure) {
        reported = text;
        expression = failure ? failure->expression() : std::string();
    };
    EXPECT_FALSE(runMeshStep("refining", onError, [] {
        throw CGAL::Precondition_exception("CGAL", "a != b", "file.h", 7, "");
    }));
    EXPECT_EQ(reported, "refining");
    EXPECT_EQ(expression, "a != b");
    EXPECT_FALSE(runMeshStep("other", onError, [] { throw std::runtime_error("bad"); }));
    EXPECT_EQ(reported, "other, error: bad");
    EXPECT_TRUE(runMeshStep("fine", onError, [] {}));
}

TEST(CDT, MirroredCellReplicatesIntoAConformingPeriod)
{
    // Half a pitch of 6 mm, 5 mm high, with a slot wall in it.
    CDT quarter = rectangle(0, 0, 3, 5);
    quarter.insert_constraint(PointF(1, 0), PointF(1, 3));
    quarter.refine(0.125, 0.8, 50000);
    // The mirror line joins the two halves; the outer sides stay the boundary.
    cdt::removeConstraintsAbscissas(quarter, {3.0});
    CDT cell = quarter;
    cell.merge(quarter.reflectedAbscissa(3.0));
    cell.markDomain();
    const MeshMeasures cellMesh = measure(cell);
    ASSERT_NEAR(cellMesh.area, 30.0, 1e-9);
    int border = 0;
    for (const PointF &point : points(cell))
        border += std::abs(point.x()) < 1e-9 ? 1 : 0;

    EXPECT_EQ(cdt::replicated(cell, 6.0, 6.0).numberOfVertices(), cell.numberOfVertices());
    CDT period = cdt::replicated(cell, 6.0, 4 * 6.0 + 0.4);
    period.markDomain();
    EXPECT_EQ(period.numberOfVertices(), 4 * cell.numberOfVertices() - 3 * border);
    EXPECT_TRUE(isPlanarMesh(period, QStringLiteral("replicated_period")));
    const MeshMeasures mesh = measure(period);
    EXPECT_NEAR(mesh.area, 4 * 30.0, 1e-9);
    EXPECT_EQ(mesh.faces, 4 * cellMesh.faces);
    EXPECT_NEAR(mesh.boundaryLength, 2 * (24.0 + 5.0), 1e-9);
    EXPECT_LE(mesh.longestSide, 0.8 + 1e-9);
}
