#include "geometry/Rotor.h"

#include <QDebug>

#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/Stator.h"
#include "QmlScripting/ScriptObject.h"

namespace {

// The body on each air gap, 1 to 4, by machine type; 0 where the machine has no such gap.
const int itemsOfAirgaps[6][4] = {
    {0, 0, 0, 0}, // UnknownType
    {1, 0, 0, 0}, // SR
    {1, 1, 0, 0}, // SRS
    {1, 1, 2, 2}, // SRSRS
    {1, 2, 0, 0}, // RSR
    {1, 2, 2, 3}, // RSRSR
};

} // namespace

Rotor::Rotor(Document *document)
    : MotorElement(ScriptConsole::Rotor, document)
    , m_scriptObject(new ScriptObject(QStringLiteral("rotor"), this))
    , m_countItems(countItemsFor(document->machineType()))
{
    setObjectName(QStringLiteral("rotor"));
    for (int id = RotorItem::ID1; id <= RotorItem::ID3; ++id)
        m_items.append(new RotorItem(this, RotorItem::ID(id)));
    activateItems(m_items, m_countItems);
    connect(m_scriptObject, &ScriptObject::variableChanged, this, &Rotor::variableChanged);
}

void Rotor::setOuterDiameter(double diameter)
{
    diameter = roundLength(diameter);
    if (qFuzzyCompare(m_outerDiameter, diameter))
        return;
    m_outerDiameter = diameter;
    clearCashPieces();
    emit outerDiameterChanged(m_outerDiameter);
    emit rotorChanged();
    markGeometryModified(document());
}

void Rotor::setInnerDiameter(double diameter)
{
    diameter = roundLength(diameter);
    if (qFuzzyCompare(m_innerDiameter, diameter))
        return;
    m_innerDiameter = diameter;
    clearCashPieces();
    emit innerDiameterChanged(m_innerDiameter);
    emit rotorChanged();
    markGeometryModified(document());
}

void Rotor::setNumberPolePairs(int numberPolePairs)
{
    numberPolePairs = qMax(numberPolePairs, 1);
    if (m_numberPolePairs == numberPolePairs)
        return;
    m_numberPolePairs = numberPolePairs;
    clearCashPieces();
    emit numberPolePairsChanged(m_numberPolePairs);
    emit rotorChanged();
    markGeometryModified(document());
    document()->updateBoundaryCondition();
}

void Rotor::setPoleArrangement(PoleArrangement::Type arrangement)
{
    if (m_poleArrangement == arrangement)
        return;
    m_poleArrangement = arrangement;
    clearCashPieces();
    emit poleArrangementChanged(m_poleArrangement);
    emit rotorChanged();
    markGeometryModified(document());
}

void Rotor::setTypeMiddleItem(MiddleType type)
{
    if (m_typeMiddleItem == type)
        return;
    m_typeMiddleItem = type;
    clearCashPieces();
    emit typeMiddleItemChanged(m_typeMiddleItem);
    emit rotorChanged();
    markGeometryModified(document());
}

int Rotor::countItemsFor(Machine::Type machine)
{
    switch (machine) {
    case Machine::SR:
    case Machine::SRS:
        return 1;
    case Machine::SRSRS:
    case Machine::RSR:
        return 2;
    case Machine::RSRSR:
        return 3;
    case Machine::UnknownType:
        break;
    }
    return 0;
}

void Rotor::setCountItems(int count)
{
    count = qBound(0, count, m_items.size());
    if (m_countItems == count)
        return;
    m_countItems = count;
    activateItems(m_items, m_countItems);
}

QVariantMap Rotor::scriptProperties() const
{
    return m_scriptObject->properties();
}

void Rotor::setScriptProperties(const QVariantMap &properties)
{
    m_scriptObject->setProperties(properties);
}

void Rotor::setIronMaterial(const QString &material)
{
    if (m_ironMaterial == material)
        return;
    m_ironMaterial = material;
    emit ironMaterialChanged(m_ironMaterial);
    emit materialsChanged();
}

void Rotor::setIronStacking(double stacking)
{
    if (qFuzzyCompare(m_ironStacking, stacking))
        return;
    m_ironStacking = stacking;
    emit ironStackingChanged(m_ironStacking);
    emit materialsChanged();
}

void Rotor::setMagnetMaterial(const QString &material)
{
    if (m_magnetMaterial == material)
        return;
    m_magnetMaterial = material;
    emit magnetMaterialChanged(m_magnetMaterial);
    emit materialsChanged();
}

void Rotor::setMagnetTemperature(double temperature)
{
    if (qFuzzyCompare(m_magnetTemperature, temperature))
        return;
    m_magnetTemperature = temperature;
    emit magnetTemperatureChanged(m_magnetTemperature);
    emit materialsChanged();
}

void Rotor::setMagnetSegmentsRadialDirection(int segments)
{
    if (m_magnetSegmentsRadialDirection == segments)
        return;
    m_magnetSegmentsRadialDirection = segments;
    emit magnetSegmentsRadialDirectionChanged(m_magnetSegmentsRadialDirection);
}

void Rotor::setConductorMaterial(const QString &material)
{
    if (m_conductorMaterial == material)
        return;
    m_conductorMaterial = material;
    emit conductorMaterialChanged(m_conductorMaterial);
    emit materialsChanged();
}

void Rotor::setConductorTemperature(double temperature)
{
    if (qFuzzyCompare(m_conductorTemperature, temperature))
        return;
    m_conductorTemperature = temperature;
    emit conductorTemperatureChanged(m_conductorTemperature);
    emit materialsChanged();
}

const SimDomain &Rotor::simDomain() const
{
    return document()->stator()->simDomain();
}

double Rotor::simRadialOuterDomain() const
{
    return document()->stator()->simRadialOuterDomain();
}

QVariantMap Rotor::properties() const
{
    const QVariantMap map{
        {QStringLiteral("outerDiameter"), m_outerDiameter},
        {QStringLiteral("innerDiameter"), m_innerDiameter},
        {QStringLiteral("numberPolePairs"), m_numberPolePairs},
        {QStringLiteral("poleArrangement"), PoleArrangement::text(m_poleArrangement)},
        {QStringLiteral("type"), middleTypeKey(m_typeMiddleItem)},
        {QStringLiteral("items"), itemsProperties(m_items.mid(0, m_countItems))},
        {QStringLiteral("scriptProps"), m_scriptObject->properties()},
        {QStringLiteral("scriptFile"), m_script},
    };
    qDebug() << "Get Rotor::properties:" << map;
    return map;
}

void Rotor::setProperties(const QVariantMap &map)
{
    if (map.isEmpty())
        return;
    qDebug() << "Rotor::setProperties:" << map;
    if (map.contains(QStringLiteral("outerDiameter")))
        setOuterDiameter(map.value(QStringLiteral("outerDiameter")).toDouble());
    if (map.contains(QStringLiteral("innerDiameter")))
        setInnerDiameter(map.value(QStringLiteral("innerDiameter")).toDouble());
    if (map.contains(QStringLiteral("numberPolePairs")))
        setNumberPolePairs(map.value(QStringLiteral("numberPolePairs")).toInt());
    if (map.contains(QStringLiteral("poleArrangement")))
        setPoleArrangement(PoleArrangement::fromText(map.value(QStringLiteral("poleArrangement")).toString()));
    if (map.contains(QStringLiteral("type")))
        setTypeMiddleItem(middleTypeFromKey(map.value(QStringLiteral("type")).toString()));
    if (map.contains(QStringLiteral("items")))
        setItemsProperties(m_items.mid(0, m_countItems), map.value(QStringLiteral("items")).toList());
}

void Rotor::clearCashPieces()
{
    for (RotorItem *item : qAsConst(m_items))
        item->clearCashPieces();
    document()->resetPieces();
    emit pieceReset();
}

QString Rotor::materialErrorText() const
{
    return elementErrorText(materialErrors(),
                            {IronNotFound, MagnetNotFound, RotorIronNotAssigned, RotorMagnetNotAssigned,
                             RotorConductorNotAssigned, CoreFillCoefCount},
                            objectName(), materialErrorMessage);
}

bool Rotor::isLower(RotorItem::ID id) const
{
    return id >= RotorItem::ID1 && id <= RotorItem::ID3 && m_items.at(id - 1)->isLower();
}

bool Rotor::isMiddle(RotorItem::ID id) const
{
    return id >= RotorItem::ID1 && id <= RotorItem::ID3 && m_items.at(id - 1)->isMiddle();
}

bool Rotor::isUpper(RotorItem::ID id) const
{
    return id >= RotorItem::ID1 && id <= RotorItem::ID3 && m_items.at(id - 1)->isUpper();
}

RotorItem *Rotor::itemOfAirgap(int index) const
{
    const int id = itemsOfAirgaps[document()->machineType()][index - 1];
    return id > 0 ? m_items.at(id - 1) : nullptr;
}

double Rotor::itemAngularDisplacement(int index) const
{
    if (!isAirgapIndex(index))
        return 0.0;
    const RotorItem *item = itemOfAirgap(index);
    return item ? item->angularDisplacement() : 0.0;
}

void Rotor::setItemAngularDisplacement(int index, double angle)
{
    if (!isAirgapIndex(index))
        return;
    if (RotorItem *item = itemOfAirgap(index))
        item->setAngularDisplacement(angle);
}

void Rotor::variableChanged(const QString &name, const QVariant &value)
{
    qInfo().noquote() << QStringLiteral("Changed %1.%2 = %3 (change from c++)")
                             .arg(m_scriptObject->objectName(), name, value.toString());
    clearCashPieces();
    markGeometryModified(document());
    emit scriptPropertyChanged(name, value);
    emit rotorChanged();
}
