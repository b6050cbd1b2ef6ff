#include "geometry/StatorItem.h"

#include "document/Document.h"
#include "geometry/Stator.h"

StatorItem::StatorItem(Stator *stator, ID id)
    : MotorItem(stator->document(), stator)
    , m_stator(stator)
    , m_id(id)
{
    setObjectName(QStringLiteral("statorItem%1").arg(int(id)));
}

QPair<double, double> StatorItem::range() const
{
    return rangeAbove(document()->airgapOfStatorItem(m_id, 1));
}

bool StatorItem::isUpper() const
{
    const Machine::Type machine = document()->machineType();
    return (machine == Machine::SRS && m_id == ID2) || (machine == Machine::SRSRS && m_id == ID3);
}

bool StatorItem::isMiddle() const
{
    switch (document()->machineType()) {
    case Machine::RSR:
        return m_id == ID1;
    case Machine::SRSRS:
        return m_id == ID2;
    case Machine::RSRSR:
        return true;
    default:
        return false;
    }
}

bool StatorItem::isLower() const
{
    const Machine::Type machine = document()->machineType();
    return m_id == ID1 && (machine == Machine::SR || machine == Machine::SRS || machine == Machine::SRSRS);
}

ScriptConsole *StatorItem::console() const
{
    return m_stator->console();
}
