#include <QJSEngine>
#include <QMetaProperty>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"

namespace {

// Each property below those of QObject, with its notify signal where it has one.
QStringList propertiesWithSignals(const QObject *object)
{
    QStringList list;
    const QMetaObject *meta = object->metaObject();
    for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        QString entry = QString::fromLatin1(property.name());
        if (property.hasNotifySignal())
            entry += QLatin1Char(' ') + QString::fromLatin1(property.notifySignal().methodSignature());
        list << entry;
    }
    return list;
}

} // namespace

TEST(ElementInterface, StatorPropertiesKeepTheirOrderAndSignals)
{
    Document doc(nullptr);
    EXPECT_EQ(propertiesWithSignals(doc.stator()),
              QStringList({"outerDiameter outerDiameterChanged(double)",
                           "outerRadius outerDiameterChanged(double)",
                           "innerDiameter innerDiameterChanged(double)",
                           "innerRadius innerDiameterChanged(double)",
                           "numberSlots numberSlotsChanged(uint)",
                           "slotAngleSpan numberSlotsChanged(uint)",
                           "typeMiddleItem typeMiddleItemChanged(MotorElement::MiddleType)",
                           "countItems",
                           "items",
                           "script scriptChanged(QString)",
                           "scriptProperties statorChanged()",
                           "nameScript scriptChanged(QString)",
                           "ironMaterial ironMaterialChanged(QString)",
                           "ironStacking ironStackingChanged(double)",
                           "windingMaterial windingMaterialChanged(QString)",
                           "windingTemperature windingTemperatureChanged(double)",
                           "simDomain",
                           "simRadialOuterDomain",
                           "properties statorChanged()"}));
}

TEST(ElementInterface, RotorPropertiesKeepTheirOrderAndSignals)
{
    Document doc(nullptr);
    EXPECT_EQ(propertiesWithSignals(doc.rotor()),
              QStringList({"outerDiameter outerDiameterChanged(double)",
                           "outerRadius outerDiameterChanged(double)",
                           "innerDiameter innerDiameterChanged(double)",
                           "innerRadius innerDiameterChanged(double)",
                           "numberPolePairs numberPolePairsChanged(int)",
                           "poleAngleSpan numberPolePairsChanged(int)",
                           "poleArrangement poleArrangementChanged(PoleArrangement::Type)",
                           "typeMiddleItem typeMiddleItemChanged(MotorElement::MiddleType)",
                           "countItems",
                           "items",
                           "script scriptChanged(QString)",
                           "scriptProperties rotorChanged()",
                           "nameScript scriptChanged(QString)",
                           "ironMaterial ironMaterialChanged(QString)",
                           "ironStacking ironStackingChanged(double)",
                           "magnetMaterial magnetMaterialChanged(QString)",
                           "magnetTemperature magnetTemperatureChanged(double)",
                           "magnetSegmentsRadialDirection magnetSegmentsRadialDirectionChanged(int)",
                           "conductorMaterial conductorMaterialChanged(QString)",
                           "conductorTemperature conductorTemperatureChanged(double)",
                           "simDomain",
                           "simRadialOuterDomain",
                           "properties rotorChanged()"}));
}

TEST(ElementInterface, SharedSettersAnnounceThroughTheElementsOwnSignals)
{
    Document doc(nullptr);
    Rotor *rotor = doc.rotor();
    QStringList order;
    QObject::connect(rotor, &Rotor::typeMiddleItemChanged, [&order] { order << "typeMiddleItem"; });
    QObject::connect(rotor, &Rotor::scriptChanged, [&order] { order << "script"; });
    QObject::connect(rotor, &Rotor::ironMaterialChanged, [&order] { order << "ironMaterial"; });
    QObject::connect(rotor, &Rotor::ironStackingChanged, [&order] { order << "ironStacking"; });
    QObject::connect(rotor, &Rotor::materialsChanged, [&order] { order << "materials"; });
    QObject::connect(rotor, &Rotor::rotorChanged, [&order] { order << "rotor"; });
    QSignalSpy typeSpy(rotor, &Rotor::typeMiddleItemChanged);
    QSignalSpy scriptSpy(rotor, &Rotor::scriptChanged);
    QSignalSpy stackingSpy(rotor, &Rotor::ironStackingChanged);
    QSignalSpy statorSpy(doc.stator(), &Stator::statorChanged);

    rotor->setTypeMiddleItem(MotorElement::Yokeless);
    rotor->setScript("Surface magnets.js");
    rotor->setScript("Surface magnets.js");
    rotor->setIronMaterial("M270-35A");
    rotor->setIronStacking(0.97);

    EXPECT_EQ(order, QStringList({"typeMiddleItem", "rotor", "script", "rotor", "ironMaterial", "materials",
                                  "ironStacking", "materials"}));
    ASSERT_EQ(typeSpy.count(), 1);
    EXPECT_EQ(typeSpy.at(0).at(0).value<MotorElement::MiddleType>(), MotorElement::Yokeless);
    ASSERT_EQ(scriptSpy.count(), 1);
    EXPECT_EQ(scriptSpy.at(0).at(0).toString(), "Surface magnets.js");
    ASSERT_EQ(stackingSpy.count(), 1);
    EXPECT_DOUBLE_EQ(stackingSpy.at(0).at(0).toDouble(), 0.97);
    EXPECT_EQ(statorSpy.count(), 0);
}

TEST(ElementInterface, RotorMaterialsAnnounceThemselvesAndKeepThePieces)
{
    Document doc(nullptr);
    Rotor *rotor = doc.rotor();
    rotor->items().at(0)->createPieces();
    QStringList order;
    QObject::connect(rotor, &Rotor::magnetMaterialChanged, [&order](const QString &value) { order << value; });
    QObject::connect(rotor, &Rotor::magnetTemperatureChanged,
                     [&order](double value) { order << QString::number(value); });
    QObject::connect(rotor, &Rotor::conductorMaterialChanged, [&order](const QString &value) { order << value; });
    QObject::connect(rotor, &Rotor::conductorTemperatureChanged,
                     [&order](double value) { order << QString::number(value); });
    QObject::connect(rotor, &Rotor::materialsChanged, [&order] { order << "materials"; });

    rotor->setMagnetMaterial("N42SH");
    rotor->setMagnetMaterial("N42SH");
    rotor->setMagnetTemperature(80.0);
    rotor->setMagnetTemperature(80.0 + 1e-13);
    rotor->setConductorMaterial("Aluminium");
    rotor->setConductorTemperature(20.0);
    rotor->setConductorTemperature(75.0);

    EXPECT_EQ(order, QStringList({"N42SH", "materials", "80", "materials", "Aluminium", "materials", "75",
                                  "materials"}));
    EXPECT_EQ(rotor->magnetMaterial(), "N42SH");
    EXPECT_DOUBLE_EQ(rotor->conductorTemperature(), 75.0);
    EXPECT_TRUE(rotor->items().at(0)->hasCachedPieces());
}

TEST(ElementInterface, ScriptsNameTheBodiesThroughEachItemClass)
{
    Document doc(nullptr);
    QJSEngine engine;
    engine.globalObject().setProperty("StatorItem", engine.newQMetaObject(&StatorItem::staticMetaObject));
    engine.globalObject().setProperty("RotorItem", engine.newQMetaObject(&RotorItem::staticMetaObject));
    engine.globalObject().setProperty("body", engine.newQObject(doc.rotor()->items().at(2)));

    EXPECT_EQ(engine.evaluate("StatorItem.ID3").toInt(), 3);
    EXPECT_EQ(engine.evaluate("RotorItem.Empty").toInt(), 0);
    EXPECT_TRUE(engine.evaluate("body.id === RotorItem.ID3").toBool());
}

TEST(ElementInterface, BodiesKnowTheirElement)
{
    Document doc(nullptr);
    EXPECT_EQ(doc.stator()->items().at(2)->stator(), doc.stator());
    EXPECT_EQ(doc.rotor()->items().at(0)->rotor(), doc.rotor());
    EXPECT_EQ(doc.rotor()->items().at(0)->parent(), doc.rotor());
}
