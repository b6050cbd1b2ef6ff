#include "geometry/RotorItem.h"

#include <QDebug>
#include <QtMath>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/unify.h"
#include "materials/MagnetMaterial.h"

namespace {

Magnetization::Direction reversed(Magnetization::Direction direction)
{
    using Direction = Magnetization::Direction;
    switch (direction) {
    case Direction::From:
        return Direction::Toward;
    case Direction::Toward:
        return Direction::From;
    case Direction::CW:
        return Direction::CCW;
    case Direction::CCW:
        return Direction::CW;
    case Direction::Unknown:
        break;
    }
    return Direction::Unknown;
}

// The next pole's magnet: the same material with the opposite sense.
QSharedPointer<AbstractMaterial> nextPoleMaterial(const AbstractMaterial &material)
{
    QSharedPointer<AbstractMaterial> copy = material.clone();
    if (auto *magnet = dynamic_cast<MagnetMaterial *>(copy.data()))
        magnet->direction = reversed(magnet->direction);
    return copy;
}

} // namespace

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

Piece::Scope RotorItem::firstScope() const
{
    return Piece::Rotor1;
}

double RotorItem::pitch() const
{
    return rotor()->poleAngleSpan();
}

bool RotorItem::reusesFirstDrawing() const
{
    return id() != ID1 && !(document()->machineType() == Machine::RSRSR && id() == ID2);
}

QVariantMap RotorItem::scriptGeometry() const
{
    return rotor()->geometry(id());
}

PieceList RotorItem::prepared(PieceList pieces) const
{
    return pieces;
}

PieceList RotorItem::builtBody(const PieceList &base) const
{
    BodyPieces::Placement where = placement(true);
    where.keptKind = AbstractMaterial::MagnetKind;
    const PieceList pole = BodyPieces::placed(base, where);
    const int poles = 2 * rotor()->numberPolePairs();
    const double polePitch = M_PI / rotor()->numberPolePairs();

    PieceList others;
    PieceList magnets;
    for (const Piece &piece : pole) {
        if (piece.shape().is_null()) {
            qCritical() << "shape is null";
            continue;
        }
        const QList<servoce::shape> copies =
            BodyPieces::turnedCopies(servoce::unify(piece.shape()), polePitch, poles);
        if (piece.kind() == AbstractMaterial::MagnetKind) {
            // North and south poles alternate.
            for (int k = 0; k < copies.size(); ++k) {
                const auto material = k % 2 == 0 ? piece.material()->clone() : nextPoleMaterial(*piece.material());
                magnets << Piece(copies.at(k), material, scope());
            }
            continue;
        }
        const servoce::shape body = servoce::makeUnion(copies, false);
        if (!body.is_null())
            others << Piece(body, piece.material()->clone(), scope());
    }
    others << magnets;
    return others;
}
