#include <QSignalBlocker>
#include <cmath>

#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/MotorItem.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "QmlScripting/ScriptObject.h"
#include "base/StreamChecks.h"

// The blocks of the stator, the rotor and their bodies in a document file.

namespace {

const qint32 elementVersion = 2;
const qint32 itemVersion = 2;

// Values that would send the model past its tables or into endless work mark the
// stream damaged, naming the field; the document then refuses the file as a whole.
bool refuseDamaged(QDataStream &in, const QString &field)
{
    StreamChecks::refuse(in, QStringLiteral("%1 is outside the values a design may have").arg(field));
    return true;
}

// Up to a kilometre: beyond any machine, and far inside what lengths are rounded with.
bool isLength(double value)
{
    return std::isfinite(value) && value >= 0.0 && value <= 1e6;
}

bool isMiddleType(qint32 type)
{
    return type == ElementTypes::Yokeless || type == ElementTypes::Yoke;
}

double readLength(QDataStream &in)
{
    double value = 0.0;
    in >> value;
    // What is no length stays as it is, for the check of the block to find.
    return roundLength(value);
}

template <typename Items>
void saveItems(QDataStream &out, const Items &items)
{
    out << qint32(items.size());
    for (const auto *item : items)
        item->save(out);
}

// The stored count is passed over: an element always has its three bodies.
template <typename Items>
bool loadItems(QDataStream &in, const Items &items)
{
    qint32 storedCount = 0;
    in >> storedCount;
    for (auto *item : items) {
        if (!item->load(in))
            return false;
    }
    return true;
}

// The script's name comes before its values, which go in without announcing each.
template <typename Element>
void loadScript(QDataStream &in, Element &element)
{
    QString script;
    QVariantMap values;
    in >> script;
    element.setScript(script);
    StreamChecks::readVariantMap(in, values);
    if (!values.isEmpty()) {
        const QSignalBlocker blocker(element.scriptObject());
        element.scriptObject()->setProperties(values);
    }
}

template <typename Element>
void settleItems(Element &element)
{
    element.setCountItems(Element::countItemsFor(element.document()->machineType()));
    for (auto *item : element.items())
        item->clearCashPieces();
    element.updateGeometryErrors();
}

} // namespace

void MotorItem::save(QDataStream &out) const
{
    out << itemVersion << m_height << m_angularDisplacement;
}

bool MotorItem::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > itemVersion)
        return false;
    double height = 0.0;
    double angularDisplacement = 0.0;
    in >> height >> angularDisplacement;
    if (version < 2) {
        // The first block form carried a second, unused double.
        double unused = 0.0;
        in >> unused;
    }
    if (in.status() != QDataStream::Ok)
        return true;
    if (!isLength(height))
        return refuseDamaged(in, QStringLiteral("the height %1").arg(height));
    if (!std::isfinite(angularDisplacement))
        return refuseDamaged(in, QStringLiteral("the angular displacement"));
    setHeight(height);
    setAngularDisplacement(angularDisplacement);
    return true;
}

void Stator::save(QDataStream &out) const
{
    out << elementVersion << qint32(m_numberSlots) << innerDiameter() << outerDiameter() << qint32(typeMiddleItem());
    saveItems(out, items());
    out << script() << scriptProperties() << ironStacking() << ironMaterial() << m_windingTemperature
        << m_windingMaterial;
}

bool Stator::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > elementVersion)
        return false;
    qint32 numberSlots = 0;
    in >> numberSlots;
    const double innerDiameter = readLength(in);
    const double outerDiameter = readLength(in);
    qint32 typeMiddleItem = this->typeMiddleItem();
    if (version >= 2)
        in >> typeMiddleItem;
    if (!loadItems(in, items()))
        return false;
    if (in.status() != QDataStream::Ok)
        return true;
    if (numberSlots < Machine::fewestSlots || numberSlots > Machine::mostSlots)
        return refuseDamaged(in, QStringLiteral("the stator's number of slots %1").arg(numberSlots));
    if (!isLength(innerDiameter) || !isLength(outerDiameter))
        return refuseDamaged(in, QStringLiteral("a diameter of the stator"));
    if (!isMiddleType(typeMiddleItem))
        return refuseDamaged(in, QStringLiteral("the stator's type %1").arg(typeMiddleItem));
    setNumberSlots(numberSlots);
    setInnerDiameter(innerDiameter);
    setOuterDiameter(outerDiameter);
    setTypeMiddleItem(MiddleType(typeMiddleItem));

    loadScript(in, *this);
    double ironStacking = 0.0;
    double windingTemperature = 0.0;
    QString ironMaterial;
    QString windingMaterial;
    in >> ironStacking >> ironMaterial >> windingTemperature >> windingMaterial;
    if (in.status() != QDataStream::Ok)
        return true;
    setIronStacking(ironStacking);
    setIronMaterial(ironMaterial);
    setWindingTemperature(windingTemperature);
    setWindingMaterial(windingMaterial);
    settleItems(*this);
    return true;
}

void Rotor::save(QDataStream &out) const
{
    out << elementVersion << qint32(m_numberPolePairs) << innerDiameter() << outerDiameter()
        << qint32(typeMiddleItem()) << qint32(m_poleArrangement);
    saveItems(out, items());
    out << script() << scriptProperties() << ironStacking() << ironMaterial() << m_magnetTemperature
        << m_magnetMaterial << qint32(m_magnetSegmentsRadialDirection) << qint32(m_magnetizations.size());
    for (const Magnetization &magnetization : m_magnetizations)
        out << magnetization;
    out << m_conductorTemperature << m_conductorMaterial;
}

bool Rotor::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > elementVersion)
        return false;
    qint32 numberPolePairs = 0;
    in >> numberPolePairs;
    const double innerDiameter = readLength(in);
    const double outerDiameter = readLength(in);
    qint32 typeMiddleItem = this->typeMiddleItem();
    qint32 poleArrangement = m_poleArrangement;
    if (version >= 2)
        in >> typeMiddleItem >> poleArrangement;
    if (!loadItems(in, items()))
        return false;
    if (in.status() != QDataStream::Ok)
        return true;
    if (numberPolePairs < 1 || numberPolePairs > Machine::mostPolePairs)
        return refuseDamaged(in, QStringLiteral("the rotor's number of pole pairs %1").arg(numberPolePairs));
    if (!isLength(innerDiameter) || !isLength(outerDiameter))
        return refuseDamaged(in, QStringLiteral("a diameter of the rotor"));
    if (!isMiddleType(typeMiddleItem))
        return refuseDamaged(in, QStringLiteral("the rotor's type %1").arg(typeMiddleItem));
    if (poleArrangement < PoleArrangement::Unknown || poleArrangement > PoleArrangement::NNNN)
        return refuseDamaged(in, QStringLiteral("the pole arrangement %1").arg(poleArrangement));
    setNumberPolePairs(numberPolePairs);
    setInnerDiameter(innerDiameter);
    setOuterDiameter(outerDiameter);
    setTypeMiddleItem(MiddleType(typeMiddleItem));
    setPoleArrangement(PoleArrangement::Type(poleArrangement));

    loadScript(in, *this);
    double ironStacking = 0.0;
    double magnetTemperature = 0.0;
    double conductorTemperature = 0.0;
    QString ironMaterial;
    QString magnetMaterial;
    QString conductorMaterial;
    qint32 magnetSegments = 1;
    qint32 count = 0;
    in >> ironStacking >> ironMaterial >> magnetTemperature >> magnetMaterial >> magnetSegments >> count;
    // A magnetization is two enumerators, a point and an angle.
    if (count < 0 || !StreamChecks::countFits(in, quint32(count), 32))
        return true;
    QVector<Magnetization> magnetizations;
    for (qint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        Magnetization magnetization;
        in >> magnetization;
        magnetizations << magnetization;
    }
    in >> conductorTemperature >> conductorMaterial;
    if (in.status() != QDataStream::Ok)
        return true;
    setIronStacking(ironStacking);
    setIronMaterial(ironMaterial);
    setMagnetTemperature(magnetTemperature);
    setMagnetMaterial(magnetMaterial);
    setMagnetSegmentsRadialDirection(magnetSegments);
    setMagnetizations(magnetizations);
    setConductorTemperature(conductorTemperature);
    setConductorMaterial(conductorMaterial);
    settleItems(*this);
    return true;
}
