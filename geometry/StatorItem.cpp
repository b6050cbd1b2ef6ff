#include "geometry/StatorItem.h"

#include <QDebug>
#include <QtMath>
#include <optional>
#include <vector>

#include "document/Document.h"
#include "document/Tbb.h"
#include "geometry/Stator.h"
#include "geometry/servoce/boolops.h"
#include "materials/AbstractMaterial.h"

namespace {

// A compound of general bodies holds several bodies: each becomes a piece of its own.
QList<servoce::shape> bodiesOf(const servoce::shape &shape)
{
    constexpr int compound = 0;
    constexpr int compsolid = 1;
    const int type = shape.shape_type();
    if (type != compound && type != compsolid)
        return {shape};
    QList<servoce::shape> bodies;
    for (const servoce::solid_shape &solid : shape.solids())
        bodies << solid;
    return bodies;
}

// Pieces of one kind taken out of the list and fused into one, with the first one's material.
void fuseKind(PieceList &pieces, qint32 kind)
{
    QList<servoce::shape> shapes;
    QSharedPointer<AbstractMaterial> material;
    Piece::Scope scope = Piece::Empty;
    for (auto it = pieces.begin(); it != pieces.end();) {
        if (it->kind() != kind) {
            ++it;
            continue;
        }
        if (shapes.isEmpty()) {
            material = it->material()->clone();
            scope = it->scope();
        }
        shapes << it->shape();
        it = pieces.erase(it);
    }
    if (!shapes.isEmpty())
        pieces << Piece(servoce::makeUnion(shapes, true), material, scope);
}

} // namespace

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

Piece::Scope StatorItem::firstScope() const
{
    return Piece::Stator1;
}

bool StatorItem::reusesFirstDrawing() const
{
    return id() != ID1 && !(document()->machineType() == Machine::SRSRS && id() == ID2);
}

QVariantMap StatorItem::scriptGeometry() const
{
    return stator()->geometry(id());
}

PieceList StatorItem::prepared(PieceList pieces) const
{
    PieceList bodies;
    for (auto it = pieces.begin(); it != pieces.end();) {
        if (it->kind() != AbstractMaterial::GeneralKind) {
            ++it;
            continue;
        }
        for (const servoce::shape &body : bodiesOf(it->shape()))
            bodies << Piece(body, it->material()->clone(), it->scope());
        it = pieces.erase(it);
    }
    pieces << bodies;
    for (Piece &piece : pieces)
        piece.setShape(BodyPieces::fusedSolids(piece.shape()));
    fuseKind(pieces, AbstractMaterial::IronKind);
    return pieces;
}

PieceList StatorItem::builtBody(const PieceList &base) const
{
    BodyPieces::Placement where = placement(true);
    where.keptKind = AbstractMaterial::WindingKind;
    where.simplifyJoins = true;
    const PieceList pitch = BodyPieces::placed(base, where);
    const int slotCount = stator()->numberSlots();
    const double slotPitch = 2.0 * M_PI / slotCount;

    // Winding pieces stay one per slot, since they are numbered; everything else is
    // fused once for the whole body. Results go by index, so that the order is the pitch's.
    std::vector<PieceList> windings(size_t(pitch.size()));
    std::vector<std::optional<Piece>> others(size_t(pitch.size()));
    tbb::parallel_for(0, pitch.size(), [&](int i) {
        const Piece &piece = pitch.at(i);
        if (piece.shape().is_null()) {
            qCritical() << "shape is null";
            return;
        }
        const QList<servoce::shape> copies = BodyPieces::turnedCopies(piece.shape(), slotPitch, slotCount);
        if (piece.kind() == AbstractMaterial::WindingKind) {
            for (const servoce::shape &copy : copies)
                windings[size_t(i)] << Piece(copy, piece.material()->clone(), scope());
            return;
        }
        servoce::shape body = servoce::unwrap(servoce::general_fuse(copies.toVector().toStdVector(), true));
        if (body.is_empty())
            body = servoce::make_compound(copies.toVector().toStdVector());
        others[size_t(i)] = Piece(body, piece.material(), scope());
    });

    PieceList body;
    for (const std::optional<Piece> &piece : others) {
        if (piece)
            body << *piece;
    }
    fuseKind(body, AbstractMaterial::GeneralKind);
    for (const PieceList &slotWindings : windings)
        body << slotWindings;
    return body;
}
