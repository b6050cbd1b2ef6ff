#include <QDir>
#include <QFile>
#include <QtMath>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>

#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/MotorItem.h"
#include "geometry/Piece.h"
#include "geometry/Rotor.h"
#include "geometry/SimDomain.h"
#include "geometry/Stator.h"
#include "materials/AbstractMaterial.h"
#include "materials/BasicMaterials.h"
#include "meshing/CdtOperations.h"
#include "meshing/GeometryGenerator.h"
#include "meshing/Mesh.h"
#include "QmlScripting/ScriptObject.h"
#include "winding/WindingObject.h"
#include "MeshFacts.h"
#include "ShippedMachine.h"

using namespace shipped;

namespace {

struct MachineCase
{
    Machine::Type type;
    int numberSlots;
    int polePairs;
    int slices;
    int layers = 3;
    // Two lie side by side in a slot.
    int windingLayers = 2;
    double airgapQuality = 1.5;
    // 0 for the automatic one.
    double sizeBound = 6.0;
    // Narrower for many slots, whose teeth would otherwise vanish at the inner radius.
    double slotWidth = shipped::slotWidth;
};

std::string caseText(const MachineCase &machine)
{
    return QStringLiteral("machine type %1, %2 slots, %3 poles, %4 slice(s), %5 layers, %6 coil(s) a slot, "
                          "quality %7, size bound %8, slot width %9")
        .arg(machine.type)
        .arg(machine.numberSlots)
        .arg(2 * machine.polePairs)
        .arg(machine.slices)
        .arg(machine.layers)
        .arg(machine.windingLayers)
        .arg(machine.airgapQuality)
        .arg(machine.sizeBound)
        .arg(machine.slotWidth)
        .toStdString();
}

// What the closed forms of the cuts are made of, in mm.
struct Dimensions
{
    double innerRadius = shipped::innerRadius;
    double outerRadius = shipped::outerRadius;
    double statorHeight = shipped::statorHeight;
    double rotorHeight = shipped::rotorHeight;
    double slotWidth = shipped::slotWidth;
    double slotDepth = shipped::slotDepth;
    // Tooth tips narrow the slot at the gap to its opening.
    double slotOpening = shipped::slotWidth;
    double tipHeight = 0.0;
    // A middle stator without yoke has its slots through it.
    bool yokeless = false;
    double clearance = shipped::clearance;
    double layerGap = shipped::layerGap;
    double magnetArc = shipped::magnetArc;
    double magnetThickness = shipped::magnetThickness;
};

class MachineMeshTest : public ShippedMachineTest
{
protected:
    bool build(const MachineCase &machine)
    {
        if (!makeMachine(machine.type, machine.numberSlots, machine.polePairs))
            return false;
        dims.slotWidth = machine.slotWidth;
        dims.slotOpening = machine.slotWidth;
        doc.stator()->scriptObject()->setProperty("slotWidth", machine.slotWidth);
        for (Airgap *gap : doc.airgaps())
            gap->setNumberLayers(machine.layers);
        doc.winding()->setNumberLayers(machine.windingLayers);
        doc.stator()->clearCashPieces();
        // The slices then have vertices inside the coils where the cells are fine enough.
        if (!doc.winding()->loadEndturnScript())
            return false;
        mesh->setAutoSizeBound(machine.sizeBound == 0.0);
        mesh->setSizeBound(machine.sizeBound);
        mesh->setAirgapQuality(machine.airgapQuality);
        mesh->setNumberSlices(machine.slices);
        mesh->createGeometrySlices();
        mesh->createMeshSlices();
        return true;
    }

    QVector<const MotorItem *> bodies() const
    {
        QVector<const MotorItem *> items;
        for (const MotorItem *item : doc.stator()->activeItems())
            items.append(item);
        for (const MotorItem *item : doc.rotor()->activeItems())
            items.append(item);
        return items;
    }

    // A body with its rows, up to the middle band of each of its gaps.
    MeshFacts::Strip strip(const MotorItem *item, double x0) const
    {
        const bool stator = (item->scope() & Piece::StatorMask) != 0;
        const auto gapOf = [&](int side) {
            return stator ? doc.airgapOfStatorItem(item->id(), side) : doc.airgapOfRotorItem(item->id(), side);
        };
        const auto rows = [](const Airgap *gap) { return gap->numberLayers() / 2 * gap->thickness() / gap->numberLayers(); };
        const QPair<double, double> range = item->range();
        const Airgap *below = gapOf(1);
        const Airgap *above = gapOf(2);
        return {below ? range.first - rows(below) : range.first, above ? range.second + rows(above) : range.second, x0};
    }

    int gapCount() const { return doc.airgaps().size(); }
    int statorCount() const { return doc.stator()->activeItems().size(); }
    int rotorCount() const { return doc.rotor()->activeItems().size(); }

    // Of each gap, the height of the middle band, which no mesh covers.
    double bands() const
    {
        double height = 0.0;
        for (const Airgap *gap : doc.airgaps())
            height += gap->thickness() / gap->numberLayers();
        return height;
    }

    // The height of the gaps that the meshes cover.
    double meshedGaps() const
    {
        double height = 0.0;
        for (const Airgap *gap : doc.airgaps())
            height += gap->thickness();
        return height - bands();
    }

    // Sets of slots: each stator face on a gap has its own, a stator without yoke one through it.
    int slotSets() const { return dims.yokeless ? statorCount() : gapCount(); }
    double slotDepth() const { return dims.yokeless ? dims.statorHeight : dims.slotDepth; }
    // The height of the tips of one slot: at both faces of a slot through the body.
    double tips() const { return dims.yokeless ? 2 * dims.tipHeight : dims.tipHeight; }

    double slotArea(double radius) const
    {
        return stripArc(dims.slotWidth / 2, radius) * (slotDepth() - tips())
               + stripArc(dims.slotOpening / 2, radius) * tips();
    }

    // Two layers side by side with a gap between them, two stacked ones, or one that fills the slot.
    double coilArea(double radius) const
    {
        const double fullArc = stripArc(dims.slotWidth / 2 - dims.clearance, radius);
        const double fullHeight = slotDepth() - tips() - 2 * dims.clearance;
        if (doc.winding()->numberLayers() != 2)
            return fullArc * fullHeight;
        if (doc.winding()->layersOrientation() == Winding::LeftRight)
            return (fullArc - stripArc(dims.layerGap / 2, radius)) * fullHeight;
        return fullArc * (fullHeight - dims.layerGap);
    }

    // The rows beside the middle band of each gap, each over the strip of its body.
    QVector<MeshFacts::GapPair> gapPairs(const std::function<QVector<double>(const MotorItem *)> &zonesOf) const
    {
        QVector<MeshFacts::GapPair> pairs;
        for (const Airgap *gap : doc.airgaps()) {
            const double h = gap->thickness() / gap->numberLayers();
            const double lower = gap->posBottom() + gap->numberLayers() / 2 * h;
            const double upper = gap->posTop() - gap->numberLayers() / 2 * h;
            MeshFacts::GapPair pair{{lower, {}}, {upper, {}}};
            for (const MotorItem *item : bodies()) {
                if (std::abs(item->range().second - gap->posBottom()) <= 1e-9)
                    pair.lower.zoneEnds = zonesOf(item);
                if (std::abs(item->range().first - gap->posTop()) <= 1e-9)
                    pair.upper.zoneEnds = zonesOf(item);
            }
            pairs.append(pair);
        }
        return pairs;
    }

    // A slot, a coil in it, a magnet and the air between magnets: each as often as the faces of the gaps.
    MeshFacts sliceFacts(int index) const
    {
        const double radius = mesh->sliceRadii().at(index);
        const double span = doc.periodicityAngleSpan();
        const double width = radius * qDegreesToRadians(span);
        const double arc = radius * M_PI / 180.0;
        MeshFacts facts;
        facts.width = width;
        facts.sizeBound = mesh->sizeBound();
        for (const MotorItem *item : bodies())
            facts.strips.append(strip(item, item->relativeDisplacement() * arc));
        facts.gaps = gapPairs([&](const MotorItem *item) {
            const double x0 = item->relativeDisplacement() * arc;
            return QVector<double>{x0, x0 + width};
        });

        const double faces = gapCount();
        const double slotCount = slotSets() * span / (360.0 / doc.stator()->numberSlots());
        const double slot = slotArea(radius);
        const double coil = coilArea(radius);
        const double magnetLayer = width * dims.magnetThickness;
        facts.areas[AbstractMaterial::MagnetKind] = faces * dims.magnetArc * magnetLayer;
        facts.areas[AbstractMaterial::WindingKind] = slotCount * coil;
        facts.areas[AbstractMaterial::IronKind] = statorCount() * width * dims.statorHeight - slotCount * slot
                                                  + rotorCount() * width * dims.rotorHeight - faces * magnetLayer;
        facts.areas[AbstractMaterial::GeneralKind] =
            width * meshedGaps() + slotCount * (slot - coil) + faces * (1.0 - dims.magnetArc) * magnetLayer;
        facts.regions = &mesh->geometrySlices().at(index);
        return facts;
    }

    // The plane through the axis meets a tooth and the middle of a magnet of each body.
    MeshFacts radialFacts() const
    {
        const double width = mesh->radialOuterRadius();
        const SimDomain domain = doc.simDomain();
        MeshFacts facts;
        facts.width = width;
        facts.sizeBound = mesh->sizeBound();
        facts.periodic = false;
        for (const MotorItem *item : bodies())
            facts.strips.append(strip(item, 0.0));
        facts.gaps = gapPairs([&](const MotorItem *) { return QVector<double>{0.0, domain.inner, domain.outer, width}; });

        const double ring = dims.outerRadius - dims.innerRadius;
        const double bodies = statorCount() * dims.statorHeight + rotorCount() * dims.rotorHeight;
        facts.areas[AbstractMaterial::IronKind] = ring * (bodies - gapCount() * dims.magnetThickness);
        facts.areas[AbstractMaterial::MagnetKind] = ring * gapCount() * dims.magnetThickness;
        facts.areas[AbstractMaterial::GeneralKind] = width * (doc.height() - bands()) - ring * bodies;
        facts.regions = &mesh->geometryRadial();
        return facts;
    }

    Dimensions dims;
};

QString pictureName(const MachineCase &machine, const QString &model)
{
    return QStringLiteral("mesh_%1_%2_%3_%4_%5_%6_%7_%8_%9")
        .arg(machine.type)
        .arg(machine.numberSlots)
        .arg(2 * machine.polePairs)
        .arg(machine.slices)
        .arg(machine.layers)
        .arg(machine.windingLayers)
        .arg(machine.airgapQuality)
        .arg(machine.sizeBound)
        .arg(model);
}

} // namespace

namespace {

const MachineCase shippedMachines[] = {
    {Machine::SR, 12, 5, 3},          {Machine::SR, 12, 5, 1},          {Machine::SRS, 12, 5, 3},
    {Machine::RSR, 12, 5, 3},         {Machine::SR, 9, 4, 3},           {Machine::SR, 24, 2, 1},
    {Machine::RSR, 9, 4, 1},          {Machine::SRS, 24, 2, 1},         {Machine::SR, 12, 5, 3, 7},
    {Machine::RSR, 12, 5, 1, 5},      {Machine::SRSRS, 12, 5, 1},       {Machine::RSRSR, 12, 5, 1},
    {Machine::SR, 12, 5, 3, 3, 1},    {Machine::RSR, 9, 4, 3, 3, 1},    {Machine::SR, 12, 5, 3, 5, 2, 1.0},
    {Machine::SRS, 9, 4, 1, 3, 2, 2.0}, {Machine::SR, 12, 5, 3, 3, 2, 1.5, 0.0},
    {Machine::RSR, 24, 2, 3, 7, 2, 1.0, 0.0}, {Machine::SR, 36, 4, 3, 3, 2, 1.5, 6.0, 5.0},
    {Machine::SR, 48, 20, 1, 3, 2, 1.5, 6.0, 4.0}, {Machine::SR, 12, 5, 7},
};

// One machine a test, so that the matrix spreads over the test runners.
class ShippedMachineMesh : public MachineMeshTest, public ::testing::WithParamInterface<MachineCase>
{
};

void PrintTo(const MachineCase &machine, std::ostream *out)
{
    *out << caseText(machine);
}

} // namespace

// Every slice and the radial model of machines of each kind, measured against
// what their dimensions say.
TEST_P(ShippedMachineMesh, MeetsItsDimensions)
{
    const MachineCase &machine = GetParam();
    ASSERT_TRUE(build(machine));
    EXPECT_FALSE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
    ASSERT_EQ(mesh->meshSlices().size(), machine.slices);
    for (int i = 0; i < machine.slices; ++i) {
        SCOPED_TRACE(QStringLiteral("slice %1").arg(i).toStdString());
        EXPECT_TRUE(meetsFacts(mesh->meshSlices().at(i), sliceFacts(i), pictureName(machine, QString::number(i))));
    }
    EXPECT_TRUE(meetsFacts(mesh->meshRadial(), radialFacts(), pictureName(machine, QStringLiteral("radial"))));
}

INSTANTIATE_TEST_SUITE_P(Machines, ShippedMachineMesh, ::testing::ValuesIn(shippedMachines));

// The checks themselves: a mesh with a hole, a region without material and a
// wrong area are each named, and the picture is written.
TEST(MeshFacts, BrokenMeshesAreNamedAndDrawn)
{
    const Shape2DList outline = rectangleLines(0.0, 0.0, 10.0, 4.0);
    GeometryData regions = GeometryGenerator().createGeometry(outline, 1e-5, true, false, true);
    ASSERT_FALSE(regions.subdomains.isEmpty());
    for (const QSharedPointer<Subdomain> &region : regions.subdomains)
        region->setMaterial(QSharedPointer<AbstractMaterial>(new IronMaterial));
    MeshFacts facts;
    facts.width = 10.0;
    facts.sizeBound = 2.0;
    facts.periodic = false;
    facts.strips = {{0.0, 4.0, 0.0}};
    facts.areas[AbstractMaterial::IronKind] = 40.0;
    facts.regions = &regions;

    CDT whole = cdt::createCDT(outline);
    whole.refine(0.125, 2.0, 1000);
    EXPECT_TRUE(meetsFacts(whole, facts, QStringLiteral("facts_whole")));

    // A square hole: its sides have one triangle inside the outline, and iron is missing.
    Shape2DList withHole = outline;
    withHole += rectangleLines(4.0, 1.0, 2.0, 2.0);
    CDT holed = cdt::createCDT(withHole);
    holed.refine(0.125, 2.0, 1000);
    holed.markDomain({PointF(5.0, 2.0)});
    const ::testing::AssertionResult hole = meetsFacts(holed, facts, QStringLiteral("facts_hole"));
    ASSERT_FALSE(hole);
    EXPECT_NE(std::string(hole.message()).find("sides of one triangle inside the outline"), std::string::npos) << hole.message();
    EXPECT_NE(std::string(hole.message()).find("material kind 2 covers 36"), std::string::npos) << hole.message();
    EXPECT_NE(std::string(hole.message()).find("facts_hole.svg"), std::string::npos) << hole.message();

    // Coarse triangles, and a region that lost its material.
    facts.sizeBound = 1.0;
    regions.subdomains.first()->setMaterial({});
    const ::testing::AssertionResult coarse = meetsFacts(whole, facts, QStringLiteral("facts_coarse"));
    ASSERT_FALSE(coarse);
    EXPECT_NE(std::string(coarse.message()).find("regions without material"), std::string::npos) << coarse.message();
    EXPECT_NE(std::string(coarse.message()).find("sides beyond the size bound"), std::string::npos) << coarse.message();

    // The pictures were written; they show nothing of interest.
    for (const char *picture : {"facts_hole.svg", "facts_coarse.svg"})
        EXPECT_TRUE(QFile::remove(QDir::current().absoluteFilePath(QLatin1String(picture)))) << picture;
}

// The bundled examples as they are saved, with their own mesh settings.
TEST_F(MachineMeshTest, TheBundledExamplesMeetTheirDimensions)
{
    struct Example
    {
        const char *file;
        bool yokeless;
        double slotOpening;
        double tipHeight;
    };
    const Example examples[] = {{"new_motor.zva", false, slotWidth, 0.0},
                                {"yokeless_double_rotor.zva", true, 5.0, 2.0}};
    for (const Example &example : examples) {
        SCOPED_TRACE(example.file);
        ASSERT_TRUE(doc.load(QStringLiteral(ZDS_SOURCE_DIR "/examples/") + QLatin1String(example.file)));
        dims = Dimensions{60.0, 100.0, 30.0, 10.0};
        dims.yokeless = example.yokeless;
        dims.slotOpening = example.slotOpening;
        dims.tipHeight = example.tipHeight;
        mesh->createGeometrySlices();
        mesh->createMeshSlices();
        EXPECT_FALSE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
        const QString name = QStringLiteral("mesh_") + QString::fromLatin1(example.file).section('.', 0, 0);
        for (int i = 0; i < mesh->numberSlices(); ++i) {
            SCOPED_TRACE(QStringLiteral("slice %1").arg(i).toStdString());
            EXPECT_TRUE(meetsFacts(mesh->meshSlices().at(i), sliceFacts(i), name + QStringLiteral("_%1").arg(i)));
        }
        EXPECT_TRUE(meetsFacts(mesh->meshRadial(), radialFacts(), name + QStringLiteral("_radial")));
    }
}
