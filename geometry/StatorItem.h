#pragma once

#include "geometry/MotorItem.h"
#include "geometry/SlotSection.h"
#include "geometry/SlotWindingPieces.h"

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

    // Cross-sections of the coil and of the slot, in the script's unit squared; measured
    // on the first body when it is built.
    double areaWindingCoil() const;
    double areaWindingSlot() const;

signals:
    void areaWindingSlotChanged();

protected:
    Airgap *gapBelow() const override;
    Piece::Scope firstScope() const override;
    double pitch() const override;
    bool reusesFirstDrawing() const override;
    QVariantMap scriptGeometry() const override;
    PieceList prepared(PieceList pieces) const override;
    PieceList builtBody(const PieceList &base) override;

private:
    // A tenth beyond the larger of stator and rotor: cutting sectors reach past every body.
    double radiusBeyondBodies() const;
    // A pitch whose only coil lies across its middle is redrawn with a tooth there.
    PieceList withToothInTheMiddle(const PieceList &base) const;
    // The layers of the winding pieces by this body's place and the winding.
    SlotWindingPieces windingNumbering() const;
    // The cross-sections of coil and slot, announced when they change.
    void measureSlot(const PieceList &pitchPieces, const PieceList &body);

    mutable std::mutex m_areaMutex;
    SlotSection m_slotSection;
};
