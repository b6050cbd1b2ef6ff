#include <QtConcurrent>
#include <QtMath>
#include <gtest/gtest.h>

#include "geometry/ShapeLayerSupport.h"
#include "geometry/servoce/solid.h"
#include "meshing/CdtOperations.h"
#include "meshing/GeometryGenerator.h"
#include "meshing/SectionCreater.h"
#include "MeshingSupport.h"

namespace {

double totalLength(const Shape2DList &lines)
{
    double length = 0.0;
    for (const QSharedPointer<Shape2D> &line : lines)
        length += line->length();
    return length;
}

// The regions of a cut, as the meshers see them.
GeometryData regionsOf(const Shape2DList &lines)
{
    return GeometryGenerator().createGeometry(lines, 1e-5, true, false, true);
}

} // namespace

TEST(CylindricalSection, SectorOfARingUnrollsIntoARectangle)
{
    // Radii 40 to 60, 30 degrees from the x axis, 8 high, standing on z = 5.
    const servoce::shape sector = servoce::tube(60.0, 40.0, 8.0, qDegreesToRadians(30.0)).translated(0, 0, 5);
    const double radius = 50.0;
    const Shape2DList lines = CylindricalSectionCreater(radius, 20.0, 1.0).create({sector});
    const double width = radius * qDegreesToRadians(30.0);
    EXPECT_NEAR(totalLength(lines), 2.0 * (width + 8.0), 1e-6);
    for (const QSharedPointer<Shape2D> &line : lines) {
        for (const PointF &end : {line->p1(), line->p2()}) {
            EXPECT_GE(end.x(), -1e-9);
            EXPECT_LE(end.x(), width + 1e-9);
            EXPECT_GE(end.y(), 5.0 - 1e-9);
            EXPECT_LE(end.y(), 13.0 + 1e-9);
        }
    }
    const GeometryData data = regionsOf(lines);
    ASSERT_EQ(data.subdomains.size(), 1);
    EXPECT_NEAR(data.subdomains.first()->area(), width * 8.0, 1e-6);
}

TEST(CylindricalSection, FullCircleBecomesALineOfTheWholeCircumference)
{
    const Shape2DList lines =
        CylindricalSectionCreater(10.0, 4.0, 1.0).create({servoce::cylinder(15.0, 4.0, false)});
    ASSERT_EQ(lines.size(), 2);
    for (const QSharedPointer<Shape2D> &line : lines) {
        EXPECT_NEAR(line->length(), 2.0 * M_PI * 10.0, 1e-9);
        EXPECT_NEAR(line->p1().y(), line->p2().y(), 1e-12);
    }
}

TEST(CylindricalSection, ArcThroughZeroStandsOnBothEndsOfTheUnrolledCircle)
{
    // A ring sector from 350 to 10 degrees.
    const servoce::shape sector = servoce::tube(60.0, 40.0, 8.0, qDegreesToRadians(20.0))
                                      .transformed(servoce::rotateZ(qDegreesToRadians(-10.0)));
    const double radius = 50.0;
    const Shape2DList lines = CylindricalSectionCreater(radius, 8.0, 1.0).create({sector});
    const double degree = radius * M_PI / 180.0;
    // No line spans the unrolled circle from 10 to 350 degrees; each end holds
    // its part of the bottom and the top.
    double low = 0.0;
    double high = 0.0;
    for (const QSharedPointer<Shape2D> &line : lines) {
        const double left = std::min(line->p1().x(), line->p2().x());
        const double right = std::max(line->p1().x(), line->p2().x());
        EXPECT_TRUE(right <= 10 * degree + 1e-6 || left >= 350 * degree - 1e-6) << line->toString().toStdString();
        if (std::abs(line->p1().y() - line->p2().y()) > 1e-9)
            continue;
        (right <= 10 * degree + 1e-6 ? low : high) += right - left;
    }
    EXPECT_NEAR(low, 2 * 10 * degree, 1e-6);
    EXPECT_GE(high, 2 * 10 * degree - 1e-6);
}

TEST(CylindricalSection, CurvesBecomeAtMostNineChords)
{
    // A sphere cut off its centre meets the cylinder in one curve of space.
    const servoce::shape ball = servoce::sphere(10.0).translated(50.0, 0.0, 20.0).transformed(
        servoce::rotateZ(qDegreesToRadians(45.0)));
    const CylindricalSectionCreater creater(50.0, 40.0, 1.0);
    const Shape2DList lines = creater.create({ball});
    ASSERT_FALSE(lines.isEmpty());
    const size_t edges = creater.makeSection({ball}).toCompound().edges().size();
    EXPECT_LE(size_t(lines.size()), 9 * edges);
    const GeometryData data = regionsOf(lines);
    ASSERT_EQ(data.subdomains.size(), 1);
    // Close to the flat disc of radius 10, and smaller than it, as chords cut inside.
    EXPECT_LT(data.subdomains.first()->area(), M_PI * 100.0 * 1.05);
    EXPECT_GT(data.subdomains.first()->area(), M_PI * 100.0 * 0.85);
}

TEST(RadialSection, BoxIsCutInTheAxialPlaneWithRoundedCorners)
{
    const servoce::shape box = servoce::box(10.0, 2.0, 5.0, false).translated(0.1234567, -1.0, 3.0);
    const Shape2DList lines = RadialSectionCreater(1.0).create({box});
    ASSERT_EQ(lines.size(), 4);
    double left = 1e9;
    for (const QSharedPointer<Shape2D> &line : lines)
        left = std::min({left, line->p1().x(), line->p2().x()});
    EXPECT_DOUBLE_EQ(left, 0.123457);
    const GeometryData data = regionsOf(lines);
    ASSERT_EQ(data.subdomains.size(), 1);
    EXPECT_NEAR(data.subdomains.first()->area(), 50.0, 1e-4);
}

TEST(Section, EmptyAndNullShapesGiveNothing)
{
    ShapeLog log;
    EXPECT_TRUE(CylindricalSectionCreater(10.0, 4.0, 1.0).create({}).isEmpty());
    EXPECT_TRUE(RadialSectionCreater(1.0).create({}).isEmpty());
    EXPECT_TRUE(RadialSectionCreater(1.0).makeSection({servoce::shape()}).isEmpty());
    // A solid the cylinder does not reach.
    EXPECT_TRUE(CylindricalSectionCreater(100.0, 4.0, 1.0).create({servoce::cylinder(15.0, 4.0, false)}).isEmpty());
    EXPECT_TRUE(log.lines().filter("Error").isEmpty());
}

TEST(ShapeList, MovesAndTurnsCopies)
{
    const ShapeList shapes{servoce::box(1.0, 1.0, 1.0, false)};
    const ShapeList moved = shapes.translatedZ(5.0);
    EXPECT_DOUBLE_EQ(moved.first().bounding_box().zmin, shapes.first().bounding_box().zmin + 5.0);
    EXPECT_TRUE(shapes.translatedZ(1e-8).first().is_equal(shapes.first()));
    const ShapeList turned = shapes.rotatedZ(M_PI);
    EXPECT_NEAR(turned.first().center().x, -0.5, 1e-9);
    EXPECT_NEAR(shapes.first().center().x, 0.5, 1e-9);
    EXPECT_EQ(ShapeList({shapes.first(), moved.first()}).toCompound().solids().size(), 2u);
}

TEST(SectionToMesh, MagnetInsideIronKeepsTheAreasOfItsUnrolledCut)
{
    const double radius = 50.0;
    const double degree = radius * M_PI / 180.0;
    const servoce::shape iron = servoce::tube(60.0, 40.0, 10.0, qDegreesToRadians(30.0));
    const servoce::shape magnet = servoce::tube(55.0, 45.0, 6.0, qDegreesToRadians(10.0))
                                      .transformed(servoce::rotateZ(qDegreesToRadians(10.0)))
                                      .translated(0.0, 0.0, 2.0);
    const Shape2DList lines = CylindricalSectionCreater(radius, 10.0, 1.0).create({iron, magnet});

    // Magnet arc times magnet height, and the iron around it.
    const double magnetArea = 10 * degree * 6.0;
    const double cellArea = 30 * degree * 10.0;
    const GeometryData data = regionsOf(lines);
    ASSERT_EQ(data.subdomains.size(), 2);
    EXPECT_NEAR(data.subdomains.at(0)->area(), cellArea - magnetArea, 1e-6 * cellArea);
    EXPECT_NEAR(data.subdomains.at(1)->area(), magnetArea, 1e-6 * magnetArea);
    EXPECT_TRUE(data.subdomains.at(1)->contains(data.subdomains.at(1)->polylabelPoint()));
    EXPECT_FALSE(data.subdomains.at(0)->contains(data.subdomains.at(1)->polylabelPoint()));

    CDT cdt = cdt::createCDT(lines);
    const int steps = cdt.refine(0.125, 2.0, 50000);
    EXPECT_LT(steps, 50000);
    cdt.markDomain();
    const MeshMeasures mesh = measure(cdt);
    EXPECT_NEAR(mesh.area, cellArea, 1e-6 * cellArea);
    EXPECT_GT(mesh.smallestArea, 0.0);
    EXPECT_LE(mesh.longestSide, 2.0 + 1e-9);
    EXPECT_EQ(mesh.overusedSides, 0);
    EXPECT_NEAR(mesh.boundaryLength, 2.0 * (30 * degree + 10.0), 1e-6);
    // The magnet's outline stands in the mesh as constraints of the mesh proper.
    double magnetOutline = 0.0;
    const CDT::Snapshot snapshot = cdt.snapshot();
    for (const CDT::Edge &edge : snapshot.constraints) {
        const QPointF a = snapshot.vertices.at(edge.vertex0).point;
        const QPointF b = snapshot.vertices.at(edge.vertex1).point;
        if (a.y() > 1.0 && a.y() < 9.0 && b.y() > 1.0 && b.y() < 9.0 && a.x() > 1.0 && b.x() > 1.0
            && a.x() < 29 * degree && b.x() < 29 * degree)
            magnetOutline += QLineF(a, b).length();
    }
    EXPECT_NEAR(magnetOutline, 2.0 * (10 * degree + 6.0), 1e-6);
}

TEST(SectionToMesh, SlicesAreCutAndCleanedInParallel)
{
    // One creater per slice, each on its own worker, as the meshes are built.
    const ShapeList shapes{servoce::tube(60.0, 40.0, 10.0, qDegreesToRadians(30.0)),
                           servoce::tube(55.0, 45.0, 6.0, qDegreesToRadians(10.0)).translated(0.0, 0.0, 2.0)};
    const QList<double> radii{42.0, 47.0, 50.0, 53.0, 58.0};
    QList<QFuture<int>> slices;
    for (const double radius : radii) {
        slices.append(QtConcurrent::run([&shapes, radius] {
            const Shape2DList lines = CylindricalSectionCreater(radius, 10.0, 1.0).create(shapes);
            return GeometryGenerator().createGeometry(lines, 1e-5, true, false, true).subdomains.size();
        }));
    }
    QList<int> regions;
    for (QFuture<int> &slice : slices)
        regions.append(slice.result());
    // Where the cut meets the magnet, which stands on the sector's side, the
    // outline is a region of its own beside the iron and the magnet.
    EXPECT_EQ(regions, QList<int>({1, 3, 3, 3, 1}));
}
