#include "geometry/Stator.h"

#include <QDebug>

#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/Rotor.h"
#include "QmlScripting/ScriptObject.h"
#include "winding/WindingObject.h"

namespace {

// The body on each air gap, 1 to 4, by machine type; 0 where the machine has no such gap.
const int itemsOfAirgaps[6][4] = {
    {0, 0, 0, 0}, // UnknownType
    {1, 0, 0, 0}, // SR
    {1, 2, 0, 0}, // SRS
    {1, 2, 2, 3}, // SRSRS
    {1, 1, 0, 0}, // RSR
    {1, 1, 2, 2}, // RSRSR
};

} // namespace

Stator::Stator(Document *document)
    : MotorElement(ScriptConsole::Stator, document)
    , m_scriptObject(new ScriptObject(QStringLiteral("stator"), this))
    , m_countItems(countItemsFor(document->machineType()))
{
    setObjectName(QStringLiteral("stator"));
    for (int id = StatorItem::ID1; id <= StatorItem::ID3; ++id)
        m_items.append(new StatorItem(this, StatorItem::ID(id)));
    activateItems(m_items, m_countItems);
    connect(m_scriptObject, &ScriptObject::variableChanged, this, &Stator::variableChanged);
}

void Stator::setOuterDiameter(double diameter)
{
    diameter = roundLength(diameter);
    if (qFuzzyCompare(m_outerDiameter, diameter))
        return;
    m_outerDiameter = diameter;
    clearCashPieces();
    emit outerDiameterChanged(m_outerDiameter);
    emit statorChanged();
    markGeometryModified(document());
}

void Stator::setInnerDiameter(double diameter)
{
    diameter = roundLength(diameter);
    if (qFuzzyCompare(m_innerDiameter, diameter))
        return;
    m_innerDiameter = diameter;
    clearCashPieces();
    emit innerDiameterChanged(m_innerDiameter);
    emit statorChanged();
    markGeometryModified(document());
}

void Stator::setNumberSlots(int numberSlots)
{
    if (m_numberSlots == numberSlots)
        return;
    m_numberSlots = numberSlots;
    clearCashPieces();
    emit numberSlotsChanged(uint(m_numberSlots));
    emit statorChanged();
    markGeometryModified(document());
    document()->updateBoundaryCondition();
}

void Stator::setTypeMiddleItem(MiddleType type)
{
    if (m_typeMiddleItem == type)
        return;
    m_typeMiddleItem = type;
    clearCashPieces();
    emit typeMiddleItemChanged(m_typeMiddleItem);
    emit statorChanged();
    markGeometryModified(document());
}

int Stator::countItemsFor(Machine::Type machine)
{
    switch (machine) {
    case Machine::SR:
    case Machine::RSR:
        return 1;
    case Machine::SRS:
    case Machine::RSRSR:
        return 2;
    case Machine::SRSRS:
        return 3;
    case Machine::UnknownType:
        break;
    }
    return 0;
}

void Stator::setCountItems(int count)
{
    count = qBound(0, count, m_items.size());
    if (m_countItems == count)
        return;
    m_countItems = count;
    activateItems(m_items, m_countItems);
}

QVariantMap Stator::scriptProperties() const
{
    return m_scriptObject->properties();
}

void Stator::setScriptProperties(const QVariantMap &properties)
{
    m_scriptObject->setProperties(properties);
}

void Stator::setIronMaterial(const QString &material)
{
    if (m_ironMaterial == material)
        return;
    m_ironMaterial = material;
    emit ironMaterialChanged(m_ironMaterial);
    emit materialsChanged();
}

void Stator::setIronStacking(double stacking)
{
    if (qFuzzyCompare(m_ironStacking, stacking))
        return;
    m_ironStacking = stacking;
    emit ironStackingChanged(m_ironStacking);
    emit materialsChanged();
}

void Stator::setWindingMaterial(const QString &material)
{
    if (m_windingMaterial == material)
        return;
    m_windingMaterial = material;
    emit windingMaterialChanged(m_windingMaterial);
    emit materialsChanged();
}

void Stator::setWindingTemperature(double temperature)
{
    if (qFuzzyCompare(m_windingTemperature, temperature))
        return;
    m_windingTemperature = temperature;
    emit windingTemperatureChanged(m_windingTemperature);
    emit materialsChanged();
}

const SimDomain &Stator::simDomain() const
{
    if (m_simDomainUnknown) {
        qWarning() << "Use default simDomain";
        m_simDomain.inner = m_innerDiameter * 0.5;
        m_simDomain.outer = m_outerDiameter * 0.5;
    }
    return m_simDomain;
}

double Stator::simRadialOuterDomain() const
{
    if (!m_simDomainUnknown)
        return m_simRadialOuterDomain;
    console()->warn(tr("Use default simRadialOuterDomain"));
    return m_outerDiameter * 0.5 * 1.3;
}

QVariantMap Stator::properties() const
{
    const QVariantMap map{
        {QStringLiteral("outerDiameter"), m_outerDiameter},
        {QStringLiteral("innerDiameter"), m_innerDiameter},
        {QStringLiteral("numberSlots"), m_numberSlots},
        {QStringLiteral("type"), middleTypeKey(m_typeMiddleItem)},
        {QStringLiteral("items"), itemsProperties(m_items.mid(0, m_countItems))},
        {QStringLiteral("scriptProps"), m_scriptObject->properties()},
        {QStringLiteral("scriptFile"), m_script},
    };
    qDebug() << "Get Stator::properties:" << map;
    return map;
}

void Stator::setProperties(const QVariantMap &map)
{
    if (map.isEmpty())
        return;
    qDebug() << "Stator::setProperties:" << map;
    if (map.contains(QStringLiteral("outerDiameter")))
        setOuterDiameter(map.value(QStringLiteral("outerDiameter")).toDouble());
    if (map.contains(QStringLiteral("innerDiameter")))
        setInnerDiameter(map.value(QStringLiteral("innerDiameter")).toDouble());
    if (map.contains(QStringLiteral("numberSlots")))
        setNumberSlots(map.value(QStringLiteral("numberSlots")).toInt());
    if (map.contains(QStringLiteral("type")))
        setTypeMiddleItem(middleTypeFromKey(map.value(QStringLiteral("type")).toString()));
    if (map.contains(QStringLiteral("items")))
        setItemsProperties(m_items.mid(0, m_countItems), map.value(QStringLiteral("items")).toList());
}

void Stator::clearCashPieces()
{
    for (StatorItem *item : qAsConst(m_items))
        item->clearCashPieces();
    document()->rotor()->clearCashPieces();
    document()->winding()->dropEndturns();
    document()->resetPieces();
    emit pieceReset();
}

QString Stator::materialErrorText() const
{
    return elementErrorText(materialErrors(),
                            {IronNotFound, WindingNotFound, StatorIronNotAssigned, StatorWindingNotAssigned,
                             CoreFillCoefCount},
                            objectName(), materialErrorMessage);
}

bool Stator::isLower(StatorItem::ID id) const
{
    return id >= StatorItem::ID1 && id <= StatorItem::ID3 && m_items.at(id - 1)->isLower();
}

bool Stator::isMiddle(StatorItem::ID id) const
{
    return id >= StatorItem::ID1 && id <= StatorItem::ID3 && m_items.at(id - 1)->isMiddle();
}

bool Stator::isUpper(StatorItem::ID id) const
{
    return id >= StatorItem::ID1 && id <= StatorItem::ID3 && m_items.at(id - 1)->isUpper();
}

StatorItem *Stator::itemOfAirgap(int index) const
{
    const int id = itemsOfAirgaps[document()->machineType()][index - 1];
    return id > 0 ? m_items.at(id - 1) : nullptr;
}

double Stator::itemAngularDisplacement(int index) const
{
    if (!isAirgapIndex(index))
        return 0.0;
    const StatorItem *item = itemOfAirgap(index);
    return item ? item->angularDisplacement() : 0.0;
}

void Stator::setItemAngularDisplacement(int index, double angle)
{
    if (!isAirgapIndex(index))
        return;
    if (StatorItem *item = itemOfAirgap(index))
        item->setAngularDisplacement(angle);
}

void Stator::variableChanged(const QString &name, const QVariant &value)
{
    qInfo().noquote() << QStringLiteral("Changed %1.%2 = %3 (change from c++)")
                             .arg(m_scriptObject->objectName(), name, value.toString());
    clearCashPieces();
    markGeometryModified(document());
    emit scriptPropertyChanged(name, value);
    emit statorChanged();
}
