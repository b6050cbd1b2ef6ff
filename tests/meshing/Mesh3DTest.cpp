#include <QFile>
#include <QTemporaryDir>
#include <QtMath>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <memory>
#include <set>
#include <gtest/gtest.h>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "geometry/servoce/solid.h"
#include "materials/BasicMaterials.h"
#include "meshing/Mesh.h"
#include "meshing/Mesh3D.h"
#include "meshing/PeriodGeometry.h"
#include "support/ConsoleSpies.h"
#include "support/LogCatcher.h"

// The volume mesh of one period of the example, made coarse so that it stays quick.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

constexpr double coarseSize = 20.0;

using Face = std::array<int, 3>;
using Edge = std::array<int, 2>;

Face sorted(Face face)
{
    std::sort(face.begin(), face.end());
    return face;
}

std::array<Face, 4> facesOf(const VolumeMesh::Tetrahedron &tetrahedron)
{
    const auto &v = tetrahedron.vertices;
    return {sorted({v[0], v[1], v[2]}), sorted({v[0], v[1], v[3]}), sorted({v[0], v[2], v[3]}),
            sorted({v[1], v[2], v[3]})};
}

double solidVolume(const ShapeList &shapes)
{
    double total = 0.0;
    for (const servoce::shape &shape : shapes)
        total += shape.volume();
    return total;
}

int solidCount(const ShapeList &shapes)
{
    int count = 0;
    for (const servoce::shape &shape : shapes)
        count += int(shape.solids().size());
    return count;
}

class Mesh3DTest : public ::testing::Test
{
protected:
    // One document and one mesh for the suite: the example's copy is never written.
    static void SetUpTestSuite()
    {
        folder = std::make_unique<QTemporaryDir>();
        ASSERT_TRUE(folder->isValid());
        const QString copy = folder->filePath(QStringLiteral("new_motor.zva"));
        ASSERT_TRUE(QFile::copy(example, copy));
        document = std::make_unique<Document>();
        document->start();
        ASSERT_TRUE(document->load(copy));
        document->mesh()->setAutoSizeBound(false);
        document->mesh()->setSizeBound(coarseSize);
        shapes = document->mesh()->mesh3D()->periodShapes();
        volumeMesh = document->mesh()->mesh3D()->createMesh(shapes);
    }
    static void TearDownTestSuite()
    {
        volumeMesh.reset();
        shapes.clear();
        document.reset();
        folder.reset();
    }

    static std::unique_ptr<QTemporaryDir> folder;
    static std::unique_ptr<Document> document;
    static ShapeList shapes;
    static std::shared_ptr<VolumeMesh> volumeMesh;
};

std::unique_ptr<QTemporaryDir> Mesh3DTest::folder;
std::unique_ptr<Document> Mesh3DTest::document;
ShapeList Mesh3DTest::shapes;
std::shared_ptr<VolumeMesh> Mesh3DTest::volumeMesh;

// A ring segment of iron between the radii 80 and 120, 10 high from z = 0.
servoce::shape ringSegment(double from, double sweep)
{
    return servoce::tube(120.0, 80.0, 10.0, qDegreesToRadians(sweep))
        .transformed(servoce::rotateZ(qDegreesToRadians(from)));
}

double ringSegmentVolume(double sweep)
{
    return sweep / 360.0 * M_PI * (120.0 * 120.0 - 80.0 * 80.0) * 10.0;
}

PeriodBody ringBody(const PieceList &pieces, double displacement)
{
    PeriodBody body;
    body.pieces = pieces;
    body.displacement = displacement;
    body.bottom = 0.0;
    body.top = 10.0;
    body.extensionBelow = 5.0;
    body.extensionAbove = 2.0;
    return body;
}

TEST(PeriodGeometry, AWholeTurnKeepsThePiecesAndFillsTheRestWithAir)
{
    const QSharedPointer<AbstractMaterial> iron(new IronMaterial);
    const PeriodGeometry geometry(150.0, 360.0);
    const ShapeList solids = geometry.solids({ringBody({Piece(ringSegment(0.0, 360.0), iron, Piece::Stator1)}, 0.0)});
    ASSERT_EQ(solids.size(), 2);
    EXPECT_NEAR(solids.at(0).volume(), ringSegmentVolume(360.0), 1e-6 * ringSegmentVolume(360.0));
    const double cylinder = M_PI * 150.0 * 150.0 * 17.0;
    EXPECT_NEAR(solids.at(1).volume(), cylinder - ringSegmentVolume(360.0), 1e-6 * cylinder);
    const servoce::boundbox air = solids.at(1).bounding_box();
    EXPECT_NEAR(air.zmin, -5.0, 1e-6);
    EXPECT_NEAR(air.zmax, 12.0, 1e-6);
}

// The period of 90 degrees starts at the body's displacement of 30: of four
// segments, one lies within, one crosses the side at 120 and two lie without.
TEST(PeriodGeometry, APeriodCutsThePiecesAtItsSidesAndTurnsWithTheBody)
{
    const QSharedPointer<AbstractMaterial> iron(new IronMaterial);
    PieceList pieces;
    for (const double from : {-10.0, 60.0, 110.0, 200.0})
        pieces.append(Piece(ringSegment(from, 30.0), iron, Piece::Stator1));
    const PeriodGeometry geometry(150.0, 90.0);
    const ShapeList solids = geometry.solids({ringBody(pieces, 30.0)});
    ASSERT_EQ(solids.size(), 3);
    EXPECT_NEAR(solids.at(0).volume(), ringSegmentVolume(30.0), 1e-6 * ringSegmentVolume(30.0));
    EXPECT_NEAR(solids.at(1).volume(), ringSegmentVolume(10.0), 1e-6 * ringSegmentVolume(10.0));
    const double sector = M_PI * 150.0 * 150.0 * 17.0 / 4.0;
    EXPECT_NEAR(solids.at(2).volume(), sector - ringSegmentVolume(40.0), 1e-6 * sector);
    const servoce::point3 centre = solids.at(2).center();
    EXPECT_NEAR(qRadiansToDegrees(std::atan2(centre.y, centre.x)), 75.0, 5.0);
}

TEST(Mesh3DParameters, MinimalSizeIsAHundredthOfTheBound)
{
    const VolumeMeshParameters parameters = Mesh3D::meshingParameters(10.0);
    EXPECT_DOUBLE_EQ(parameters.maxh, 10.0);
    EXPECT_DOUBLE_EQ(parameters.minh, 0.1);
}

TEST_F(Mesh3DTest, PeriodIsTheBodiesSectorsFilledWithPiecesAndAir)
{
    ASSERT_FALSE(shapes.isEmpty());
    const double radius = qMax(document->stator()->outerDiameter(), document->rotor()->outerDiameter()) / 2.0;
    // The sectors of the bodies stack from the lower end to the upper one, each
    // reaching the axial extension past an end of the machine.
    const double extension = document->mesh()->boundCylinderAxialExtension();
    const double height = document->height() + 2.0 * extension;
    const double sector = M_PI * radius * radius * document->periodicityAngleSpan() / 360.0 * height;
    EXPECT_NEAR(solidVolume(shapes), sector, 1e-3 * sector);
}

TEST_F(Mesh3DTest, EveryTetrahedronHasPositiveVolume)
{
    ASSERT_FALSE(volumeMesh->isEmpty());
    for (const VolumeMesh::Tetrahedron &tetrahedron : volumeMesh->tetrahedra)
        ASSERT_GT(volumeMesh->signedVolume(tetrahedron), 0.0);
}

TEST_F(Mesh3DTest, VolumeIsThatOfThePeriodsSolids)
{
    const double expected = solidVolume(shapes);
    EXPECT_NEAR(volumeMesh->volume(), expected, 0.01 * expected);
}

TEST_F(Mesh3DTest, EverySolidIsADomain)
{
    std::set<int> domains;
    for (const VolumeMesh::Tetrahedron &tetrahedron : volumeMesh->tetrahedra)
        domains.insert(tetrahedron.domain);
    EXPECT_EQ(int(domains.size()), solidCount(shapes));
}

// The faces that one tetrahedron alone has form the outer boundary: each of their
// edges lies on exactly two of them, and netgen lists each as a boundary triangle.
TEST_F(Mesh3DTest, BoundaryIsClosed)
{
    std::map<Face, int> faceCount;
    for (const VolumeMesh::Tetrahedron &tetrahedron : volumeMesh->tetrahedra) {
        for (const Face &face : facesOf(tetrahedron))
            ++faceCount[face];
    }
    std::map<Edge, int> edgeCount;
    std::set<Face> outer;
    for (const auto &[face, count] : faceCount) {
        ASSERT_LE(count, 2);
        if (count != 1)
            continue;
        outer.insert(face);
        ++edgeCount[{face[0], face[1]}];
        ++edgeCount[{face[0], face[2]}];
        ++edgeCount[{face[1], face[2]}];
    }
    ASSERT_FALSE(outer.empty());
    for (const auto &[edge, count] : edgeCount)
        ASSERT_EQ(count, 2) << "edge " << edge[0] << "-" << edge[1];

    std::set<Face> listed;
    for (const VolumeMesh::Triangle &triangle : volumeMesh->triangles) {
        if (triangle.domainInside == 0 || triangle.domainOutside == 0)
            listed.insert(sorted(triangle.vertices));
    }
    EXPECT_EQ(listed, outer);
}

// Neighbouring solids share the triangles of their common faces, and netgen lists
// each of those between its two domains.
TEST_F(Mesh3DTest, SolidsShareTheirCommonFaces)
{
    std::map<Face, std::set<int>> domainsAt;
    for (const VolumeMesh::Tetrahedron &tetrahedron : volumeMesh->tetrahedra) {
        for (const Face &face : facesOf(tetrahedron))
            domainsAt[face].insert(tetrahedron.domain);
    }
    std::set<Face> between;
    for (const auto &[face, domains] : domainsAt) {
        if (domains.size() == 2)
            between.insert(face);
    }
    ASSERT_FALSE(between.empty());
    std::set<Face> listed;
    for (const VolumeMesh::Triangle &triangle : volumeMesh->triangles) {
        if (triangle.domainInside != 0 && triangle.domainOutside != 0
            && triangle.domainInside != triangle.domainOutside)
            listed.insert(sorted(triangle.vertices));
    }
    EXPECT_EQ(listed, between);
}

// A shape too thin for netgen's surface mesher: the failure reaches the console,
// the result is empty, and the document and netgen go on.
TEST_F(Mesh3DTest, FailureGivesAnEmptyMeshAndTheCriticalLine)
{
    Mesh3D *mesh3D = document->mesh()->mesh3D();
    const LogCatcher log;
    ConsoleSpies console(document->mesh()->console());
    const ShapeList sliver{servoce::box(10.0, 10.0, 1e-6, false)};
    const std::shared_ptr<VolumeMesh> failed = mesh3D->createMesh(sliver);
    ASSERT_TRUE(failed);
    EXPECT_TRUE(failed->isEmpty());
    EXPECT_TRUE(failed->points.empty());
    EXPECT_TRUE(log.contains(QStringLiteral("Critical error at meshingTask: ")));
    EXPECT_EQ(console.error.count(), 1);

    EXPECT_FALSE(document->pieces().isEmpty());
    const ShapeList cube{servoce::box(coarseSize, coarseSize, coarseSize, false)};
    const std::shared_ptr<VolumeMesh> after = mesh3D->createMesh(cube);
    const double volume = coarseSize * coarseSize * coarseSize;
    EXPECT_NEAR(after->volume(), volume, 1e-6 * volume);
}

} // namespace
