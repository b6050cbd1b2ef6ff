#include <QSignalSpy>
#include <QtMath>
#include <cmath>
#include <gtest/gtest.h>
#include <map>

#include "base/ScriptConsole.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "geometry/servoce/solid.h"
#include "materials/AbstractMaterial.h"
#include "materials/BasicMaterials.h"
#include "meshing/Mesh.h"
#include "meshing/SliceGeometry.h"
#include "ShippedMachine.h"

using namespace shipped;

namespace {

std::map<qint32, double> areaByKind(const GeometryData &data)
{
    std::map<qint32, double> areas;
    for (const QSharedPointer<Subdomain> &region : data.subdomains)
        areas[region->material() ? region->material()->kind() : -1] += region->area();
    return areas;
}

using SliceGeometryTest = ShippedMachineTest;

} // namespace

TEST(SliceGeometry, SlicesLieInTheMiddleOfEqualRings)
{
    EXPECT_EQ(SliceGeometry::sliceRadii(50.0, 150.0, 1), QList<double>{100.0});
    EXPECT_EQ(SliceGeometry::sliceWidths(50.0, 150.0, 1), QList<double>{100.0});
    const QList<double> radii = SliceGeometry::sliceRadii(50.0, 140.0, 3);
    ASSERT_EQ(radii.size(), 3);
    EXPECT_DOUBLE_EQ(radii.at(0), 65.0);
    EXPECT_DOUBLE_EQ(radii.at(1), 95.0);
    EXPECT_DOUBLE_EQ(radii.at(2), 125.0);
    EXPECT_EQ(SliceGeometry::sliceWidths(50.0, 140.0, 3), QList<double>({30.0, 30.0, 30.0}));
}

// Two blocks of iron, the upper one turned, with a gap between them: each body
// reaches to the middle of the gap, and the regions tile the frame whatever the turn.
TEST(SliceGeometry, BodiesReachToTheMiddleOfTheirGapAndKeepTheirTurn)
{
    const QSharedPointer<AbstractMaterial> iron(new IronMaterial);
    const double span = 90.0;
    const double radius = 100.0;
    const auto block = [](double bottom, double height, double from, double sweep) {
        return servoce::tube(120.0, 80.0, height, qDegreesToRadians(sweep))
            .transformed(servoce::rotateZ(qDegreesToRadians(from)))
            .translated(0.0, 0.0, bottom);
    };
    SliceMachine machine;
    machine.periodicity = 4;
    machine.angleSpan = span;
    machine.sectorRadius = 200.0;
    machine.height = 22.0;
    machine.sizeLimit = 0.5;
    SliceBody lower;
    lower.pieces = {Piece(block(0.0, 10.0, 0.0, 360.0), iron, Piece::Stator1)};
    lower.top = 10.0;
    lower.gapAbove = qMakePair(10.0, 12.0);
    // A tooth of 30 degrees in each quarter, the quarter turned by 20 degrees.
    SliceBody upper;
    upper.displacement = 20.0;
    upper.bottom = 12.0;
    upper.top = 22.0;
    upper.gapBelow = qMakePair(10.0, 12.0);
    for (int i = 0; i < 4; ++i)
        upper.pieces.append(Piece(block(12.0, 10.0, 20.0 + 90.0 * i, 30.0), iron, Piece::Rotor1));
    machine.bodies = {lower, upper};
    machine.pieces = lower.pieces;
    machine.pieces.append(upper.pieces);
    machine.scopeAt = [](const QPointF &point) { return point.y() < 11.0 ? 1u : 16u; };

    const SliceGeometry geometry(machine);
    const double degree = radius * M_PI / 180.0;
    const double width = span * degree;
    const GeometryData data = geometry.createSlice(radius);
    double total = 0.0;
    double ironArea = 0.0;
    for (const QSharedPointer<Subdomain> &region : data.subdomains) {
        ASSERT_FALSE(region->material().isNull()) << "region " << region->id();
        total += region->area();
        if (region->material()->kind() == AbstractMaterial::IronKind) {
            ironArea += region->area();
            EXPECT_EQ(region->scope(), region->bounds().center().y() < 11.0 ? 1u : 16u);
        }
    }
    // The upper frame is turned with its body, so the two frames cover 90 + 20 degrees of the lower half.
    EXPECT_NEAR(ironArea, width * 10.0 + 30 * degree * 10.0, 1e-6 * width * 10.0);
    EXPECT_NEAR(total, width * 22.0, 1e-6 * width * 22.0) << "the regions tile both frames, without their outline";
    EXPECT_FALSE(data.subdomains.isEmpty());
}

TEST_F(SliceGeometryTest, EveryRegionHasTheMaterialAndAreaOfTheMachineAtItsRadius)
{
    ASSERT_TRUE(makeMachine(Machine::SR));
    mesh->setNumberSlices(3);
    const double span = doc.periodicityAngleSpan();
    ASSERT_NEAR(std::remainder(span, slotPitch), 0.0, 1e-9);
    ASSERT_NEAR(std::remainder(span, polePitch), 0.0, 1e-9);

    QSignalSpy finished(mesh, &Mesh::generateGeomertyFinished);
    mesh->createGeometrySlices();
    EXPECT_EQ(finished.count(), 1);
    EXPECT_FALSE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
    const QList<double> radii = mesh->sliceRadii();
    ASSERT_EQ(mesh->geometrySlices().size(), 3);
    for (int i = 0; i < radii.size(); ++i) {
        const double radius = radii.at(i);
        SCOPED_TRACE(QStringLiteral("slice at %1 mm").arg(radius).toStdString());
        const GeometryData &data = mesh->geometrySlices().at(i);
        for (const QSharedPointer<Subdomain> &region : data.subdomains) {
            ASSERT_FALSE(region->material().isNull()) << "region " << region->id();
            EXPECT_NE(region->scope(), 0u) << "region " << region->id();
        }

        const double width = radius * qDegreesToRadians(span);
        const double slotCount = span / slotPitch;
        const double slotArea = stripArc(slotWidth / 2, radius) * slotDepth;
        // Two layers side by side, with a gap between them.
        const double coil = (stripArc(slotWidth / 2 - clearance, radius) - stripArc(layerGap / 2, radius))
                            * (slotDepth - 2 * clearance);
        const double magnet = magnetArc * width * magnetThickness;
        const double statorIron = width * statorHeight - slotCount * slotArea;
        const double rotorIron = width * (rotorHeight - magnetThickness);
        const double air = width * gap + slotCount * (slotArea - coil) + (1.0 - magnetArc) * width * magnetThickness;
        std::map<qint32, double> areas = areaByKind(data);
        EXPECT_NEAR(areas[AbstractMaterial::MagnetKind], magnet, 1e-6 * magnet);
        EXPECT_NEAR(areas[AbstractMaterial::WindingKind], slotCount * coil, 1e-6 * slotCount * coil);
        EXPECT_NEAR(areas[AbstractMaterial::IronKind], statorIron + rotorIron, 1e-6 * (statorIron + rotorIron));
        EXPECT_NEAR(areas[AbstractMaterial::GeneralKind], air, 1e-6 * air);
        EXPECT_EQ(areas.count(-1), 0u);
    }

    // The plane through the axis meets a tooth and the middle of a magnet, from the axis to the outer air.
    const GeometryData &radial = mesh->geometryRadial();
    const double radialWidth = mesh->radialOuterRadius();
    EXPECT_GT(radialWidth, outerRadius);
    for (const QSharedPointer<Subdomain> &region : radial.subdomains)
        ASSERT_FALSE(region->material().isNull()) << "radial region " << region->id();
    const double ring = outerRadius - innerRadius;
    const double height = statorHeight + gap + rotorHeight;
    std::map<qint32, double> areas = areaByKind(radial);
    EXPECT_NEAR(areas[AbstractMaterial::IronKind], ring * (statorHeight + rotorHeight - magnetThickness), 1e-6 * ring);
    EXPECT_NEAR(areas[AbstractMaterial::MagnetKind], ring * magnetThickness, 1e-6 * ring);
    EXPECT_NEAR(areas[AbstractMaterial::GeneralKind], radialWidth * height - ring * (statorHeight + rotorHeight),
                1e-6 * ring);

    // Made once: a second call finds the slices and leaves them.
    mesh->createGeometrySlices();
    EXPECT_EQ(finished.count(), 1);
    doc.airgap(Airgap::ID1)->setThickness(2.0);
    EXPECT_TRUE(mesh->geometrySlices().first().subdomains.isEmpty()) << "a change of the machine drops the slices";
}

// A cylinder beyond the machine meets no piece: the frames alone, all air, and no failure.
TEST(SliceGeometry, SliceOutsideTheMachineIsAirInItsFrames)
{
    const QSharedPointer<AbstractMaterial> iron(new IronMaterial);
    SliceMachine machine;
    machine.periodicity = 2;
    machine.angleSpan = 180.0;
    machine.sectorRadius = 200.0;
    machine.height = 10.0;
    machine.sizeLimit = 1.0;
    const servoce::shape disc = servoce::tube(120.0, 80.0, 10.0);
    SliceBody body;
    body.pieces = {Piece(disc, iron, Piece::Stator1)};
    body.top = 10.0;
    machine.bodies = {body};
    machine.pieces = body.pieces;
    const GeometryData data = SliceGeometry(machine).createSlice(500.0);
    ASSERT_EQ(data.subdomains.size(), 1);
    EXPECT_EQ(data.subdomains.first()->material()->kind(), AbstractMaterial::GeneralKind);
    EXPECT_NEAR(data.subdomains.first()->area(), 500.0 * M_PI * 10.0, 1e-6);
}
