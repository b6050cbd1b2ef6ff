#include "document/RatedData.h"

#include "base/Assign.h"
#include "document/Document.h"

namespace {

const qint32 streamVersion = 1;

} // namespace

RatedData::RatedData(Document *document)
    : QObject(document)
    , m_document(document)
{
    setObjectName(QStringLiteral("ratedData"));
}

template <typename Signal>
void RatedData::assign(double &field, double value, Signal signal)
{
    if (!assignChanged(field, value))
        return;
    (this->*signal)(value);
    emit changed();
}

void RatedData::setSupplyCurrent(double value)
{
    assign(m_supplyCurrent, value, &RatedData::supplyCurrentChanged);
}

void RatedData::setElectricalPower(double value)
{
    assign(m_electricalPower, value, &RatedData::electricalPowerChanged);
}

void RatedData::setSpeed(double value)
{
    assign(m_speed, value, &RatedData::speedChanged);
}

void RatedData::setMomentInertia(double value)
{
    assign(m_momentInertia, value, &RatedData::momentInertiaChanged);
}

void RatedData::save(QDataStream &out) const
{
    out << streamVersion << m_supplyCurrent << m_electricalPower << m_speed << m_momentInertia;
}

bool RatedData::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > streamVersion)
        return false;
    double supplyCurrent = 0.0;
    double electricalPower = 0.0;
    double speed = 0.0;
    double momentInertia = 0.0;
    in >> supplyCurrent >> electricalPower >> speed >> momentInertia;
    if (in.status() == QDataStream::Ok) {
        setSupplyCurrent(supplyCurrent);
        setElectricalPower(electricalPower);
        setSpeed(speed);
        setMomentInertia(momentInertia);
    }
    return true;
}
