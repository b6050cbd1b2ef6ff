#include <QtMath>
#include <gtest/gtest.h>

#include "geometry/ShapeLayerSupport.h"
#include "meshing/GeometryGenerator.h"
#include "MeshingSupport.h"

namespace {

GeometryData regions(const Shape2DList &lines, bool removeOffshoots = true)
{
    return GeometryGenerator().createGeometry(lines, 1e-5, true, false, removeOffshoots);
}

double signedContourArea(const GeometryData &data, const Subdomain &subdomain)
{
    double twice = 0.0;
    for (const SegmentPtr &segment : subdomain.segments()) {
        const QPointF a = data.nodes.at(int(segment->node0));
        const QPointF b = data.nodes.at(int(segment->node1));
        twice += a.x() * b.y() - b.x() * a.y();
    }
    return twice / 2.0;
}

// Every region is a closed counter-clockwise contour whose area is that of its path.
void expectWellFormed(const GeometryData &data)
{
    for (const QSharedPointer<Subdomain> &subdomain : data.subdomains) {
        EXPECT_TRUE(subdomain->segments().isClosed()) << subdomain->id();
        EXPECT_GT(signedContourArea(data, *subdomain), 0.0) << subdomain->id();
    }
}

} // namespace

TEST(GeometryGenerator, EmptyListGivesNothing)
{
    const GeometryData data = regions({});
    EXPECT_TRUE(data.subdomains.isEmpty());
    EXPECT_TRUE(data.segments.isEmpty());
    EXPECT_TRUE(data.openPoints.isEmpty());
}

TEST(GeometryGenerator, ToleranceFollowsTheSizeOfTheSection)
{
    GeometryGenerator generator;
    generator.createSegments(rectangleLines(-20.0, 10.0, 100.0, 40.0), 0.0, false, false);
    // 100 by 50 with the origin.
    EXPECT_DOUBLE_EQ(generator.distanceTolerant(), 0.001);
}

TEST(GeometryGenerator, MergesNodesAndSplitsCrossingLines)
{
    // A hash sign inside a square: lines cross and end on the outline.
    Shape2DList lines = rectangleLines(0.0, 0.0, 30.0, 30.0);
    lines += linesOf({QLineF(10, 0, 10, 30), QLineF(20, 30, 20, 0), QLineF(0, 10, 30, 10),
                      QLineF(30, 20, 0, 20 + 4e-6)});
    const GeometryData data = regions(lines);
    // 16 nodes of a 4 by 4 grid, 24 unit sides.
    int liveNodes = 0;
    for (const Node &node : data.nodes)
        liveNodes += node.removed ? 0 : 1;
    EXPECT_EQ(liveNodes, 16);
    EXPECT_EQ(data.segments.size(), 24);
    ASSERT_EQ(data.subdomains.size(), 10);
    EXPECT_EQ(data.subdomains.first()->id(), 1);
    EXPECT_NEAR(data.subdomains.first()->area(), 900.0, 1e-3);
    double cells = 0.0;
    for (int i = 1; i < data.subdomains.size(); ++i) {
        EXPECT_NEAR(data.subdomains.at(i)->area(), 100.0, 1e-3);
        cells += data.subdomains.at(i)->area();
    }
    EXPECT_NEAR(cells, 900.0, 1e-3);
    expectWellFormed(data);
    EXPECT_TRUE(data.freeSegments.isEmpty());
}

TEST(GeometryGenerator, TwoSquaresSharingASideGiveOutlineAndBothSquares)
{
    Shape2DList lines = rectangleLines(0.0, 0.0, 1.0, 1.0);
    lines += rectangleLines(1.0, 0.0, 1.0, 1.0);
    const GeometryData data = regions(lines);
    ASSERT_EQ(data.subdomains.size(), 3);
    EXPECT_EQ(data.subdomains.at(0)->id(), 1);
    EXPECT_NEAR(data.subdomains.at(0)->area(), 2.0, 1e-12);
    EXPECT_NEAR(data.subdomains.at(1)->area(), 1.0, 1e-12);
    EXPECT_NEAR(data.subdomains.at(2)->area(), 1.0, 1e-12);
    // The shared side is split from neither square's copy: one segment.
    EXPECT_EQ(data.segments.size(), 7);
    expectWellFormed(data);
}

TEST(GeometryGenerator, IslandIsCutOutOfItsSurroundings)
{
    Shape2DList lines = rectangleLines(0.0, 0.0, 10.0, 10.0);
    lines += rectangleLines(4.0, 4.0, 2.0, 2.0);
    const GeometryData data = regions(lines);
    ASSERT_EQ(data.subdomains.size(), 2);
    const Subdomain &outer = *data.subdomains.at(0);
    const Subdomain &island = *data.subdomains.at(1);
    EXPECT_NEAR(outer.area(), 96.0, 1e-12);
    EXPECT_NEAR(island.area(), 4.0, 1e-12);
    EXPECT_TRUE(outer.contains(QPointF(1.0, 1.0)));
    EXPECT_FALSE(outer.contains(QPointF(5.0, 5.0)));
    EXPECT_TRUE(island.contains(QPointF(5.0, 5.0)));
    // The label of a ring is in the ring, not in the hole.
    EXPECT_TRUE(outer.contains(outer.polylabelPoint()));
    EXPECT_NEAR(island.centroidPoint().x(), 5.0, 1e-12);
    EXPECT_NEAR(island.centroidPoint().y(), 5.0, 1e-12);
}

TEST(GeometryGenerator, OffshootsAreRemovedOrReportedAsOpen)
{
    Shape2DList lines = rectangleLines(0.0, 0.0, 4.0, 4.0);
    lines += linesOf({QLineF(4, 2, 7, 2), QLineF(7, 2, 9, 5)});
    const GeometryData cleaned = regions(lines, true);
    // The right side stays split where the offshoot left it.
    EXPECT_EQ(cleaned.segments.size(), 5);
    ASSERT_EQ(cleaned.subdomains.size(), 1);
    EXPECT_NEAR(cleaned.subdomains.first()->area(), 16.0, 1e-12);

    const GeometryData kept = regions(lines, false);
    ASSERT_EQ(kept.subdomains.size(), 1);
    EXPECT_EQ(kept.freeSegments.size(), 2);
    ASSERT_EQ(kept.openPoints.size(), 1);
    EXPECT_EQ(kept.openPoints.first(), QPointF(9, 5));

    const GeometryData lone = regions(linesOf({QLineF(0, 0, 5, 5)}), false);
    EXPECT_TRUE(lone.subdomains.isEmpty());
    EXPECT_EQ(lone.openPoints.size(), 2);
    EXPECT_TRUE(regions(linesOf({QLineF(0, 0, 5, 5)}), true).segments.isEmpty());
}

TEST(GeometryGenerator, RefusesEmptyAndDoubledLines)
{
    ShapeLog log;
    Shape2DList lines = rectangleLines(0.0, 0.0, 4.0, 4.0);
    lines += linesOf({QLineF(1, 1, 1, 1 + 1e-5), QLineF(4, 4, 4, 0), QLineF(0, 0, 2, 0)});
    const GeometryData data = regions(lines);
    EXPECT_TRUE(log.contains("Ingore empty line"));
    // The bottom side is split at 2 by the overlapping half, nothing more.
    EXPECT_EQ(data.segments.size(), 5);
    ASSERT_EQ(data.subdomains.size(), 1);
    EXPECT_NEAR(data.subdomains.first()->area(), 16.0, 1e-12);
}

TEST(GeometryGenerator, MergesNearlyCollinearLines)
{
    const auto bent = [](double degrees) {
        const double a = qDegreesToRadians(degrees);
        return linesOf({QLineF(0, 0, 10, 0), QLineF(10, 0, 10 + 10 * std::cos(a), 10 * std::sin(a))});
    };
    EXPECT_EQ(GeometryGenerator().createGeometrySegments(bent(3.9), 1e-5, true, false).segments.size(), 1);
    EXPECT_EQ(GeometryGenerator().createGeometrySegments(bent(4.1), 1e-5, true, false).segments.size(), 2);
    EXPECT_EQ(GeometryGenerator().createGeometrySegments(bent(3.9), 1e-5, false, false).segments.size(), 2);
}

TEST(GeometryGenerator, StarIsSplitIntoFacesThatTileItsOutline)
{
    // The five chords of a pentagram cross in ten points.
    Shape2DList lines;
    for (int i = 0; i < 5; ++i) {
        const double a = qDegreesToRadians(90.0 + 144.0 * i);
        const double b = qDegreesToRadians(90.0 + 144.0 * (i + 1));
        lines.appendLine(QPointF(10 * std::cos(a), 10 * std::sin(a)), QPointF(10 * std::cos(b), 10 * std::sin(b)));
    }
    const GeometryData data = regions(lines);
    // Outline, five points and the inner pentagon.
    ASSERT_EQ(data.subdomains.size(), 7);
    double faces = 0.0;
    for (int i = 1; i < data.subdomains.size(); ++i)
        faces += data.subdomains.at(i)->area();
    EXPECT_NEAR(faces, data.subdomains.first()->area(), 1e-9);
    // The star of circumradius 10: 10 triangles of the centre, sides 10 and the inner radius.
    const double inner = 10.0 * std::cos(qDegreesToRadians(72.0)) / std::cos(qDegreesToRadians(36.0));
    EXPECT_NEAR(data.subdomains.first()->area(), 10 * 0.5 * 10.0 * inner * std::sin(qDegreesToRadians(36.0)), 1e-9);
    expectWellFormed(data);
}

TEST(GeometryGenerator, AsynchronousRunGivesTheSameRegions)
{
    Shape2DList lines = rectangleLines(0.0, 0.0, 1.0, 1.0);
    lines += rectangleLines(1.0, 0.0, 1.0, 1.0);
    const GeometryData data = GeometryGenerator().createGeometryAsync(lines, 1e-5, true, false, true);
    EXPECT_EQ(data.subdomains.size(), 3);
}

TEST(Subdomain, NamesItsScope)
{
    EXPECT_EQ(scopeText(0), "empty");
    EXPECT_EQ(scopeText(0x1), "stator1");
    EXPECT_EQ(scopeText(0x10 | 0x20000), "rotor1 | airgap2");
    EXPECT_EQ(scopeText(0x8), "Unknown scope");
}

TEST(GeometryGenerator, IslandOfTwoRegionsIsCutOutWhole)
{
    Shape2DList lines = rectangleLines(0.0, 0.0, 10.0, 10.0);
    lines += rectangleLines(3.0, 4.0, 2.0, 2.0);
    lines += rectangleLines(5.0, 4.0, 2.0, 2.0);
    const GeometryData data = regions(lines);
    // The island's own outline stays a region beside its two parts, as the
    // outline of a whole section does.
    ASSERT_EQ(data.subdomains.size(), 4);
    EXPECT_NEAR(data.subdomains.at(1)->area(), 8.0, 1e-12);
    const Subdomain &outer = *data.subdomains.first();
    EXPECT_NEAR(outer.area(), 100.0 - 8.0, 1e-12);
    EXPECT_FALSE(outer.contains(QPointF(4.0, 5.0)));
    EXPECT_FALSE(outer.contains(QPointF(6.0, 5.0)));
    EXPECT_NEAR(data.subdomains.last()->area(), 4.0, 1e-12);
}
