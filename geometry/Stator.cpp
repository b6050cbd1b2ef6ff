#include "geometry/Stator.h"

#include <QDebug>

#include "QmlScripting/ScriptDescribeList.h"
#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/Rotor.h"
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
    : MotorElement(ScriptConsole::Stator, QStringLiteral("stator"), countItemsFor(document->machineType()), document)
{
    createItems<StatorItem>(this);
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

void Stator::setWindingMaterial(const QString &material)
{
    setMaterialValue("windingMaterial", m_windingMaterial, material);
}

void Stator::setWindingTemperature(double temperature)
{
    setMaterialValue("windingTemperature", m_windingTemperature, temperature);
}

QVariantMap Stator::geometry(int id)
{
    const std::lock_guard locker(engineMutex());
    const QVariantMap result = MotorElement::geometry(objectName(), id);
    if (!result.isEmpty())
        takeSimDomain(result);
    return result;
}

void Stator::takeSimDomain(const QVariantMap &result)
{
    const bool known = !m_simDomainUnknown;
    const auto changed = [this](const QString &field, double value, double previous) {
        console()->warn(
            tr("getGeometry() return '%1=%2' which is not equal to that returned from the previos call (%3)")
                .arg(field, QString::number(value, 'g'), QString::number(previous, 'g')));
    };
    if (result.contains(QStringLiteral("simDomain"))) {
        const SimDomain domain = result.value(QStringLiteral("simDomain")).value<SimDomain>();
        if (known && !qFuzzyCompare(domain.inner, m_simDomain.inner))
            changed(QStringLiteral("simDomain.inner"), domain.inner, m_simDomain.inner);
        if (known && !qFuzzyCompare(domain.outer, m_simDomain.outer))
            changed(QStringLiteral("simDomain.outer"), domain.outer, m_simDomain.outer);
        m_simDomain = domain;
    } else {
        console()->warn(tr("getGeometry() must return field 'simDomain'"));
    }
    if (result.contains(QStringLiteral("simRadialOuterDomain"))) {
        const double outer = result.value(QStringLiteral("simRadialOuterDomain")).toDouble();
        if (known && !qFuzzyCompare(outer, m_simRadialOuterDomain))
            changed(QStringLiteral("simRadialOuterDomain"), outer, m_simRadialOuterDomain);
        m_simRadialOuterDomain = outer;
        m_simDomainUnknown = false;
    } else {
        console()->warn(tr("getGeometry() must return field 'simRadialOuterDomain'"));
    }
}

void Stator::askScriptForDomain() const
{
    // The bodies' pitches call the script, whose results tell the domain.
    for (MotorItem *item : activeItems()) {
        if (!m_simDomainUnknown)
            return;
        item->basePieces();
    }
}

SimDomain Stator::simDomain() const
{
    askScriptForDomain();
    const std::lock_guard locker(engineMutex());
    if (m_simDomainUnknown) {
        qWarning() << "Use default simDomain";
        return SimDomain{innerDiameter() * 0.5, outerDiameter() * 0.5};
    }
    return m_simDomain;
}

double Stator::simRadialOuterDomain() const
{
    askScriptForDomain();
    const std::lock_guard locker(engineMutex());
    if (!m_simDomainUnknown)
        return m_simRadialOuterDomain;
    console()->warn(tr("Use default simRadialOuterDomain"));
    return outerDiameter() * 0.5 * 1.3;
}

QString Stator::materialErrorText() const
{
    return elementErrorText(materialErrors(),
                            {IronNotFound, WindingNotFound, StatorIronNotAssigned, StatorWindingNotAssigned,
                             CoreFillCoefCount},
                            objectName(), materialErrorMessage);
}

const ScriptDescribeList &Stator::catalogue() const
{
    return ScriptDescribeList::stators();
}

QVariantMap Stator::ownProperties() const
{
    return {{QStringLiteral("numberSlots"), m_numberSlots}};
}

void Stator::setOwnProperties(const QVariantMap &map)
{
    if (map.contains(QStringLiteral("numberSlots")))
        setNumberSlots(map.value(QStringLiteral("numberSlots")).toInt());
}

MotorItem::ID Stator::itemIdOnAirgap(int index) const
{
    return MotorItem::ID(itemsOfAirgaps[document()->machineType()][index - 1]);
}

// The rotor's scripts may read the simulation domain, which is the stator's: a stator
// change rebuilds the rotor too.
void Stator::clearDependentPieces()
{
    document()->rotor()->clearCashPieces();
    document()->winding()->dropEndturns();
}
