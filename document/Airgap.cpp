#include "document/Airgap.h"

#include <cmath>

#include "base/Numeric.h"
#include "base/StreamChecks.h"
#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/Rotor.h"
#include "geometry/RotorItem.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "meshing/Mesh.h"
#include "winding/WindingObject.h"

namespace {

const qint32 streamVersion = 1;

} // namespace

Airgap::Airgap(ID id, Document *document)
    : QObject(document)
    , m_id(id)
    , m_document(document)
{
    setObjectName(QStringLiteral("airgap%1").arg(int(id)));
    m_errors = computeErrors();
}

Airgap *Airgap::master() const
{
    return m_document->airgap(ID1);
}

void Airgap::setThickness(const double &thickness)
{
    if (m_id != ID1) {
        Airgap *first = master();
        first->setThickness(thickness);
        m_thickness = first->thickness();
        return;
    }
    const double rounded = roundLength(thickness);
    if (qFuzzyCompare(rounded, m_thickness))
        return;
    m_thickness = rounded;
    for (int id = ID2; id <= ID4; ++id)
        m_document->airgap(id)->setThickness(rounded);

    // A thickness only moves bodies apart: generated end turns stay valid.
    WindingObject *winding = m_document->winding();
    const bool endturnsGenerated = winding->isEndturnShapeGenerated();
    m_document->stator()->clearCashPieces();
    m_document->rotor()->clearCashPieces();
    m_document->resetPieces();
    winding->setEndturnShapeGenerated(endturnsGenerated);

    m_document->mesh()->setMeshModified(true);
    m_document->setModified(true);
    emit thicknessChanged(m_thickness);
    emit airgapChanged();
}

int Airgap::correctedNumberLayers(int numberLayers)
{
    const int limited = qMin(numberLayers, 9);
    if (limited <= 3)
        return 3;
    return limited % 2 == 0 ? limited + 1 : limited;
}

void Airgap::setNumberLayers(const int &numberLayers)
{
    if (m_id != ID1) {
        Airgap *first = master();
        first->setNumberLayers(numberLayers);
        m_numberLayers = first->numberLayers();
        return;
    }
    const int corrected = correctedNumberLayers(numberLayers);
    // A corrected request goes on even without a change, so that an editor
    // that shows the wrong number gets the signal.
    if (numberLayers == corrected && m_numberLayers == corrected)
        return;
    m_numberLayers = corrected;
    for (int id = ID2; id <= ID4; ++id)
        m_document->airgap(id)->setNumberLayers(corrected);

    m_document->mesh()->setMeshModified(true);
    m_document->setModified(true);
    emit numberLayersChanged(m_numberLayers);
    emit airgapChanged();
}

double Airgap::posBottom() const
{
    const Stator *stator = m_document->stator();
    const Rotor *rotor = m_document->rotor();
    auto statorHeight = [stator](int index) { return stator->items().at(index)->height(); };
    auto rotorHeight = [rotor](int index) { return rotor->items().at(index)->height(); };
    auto gap = [this](int id) { return m_document->airgap(id)->thickness(); };

    QVector<double> groups;
    switch (m_document->machineType()) {
    case Machine::SR:
    case Machine::SRS:
    case Machine::SRSRS:
        groups = {statorHeight(0), gap(ID1) + rotorHeight(0), gap(ID2) + statorHeight(1), gap(ID3) + rotorHeight(1)};
        break;
    case Machine::RSR:
    case Machine::RSRSR:
        groups = {rotorHeight(0), gap(ID1) + statorHeight(0), gap(ID2) + rotorHeight(1), gap(ID3) + statorHeight(1)};
        break;
    case Machine::UnknownType:
        return 0.0;
    }
    double position = 0.0;
    for (int k = 0; k < int(m_id); ++k)
        position += groups.at(k);
    return position;
}

double Airgap::posTop() const
{
    return posBottom() + m_thickness;
}

double Airgap::posMiddle() const
{
    return (posBottom() + posTop()) / 2.0;
}

GeometryErrors Airgap::computeErrors() const
{
    return Numeric::isZero(m_thickness) ? GeometryErrors(CoreMotorElement::ThicknessZero) : GeometryErrors();
}

void Airgap::checkErrors()
{
    const GeometryErrors errors = computeErrors();
    if (errors == m_errors)
        return;
    m_errors = errors;
    emit geometryErrorsChanged(m_errors);
}

QString Airgap::elementErrors() const
{
    return elementErrorText(m_errors, {CoreMotorElement::ThicknessZero}, objectName(), geometryErrorMessage);
}

void Airgap::save(QDataStream &out) const
{
    out << streamVersion << m_thickness << qint32(m_numberLayers);
}

bool Airgap::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > streamVersion)
        return false;
    double thickness = 0.0;
    qint32 numberLayers = 0;
    in >> thickness >> numberLayers;
    if (in.status() == QDataStream::Ok && !(std::isfinite(thickness) && thickness >= 0.0 && thickness <= 1e6))
        StreamChecks::refuse(in, QStringLiteral("the thickness %1 of an air gap").arg(thickness));
    if (in.status() == QDataStream::Ok) {
        setThickness(roundLength(thickness));
        setNumberLayers(numberLayers);
    }
    return true;
}
