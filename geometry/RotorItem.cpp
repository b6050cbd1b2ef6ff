#include "geometry/RotorItem.h"

#include <QDebug>
#include <QtMath>

#include "QmlScripting/ConfigObject.h"
#include "base/ScriptConsole.h"
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

// The magnet layers of the machine that this body's magnets take the pole transform of:
// pairs of (layer, magnet), a magnet of -1 standing for every magnet.
QVector<QPair<int, int>> poleTransformCalls(Machine::Type machine, bool yoke, int id)
{
    switch (machine) {
    case Machine::SRS:
        return {{1, yoke ? 1 : 0}};
    case Machine::SRSRS:
        if (yoke)
            return {{2 * id - 2, 0}, {2 * id - 1, 1}};
        return {{2 * id - 1, 0}};
    case Machine::RSR:
        return {{id - 1, -1}};
    case Machine::RSRSR:
        if (!yoke)
            return id > 1 ? QVector<QPair<int, int>>{{id, -1}} : QVector<QPair<int, int>>{};
        if (id == 2)
            return {{1, 0}, {2, 1}};
        return id == 3 ? QVector<QPair<int, int>>{{3, -1}} : QVector<QPair<int, int>>{};
    case Machine::SR:
    case Machine::UnknownType:
        break;
    }
    return {};
}

QString listText(const QVector<double> &values)
{
    QStringList texts;
    for (double value : values)
        texts << QString::number(value);
    return texts.join(QStringLiteral(", "));
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

PieceList RotorItem::transformedMagnets(PieceList magnets) const
{
    const bool yoke = rotor()->typeMiddleItem() == MotorElement::Yoke;
    // A yokeless middle body holds one magnet through both faces.
    if (isMiddle() && !yoke)
        magnets = BodyPieces::joinedPairs(magnets, false);
    if (magnets.size() > 1)
        magnets.sortByHeightAndAngle();
    for (Piece &magnet : magnets)
        magnet.setShape(BodyPieces::fusedSolids(magnet.shape()));
    for (const QPair<int, int> &call : poleTransformCalls(document()->machineType(), yoke, id())) {
        for (int k = 0; k < magnets.size(); ++k) {
            if (call.second != -1 && call.second != k)
                continue;
            QSharedPointer<AbstractMaterial> material = magnets.at(k).material()->clone();
            if (auto *magnet = dynamic_cast<MagnetMaterial *>(material.data()))
                document()->config()->applyPoleTransform(call.first, *magnet);
            magnets[k].setMaterial(material);
        }
    }
    magnets.simplifyShapes();
    return magnets;
}

void RotorItem::checkMagnetSegments(const PieceList &magnets) const
{
    const int expected = rotor()->magnetSegmentsRadialDirection() - 1;
    for (const Piece &piece : magnets) {
        const auto *magnet = dynamic_cast<const MagnetMaterial *>(piece.material().data());
        if (magnet && magnet->segmentRadiuses().size() != expected) {
            rotor()->console()->warn(tr("Magnet of rotor item %1 with Rmagnetsegments[%2] must has size %3")
                                         .arg(id())
                                         .arg(listText(magnet->segmentRadiuses()))
                                         .arg(expected));
        }
    }
}

PieceList RotorItem::builtBody(const PieceList &base)
{
    BodyPieces::Placement where = placement(true);
    where.keptKind = AbstractMaterial::MagnetKind;
    PieceList pole = BodyPieces::placed(base, where);
    const PieceList poleMagnets = transformedMagnets(pole.takeKind(AbstractMaterial::MagnetKind));
    checkMagnetSegments(poleMagnets);
    pole << poleMagnets;
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
    others << BodyPieces::joinedAtPoleBorders(magnets);
    return others;
}
