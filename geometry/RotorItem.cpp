#include "geometry/RotorItem.h"

#include "document/Document.h"
#include "geometry/Rotor.h"

RotorItem::RotorItem(Rotor *rotor, ID id)
    : MotorItem(rotor->document(), rotor)
    , m_rotor(rotor)
    , m_id(id)
{
    setObjectName(QStringLiteral("rotorItem%1").arg(int(id)));
}

QPair<double, double> RotorItem::range() const
{
    return rangeAbove(document()->airgapOfRotorItem(m_id, 1));
}

bool RotorItem::isUpper() const
{
    switch (document()->machineType()) {
    case Machine::SR:
        return m_id == ID1;
    case Machine::RSR:
        return m_id == ID2;
    case Machine::RSRSR:
        return m_id == ID3;
    default:
        return false;
    }
}

bool RotorItem::isMiddle() const
{
    switch (document()->machineType()) {
    case Machine::SRS:
    case Machine::SRSRS:
        return true;
    case Machine::RSRSR:
        return m_id == ID2;
    default:
        return false;
    }
}

bool RotorItem::isLower() const
{
    const Machine::Type machine = document()->machineType();
    return m_id == ID1 && (machine == Machine::RSR || machine == Machine::RSRSR);
}

ScriptConsole *RotorItem::console() const
{
    return m_rotor->console();
}
