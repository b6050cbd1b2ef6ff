#include <QtMath>
#include <cmath>
#include <gtest/gtest.h>

#include "materials/AbstractMaterial.h"
#include "meshing/CDT.h"
#include "meshing/Mesh.h"
#include "meshing/WindingPoints.h"
#include "ShippedMachine.h"

using namespace shipped;

namespace {

bool hasVertex(const CDT::Snapshot &mesh, const QPointF &point)
{
    return std::any_of(mesh.vertices.cbegin(), mesh.vertices.cend(), [&](const CDT::Vertex &vertex) {
        return std::abs(vertex.point.x() - point.x()) <= 1e-6 && std::abs(vertex.point.y() - point.y()) <= 1e-6;
    });
}

QSharedPointer<Subdomain> regionAt(const GeometryData &data, const QPointF &point)
{
    for (const QSharedPointer<Subdomain> &region : data.subdomains) {
        if (region->contains(point))
            return region;
    }
    return {};
}

using WindingPointsTest = ShippedMachineTest;

} // namespace

TEST(WindingPoints, CarryingKeepsTheDistanceFromTheSlotsCentreLine)
{
    const double x = WindingPoints::carried(12.0, 150.0, 10.0, 50.0, 4.0);
    EXPECT_NEAR(50.0 * std::sin((x - 4.0) / 50.0), 150.0 * std::sin(2.0 / 150.0), 1e-12);
    EXPECT_NEAR(WindingPoints::carried(7.5, 80.0, 9.0, 80.0, 9.0), 7.5, 1e-12);
    EXPECT_DOUBLE_EQ(WindingPoints::carried(9.0, 80.0, 9.0, 40.0, 3.0), 3.0);
}

// Every slot of every slice divides its conductors alike: the inner vertices
// lie in the coils, repeat at every pitch and keep their distance from the
// slot's centre line from slice to slice.
TEST_F(WindingPointsTest, ConductorsOfEverySlotAndSliceGetTheSameInnerVertices)
{
    ASSERT_TRUE(makeMachine(Machine::SR));
    // A coil that fills its slot is wider than the cell's triangles: they cannot all rest on its sides.
    doc.winding()->setNumberLayers(1);
    doc.stator()->clearCashPieces();
    ASSERT_TRUE(doc.winding()->loadEndturnScript());
    mesh->setAutoSizeBound(false);
    mesh->setSizeBound(6.0);
    mesh->setNumberSlices(3);
    mesh->createGeometrySlices();
    mesh->createMeshSlices();
    ASSERT_FALSE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
    ASSERT_EQ(mesh->windingPoints().size(), 1);
    const QVector<QList<PointF>> &perSlice = mesh->windingPoints().first();
    const QList<double> radii = mesh->sliceRadii();
    ASSERT_EQ(perSlice.size(), radii.size());

    const double outer = radii.last();
    for (int i = 0; i < radii.size(); ++i) {
        const double radius = radii.at(i);
        SCOPED_TRACE(QStringLiteral("slice at %1 mm").arg(radius).toStdString());
        const QList<PointF> &points = perSlice.at(i);
        ASSERT_EQ(points.size(), perSlice.last().size());
        EXPECT_GE(points.size(), 2);
        const double halfPitch = radius * qDegreesToRadians(slotPitch) / 2;
        const double count = doc.periodicityAngleSpan() / slotPitch;
        const CDT::Snapshot slice = mesh->meshSlices().at(i).snapshot();
        for (int k = 0; k < points.size(); ++k) {
            const PointF p = points.at(k);
            const PointF o = perSlice.last().at(k);
            EXPECT_NEAR(radius * std::sin((p.x() - halfPitch) / radius),
                        outer * std::sin((o.x() - outer * qDegreesToRadians(slotPitch) / 2) / outer), 1e-9);
            EXPECT_DOUBLE_EQ(p.y(), o.y());
            const QSharedPointer<Subdomain> region = regionAt(mesh->geometrySlices().at(i), p);
            ASSERT_TRUE(region && region->material());
            EXPECT_EQ(region->material()->kind(), AbstractMaterial::WindingKind) << flat::pointText(p).toStdString();
            for (int j = 0; j < count; ++j) {
                EXPECT_TRUE(hasVertex(slice, QPointF(p.x() + 2 * j * halfPitch, p.y())));
                EXPECT_TRUE(hasVertex(slice, QPointF(2 * (j + 1) * halfPitch - p.x(), p.y())));
            }
        }
    }
}
