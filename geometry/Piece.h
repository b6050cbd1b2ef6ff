#pragma once

#include <QFlags>
#include <QList>
#include <QPair>
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
    void setShape(const servoce::shape &shape) { m_shape = shape; }
    QSharedPointer<AbstractMaterial> material() const { return m_material; }
    void setMaterial(const QSharedPointer<AbstractMaterial> &material) { m_material = material; }
    Scope scope() const { return m_scope; }
    void setScope(Scope scope) { m_scope = scope; }
    // The kind of the material; the empty kind without one.
    qint32 kind() const;

    void translate(double dx, double dy, double dz);

private:
    servoce::shape m_shape;
    QSharedPointer<AbstractMaterial> m_material;
    Scope m_scope = Empty;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(Piece::Scopes)
Q_DECLARE_METATYPE(Piece)

// The pieces of a body or a pitch, with the operations that place and order them.
class PieceList : public QList<Piece>
{
public:
    using QList<Piece>::QList;

    // About Z, in radians; a turn of 1e-7 or less is none.
    void rotate(double angle);
    // Along Z; a move of 1e-7 or less is none.
    void moveZ(double z);
    // In the plane z = 0.
    void mirrorXY();
    // By the polar angle of each centre, from 0 up to 360 degrees; equal angles keep their order.
    void sortByAngle();
    // By the height of each centre, then by the polar angle; heights within 1e-7 are equal.
    void sortByHeightAndAngle();
    // Removes the seams of booleans from every shape; slow, see servoce::unify.
    void simplifyShapes();
    PieceList ofKind(qint32 kind) const;
    // The pieces of that kind, taken out of the list; the others keep their order.
    PieceList takeKind(qint32 kind);
    // Smallest and largest distance from the axis over all vertices.
    QPair<double, double> radialRange() const;
};

Q_DECLARE_METATYPE(PieceList)
