#include "geometry/MotorElement.h"

#include <QDebug>
#include <algorithm>
#include <QMetaEnum>
#include <QMetaProperty>

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/ScriptObject.h"
#include "base/FileWatcher.h"
#include "document/Document.h"
#include "geometry/DesignChange.h"

MotorElement::MotorElement(ScriptConsole::Scope scope, const QString &name, int countItems, Document *document)
    : CoreMotorElement(document)
    , m_console(new ScriptConsole(scope, this))
    , m_watcher(new FileWatcher(this))
    , m_scriptObject(new ScriptObject(name, this))
    , m_countItems(countItems)
{
    setObjectName(name);
    m_scriptObject->shareLock(m_engineMutex);
    connect(m_scriptObject, &ScriptObject::variableChanged, this, &MotorElement::variableChanged);
    connect(m_watcher, &FileWatcher::fileChanged, this, &MotorElement::scriptFileChanged);
}

// The engine, a member, goes before the element's children: its wrappers of the
// element's console must not outlive it.
MotorElement::~MotorElement() = default;

void MotorElement::setOuterDiameter(double diameter)
{
    diameter = roundLength(diameter);
    if (qFuzzyCompare(m_outerDiameter, diameter))
        return;
    m_outerDiameter = diameter;
    clearCashPieces();
    emit outerDiameterChanged(m_outerDiameter);
    emitElementChanged();
    markGeometryModified(document());
    tellDiametersOutOfOrder();
}

void MotorElement::setInnerDiameter(double diameter)
{
    diameter = roundLength(diameter);
    if (qFuzzyCompare(m_innerDiameter, diameter))
        return;
    m_innerDiameter = diameter;
    clearCashPieces();
    emit innerDiameterChanged(m_innerDiameter);
    emitElementChanged();
    markGeometryModified(document());
    tellDiametersOutOfOrder();
}

void MotorElement::setTypeMiddleItem(MiddleType type)
{
    if (m_typeMiddleItem == type)
        return;
    m_typeMiddleItem = type;
    clearCashPieces();
    emitNotify("typeMiddleItem", m_typeMiddleItem);
    emitElementChanged();
    markGeometryModified(document());
}

void MotorElement::setCountItems(int count)
{
    count = qBound(0, count, m_items.size());
    if (m_countItems == count)
        return;
    m_countItems = count;
    activateItems();
}

QVariantMap MotorElement::scriptProperties() const
{
    return m_scriptObject->properties();
}

void MotorElement::setScriptProperties(const QVariantMap &properties)
{
    m_scriptObject->setProperties(properties);
}

void MotorElement::setIronMaterial(const QString &material)
{
    setMaterialValue("ironMaterial", m_ironMaterial, material);
}

void MotorElement::setIronStacking(double stacking)
{
    setMaterialValue("ironStacking", m_ironStacking, stacking);
}

QVariantMap MotorElement::properties() const
{
    QVariantMap map{
        {QStringLiteral("outerDiameter"), m_outerDiameter},
        {QStringLiteral("innerDiameter"), m_innerDiameter},
        {QStringLiteral("type"), middleTypeKey(m_typeMiddleItem)},
        {QStringLiteral("items"), itemsProperties()},
        {QStringLiteral("scriptProps"), m_scriptObject->properties()},
        {QStringLiteral("scriptFile"), m_script},
        {QStringLiteral("scriptName"), nameScript()},
    };
    map.insert(ownProperties());
    qDebug().nospace() << "Get " << metaObject()->className() << "::properties: " << map;
    return map;
}

void MotorElement::setProperties(const QVariantMap &map)
{
    if (map.isEmpty())
        return;
    qDebug().nospace() << metaObject()->className() << "::setProperties: " << map;
    if (map.contains(QStringLiteral("outerDiameter")))
        setOuterDiameter(map.value(QStringLiteral("outerDiameter")).toDouble());
    if (map.contains(QStringLiteral("innerDiameter")))
        setInnerDiameter(map.value(QStringLiteral("innerDiameter")).toDouble());
    setOwnProperties(map);
    if (map.contains(QStringLiteral("type")))
        setTypeMiddleItem(middleTypeFromKey(map.value(QStringLiteral("type")).toString()));
    if (map.contains(QStringLiteral("items")))
        setItemsProperties(map.value(QStringLiteral("items")).toList());
    if (map.contains(QStringLiteral("scriptFile")))
        setScript(map.value(QStringLiteral("scriptFile")).toString());
    if (map.contains(QStringLiteral("scriptProps")))
        setScriptValues(map);
    updateGeometryErrors();
}

void MotorElement::clearCashPieces()
{
    for (MotorItem *item : qAsConst(m_items))
        item->clearCashPieces();
    clearDependentPieces();
    document()->resetPieces();
    emit pieceReset();
}

void MotorElement::tellDiametersOutOfOrder()
{
    // Told at once, since it needs no build; other errors come with the next build.
    if (m_outerDiameter <= m_innerDiameter)
        updateGeometryErrors();
}

void MotorElement::updateGeometryErrors()
{
    GeometryErrors errors;
    if (m_outerDiameter <= m_innerDiameter) {
        errors |= DiametersOrder;
    } else {
        const QVector<MotorItem *> bodies = activeItems();
        const bool allDrawn = std::all_of(bodies.begin(), bodies.end(),
                                          [](MotorItem *body) { return !body->basePieces().isEmpty(); });
        if (!allDrawn)
            errors |= GeometryEmpty;
        if (std::any_of(bodies.begin(), bodies.end(),
                        [](const MotorItem *body) { return !body->overlapShapes().isEmpty(); }))
            errors |= BodiesOverlap;
    }
    if (errors == m_geometryErrors)
        return;
    m_geometryErrors = errors;
    emit geometryErrorsChanged(m_geometryErrors);
}

QString MotorElement::geometryErrorText() const
{
    return elementErrorText(m_geometryErrors,
                            {DiametersOrder, GeometryEmpty, NotSymmetrical, BodiesOverlap},
                            objectName(), geometryErrorMessage);
}

MotorItem *MotorElement::item(const QJSValue &jsv) const
{
    const int id = jsv.isNumber() ? jsv.toInt() : MotorItem::Empty;
    return id >= MotorItem::ID1 && id <= MotorItem::ID3 ? m_items.at(id - 1) : m_spareItem;
}

bool MotorElement::isLower(MotorItem::ID id) const
{
    return id >= MotorItem::ID1 && id <= MotorItem::ID3 && m_items.at(id - 1)->isLower();
}

bool MotorElement::isMiddle(MotorItem::ID id) const
{
    return id >= MotorItem::ID1 && id <= MotorItem::ID3 && m_items.at(id - 1)->isMiddle();
}

bool MotorElement::isUpper(MotorItem::ID id) const
{
    return id >= MotorItem::ID1 && id <= MotorItem::ID3 && m_items.at(id - 1)->isUpper();
}

double MotorElement::itemAngularDisplacement(int index) const
{
    if (!isAirgapIndex(index))
        return 0.0;
    const MotorItem *item = itemOfAirgap(index);
    return item ? item->angularDisplacement() : 0.0;
}

void MotorElement::setItemAngularDisplacement(int index, double angle)
{
    if (!isAirgapIndex(index))
        return;
    if (MotorItem *item = itemOfAirgap(index))
        item->setAngularDisplacement(angle);
}

void MotorElement::setMaterialValue(const char *property, QString &field, const QString &value)
{
    if (field == value)
        return;
    field = value;
    emitNotify(property, field);
    emit materialsChanged();
}

void MotorElement::setMaterialValue(const char *property, double &field, double value)
{
    if (qFuzzyCompare(field, value))
        return;
    field = value;
    emitNotify(property, field);
    emit materialsChanged();
}

void MotorElement::emitElementChanged()
{
    notifySignal("properties").invoke(this, Qt::DirectConnection);
}

QMetaMethod MotorElement::notifySignal(const char *property) const
{
    const QMetaObject *meta = metaObject();
    return meta->property(meta->indexOfProperty(property)).notifySignal();
}

void MotorElement::variableChanged(const QString &name, const QVariant &value)
{
    qInfo().noquote() << QStringLiteral("Changed %1.%2 = %3 (change from c++)")
                             .arg(m_scriptObject->objectName(), name, value.toString());
    clearCashPieces();
    markGeometryModified(document());
    emit scriptPropertyChanged(name, value);
    emitElementChanged();
}

void MotorElement::activateItems()
{
    for (int i = 0; i < m_items.size(); ++i) {
        m_items.at(i)->blockSignals(i >= m_countItems);
        m_items.at(i)->clearCashPieces();
    }
}

MotorItem *MotorElement::itemOfAirgap(int index) const
{
    const MotorItem::ID id = itemIdOnAirgap(index);
    return id != MotorItem::Empty ? m_items.at(id - 1) : nullptr;
}

QVariantList MotorElement::itemsProperties() const
{
    QVariantList list;
    for (const MotorItem *item : m_items.mid(0, m_countItems)) {
        list << QVariantMap{{QStringLiteral("height"), roundLength(item->height())},
                            {QStringLiteral("angularDisplacement"), item->angularDisplacement()}};
    }
    return list;
}

// A list that doesn't match the active bodies one to one is passed over.
void MotorElement::setItemsProperties(const QVariantList &list)
{
    if (list.size() != m_countItems)
        return;
    for (int i = 0; i < list.size(); ++i) {
        const QVariantMap map = list.at(i).toMap();
        m_items.at(i)->setHeight(map.value(QStringLiteral("height"), 50.0).toDouble());
        m_items.at(i)->setAngularDisplacement(map.value(QStringLiteral("angularDisplacement")).toDouble());
    }
}

bool MotorElement::isAirgapIndex(int index)
{
    if (index >= 1 && index <= 4)
        return true;
    qCritical() << "bad index";
    return false;
}

QString MotorElement::middleTypeKey(MiddleType type)
{
    return QString::fromLatin1(QMetaEnum::fromType<MiddleType>().valueToKey(type));
}

MotorElement::MiddleType MotorElement::middleTypeFromKey(const QString &key)
{
    bool known = false;
    const int type = QMetaEnum::fromType<MiddleType>().keyToValue(key.toLatin1().constData(), &known);
    return known ? MiddleType(type) : Yoke;
}
