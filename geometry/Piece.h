#pragma once

#include <QFlags>
#include <QList>
#include <QMetaType>
#include <QSharedPointer>

#include "geometry/servoce/shape.h"

class AbstractMaterial;

// A solid of the machine with the role it plays and the body it belongs to.
class Piece
{
    Q_GADGET
public:
    enum Scope {
        Empty = 0,
        Stator1 = 1,
        Stator2 = 2,
        Stator3 = 4,
        Rotor1 = 16,
        Rotor2 = 32,
        Rotor3 = 64,
        Airgap1 = 65536,
        Airgap2 = 131072,
        Airgap3 = 262144,
        Airgap4 = 524288,
        StatorMask = Stator1 | Stator2 | Stator3,
        StatorAny = StatorMask,
        RotorMask = Rotor1 | Rotor2 | Rotor3,
        RotorAny = RotorMask,
        AirgapMask = Airgap1 | Airgap2 | Airgap3 | Airgap4,
        AirgapAny = AirgapMask,
    };
    Q_DECLARE_FLAGS(Scopes, Scope)
    Q_FLAG(Scopes)

    Piece() = default;
    Piece(const servoce::shape &shape, const QSharedPointer<AbstractMaterial> &material, Scope scope = Empty);

    const servoce::shape &shape() const { return m_shape; }
    QSharedPointer<AbstractMaterial> material() const { return m_material; }
    Scope scope() const { return m_scope; }

    void translate(double dx, double dy, double dz);

private:
    servoce::shape m_shape;
    QSharedPointer<AbstractMaterial> m_material;
    Scope m_scope = Empty;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(Piece::Scopes)
Q_DECLARE_METATYPE(Piece)

class PieceList : public QList<Piece>
{
public:
    using QList<Piece>::QList;
};

Q_DECLARE_METATYPE(PieceList)
