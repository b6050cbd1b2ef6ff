#include "geometry/StatorItem.h"

#include "document/Document.h"
#include "geometry/Stator.h"

StatorItem::StatorItem(Stator *stator, ID id)
    : MotorItem(stator, id)
{
}

Stator *StatorItem::stator() const
{
    return static_cast<Stator *>(element());
}

bool StatorItem::isUpper() const
{
    const Machine::Type machine = document()->machineType();
    return (machine == Machine::SRS && id() == ID2) || (machine == Machine::SRSRS && id() == ID3);
}

bool StatorItem::isMiddle() const
{
    switch (document()->machineType()) {
    case Machine::RSR:
        return id() == ID1;
    case Machine::SRSRS:
        return id() == ID2;
    case Machine::RSRSR:
        return true;
    default:
        return false;
    }
}

bool StatorItem::isLower() const
{
    const Machine::Type machine = document()->machineType();
    return id() == ID1 && (machine == Machine::SR || machine == Machine::SRS || machine == Machine::SRSRS);
}

Airgap *StatorItem::gapBelow() const
{
    return document()->airgapOfStatorItem(id(), 1);
}
