#include <QSignalSpy>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>

#include "base/ScriptConsole.h"
#include "meshing/SliceMesher.h"
#include "MeshingSupport.h"
#include "ShippedMachine.h"

using namespace shipped;

namespace {

constexpr double sizeBound = 6.0;

// The ordinates of the vertices on one abscissa, bottom up.
QVector<double> ordinatesAt(const CDT::Snapshot &mesh, double x)
{
    QVector<double> ordinates;
    for (const CDT::Vertex &vertex : mesh.vertices) {
        if (std::abs(vertex.point.x() - x) <= 1e-6)
            ordinates.append(vertex.point.y());
    }
    std::sort(ordinates.begin(), ordinates.end());
    return ordinates;
}

// The vertices on one ordinate, left to right.
QVector<CDT::Vertex> row(const CDT::Snapshot &mesh, double y)
{
    QVector<CDT::Vertex> vertices;
    for (const CDT::Vertex &vertex : mesh.vertices) {
        if (std::abs(vertex.point.y() - y) <= 1e-7)
            vertices.append(vertex);
    }
    std::sort(vertices.begin(), vertices.end(),
              [](const CDT::Vertex &a, const CDT::Vertex &b) { return a.point.x() < b.point.x(); });
    return vertices;
}

// How often the diagonals between two rows change direction, left to right.
int diagonalTurns(const CDT::Snapshot &mesh, double y0, double h)
{
    std::map<double, bool> rising;
    for (const CDT::Face &face : mesh.faces) {
        for (int k = 0; face.inDomain && k < 3; ++k) {
            const QPointF a = mesh.vertices.at(face.vertices[k]).point;
            const QPointF b = mesh.vertices.at(face.vertices[(k + 1) % 3]).point;
            const bool across = std::abs(std::abs(b.y() - a.y()) - h) <= 1e-7 && std::min(a.y(), b.y()) - y0 > -1e-7
                                && std::min(a.y(), b.y()) - y0 < 1e-7;
            if (across && std::abs(b.x() - a.x()) > 1e-7)
                rising[(a.x() + b.x()) / 2] = (b.x() - a.x()) * (b.y() - a.y()) > 0;
        }
    }
    int turns = 0;
    for (auto it = rising.begin(); it != rising.end() && std::next(it) != rising.end(); ++it)
        turns += it->second != std::next(it)->second ? 1 : 0;
    return turns;
}

bool near(double a, double b)
{
    return std::abs(a - b) <= 1e-6;
}

using SliceMeshTest = ShippedMachineTest;

} // namespace

// Facts of the machine, not of the mesher: the meshed area is the period less
// the middle band of each gap, the sides of one triangle lie on the outline of
// the period, the seams pair, and both rows of a gap are the same lattice.
TEST_F(SliceMeshTest, SlicesOfTheWholePeriodJoinInEqualRowsAcrossTheGap)
{
    struct Case
    {
        Machine::Type type;
        int layers;
    };
    const Case cases[] = {{Machine::SR, 3},    {Machine::RSR, 3},   {Machine::SRS, 3},
                          {Machine::SRSRS, 3}, {Machine::RSRSR, 3}, {Machine::SR, 7}};
    for (const auto &[type, layers] : cases) {
        SCOPED_TRACE(QStringLiteral("machine type %1, %2 layers").arg(type).arg(layers).toStdString());
        ASSERT_TRUE(makeMachine(type));
        doc.airgap(Airgap::ID1)->setNumberLayers(layers);
        mesh->setAutoSizeBound(false);
        mesh->setSizeBound(sizeBound);
        mesh->setNumberSlices(2);
        mesh->createMeshSlices();
        EXPECT_FALSE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));

        const double height = doc.height();
        const double span = doc.periodicityAngleSpan();
        const QList<double> radii = mesh->sliceRadii();
        ASSERT_EQ(mesh->meshSlices().size(), radii.size());
        for (int i = 0; i < radii.size(); ++i) {
            const double radius = radii.at(i);
            SCOPED_TRACE(QStringLiteral("slice at %1 mm").arg(radius).toStdString());
            const CDT &cdt = mesh->meshSlices().at(i);
            const QString picture = QStringLiteral("slice_mesh_%1_%2_%3").arg(type).arg(layers).arg(i);
            const CDT::Snapshot snapshot = cdt.snapshot();
            const double width = radius * qDegreesToRadians(span);

            QList<double> outline{0.0, height};
            double bands = 0.0;
            for (const Airgap *gap : doc.airgaps()) {
                const double h = gap->thickness() / gap->numberLayers();
                const int rows = gap->numberLayers() / 2;
                outline << gap->posBottom() + rows * h << gap->posTop() - rows * h;
                bands += gap->thickness() - 2 * rows * h;

                // Both sides bring rows of the same equal segments.
                const int segments = std::max(1, int(std::lround(width / (h * mesh->airgapQuality() * 2 / std::sqrt(3.0)))));
                for (int k = 1; k < gap->numberLayers(); ++k) {
                    const QVector<CDT::Vertex> vertices = row(snapshot, gap->posBottom() + k * h);
                    ASSERT_EQ(vertices.size(), segments + 1) << "row " << k << ", drawn in " << writeSvg(cdt, picture).toStdString();
                    for (int j = 0; j < vertices.size(); ++j) {
                        EXPECT_NEAR(vertices.at(j).point.x(), j * width / segments, 1e-6);
                        EXPECT_EQ(vertices.at(j).type, CDT::VertexAirgapRow);
                    }
                    // Between rows of one side the diagonals rise and fall in turn, but in the middle band.
                    if (k + 1 < gap->numberLayers() && k != gap->numberLayers() / 2)
                        EXPECT_EQ(diagonalTurns(snapshot, gap->posBottom() + k * h, h), segments - 1)
                            << "band " << k << ", drawn in " << writeSvg(cdt, picture).toStdString();
                }
            }

            const MeshMeasures measures = measure(cdt);
            EXPECT_TRUE(isPlanarMesh(cdt, picture));
            EXPECT_GT(measures.smallestArea, 0.0);
            EXPECT_EQ(measures.overusedSides, 0);
            EXPECT_NEAR(measures.area, width * (height - bands), 1e-6 * width * height);
            // The lattice of the gap may stretch a side at a face by the layer height.
            for (const CDT::Face &face : snapshot.faces) {
                for (int k = 0; face.inDomain && k < 3; ++k) {
                    const QPointF a = snapshot.vertices.at(face.vertices[k]).point;
                    const QPointF b = snapshot.vertices.at(face.vertices[(k + 1) % 3]).point;
                    ASSERT_LE(QLineF(a, b).length(), sizeBound + gap)
                        << flat::pointText(a).toStdString() << " to " << flat::pointText(b).toStdString()
                        << ", drawn in " << writeSvg(cdt, picture).toStdString();
                }
            }

            // A side of one triangle lies on a seam, an end of the machine or a row next to a middle band.
            std::map<std::pair<int, int>, int> sides;
            for (const CDT::Face &face : snapshot.faces) {
                if (!face.inDomain)
                    continue;
                for (int k = 0; k < 3; ++k) {
                    const int u = face.vertices[k];
                    const int v = face.vertices[(k + 1) % 3];
                    ++sides[{std::min(u, v), std::max(u, v)}];
                }
            }
            int loose = 0;
            for (const auto &[side, count] : sides) {
                if (count != 1)
                    continue;
                const QPointF a = snapshot.vertices.at(side.first).point;
                const QPointF b = snapshot.vertices.at(side.second).point;
                const bool onSeam = (near(a.x(), 0.0) && near(b.x(), 0.0)) || (near(a.x(), width) && near(b.x(), width));
                const bool onOutline = std::any_of(outline.cbegin(), outline.cend(),
                                                   [&](double y) { return near(a.y(), y) && near(b.y(), y); });
                loose += onSeam || onOutline ? 0 : 1;
            }
            EXPECT_EQ(loose, 0) << "sides of one triangle inside the period, drawn in " << writeSvg(cdt, picture).toStdString();

            const QVector<double> left = ordinatesAt(snapshot, 0.0);
            const QVector<double> right = ordinatesAt(snapshot, width);
            ASSERT_EQ(left.size(), right.size()) << writeSvg(cdt, picture).toStdString();
            for (int k = 0; k < left.size(); ++k)
                EXPECT_NEAR(left.at(k), right.at(k), 1e-6);
        }
    }
}

TEST_F(SliceMeshTest, AMachineThatCannotBeCutGivesAMeshErrorAndNoMesh)
{
    ASSERT_TRUE(makeMachine(Machine::SR));
    QSignalSpy errors(mesh->console(), &ScriptConsole::signalError);
    doc.airgap(Airgap::ID1)->setThickness(0.0);
    mesh->createGeometrySlices();
    mesh->createMeshSlices();
    EXPECT_TRUE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
    ASSERT_EQ(errors.count(), 2);
    EXPECT_TRUE(errors.last().at(1).toString().contains("no thickness"));
    for (const GeometryData &data : mesh->geometrySlices())
        EXPECT_TRUE(data.subdomains.isEmpty());
    for (const CDT &slice : mesh->meshSlices())
        EXPECT_EQ(slice.numberOfVertices(), 0);
    EXPECT_EQ(mesh->meshRadial().numberOfVertices(), 0);
    EXPECT_FALSE(mesh->isMeshing());
    EXPECT_TRUE(mesh->elementErrors().contains("Critical error while building mesh."));
}

// Without the bodies' scripts the slices would cut nothing.
TEST_F(SliceMeshTest, SlicesOutsideTheDrawnMachineGiveAMeshError)
{
    QSignalSpy errors(mesh->console(), &ScriptConsole::signalError);
    mesh->createMeshSlices();
    EXPECT_TRUE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
    ASSERT_EQ(errors.count(), 1);
    EXPECT_TRUE(errors.last().at(1).toString().contains("outside the machine"));
    EXPECT_EQ(mesh->meshRadial().numberOfVertices(), 0);
    EXPECT_TRUE(mesh->elementErrors().contains("Critical error while building mesh."));
}

// A body without pieces gives an empty cell; the others are still meshed.
TEST(SliceMesher, BodyWithoutShapesLeavesTheOthers)
{
    MeshSettings settings;
    settings.height = 10.0;
    settings.angleSpan = 90.0;
    settings.sectorRadius = 200.0;
    settings.sizeBound = 3.0;
    QStringList reports;
    MeshBody empty;
    empty.name = QStringLiteral("empty");
    empty.pitch = 30.0;
    empty.top = 10.0;
    const SliceMesher mesher(settings, {empty},
                             [&reports](const QString &text, const CGAL::Failure_exception *) { reports << text; });
    EXPECT_EQ(mesher.cell(empty, 0, 100.0).numberOfVertices(), 0);
    EXPECT_EQ(mesher.slice(0, 100.0).numberOfVertices(), 0);
    EXPECT_TRUE(reports.isEmpty());
}
