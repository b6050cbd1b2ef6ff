#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>

#include "QmlScripting/ConfigObject.h"
#include "QmlScripting/JSEngine.h"
#include "QmlScripting/ScriptObject.h"
#include "base/ScriptConsole.h"
#include "document/Document.h"
#include "support/PieceMeasures.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/MagnetMaterial.h"
#include "materials/WindingMaterial.h"
#include "winding/WindingObject.h"

namespace {

constexpr double innerRadius = 50.0;
constexpr double outerRadius = 150.0;
constexpr double height = 50.0;
constexpr double slotWidth = 10.0;
constexpr double slotDepth = 20.0;

// One slot pitch, centred on +X as a sector collar is: an iron sector with a rectangular slot
// open at the top, and a coil in it.
const char statorScript[] = R"(
var StatorGeom = {};
var stator = {};
stator.getGeometry = function(id) {
    var pitch = 360 / StatorObject.numberSlots;
    var ri = StatorObject.innerRadius, ro = StatorObject.outerRadius, h = 50;
    var disc = Geom.collar(ri, ro, h, pitch);
    var slot = Geom.box(ro - ri + 2, 10, 20).translate(ri - 1, -5, h - 20);
    var coil = Geom.box(ro - ri - 20, 8, 18).translate(ri + 10, -4, h - 19);
    return { pieces: [Geom.piece(disc.difference(slot), IronMaterial()),
                      Geom.piece(coil, WindingMaterial(1))],
             simDomain: { inner: ri, outer: ro }, simRadialOuterDomain: ro * 1.3 };
};
)";

// One pole pitch: an iron yoke and, on its top, a magnet over 80 % of the pitch.
const char rotorScript[] = R"(
var RotorGeom = {};
var rotor = {};
rotor.getGeometry = function(id) {
    var pitch = 180 / RotorObject.numberPolePairs;
    var ri = RotorObject.innerRadius, ro = RotorObject.outerRadius, h = 50;
    var yoke = Geom.collar(ri, ro, h - 5, pitch);
    var magnet = Geom.collar(ri + 5, ro - 5, 5, pitch * 0.8).up(h - 5);
    return { pieces: [Geom.piece(yoke, IronMaterial()), Geom.piece(magnet, MagnetParallelMaterial(0))],
             coefs3D: [], Nmagnetsegments: 1 };
};
)";

// A document whose stator and rotor read the scripts above from a folder of their own.
class BodyPiecesTest : public ::testing::Test
{
protected:
    BodyPiecesTest()
    {
        // The configuration comes first, as in the program; the test's sizes then stand.
        doc.start();
        doc.stator()->setInnerDiameter(2 * innerRadius);
        doc.stator()->setOuterDiameter(2 * outerRadius);
        doc.rotor()->setInnerDiameter(2 * innerRadius);
        doc.rotor()->setOuterDiameter(2 * outerRadius);
        for (MotorItem *body : doc.stator()->activeItems() + doc.rotor()->activeItems())
            body->setHeight(height);
    }

    QString write(const char *name, const char *text)
    {
        const QString path = folder.filePath(QLatin1String(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return path;
    }

    QTemporaryDir folder;
    Document doc{nullptr};
};

} // namespace

TEST_F(BodyPiecesTest, AStatorBodyIsTheSlotPitchTurnedOverAllSlots)
{
    ASSERT_TRUE(doc.isConfigLoaded());
    Stator *stator = doc.stator();
    stator->setNumberSlots(6);
    doc.winding()->setNumberLayers(1);
    ASSERT_TRUE(stator->readScript(write("stator.js", statorScript)));
    StatorItem *body = stator->items().at(0);
    QSignalSpy areas(body, &StatorItem::areaWindingSlotChanged);
    body->createPieces();
    const PieceList pieces = body->cachedPieces();
    EXPECT_EQ(areas.size(), 1);

    const PieceList iron = pieces.ofKind(AbstractMaterial::IronKind);
    ASSERT_EQ(iron.size(), 1) << "the iron of all pitches is one piece";
    const double slotVolume = annulusStripArea(slotWidth / 2, innerRadius, outerRadius) * slotDepth;
    const double annulus = M_PI * (outerRadius * outerRadius - innerRadius * innerRadius) * height;
    EXPECT_NEAR(iron.first().shape().volume(), annulus - 6 * slotVolume, 1e-6 * annulus);

    const PieceList coils = pieces.ofKind(AbstractMaterial::WindingKind);
    ASSERT_EQ(coils.size(), 6) << "the coil across the pitch is cut in halves, which join again in each slot";
    for (const Piece &coil : coils) {
        EXPECT_NEAR(coil.shape().volume(), 80.0 * 8.0 * 18.0, 1e-6);
        EXPECT_EQ(coil.scope(), Piece::Stator1);
        EXPECT_EQ(static_cast<const WindingMaterial *>(coil.material().data())->layer(), 1);
    }
    EXPECT_EQ(iron.first().scope(), Piece::Stator1);
    EXPECT_EQ(stator->simDomain().outer, outerRadius);

    // Across the slot: 10 wide and 20 deep, of which the coil fills 8 by 18.
    EXPECT_NEAR(body->areaWindingSlot(), slotWidth * slotDepth, 1e-3);
    EXPECT_NEAR(body->areaWindingCoil(), 8.0 * 18.0, 1e-3);
}

TEST_F(BodyPiecesTest, TheSimulationDomainIsAskedOfTheScriptWhenFirstNeeded)
{
    Stator *stator = doc.stator();
    ASSERT_TRUE(stator->readScript(write("stator.js", statorScript)));
    EXPECT_EQ(stator->simDomain().inner, innerRadius);
    EXPECT_EQ(doc.rotor()->simRadialOuterDomain(), outerRadius * 1.3);
}

TEST_F(BodyPiecesTest, AnUpperRotorBodyIsMirroredAndItsPolesAlternate)
{
    Rotor *rotor = doc.rotor();
    rotor->setNumberPolePairs(2);
    ASSERT_TRUE(rotor->readScript(write("rotor.js", rotorScript)));
    RotorItem *body = rotor->items().at(0);
    ASSERT_TRUE(body->isUpper()) << "the rotor of a single-sided machine lies above the stator";
    body->createPieces();
    const PieceList pieces = body->cachedPieces();

    const PieceList iron = pieces.ofKind(AbstractMaterial::IronKind);
    ASSERT_EQ(iron.size(), 1);
    EXPECT_NEAR(iron.first().shape().volume(),
                M_PI * (outerRadius * outerRadius - innerRadius * innerRadius) * (height - 5), 1e-3);
    EXPECT_NEAR(iron.first().shape().center().z, (height + 5) / 2, 1e-6) << "the yoke is on top now";

    const PieceList magnets = pieces.ofKind(AbstractMaterial::MagnetKind);
    ASSERT_EQ(magnets.size(), 4);
    const double magnetVolume = 0.8 * (M_PI / 2) / 2 * (145.0 * 145.0 - 55.0 * 55.0) * 5;
    for (int k = 0; k < magnets.size(); ++k) {
        EXPECT_NEAR(magnets.at(k).shape().volume(), magnetVolume, 1e-6 * magnetVolume);
        EXPECT_NEAR(magnets.at(k).shape().center().z, 2.5, 1e-6) << "the magnets face the gap below";
        const auto *magnet = dynamic_cast<const MagnetMaterial *>(magnets.at(k).material().data());
        ASSERT_NE(magnet, nullptr);
        const auto *first = dynamic_cast<const MagnetMaterial *>(magnets.at(0).material().data());
        EXPECT_EQ(magnet->direction == first->direction, k % 2 == 0) << "pole " << k;
    }
}

TEST_F(BodyPiecesTest, BodiesHaveNoPiecesWithoutAScriptOrWithDiametersInTheWrongOrder)
{
    Stator *stator = doc.stator();
    StatorItem *body = stator->items().at(0);
    body->createPieces();
    EXPECT_TRUE(body->cachedPieces().isEmpty());

    ASSERT_TRUE(stator->readScript(write("stator.js", statorScript)));
    stator->setInnerDiameter(2 * outerRadius);
    body->createPieces();
    EXPECT_TRUE(body->cachedPieces().isEmpty());
    EXPECT_TRUE(body->basePieces().isEmpty());
}

TEST_F(BodyPiecesTest, ABodyOfTheFirstOnesHeightReusesItsPitch)
{
    doc.setMachineType(Machine::SRS);
    Stator *stator = doc.stator();
    ASSERT_EQ(stator->countItems(), 2);
    ASSERT_TRUE(stator->readScript(write("stator.js", R"(
        var StatorGeom = {}; var stator = { calls: 0 };
        stator.getGeometry = function(id) { stator.calls += 1; return Geom.box(10, 10, 10); };)")));
    const PieceList second = stator->items().at(1)->basePieces();
    ASSERT_EQ(second.size(), 1);
    EXPECT_EQ(second.first().scope(), Piece::Stator2);
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("stator.calls")).toInt(), 1);

    stator->items().at(1)->setHeight(40.0);
    stator->items().at(1)->basePieces();
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("stator.calls")).toInt(), 2)
        << "with a height of its own the second body calls for itself";
}

TEST_F(BodyPiecesTest, PiecesThatMeetOrLeaveTheirSectorAreOverlaps)
{
    Stator *stator = doc.stator();
    stator->setNumberSlots(6);
    ASSERT_TRUE(stator->readScript(write("stator.js", statorScript)));
    StatorItem *body = stator->items().at(0);
    body->basePieces();
    EXPECT_TRUE(body->overlapShapes().isEmpty()) << "a clean pitch has none";

    ASSERT_TRUE(stator->readScript(write("stator.js", R"(
        var StatorGeom = {}; var stator = { part: 0 };
        stator.getGeometry = function(id) {
            var pieces = [
                [Geom.piece(Geom.box(20, 20, 10).translate(90, -10, 0), GeneralMaterial()),
                 Geom.piece(Geom.box(20, 20, 10).translate(95, -10, 0), GeneralMaterial())],
                [Geom.piece(Geom.box(20, 200, 10).translate(90, -100, 0), GeneralMaterial())],
                [Geom.piece(Geom.box(20, 20, 10).translate(90, -10, 0), WindingMaterial(1)),
                 Geom.piece(Geom.box(20, 20, 10).translate(95, -10, 0), EndturnMaterial())]];
            return pieces[stator.part];
        };)")));
    stator->clearCashPieces();
    body->basePieces();
    ASSERT_EQ(body->overlapShapes().size(), 1) << "two bodies sharing volume";
    EXPECT_NEAR(body->overlapShapes().first().volume(), 15.0 * 20.0 * 10.0, 1e-6);

    stator->scriptObject()->setProperty("part", 1);
    body->basePieces();
    EXPECT_EQ(body->overlapShapes().size(), 1) << "a body beyond its pitch";

    stator->scriptObject()->setProperty("part", 2);
    body->basePieces();
    EXPECT_TRUE(body->overlapShapes().isEmpty()) << "a coil side and its end turn may touch";
}

TEST_F(BodyPiecesTest, EachMagnetLayerTakesItsPoleTransform)
{
    doc.setMachineType(Machine::RSR);
    doc.config()->setScriptProperty(QStringLiteral("poleRotatePolePitch2"), true);
    Rotor *rotor = doc.rotor();
    ASSERT_EQ(rotor->countItems(), 2);
    for (MotorItem *body : rotor->activeItems())
        body->setHeight(height);
    ASSERT_TRUE(rotor->readScript(write("rotor.js", rotorScript)));
    const auto firstMagnetAngle = [](RotorItem *body) {
        body->createPieces();
        const PieceList magnets = body->cachedPieces().ofKind(AbstractMaterial::MagnetKind);
        return magnets.isEmpty() ? -1.0 : dynamic_cast<const MagnetMaterial &>(*magnets.first().material()).angle;
    };
    EXPECT_DOUBLE_EQ(firstMagnetAngle(rotor->items().at(0)), 0.0) << "the first layer has no transform";
    EXPECT_DOUBLE_EQ(firstMagnetAngle(rotor->items().at(1)), 180.0) << "the second is turned by a pole pitch";
}

TEST_F(BodyPiecesTest, MagnetsMustBeSplitAsTheScriptSays)
{
    Rotor *rotor = doc.rotor();
    QByteArray script(rotorScript);
    script.replace("Nmagnetsegments: 1", "Nmagnetsegments: 3");
    ASSERT_TRUE(rotor->readScript(write("rotor.js", script.constData())));
    QSignalSpy warnings(rotor->console(), &ScriptConsole::signalWarn);
    rotor->items().at(0)->createPieces();
    ASSERT_FALSE(warnings.isEmpty());
    EXPECT_EQ(warnings.first().at(1).toString(),
              QStringLiteral("Magnet of rotor item 1 with Rmagnetsegments[] must has size 2"));
}

TEST_F(BodyPiecesTest, GeometryErrorsFollowTheDiametersAndTheBodiesPitches)
{
    Stator *stator = doc.stator();
    QSignalSpy changed(stator, &MotorElement::geometryErrorsChanged);
    stator->updateGeometryErrors();
    EXPECT_EQ(stator->geometryErrors(), MotorElement::GeometryErrors(MotorElement::GeometryEmpty)) << "no script";

    ASSERT_TRUE(stator->readScript(write("stator.js", R"(
        var StatorGeom = {}; var stator = { width: 20, calls: 0 };
        stator.getGeometry = function(id) {
            stator.calls += 1;
            return Geom.piece(Geom.box(20, stator.width, 10).translate(90, -stator.width / 2, 0), GeneralMaterial());
        };)")));
    stator->clearCashPieces();
    stator->updateGeometryErrors();
    EXPECT_EQ(stator->geometryErrors(), MotorElement::GeometryErrors());

    stator->scriptObject()->setProperty("width", 200);
    stator->updateGeometryErrors();
    EXPECT_EQ(stator->geometryErrors(), MotorElement::GeometryErrors(MotorElement::BodiesOverlap))
        << "a body beyond its pitch, nothing else wrong";

    const int calls = stator->engine()->evaluate(QStringLiteral("stator.calls")).toInt();
    stator->setInnerDiameter(stator->outerDiameter());
    EXPECT_EQ(stator->geometryErrors(), MotorElement::GeometryErrors(MotorElement::DiametersOrder))
        << "told at once, before any build";
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("stator.calls")).toInt(), calls) << "no script runs";
    EXPECT_EQ(changed.size(), 4);
}
