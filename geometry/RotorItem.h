#pragma once

#include "geometry/MotorItem.h"

class Rotor;

// A rotor body: one pole pitch of the rotor's script replicated over all poles.
class RotorItem : public MotorItem
{
    Q_OBJECT

public:
    RotorItem(Rotor *rotor, ID id);

    Rotor *rotor() const;

    bool isUpper() const override;
    bool isMiddle() const override;
    bool isLower() const override;

protected:
    Airgap *gapBelow() const override;
    Piece::Scope firstScope() const override;
    double pitch() const override;
    bool reusesFirstDrawing() const override;
    QVariantMap scriptGeometry() const override;
    PieceList prepared(PieceList pieces) const override;
    PieceList builtBody(const PieceList &base) override;

private:
    // The magnets of the pole in their order, with the pole transform of their layer.
    PieceList transformedMagnets(PieceList magnets) const;
    // Each magnet is split radially as the script said.
    void checkMagnetSegments(const PieceList &magnets) const;
};
