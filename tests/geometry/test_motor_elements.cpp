#include <QSignalSpy>
#include <cmath>
#include <limits>
#include <gtest/gtest.h>

#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "winding/WindingObject.h"

namespace {

// Collects the critical log lines written while it lives.
class CriticalLog
{
public:
    CriticalLog()
        : m_previous(qInstallMessageHandler(&CriticalLog::handle))
    {
        s_lines.clear();
    }
    ~CriticalLog() { qInstallMessageHandler(m_previous); }

    const QStringList &lines() const { return s_lines; }

private:
    static void handle(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        if (type == QtCriticalMsg)
            s_lines << text;
    }

    static inline QStringList s_lines;
    QtMessageHandler m_previous;
};

// Names of the watched signals in the order in which they came.
class SignalOrder : public QObject
{
public:
    template <typename Sender, typename Signal>
    void watch(Sender *sender, Signal signal, const QString &name)
    {
        connect(sender, signal, this, [this, name] { names << name; });
    }

    QStringList names;
};

} // namespace

TEST(Stator, DiametersAreRoundedAndEqualValuesAreNoChange)
{
    Document doc(nullptr);
    Stator *stator = doc.stator();
    QSignalSpy outerSpy(stator, &Stator::outerDiameterChanged);
    QSignalSpy changedSpy(stator, &Stator::statorChanged);

    stator->setOuterDiameter(300.000001);
    stator->setInnerDiameter(100.0);
    EXPECT_EQ(outerSpy.count(), 0);
    EXPECT_EQ(changedSpy.count(), 0);
    EXPECT_DOUBLE_EQ(stator->outerDiameter(), 300.0);

    stator->setOuterDiameter(250.123456);
    ASSERT_EQ(outerSpy.count(), 1);
    EXPECT_DOUBLE_EQ(outerSpy.at(0).at(0).toDouble(), 250.12346);
    EXPECT_EQ(changedSpy.count(), 1);
    EXPECT_TRUE(doc.isGeometryModified());
}

// A damaged file may hold lengths without a fifth decimal: beyond an integer's range,
// infinite or undefined. They pass as they are (found by fuzzing the document reader).
TEST(Lengths, KeepFiveDecimalsAndPassOverWhatHasNone)
{
    EXPECT_DOUBLE_EQ(roundLength(250.123456), 250.12346);
    EXPECT_DOUBLE_EQ(roundLength(-250.123454), -250.12345);
    EXPECT_DOUBLE_EQ(roundLength(-0.000004), 0.0);
    for (const double value : {5.30446e125, -1e20, std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity()})
        EXPECT_EQ(roundLength(value), value);
    EXPECT_TRUE(std::isnan(roundLength(std::numeric_limits<double>::quiet_NaN())));
}

TEST(Stator, RadiusWritesTheDiameter)
{
    Document doc(nullptr);
    Stator *stator = doc.stator();
    QSignalSpy innerSpy(stator, &Stator::innerDiameterChanged);

    stator->setProperty("outerRadius", 160.0);
    stator->setInnerRadius(40.5);

    EXPECT_DOUBLE_EQ(stator->outerDiameter(), 320.0);
    EXPECT_DOUBLE_EQ(stator->property("outerRadius").toDouble(), 160.0);
    EXPECT_DOUBLE_EQ(stator->innerDiameter(), 81.0);
    EXPECT_EQ(innerSpy.count(), 1);
}

TEST(Stator, ChangedValueIsAnnouncedBeforeTheElementChangeAndDropsAllPieces)
{
    Document doc(nullptr);
    Stator *stator = doc.stator();
    SignalOrder order;
    order.watch(stator, &Stator::pieceReset, "pieceReset");
    order.watch(stator, &Stator::numberSlotsChanged, "numberSlotsChanged");
    order.watch(stator, &Stator::statorChanged, "statorChanged");
    stator->items().at(0)->createPieces();
    doc.rotor()->items().at(0)->createPieces();

    stator->setNumberSlots(12);

    EXPECT_EQ(order.names, QStringList({"pieceReset", "numberSlotsChanged", "statorChanged"}));
    EXPECT_DOUBLE_EQ(stator->slotAngleSpan(), 30.0);
    EXPECT_FALSE(stator->items().at(0)->hasCachedPieces());
    EXPECT_FALSE(doc.rotor()->items().at(0)->hasCachedPieces());

    stator->setNumberSlots(12);
    EXPECT_EQ(order.names.size(), 3);
}

TEST(Stator, MaterialsAnnounceThemselvesAndKeepThePieces)
{
    Document doc(nullptr);
    Stator *stator = doc.stator();
    stator->items().at(0)->createPieces();
    SignalOrder order;
    order.watch(stator, &Stator::ironMaterialChanged, "ironMaterial");
    order.watch(stator, &Stator::ironStackingChanged, "ironStacking");
    order.watch(stator, &Stator::windingMaterialChanged, "windingMaterial");
    order.watch(stator, &Stator::windingTemperatureChanged, "windingTemperature");
    order.watch(stator, &Stator::materialsChanged, "materials");

    stator->setIronMaterial("M270-35A");
    stator->setIronStacking(0.95);
    stator->setIronStacking(0.95 + 1e-14);
    stator->setWindingMaterial("Copper");
    stator->setWindingTemperature(20.0);
    stator->setWindingTemperature(80.0);

    EXPECT_EQ(order.names, QStringList({"ironMaterial", "materials", "ironStacking", "materials", "windingMaterial",
                                   "materials", "windingTemperature", "materials"}));
    EXPECT_TRUE(stator->items().at(0)->hasCachedPieces());
}

TEST(Rotor, NumberPolePairsIsAtLeastOne)
{
    Document doc(nullptr);
    Rotor *rotor = doc.rotor();
    QSignalSpy spy(rotor, &Rotor::numberPolePairsChanged);

    rotor->setNumberPolePairs(0);
    EXPECT_EQ(rotor->numberPolePairs(), 1);
    EXPECT_DOUBLE_EQ(rotor->poleAngleSpan(), 180.0);
    rotor->setNumberPolePairs(-3);
    EXPECT_EQ(spy.count(), 1);

    rotor->setNumberPolePairs(4);
    EXPECT_DOUBLE_EQ(rotor->poleAngleSpan(), 45.0);
    EXPECT_EQ(spy.count(), 2);
}

TEST(Rotor, ChangeKeepsTheStatorPiecesAndTheEndturnsThatAStatorChangeDrops)
{
    Document doc(nullptr);
    doc.stator()->items().at(0)->createPieces();
    RotorItem *rotorItem = doc.rotor()->items().at(0);
    rotorItem->createPieces();
    doc.winding()->setEndturnShapeGenerated(true, false);
    QSignalSpy statorReset(doc.stator(), &Stator::pieceReset);
    QSignalSpy arrangementSpy(doc.rotor(), &Rotor::poleArrangementChanged);

    doc.rotor()->setPoleArrangement(PoleArrangement::NSSN);

    EXPECT_EQ(arrangementSpy.count(), 1);
    EXPECT_FALSE(rotorItem->hasCachedPieces());
    EXPECT_TRUE(doc.stator()->items().at(0)->hasCachedPieces());
    EXPECT_EQ(statorReset.count(), 0);
    EXPECT_TRUE(doc.winding()->isEndturnShapeGenerated());

    doc.stator()->setTypeMiddleItem(MotorElement::Yokeless);
    EXPECT_FALSE(doc.winding()->isEndturnShapeGenerated());
}

TEST(MotorElements, CountItemsFollowTheMachineType)
{
    const QVector<QPair<Machine::Type, QPair<int, int>>> table{
        {Machine::SR, {1, 1}},    {Machine::SRS, {2, 1}},   {Machine::SRSRS, {3, 2}},
        {Machine::RSR, {1, 2}},   {Machine::RSRSR, {2, 3}}, {Machine::UnknownType, {0, 0}},
    };
    for (const auto &row : table) {
        EXPECT_EQ(Stator::countItemsFor(row.first), row.second.first) << row.first;
        EXPECT_EQ(Rotor::countItemsFor(row.first), row.second.second) << row.first;
    }
}

TEST(MotorElements, BodiesBeyondTheCountAreSilent)
{
    Document doc(nullptr);
    Stator *stator = doc.stator();
    ASSERT_EQ(stator->countItems(), 1);
    StatorItem *third = stator->items().at(2);
    QSignalSpy heightSpy(third, &MotorItem::heightChanged);
    third->setHeight(20.0);
    EXPECT_EQ(heightSpy.count(), 0);

    stator->items().at(0)->createPieces();
    stator->setCountItems(3);
    EXPECT_FALSE(third->signalsBlocked());
    EXPECT_FALSE(stator->items().at(0)->hasCachedPieces());
    third->setHeight(30.0);
    EXPECT_EQ(heightSpy.count(), 1);

    doc.setMachineType(Machine::RSRSR);
    EXPECT_EQ(stator->countItems(), 2);
    EXPECT_TRUE(third->signalsBlocked());
    EXPECT_FALSE(stator->items().at(1)->signalsBlocked());
    EXPECT_EQ(doc.rotor()->countItems(), 3);
    EXPECT_FALSE(doc.rotor()->items().at(2)->signalsBlocked());
}

TEST(MotorElements, ItemAngularDisplacementGoesToTheBodyOnThatGap)
{
    // Body id on gaps 1 to 4; 0 where the machine has no such gap.
    struct Row
    {
        Machine::Type machine;
        QVector<int> stator;
        QVector<int> rotor;
    };
    const QVector<Row> table{
        {Machine::SR, {1, 0, 0, 0}, {1, 0, 0, 0}},    {Machine::SRS, {1, 2, 0, 0}, {1, 1, 0, 0}},
        {Machine::SRSRS, {1, 2, 2, 3}, {1, 1, 2, 2}}, {Machine::RSR, {1, 1, 0, 0}, {1, 2, 0, 0}},
        {Machine::RSRSR, {1, 1, 2, 2}, {1, 2, 2, 3}},
    };
    for (const Row &row : table) {
        Document doc(nullptr);
        doc.setMachineType(row.machine);
        for (int id = 1; id <= 3; ++id) {
            doc.stator()->items().at(id - 1)->setAngularDisplacement(id * 10.0);
            doc.rotor()->items().at(id - 1)->setAngularDisplacement(id * 100.0);
        }
        CriticalLog log;
        for (int index = 1; index <= 4; ++index) {
            EXPECT_DOUBLE_EQ(doc.stator()->itemAngularDisplacement(index), row.stator.at(index - 1) * 10.0)
                << row.machine << " gap " << index;
            EXPECT_DOUBLE_EQ(doc.rotor()->itemAngularDisplacement(index), row.rotor.at(index - 1) * 100.0)
                << row.machine << " gap " << index;
        }
        EXPECT_TRUE(log.lines().isEmpty());
    }
}

TEST(MotorElements, SettingAngularDisplacementByGapReachesOnlyExistingBodies)
{
    Document doc(nullptr);
    doc.setMachineType(Machine::SRSRS);
    Stator *stator = doc.stator();

    stator->setItemAngularDisplacement(3, 15.0);
    EXPECT_DOUBLE_EQ(stator->items().at(1)->angularDisplacement(), 15.0);
    EXPECT_DOUBLE_EQ(stator->itemAngularDisplacement(2), 15.0);

    doc.setMachineType(Machine::SR);
    doc.rotor()->setItemAngularDisplacement(2, 40.0);
    for (const RotorItem *item : doc.rotor()->items())
        EXPECT_DOUBLE_EQ(item->angularDisplacement(), 0.0);
}

TEST(MotorElements, BadGapIndexIsLoggedAndChangesNothing)
{
    Document doc(nullptr);
    Stator *stator = doc.stator();
    stator->items().at(0)->setAngularDisplacement(20.0);
    CriticalLog log;

    EXPECT_DOUBLE_EQ(stator->itemAngularDisplacement(0), 0.0);
    EXPECT_DOUBLE_EQ(doc.rotor()->itemAngularDisplacement(5), 0.0);
    stator->setItemAngularDisplacement(5, 90.0);

    EXPECT_EQ(log.lines(), QStringList({"bad index", "bad index", "bad index"}));
    EXPECT_DOUBLE_EQ(stator->items().at(0)->angularDisplacement(), 20.0);
}

TEST(MotorElements, StackPositionOfBodies)
{
    Document doc(nullptr);
    doc.setMachineType(Machine::SRSRS);
    doc.stator()->items().at(0)->setHeight(10.0);
    doc.rotor()->items().at(0)->setHeight(20.0);
    doc.airgap(1)->setThickness(2.0);
    const StatorItem *middle = doc.stator()->items().at(1);
    EXPECT_TRUE(doc.stator()->isMiddle(StatorItem::ID2));
    EXPECT_TRUE(doc.stator()->isUpper(StatorItem::ID3));
    EXPECT_FALSE(doc.stator()->isLower(StatorItem::Empty));
    EXPECT_TRUE(doc.rotor()->isMiddle(RotorItem::ID2));
    EXPECT_DOUBLE_EQ(doc.stator()->items().at(0)->position(), 0.0);
    EXPECT_DOUBLE_EQ(doc.rotor()->items().at(0)->position(), 12.0);
    EXPECT_DOUBLE_EQ(middle->position(), 34.0);
    EXPECT_DOUBLE_EQ(middle->posTop(), 84.0);

    doc.setMachineType(Machine::RSR);
    EXPECT_TRUE(doc.rotor()->isLower(RotorItem::ID1));
    EXPECT_TRUE(doc.rotor()->isUpper(RotorItem::ID2));
    EXPECT_TRUE(doc.stator()->isMiddle(StatorItem::ID1));
    EXPECT_DOUBLE_EQ(doc.rotor()->items().at(0)->position(), 0.0);
    EXPECT_DOUBLE_EQ(doc.stator()->items().at(0)->position(), 22.0);
    EXPECT_DOUBLE_EQ(doc.rotor()->items().at(1)->position(), 34.0);
}

TEST(MotorElements, PropertyMapRoundTrip)
{
    Document source(nullptr);
    source.setMachineType(Machine::RSR);
    Rotor *rotor = source.rotor();
    rotor->setOuterDiameter(210.0);
    rotor->setInnerDiameter(60.0);
    rotor->setNumberPolePairs(5);
    rotor->setPoleArrangement(PoleArrangement::NSSN);
    rotor->setTypeMiddleItem(MotorElement::Yokeless);
    rotor->items().at(1)->setHeight(12.5);
    rotor->items().at(1)->setAngularDisplacement(18.0);
    source.stator()->setNumberSlots(24);

    const QVariantMap rotorMap = rotor->properties();
    EXPECT_EQ(rotorMap.value("poleArrangement").toString(), "N-S-S-N");
    EXPECT_EQ(rotorMap.value("type").toString(), "Yokeless");
    EXPECT_EQ(rotorMap.value("items").toList().size(), 2);
    EXPECT_TRUE(rotorMap.contains("scriptProps"));
    EXPECT_TRUE(rotorMap.contains("scriptFile"));

    Document target(nullptr);
    target.setMachineType(Machine::RSR);
    target.rotor()->setProperties(rotorMap);
    target.stator()->setProperty("properties", source.stator()->properties());

    const Rotor *copy = target.rotor();
    EXPECT_DOUBLE_EQ(copy->outerDiameter(), 210.0);
    EXPECT_DOUBLE_EQ(copy->innerDiameter(), 60.0);
    EXPECT_EQ(copy->numberPolePairs(), 5);
    EXPECT_EQ(copy->poleArrangement(), PoleArrangement::NSSN);
    EXPECT_EQ(copy->typeMiddleItem(), MotorElement::Yokeless);
    EXPECT_DOUBLE_EQ(copy->items().at(1)->height(), 12.5);
    EXPECT_DOUBLE_EQ(copy->items().at(1)->angularDisplacement(), 18.0);
    EXPECT_EQ(target.stator()->numberSlots(), 24);
    EXPECT_EQ(target.stator()->typeMiddleItem(), MotorElement::Yoke);
}

TEST(MotorElements, PropertyMapUsesOnlyThePresentKeys)
{
    Document doc(nullptr);
    Stator *stator = doc.stator();
    QSignalSpy changedSpy(stator, &Stator::statorChanged);

    stator->setProperties({});
    EXPECT_EQ(changedSpy.count(), 0);

    stator->setTypeMiddleItem(MotorElement::Yokeless);
    stator->setProperties({{"numberSlots", 9},
                           {"type", "NoSuchType"},
                           {"items", QVariantList{QVariantMap{{"height", 7.0}}, QVariantMap{{"height", 8.0}}}}});
    EXPECT_EQ(stator->numberSlots(), 9);
    EXPECT_DOUBLE_EQ(stator->outerDiameter(), 300.0);
    EXPECT_EQ(stator->typeMiddleItem(), MotorElement::Yoke);
    EXPECT_DOUBLE_EQ(stator->items().at(0)->height(), 50.0);

    stator->setProperties({{"items", QVariantList{QVariantMap{{"angularDisplacement", 5.0}}}}});
    EXPECT_DOUBLE_EQ(stator->items().at(0)->height(), 50.0);
    EXPECT_DOUBLE_EQ(stator->items().at(0)->angularDisplacement(), 5.0);
}

TEST(MotorElements, SimDomainFollowsTheStatorDiametersUntilTheScriptTellsIt)
{
    Document doc(nullptr);
    doc.stator()->setInnerDiameter(120.0);
    doc.rotor()->setOuterDiameter(500.0);
    QSignalSpy warnings(doc.stator()->console(), &ScriptConsole::signalWarn);

    const SimDomain &domain = doc.rotor()->simDomain();
    EXPECT_DOUBLE_EQ(domain.inner, 60.0);
    EXPECT_DOUBLE_EQ(domain.outer, 150.0);
    EXPECT_DOUBLE_EQ(domain.range(), 90.0);
    EXPECT_DOUBLE_EQ(doc.rotor()->simRadialOuterDomain(), 195.0);
    ASSERT_EQ(warnings.count(), 1);
    EXPECT_EQ(warnings.at(0).at(1).toString(), "Use default simRadialOuterDomain");
}
