#include "geometry/Rotor.h"

#include "QmlScripting/ScriptDescribeList.h"
#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/Stator.h"

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
    : MotorElement(ScriptConsole::Rotor, QStringLiteral("rotor"), countItemsFor(document->machineType()), document)
{
    createItems<RotorItem>(this);
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

void Rotor::setMagnetMaterial(const QString &material)
{
    setMaterialValue("magnetMaterial", m_magnetMaterial, material);
}

void Rotor::setMagnetTemperature(double temperature)
{
    setMaterialValue("magnetTemperature", m_magnetTemperature, temperature);
}

void Rotor::setMagnetizations(const QVector<Magnetization> &magnetizations)
{
    m_magnetizations = magnetizations;
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
    setMaterialValue("conductorMaterial", m_conductorMaterial, material);
}

void Rotor::setConductorTemperature(double temperature)
{
    setMaterialValue("conductorTemperature", m_conductorTemperature, temperature);
}

QVariantMap Rotor::geometry(int id)
{
    const std::lock_guard locker(engineMutex());
    const QVariantMap result = MotorElement::geometry(objectName(), id);
    if (result.isEmpty())
        return result;
    if (result.contains(QStringLiteral("coefs3D")))
        m_coefs3D = result.value(QStringLiteral("coefs3D"));
    else
        console()->warn(tr("Geometry script of rotor item %1 is not return 'coefs3D'").arg(id));
    if (result.contains(QStringLiteral("Nmagnetsegments")))
        setMagnetSegmentsRadialDirection(result.value(QStringLiteral("Nmagnetsegments")).toInt());
    else
        console()->warn(tr("Geometry script of rotor item %1 is not return 'Nmagnetsegments'").arg(id));
    return result;
}

SimDomain Rotor::simDomain() const
{
    return document()->stator()->simDomain();
}

double Rotor::simRadialOuterDomain() const
{
    return document()->stator()->simRadialOuterDomain();
}

QString Rotor::materialErrorText() const
{
    return elementErrorText(materialErrors(),
                            {IronNotFound, MagnetNotFound, RotorIronNotAssigned, RotorMagnetNotAssigned,
                             RotorConductorNotAssigned, CoreFillCoefCount},
                            objectName(), materialErrorMessage);
}

const ScriptDescribeList &Rotor::catalogue() const
{
    return ScriptDescribeList::rotors();
}

QVariantMap Rotor::ownProperties() const
{
    return {
        {QStringLiteral("numberPolePairs"), m_numberPolePairs},
        {QStringLiteral("poleArrangement"), PoleArrangement::text(m_poleArrangement)},
    };
}

void Rotor::setOwnProperties(const QVariantMap &map)
{
    if (map.contains(QStringLiteral("numberPolePairs")))
        setNumberPolePairs(map.value(QStringLiteral("numberPolePairs")).toInt());
    if (map.contains(QStringLiteral("poleArrangement")))
        setPoleArrangement(PoleArrangement::fromText(map.value(QStringLiteral("poleArrangement")).toString()));
}

MotorItem::ID Rotor::itemIdOnAirgap(int index) const
{
    return MotorItem::ID(itemsOfAirgaps[document()->machineType()][index - 1]);
}
