#include <QQmlEngine>
#include <QSignalSpy>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "support/PieceMeasures.h"
#include "QmlScripting/JSEngine.h"
#include "QmlScripting/ScriptDescribeList.h"
#include "QmlScripting/ScriptObject.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/SimDomain.h"
#include "geometry/Stator.h"
#include "materials/MagnetMaterial.h"
#include "ui/Controls/NumberEdit.h"
#include "winding/WindingObject.h"

// The stator and rotor scripts that ship with the program, measured on a machine of 300 mm.
namespace {

constexpr double innerRadius = 50.0;
constexpr double outerRadius = 150.0;
constexpr double statorHeight = 40.0;
constexpr double rotorHeight = 12.0;
constexpr int numberSlots = 12;
constexpr double slotPitch = 30.0;
constexpr int polePairs = 5;
constexpr double polePitch = 36.0;

// The defaults of the slotted stators.
constexpr double slotWidth = 10.0;
constexpr double slotDepth = 12.0;
constexpr double clearance = 0.5;
constexpr double layerGap = 1.0;

double sectorVolume(double degrees, double height, double r0 = innerRadius, double r1 = outerRadius)
{
    return degrees / 360.0 * M_PI * (r1 * r1 - r0 * r0) * height;
}

// The cross-section of a parallel-sided slot 2a wide through the whole disc.
double stripArea(double a)
{
    return annulusStripArea(a, innerRadius, outerRadius);
}

PieceList piecesOf(const QVariantMap &result)
{
    return result.value(QStringLiteral("pieces")).value<PieceList>();
}

QString scriptFile(const QString &folder, const QString &name)
{
    return QStringLiteral(ZDS_SOURCE_DIR "/assets/scripts/%1/%2").arg(folder, name);
}

// The console messages of a spy, one a line.
std::string joined(const QSignalSpy &spy)
{
    QStringList texts;
    for (const QList<QVariant> &signal : spy)
        texts << signal.at(1).toString();
    return texts.join('\n').toStdString();
}

QString lastText(const QSignalSpy &spy)
{
    return spy.isEmpty() ? QString() : spy.last().at(1).toString();
}

// A document of the sizes above on the machine of each test, with the shipped configuration.
class BodyScriptTest : public ::testing::Test
{
protected:
    BodyScriptTest()
        : statorErrors(doc.stator()->console(), &ScriptConsole::signalError)
        , statorWarnings(doc.stator()->console(), &ScriptConsole::signalWarn)
        , rotorErrors(doc.rotor()->console(), &ScriptConsole::signalError)
        , rotorWarnings(doc.rotor()->console(), &ScriptConsole::signalWarn)
    {
        doc.start();
    }

    // The type comes first: its change hands the configuration's values to the elements again.
    void makeMachine(Machine::Type type, MotorElement::MiddleType statorType = MotorElement::Yoke,
                     MotorElement::MiddleType rotorType = MotorElement::Yoke)
    {
        doc.setMachineType(type);
        const QVector<MotorElement *> elements{doc.stator(), doc.rotor()};
        for (MotorElement *element : elements) {
            element->setInnerDiameter(2 * innerRadius);
            element->setOuterDiameter(2 * outerRadius);
        }
        doc.stator()->setNumberSlots(numberSlots);
        doc.rotor()->setNumberPolePairs(polePairs);
        doc.stator()->setTypeMiddleItem(statorType);
        doc.rotor()->setTypeMiddleItem(rotorType);
        for (StatorItem *item : doc.stator()->items())
            item->setHeight(statorHeight);
        for (RotorItem *item : doc.rotor()->items())
            item->setHeight(rotorHeight);
    }

    void setWinding(int layers, Winding::LayersOrientation orientation)
    {
        doc.winding()->setNumberLayers(layers);
        doc.winding()->setLayersOrientation(orientation);
    }

    // As a choice of script does: the bodies drawn by another script go.
    bool read(MotorElement *element, const QString &folder, const QString &name)
    {
        element->clearCashPieces();
        return element->readScript(scriptFile(folder, name));
    }
    bool readStator(const QString &name) { return read(doc.stator(), QStringLiteral("stator"), name); }
    bool readRotor(const QString &name) { return read(doc.rotor(), QStringLiteral("rotor"), name); }
    QVariantMap statorBody(int id) const { return doc.stator()->geometry(QStringLiteral("stator"), id); }
    QVariantMap rotorBody(int id) const { return doc.rotor()->geometry(QStringLiteral("rotor"), id); }

    // A variable as the panel sets it: through the element's mirror of the script's object.
    static void setVariable(MotorElement *element, const char *name, const QVariant &value)
    {
        element->scriptObject()->setProperty(name, value);
    }

    Document doc{nullptr};
    QSignalSpy statorErrors;
    QSignalSpy statorWarnings;
    QSignalSpy rotorErrors;
    QSignalSpy rotorWarnings;
};

} // namespace

// A tooth on +X and half a slot at each edge of the pitch. Per winding and body: the count of winding
// pieces, their volume and height, and the iron of the drawing.
TEST_F(BodyScriptTest, ASlottedStatorDrawsTheLayersOfTheWindingForItsPlaceInTheStack)
{
    struct Case
    {
        Machine::Type machine;
        MotorElement::MiddleType type;
        int layers;
        Winding::LayersOrientation orientation;
        int count;
    };
    const Case cases[] = {
        {Machine::SR, MotorElement::Yoke, 1, Winding::UpperLower, 2},
        {Machine::SR, MotorElement::Yoke, 2, Winding::UpperLower, 4},
        {Machine::SR, MotorElement::Yoke, 2, Winding::LeftRight, 2},
        {Machine::RSR, MotorElement::Yoke, 1, Winding::UpperLower, 2},
        {Machine::RSR, MotorElement::Yoke, 2, Winding::UpperLower, 4},
        {Machine::RSR, MotorElement::Yokeless, 1, Winding::UpperLower, 2},
        {Machine::RSR, MotorElement::Yokeless, 2, Winding::UpperLower, 2},
        {Machine::RSR, MotorElement::Yokeless, 2, Winding::LeftRight, 2},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(QStringLiteral("%1 type %2, %3 layers, orientation %4")
                         .arg(c.machine).arg(c.type).arg(c.layers).arg(c.orientation).toStdString());
        makeMachine(c.machine, c.type);
        setWinding(c.layers, c.orientation);
        ASSERT_TRUE(readStator("SlottedStator.js"));
        const QVariantMap result = statorBody(1);
        const PieceList pieces = piecesOf(result);
        const PieceList coils = pieces.ofKind(AbstractMaterial::WindingKind);
        ASSERT_EQ(coils.size(), c.count) << joined(statorErrors);
        EXPECT_NEAR(coils.at(0).shape().center().y, -coils.at(1).shape().center().y, 1e-6) << "halves of a slot";
        const SimDomain domain = result.value(QStringLiteral("simDomain")).value<SimDomain>();
        EXPECT_DOUBLE_EQ(domain.inner, innerRadius);
        EXPECT_DOUBLE_EQ(domain.outer, outerRadius);
        EXPECT_DOUBLE_EQ(result.value(QStringLiteral("simRadialOuterDomain")).toDouble(), 1.3 * outerRadius);

        const bool middle = c.machine == Machine::RSR;
        const bool yokeless = c.type == MotorElement::Yokeless;
        // A middle body is drawn as its upper half; without yoke its slots run through.
        const double drawn = middle ? statorHeight / 2 : statorHeight;
        const double cut = yokeless ? drawn : slotDepth;
        const double iron = sectorVolume(slotPitch, drawn) - stripArea(slotWidth / 2) * cut;
        EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::IronKind)), iron, 1e-6 * iron);

        // The layers share the coil's room less the gap between them; without yoke the upper one is drawn.
        const bool upperLower = c.layers == 2 && c.orientation == Winding::UpperLower;
        const bool leftRight = c.layers == 2 && c.orientation == Winding::LeftRight;
        const double coilHeight = (yokeless ? statorHeight : slotDepth) - 2 * clearance;
        double coilVolume = (stripArea(slotWidth / 2 - clearance) - (leftRight ? stripArea(layerGap / 2) : 0.0))
            * (upperLower ? coilHeight - layerGap : coilHeight);
        if (upperLower && yokeless)
            coilVolume /= 2;
        EXPECT_NEAR(volumeOf(coils), coilVolume, 1e-6 * coilVolume);
        double bottom = statorHeight - slotDepth + clearance;
        if (yokeless)
            bottom = upperLower ? (statorHeight + layerGap) / 2 : clearance;
        double lowest = statorHeight;
        for (const Piece &coil : coils)
            lowest = std::min(lowest, coil.shape().bounding_box().zmin);
        EXPECT_NEAR(lowest, bottom, 1e-5);
    }
}

// The bodies that the program makes of the pitch: no complaint about the count of winding pieces,
// nothing outside the pitch or inside another piece, and the winding pieces joined per slot.
TEST_F(BodyScriptTest, StatorBodiesOfEveryMachineAreBuiltFromTheSlottedPitch)
{
    struct Case
    {
        Machine::Type machine;
        MotorElement::MiddleType type;
        int layers;
        Winding::LayersOrientation orientation;
        // Winding pieces of the whole body, by body.
        QVector<int> counts;
    };
    const Case cases[] = {
        {Machine::SR, MotorElement::Yoke, 1, Winding::UpperLower, {numberSlots}},
        {Machine::SRS, MotorElement::Yoke, 2, Winding::UpperLower, {2 * numberSlots, 2 * numberSlots}},
        {Machine::RSR, MotorElement::Yoke, 2, Winding::LeftRight, {4 * numberSlots}},
        {Machine::RSR, MotorElement::Yoke, 2, Winding::UpperLower, {4 * numberSlots}},
        {Machine::RSR, MotorElement::Yokeless, 1, Winding::UpperLower, {numberSlots}},
        {Machine::RSR, MotorElement::Yokeless, 2, Winding::UpperLower, {2 * numberSlots}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(QStringLiteral("%1 type %2, %3 layers, orientation %4")
                         .arg(c.machine).arg(c.type).arg(c.layers).arg(c.orientation).toStdString());
        makeMachine(c.machine, c.type);
        setWinding(c.layers, c.orientation);
        ASSERT_TRUE(readStator("SlottedStator.js"));
        ASSERT_EQ(doc.stator()->countItems(), c.counts.size());
        statorWarnings.clear();
        for (StatorItem *body : doc.stator()->items().mid(0, c.counts.size())) {
            body->createPieces();
            const PieceList pieces = body->cachedPieces();
            EXPECT_EQ(pieces.ofKind(AbstractMaterial::WindingKind).size(), c.counts.at(body->id() - 1)) << body->id();
            EXPECT_EQ(pieces.ofKind(AbstractMaterial::IronKind).size(), 1);
            EXPECT_TRUE(body->overlapShapes().isEmpty()) << body->id();
        }
        EXPECT_TRUE(statorErrors.isEmpty()) << joined(statorErrors);
        EXPECT_TRUE(statorWarnings.isEmpty()) << joined(statorWarnings);
    }
}

TEST_F(BodyScriptTest, TheStatorVariablesChangeTheDrawingAsTheySay)
{
    makeMachine(Machine::SR);
    setWinding(1, Winding::UpperLower);
    ASSERT_TRUE(readStator("SlottedStator.js"));
    const auto ironVolume = [this] { return volumeOf(piecesOf(statorBody(1)).ofKind(AbstractMaterial::IronKind)); };
    const auto coilVolume = [this] { return volumeOf(piecesOf(statorBody(1)).ofKind(AbstractMaterial::WindingKind)); };
    const double iron = ironVolume();

    setVariable(doc.stator(), "slotWidth", 14.0);
    EXPECT_NEAR(iron - ironVolume(), (stripArea(7.0) - stripArea(5.0)) * slotDepth, 1e-3);
    setVariable(doc.stator(), "slotDepth", 16.0);
    EXPECT_NEAR(iron - ironVolume(), stripArea(7.0) * 16.0 - stripArea(5.0) * slotDepth, 1e-3);
    setVariable(doc.stator(), "coilClearance", 1.0);
    EXPECT_NEAR(coilVolume(), stripArea(6.0) * 14.0, 1e-3);
}

// A value that can't be drawn is refused with a reason and no pieces; a good one draws again.
TEST_F(BodyScriptTest, StatorVariablesThatCantBeDrawnAreRefusedWithAReason)
{
    struct Case
    {
        Machine::Type machine;
        Winding::LayersOrientation orientation;
        const char *variable;
        QVariant value;
        QString reason;
    };
    const Case cases[] = {
        {Machine::SR, Winding::UpperLower, "slotWidth", 26.0, "leaves no tooth at the inner radius 50 mm"},
        {Machine::SR, Winding::UpperLower, "slotDepth", 40.0, "leaves no yoke: it must be less than the height 40 mm"},
        {Machine::RSR, Winding::UpperLower, "slotDepth", 20.0, "must be less than half its height, 20 mm"},
        {Machine::SR, Winding::UpperLower, "coilClearance", 5.0, "leave no room for the coil"},
        {Machine::SR, Winding::LeftRight, "layerGap", 9.0, "leave no room for the coil"},
        {Machine::SR, Winding::UpperLower, "layerGap", 11.0, "Gap between layers 11 mm leaves no room"},
        {Machine::SR, Winding::UpperLower, "slotWidth", "wide", "Parameter 'slotWidth' must be a number"},
        {Machine::SR, Winding::UpperLower, "slotDepth", -1.0, "Parameter 'slotDepth' = -1 must be greater than 0"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.variable);
        makeMachine(c.machine);
        setWinding(2, c.orientation);
        ASSERT_TRUE(readStator("SlottedStator.js"));
        const QVariant good = doc.stator()->scriptObject()->property(c.variable);
        setVariable(doc.stator(), c.variable, c.value);
        statorErrors.clear();
        EXPECT_TRUE(piecesOf(statorBody(1)).isEmpty());
        ASSERT_FALSE(statorErrors.isEmpty());
        EXPECT_TRUE(lastText(statorErrors).contains(c.reason)) << lastText(statorErrors).toStdString();

        setVariable(doc.stator(), c.variable, good);
        EXPECT_FALSE(piecesOf(statorBody(1)).isEmpty());
    }
}

TEST_F(BodyScriptTest, ToothTipsNarrowTheSlotAtTheGapAndHoldTheCoilBelowThem)
{
    const double opening = 5.0;
    const double tips = 2.0;
    makeMachine(Machine::SR);
    setWinding(1, Winding::UpperLower);
    ASSERT_TRUE(readStator("SlottedStatorToothTips.js"));
    const PieceList pieces = piecesOf(statorBody(1));
    const double iron = sectorVolume(slotPitch, statorHeight) - stripArea(slotWidth / 2) * (slotDepth - tips)
        - stripArea(opening / 2) * tips;
    EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::IronKind)), iron, 1e-6 * iron);
    const PieceList coils = pieces.ofKind(AbstractMaterial::WindingKind);
    ASSERT_EQ(coils.size(), 2);
    EXPECT_NEAR(coils.first().shape().bounding_box().zmax, statorHeight - tips - clearance, 1e-5);
    const double coil = stripArea(slotWidth / 2 - clearance) * (slotDepth - tips - 2 * clearance);
    EXPECT_NEAR(volumeOf(coils), coil, 1e-6 * coil);

    setVariable(doc.stator(), "slotOpening", 12.0);
    EXPECT_TRUE(piecesOf(statorBody(1)).isEmpty());
    EXPECT_TRUE(lastText(statorErrors).contains("must not be wider than the slot, 10 mm"));
}

TEST_F(BodyScriptTest, AYokelessStatorIsARingOfTeethWithTipsOnBothFaces)
{
    const double opening = 5.0;
    const double tips = 2.0;
    makeMachine(Machine::SR);
    ASSERT_TRUE(readStator("YokelessStator.js"));
    EXPECT_TRUE(piecesOf(statorBody(1)).isEmpty());
    EXPECT_TRUE(lastText(statorErrors).contains("must lie between two rotors"));
    makeMachine(Machine::RSR);
    EXPECT_TRUE(piecesOf(statorBody(1)).isEmpty());
    EXPECT_TRUE(lastText(statorErrors).contains("set the stator type to Yokeless"));

    makeMachine(Machine::RSR, MotorElement::Yokeless);
    setWinding(2, Winding::LeftRight);
    statorErrors.clear();
    const PieceList pieces = piecesOf(statorBody(1));
    const double half = statorHeight / 2;
    const double iron = sectorVolume(slotPitch, half) - stripArea(slotWidth / 2) * (half - tips)
        - stripArea(opening / 2) * tips;
    EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::IronKind)), iron, 1e-6 * iron);
    const PieceList coils = pieces.ofKind(AbstractMaterial::WindingKind);
    ASSERT_EQ(coils.size(), 2) << "the sides of the coils around the teeth beside the pitch's own";
    EXPECT_NEAR(coils.first().shape().bounding_box().zmin, tips + clearance, 1e-5) << "through the body";

    StatorItem *body = doc.stator()->items().first();
    body->createPieces();
    EXPECT_EQ(body->cachedPieces().ofKind(AbstractMaterial::WindingKind).size(), 2 * numberSlots);
    EXPECT_TRUE(body->overlapShapes().isEmpty());
    EXPECT_TRUE(statorErrors.isEmpty()) << joined(statorErrors);
}

namespace {

const MagnetParallelMaterial *parallelMagnet(const Piece &piece)
{
    return dynamic_cast<const MagnetParallelMaterial *>(piece.material().data());
}

} // namespace

// Lower, middle with a yoke and middle without one; the magnet faces the gap above the drawing.
TEST_F(BodyScriptTest, ASurfaceMagnetPoleIsAYokeWithTheMagnetOnTheGapFace)
{
    const double thickness = 3.0;
    const double magnet = sectorVolume(0.8 * polePitch, thickness);
    makeMachine(Machine::RSR);
    ASSERT_TRUE(readRotor("SurfaceMagnetRotor.js"));
    QVariantMap result = rotorBody(1);
    PieceList pieces = piecesOf(result);
    ASSERT_EQ(pieces.size(), 2) << joined(rotorErrors);
    EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::IronKind)), sectorVolume(polePitch, rotorHeight - thickness),
                1e-3);
    const PieceList magnets = pieces.ofKind(AbstractMaterial::MagnetKind);
    ASSERT_EQ(magnets.size(), 1);
    EXPECT_NEAR(magnets.first().shape().volume(), magnet, 1e-6 * magnet);
    EXPECT_NEAR(magnets.first().shape().bounding_box().zmin, rotorHeight - thickness, 1e-5);
    EXPECT_NEAR(magnets.first().shape().center().y, 0.0, 1e-6);
    ASSERT_NE(parallelMagnet(magnets.first()), nullptr);
    EXPECT_DOUBLE_EQ(parallelMagnet(magnets.first())->effectiveAngle(), 90.0) << "north to the gap";
    EXPECT_EQ(result.value(QStringLiteral("Nmagnetsegments")).toInt(), 1);
    EXPECT_TRUE(result.contains(QStringLiteral("coefs3D")));

    makeMachine(Machine::SRS);
    pieces = piecesOf(rotorBody(1));
    EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::IronKind)),
                sectorVolume(polePitch, rotorHeight / 2 - thickness), 1e-3) << "the upper half of the yoke";
    EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::MagnetKind)), magnet, 1e-6 * magnet);

    makeMachine(Machine::SRS, MotorElement::Yoke, MotorElement::Yokeless);
    pieces = piecesOf(rotorBody(1));
    const double through = sectorVolume(0.8 * polePitch, rotorHeight / 2);
    EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::MagnetKind)), through, 1e-6 * through);
    EXPECT_TRUE(pieces.ofKind(AbstractMaterial::IronKind).isEmpty());
    EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::GeneralKind)),
                sectorVolume(polePitch, rotorHeight / 2) - through, 1e-3) << "the carrier between the magnets";
}

TEST_F(BodyScriptTest, MagnetSegmentsSplitTheMagnetAtEqualRadialSteps)
{
    makeMachine(Machine::SR);
    ASSERT_TRUE(readRotor("SurfaceMagnetRotor.js"));
    // The radii on the material of the one magnet; the program is told the count of segments.
    const auto radiuses = [this] {
        const QVariantMap result = rotorBody(1);
        const PieceList magnets = piecesOf(result).ofKind(AbstractMaterial::MagnetKind);
        if (magnets.size() != 1)
            return QVector<double>{-1.0};
        const QVector<double> radii = parallelMagnet(magnets.first())->segmentRadiuses();
        EXPECT_EQ(result.value(QStringLiteral("Nmagnetsegments")).toInt(), radii.size() + 1);
        return radii;
    };
    setVariable(doc.rotor(), "magnetSegments", 2.0);
    EXPECT_EQ(radiuses(), QVector<double>{100.0}) << "a whole radius reaches the material too";

    setVariable(doc.rotor(), "magnetSegments", 3.0);
    setVariable(doc.rotor(), "magnetInnerInset", 10.0);
    setVariable(doc.rotor(), "magnetOuterInset", 20.0);
    const QVector<double> three = radiuses();
    ASSERT_EQ(three.size(), 2);
    EXPECT_NEAR(three.at(0), 60.0 + 70.0 / 3, 1e-6);
    EXPECT_NEAR(three.at(1), 60.0 + 140.0 / 3, 1e-6);

    setVariable(doc.rotor(), "magnetOuterInset", 90.0);
    EXPECT_TRUE(piecesOf(rotorBody(1)).isEmpty());
    EXPECT_TRUE(lastText(rotorErrors).contains("leave no magnet between the radii 50 mm and 150 mm"));
}

TEST_F(BodyScriptTest, EmbeddedMagnetsLieInPocketsUnderAnIronCover)
{
    const double thickness = 3.0;
    const double cover = 1.0;
    makeMachine(Machine::RSR);
    ASSERT_TRUE(readRotor("EmbeddedMagnetRotor.js"));
    const PieceList pieces = piecesOf(rotorBody(1));
    const PieceList magnets = pieces.ofKind(AbstractMaterial::MagnetKind);
    ASSERT_EQ(magnets.size(), 1) << joined(rotorErrors);
    const double magnet = sectorVolume(0.75 * polePitch, thickness, innerRadius + 2, outerRadius - 2);
    EXPECT_NEAR(magnets.first().shape().volume(), magnet, 1e-6 * magnet);
    EXPECT_NEAR(magnets.first().shape().bounding_box().zmax, rotorHeight - cover, 1e-5);
    EXPECT_NEAR(volumeOf(pieces.ofKind(AbstractMaterial::IronKind)), sectorVolume(polePitch, rotorHeight) - magnet,
                1e-3);

    setVariable(doc.rotor(), "coverThickness", 9.0);
    EXPECT_TRUE(piecesOf(rotorBody(1)).isEmpty());
    EXPECT_TRUE(lastText(rotorErrors).contains("leaves no yoke: it must be less than 12 mm"));
    makeMachine(Machine::SRS, MotorElement::Yoke, MotorElement::Yokeless);
    EXPECT_TRUE(piecesOf(rotorBody(1)).isEmpty());
    EXPECT_TRUE(lastText(rotorErrors).contains("set the rotor type to Yoke"));
}

// Segment j of four turns its magnetisation by 45 degrees from the last; the middle of the pole points to the gap.
TEST_F(BodyScriptTest, AHalbachPoleTurnsItsMagnetisationAcrossThePitch)
{
    const double thickness = 5.0;
    makeMachine(Machine::SR);
    ASSERT_TRUE(readRotor("HalbachRotor.js"));
    const PieceList pieces = piecesOf(rotorBody(1));
    const PieceList magnets = pieces.ofKind(AbstractMaterial::MagnetKind);
    ASSERT_EQ(magnets.size(), 4) << joined(rotorErrors);
    for (int j = 0; j < 4; ++j) {
        const double middle = -polePitch / 2 + (j + 0.5) * polePitch / 4;
        const Piece &segment = magnets.at(j);
        EXPECT_NEAR(segment.shape().volume(), sectorVolume(polePitch / 4, thickness), 1e-3);
        const auto centre = segment.shape().center();
        EXPECT_NEAR(std::atan2(centre.y, centre.x) * 180 / M_PI, middle, 1e-6);
        EXPECT_DOUBLE_EQ(parallelMagnet(segment)->effectiveAngle(), 22.5 + 45.0 * j);
    }
    const PieceList carrier = pieces.ofKind(AbstractMaterial::GeneralKind);
    ASSERT_EQ(carrier.size(), 1);
    EXPECT_NEAR(carrier.first().shape().volume(), sectorVolume(polePitch, rotorHeight - thickness), 1e-3);

    makeMachine(Machine::SRS);
    EXPECT_TRUE(piecesOf(rotorBody(1)).isEmpty());
    EXPECT_TRUE(lastText(rotorErrors).contains("faces one gap only"));
}

// Every rotor script on every machine it is listed for: the program's bodies without complaint.
TEST_F(BodyScriptTest, RotorBodiesOfEveryMachineAreBuiltFromThePolePitch)
{
    struct Case
    {
        const char *script;
        Machine::Type machine;
        MotorElement::MiddleType type;
        // Magnets of the whole body, by body.
        QVector<int> counts;
    };
    const int poles = 2 * polePairs;
    const Case cases[] = {
        {"SurfaceMagnetRotor.js", Machine::SR, MotorElement::Yoke, {poles}},
        {"SurfaceMagnetRotor.js", Machine::SRS, MotorElement::Yoke, {2 * poles}},
        {"SurfaceMagnetRotor.js", Machine::SRS, MotorElement::Yokeless, {poles}},
        {"EmbeddedMagnetRotor.js", Machine::RSR, MotorElement::Yoke, {poles, poles}},
        {"HalbachRotor.js", Machine::RSR, MotorElement::Yoke, {4 * poles, 4 * poles}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(QStringLiteral("%1 on %2, type %3").arg(c.script).arg(c.machine).arg(c.type).toStdString());
        makeMachine(c.machine, MotorElement::Yoke, c.type);
        ASSERT_TRUE(readRotor(c.script));
        ASSERT_EQ(doc.rotor()->countItems(), c.counts.size());
        rotorWarnings.clear();
        for (RotorItem *body : doc.rotor()->items().mid(0, c.counts.size())) {
            body->createPieces();
            EXPECT_EQ(body->cachedPieces().ofKind(AbstractMaterial::MagnetKind).size(), c.counts.at(body->id() - 1));
            EXPECT_TRUE(body->overlapShapes().isEmpty()) << body->id();
        }
        EXPECT_TRUE(rotorErrors.isEmpty()) << joined(rotorErrors);
        EXPECT_TRUE(rotorWarnings.isEmpty()) << joined(rotorWarnings);
    }
}

// The panel of each shipped script edits every variable of the script, from its own value.
TEST_F(BodyScriptTest, EveryCataloguedScriptReadsAndItsPanelEditsAllItsVariables)
{
    makeMachine(Machine::RSR);
    const QPair<MotorElement *, QString> folders[] = {{doc.stator(), "stator"}, {doc.rotor(), "rotor"}};
    for (const auto &folder : folders) {
        MotorElement *element = folder.first;
        ScriptDescribeList catalogue(QStringLiteral(ZDS_SOURCE_DIR "/assets/scripts/") + folder.second);
        catalogue.load(folder.second == "stator" ? QStringLiteral(".stators.json") : QStringLiteral(".rotors.json"));
        for (const ScriptDescribe &entry : catalogue) {
            if (entry.isSeparator())
                continue;
            SCOPED_TRACE(entry.script().toStdString());
            ASSERT_TRUE(entry.fileExists());
            ASSERT_TRUE(read(element, folder.second, entry.script()));

            QWidget host;
            QQmlEngine::setObjectOwnership(&host, QQmlEngine::CppOwnership);
            const QString panel = folder.second == "stator" ? QStringLiteral("createStatorUI")
                                                            : QStringLiteral("createRotorUI");
            const QJSValue call = element->engine()->globalObject().property(panel).call(
                {element->engine()->newQObject(&host)});
            ASSERT_FALSE(call.isError()) << JSEngine::errorString(call).toStdString();

            const QVariantMap variables = element->scriptProperties();
            QStringList edited;
            for (const NumberEdit *edit : host.findChildren<NumberEdit *>()) {
                edited << edit->objectName();
                EXPECT_DOUBLE_EQ(edit->value(), variables.value(edit->objectName()).toDouble())
                    << edit->objectName().toStdString();
                EXPECT_GE(edit->value(), edit->minimumValue());
                EXPECT_LE(edit->value(), edit->maximumValue());
            }
            edited.sort();
            EXPECT_EQ(edited, QStringList(variables.keys()));
        }
    }
}
