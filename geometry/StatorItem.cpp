#include "geometry/StatorItem.h"

#include <QDebug>
#include <QtMath>
#include <algorithm>
#include <optional>
#include <vector>

#include "base/Numeric.h"
#include "base/ScriptConsole.h"
#include "base/Tbb.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/SlotWindingPieces.h"
#include "geometry/Stator.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/solid.h"
#include "materials/AbstractMaterial.h"
#include "winding/WindingObject.h"

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
    const PieceList taken = pieces.takeKind(kind);
    if (taken.isEmpty())
        return;
    QList<servoce::shape> shapes;
    for (const Piece &piece : taken)
        shapes << piece.shape();
    pieces << Piece(servoce::makeUnion(shapes, true), taken.first().material()->clone(), taken.first().scope());
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

double StatorItem::pitch() const
{
    return stator()->slotAngleSpan();
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
    for (const Piece &general : pieces.takeKind(AbstractMaterial::GeneralKind)) {
        for (const servoce::shape &body : bodiesOf(general.shape()))
            pieces << Piece(body, general.material()->clone(), general.scope());
    }
    for (Piece &piece : pieces)
        piece.setShape(BodyPieces::fusedSolids(piece.shape()));
    fuseKind(pieces, AbstractMaterial::IronKind);
    return pieces;
}

double StatorItem::radiusBeyondBodies() const
{
    return 1.1 * std::max(stator()->outerDiameter(), document()->rotor()->outerDiameter()) * 0.5;
}

PieceList StatorItem::withToothInTheMiddle(const PieceList &base) const
{
    const PieceList windings = base.ofKind(AbstractMaterial::WindingKind);
    if (windings.size() != 1)
        return base;
    const double y = windings.first().shape().center().y;
    const double delta = stator()->slotAngleSpan() / 20.0;
    const bool onTheAxis = (y > -delta || qFuzzyCompare(y, -delta)) && y < delta;
    if (!onTheAxis)
        return base;

    // The coil lies across the pitch's middle: the pitch is cut there, and its halves
    // change places, so that the coil's halves lie at the pitch's edges.
    const double half = qDegreesToRadians(stator()->slotAngleSpan()) / 2.0;
    const double radius = radiusBeyondBodies();
    const servoce::shape sector = servoce::cylinder(radius, height(), half, false);
    PieceList pieces = base;
    tbb::parallel_for(0, pieces.size(), [&](int i) {
        const servoce::shape cut = servoce::make_intersect(pieces.at(i).shape(), sector, false);
        if (!cut.is_empty())
            pieces[i].setShape(cut);
    });
    pieces.rotate(-half);
    PieceList mirrored;
    for (const Piece &piece : qAsConst(pieces))
        mirrored << Piece(piece.shape().transformed(servoce::mirrorXZ()), piece.material()->clone(), piece.scope());
    pieces << mirrored;

    // Winding pieces stay apart; the halves of every other kind become one piece again.
    QList<qint32> kinds;
    for (const Piece &piece : qAsConst(pieces)) {
        if (piece.kind() != AbstractMaterial::WindingKind && !kinds.contains(piece.kind()))
            kinds << piece.kind();
    }
    for (qint32 kind : qAsConst(kinds))
        fuseKind(pieces, kind);
    return pieces;
}

SlotWindingPieces StatorItem::windingNumbering() const
{
    const WindingObject *winding = document()->winding();
    SlotWindingPieces::Build build;
    build.machine = document()->machineType();
    build.id = id();
    build.middle = isMiddle();
    build.middleType = stator()->typeMiddleItem();
    build.numberLayers = winding->numberLayers();
    build.orientation = winding->layersOrientation();
    build.windingType = winding->type();
    build.displacement = qDegreesToRadians(relativeDisplacement());
    return SlotWindingPieces(build, [this](const QString &message) {
        qCritical().noquote() << message;
        stator()->console()->error(message);
    });
}

PieceList StatorItem::builtBody(const PieceList &base)
{
    BodyPieces::Placement where = placement(true);
    where.keptKind = AbstractMaterial::WindingKind;
    where.simplifyJoins = true;
    const SlotWindingPieces numbering = windingNumbering();
    PieceList pitch = BodyPieces::placed(withToothInTheMiddle(base), where);
    pitch << numbering.numberedPitch(pitch.takeKind(AbstractMaterial::WindingKind));
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
    PieceList bodyWindings;
    for (const PieceList &slotWindings : windings)
        bodyWindings << slotWindings;
    body << numbering.numberedBody(bodyWindings, slotCount);
    if (id() == ID1)
        measureSlot(pitch, body);
    return body;
}

void StatorItem::measureSlot(const PieceList &pitchPieces, const PieceList &body)
{
    const double radius = radiusBeyondBodies();
    const SlotSection section =
        SlotSection::across(pitchPieces.ofKind(AbstractMaterial::WindingKind), body, qDegreesToRadians(pitch()),
                            qDegreesToRadians(relativeDisplacement()), radius, height());
    bool changed = false;
    {
        const std::lock_guard locker(m_areaMutex);
        changed = !Numeric::isZero(section.coilArea - m_slotSection.coilArea)
                  || !Numeric::isZero(section.slotArea - m_slotSection.slotArea);
        m_slotSection = section;
    }
    if (changed)
        emit areaWindingSlotChanged();
}

double StatorItem::areaWindingCoil() const
{
    const std::lock_guard locker(m_areaMutex);
    return m_slotSection.coilArea;
}

double StatorItem::areaWindingSlot() const
{
    const std::lock_guard locker(m_areaMutex);
    return m_slotSection.slotArea;
}
