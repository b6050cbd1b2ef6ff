#include "document/RatedData.h"

#include "document/Document.h"

RatedData::RatedData(Document *document)
    : QObject(document)
    , m_document(document)
{
    setObjectName(QStringLiteral("ratedData"));
}

template <typename Signal>
void RatedData::assign(double &field, double value, Signal signal)
{
    if (qFuzzyCompare(field, value))
        return;
    field = value;
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
