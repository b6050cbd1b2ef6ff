#include "geometry/RotorItem.h"

#include "document/Document.h"
#include "geometry/Rotor.h"

RotorItem::RotorItem(Rotor *rotor, ID id)
    : MotorItem(rotor, id)
{
}

Rotor *RotorItem::rotor() const
{
    return static_cast<Rotor *>(element());
}

bool RotorItem::isUpper() const
{
    switch (document()->machineType()) {
    case Machine::SR:
        return id() == ID1;
    case Machine::RSR:
        return id() == ID2;
    case Machine::RSRSR:
        return id() == ID3;
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
        return id() == ID2;
    default:
        return false;
    }
}

bool RotorItem::isLower() const
{
    const Machine::Type machine = document()->machineType();
    return id() == ID1 && (machine == Machine::RSR || machine == Machine::RSRSR);
}

Airgap *RotorItem::gapBelow() const
{
    return document()->airgapOfRotorItem(id(), 1);
}
