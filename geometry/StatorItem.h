#pragma once

#include "geometry/MotorItem.h"

class Stator;

// A stator body: one slot pitch of the stator's script replicated over all slots.
class StatorItem : public MotorItem
{
    Q_OBJECT

public:
    StatorItem(Stator *stator, ID id);

    Stator *stator() const;

    bool isUpper() const override;
    bool isMiddle() const override;
    bool isLower() const override;

signals:
    void areaWindingSlotChanged();

protected:
    Airgap *gapBelow() const override;
    Piece::Scope firstScope() const override;
    bool reusesFirstDrawing() const override;
    QVariantMap scriptGeometry() const override;
    PieceList prepared(PieceList pieces) const override;
    PieceList builtBody(const PieceList &base) const override;
};
