#include "geometry/BodyPieces.h"

#include <QtMath>
#include <algorithm>
#include <cmath>

#include "base/Tbb.h"
#include "geometry/servoce/solid.h"

#include "base/Numeric.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/trans.h"
#include "materials/MagnetMaterial.h"

namespace BodyPieces {

servoce::shape fusedSolids(const servoce::shape &shape)
{
    const std::vector<servoce::solid_shape> solids = shape.solids();
    if (solids.size() < 2)
        return shape;
    return servoce::unwrap(servoce::general_fuse(std::vector<servoce::shape>(solids.begin(), solids.end()), true));
}

namespace {

bool boxesMeet(const servoce::boundbox &a, const servoce::boundbox &b)
{
    return a.xmin <= b.xmax && b.xmin <= a.xmax && a.ymin <= b.ymax && b.ymin <= a.ymax && a.zmin <= b.zmax
           && b.zmin <= a.zmax;
}

bool mayTouch(const Piece &a, const Piece &b)
{
    const auto isPair = [](qint32 first, qint32 second) {
        return first == AbstractMaterial::WindingKind && second == AbstractMaterial::EndturnKind;
    };
    return isPair(a.kind(), b.kind()) || isPair(b.kind(), a.kind());
}

QVector<servoce::shape> collected(const tbb::concurrent_vector<servoce::shape> &shapes)
{
    return QVector<servoce::shape>(shapes.begin(), shapes.end());
}

// The drawing and its mirror, joined piece by piece; two pieces of the kept kind stay apart.
PieceList joinedWithMirror(const PieceList &pitch, const Placement &placement)
{
    PieceList mirrored = pitch;
    mirrored.mirrorXY();
    mirrored.moveZ(placement.height);
    PieceList joined;
    for (int i = 0; i < pitch.size(); ++i) {
        const Piece &a = pitch.at(i);
        const Piece &b = mirrored.at(i);
        if (a.kind() == placement.keptKind && b.kind() == placement.keptKind) {
            joined << a << b;
            continue;
        }
        const servoce::shape shape = servoce::make_union(a.shape(), b.shape(), placement.simplifyJoins);
        joined << Piece(shape, a.material() ? a.material()->clone() : nullptr);
    }
    return joined;
}

} // namespace

PieceList placed(const PieceList &pitch, const Placement &placement)
{
    PieceList pieces = pitch;
    if (placement.upper) {
        pieces.mirrorXY();
        pieces.moveZ(placement.height);
    } else if (placement.middle) {
        pieces = joinedWithMirror(pitch, placement);
    }
    pieces.rotate(placement.angle);
    for (Piece &piece : pieces)
        piece.setScope(placement.scope);
    pieces.simplifyShapes();
    return pieces;
}

PieceList joinedPairs(const PieceList &pieces, bool simplify)
{
    PieceList joined;
    for (int i = 0; i + 1 < pieces.size(); i += 2) {
        const Piece &a = pieces.at(i);
        joined << Piece(servoce::make_union(a.shape(), pieces.at(i + 1).shape(), simplify), a.material()->clone(),
                        a.scope());
    }
    return joined;
}

QList<servoce::shape> turnedCopies(const servoce::shape &shape, double pitch, int count)
{
    QList<servoce::shape> copies{shape};
    for (int k = 1; k < count; ++k)
        copies << shape.transformed(servoce::rotateZ(k * pitch));
    return copies;
}

QVector<servoce::shape> overlapsBetween(const PieceList &pieces)
{
    tbb::concurrent_vector<servoce::shape> overlaps;
    tbb::task_group group;
    // Each piece is tested against all before it, as a task of its own.
    for (int last = pieces.size() - 1; last > 0; --last) {
        group.run([&pieces, &overlaps, last] {
            const Piece &removed = pieces.at(last);
            const servoce::boundbox removedBox = removed.shape().bounding_box();
            for (int i = 0; i < last; ++i) {
                const Piece &other = pieces.at(i);
                if (mayTouch(removed, other) || !boxesMeet(removedBox, other.shape().bounding_box()))
                    continue;
                const servoce::shape common = servoce::make_intersect(removed.shape(), other.shape(), true);
                if (!common.is_empty())
                    overlaps.push_back(common);
            }
        });
    }
    group.wait();
    return collected(overlaps);
}

QVector<servoce::shape> overlapsOutsideSector(const PieceList &pieces, double pitchDegrees, double height)
{
    double extent = 0.0;
    for (const Piece &piece : pieces) {
        const servoce::boundbox box = piece.shape().bounding_box();
        extent = std::max({extent, std::abs(box.xmin), std::abs(box.xmax), std::abs(box.ymin), std::abs(box.ymax)});
    }
    const double radius = 1.5 * extent;
    const double sweep = qDegreesToRadians(pitchDegrees > 360.0 ? std::fmod(pitchDegrees, 360.0) : pitchDegrees);
    const servoce::shape sector = servoce::cylinder(radius, height * 1.1, sweep, false)
                                      .transformed(servoce::rotateZ(-sweep / 2))
                                      .translated(0.0, 0.0, -height / 20);
    const servoce::shape outside = servoce::make_difference(servoce::cylinder(radius, height, false), sector, true);

    tbb::concurrent_vector<servoce::shape> overlaps;
    tbb::parallel_for(0, pieces.size(), [&](int i) {
        const servoce::shape part = servoce::make_intersect(pieces.at(i).shape(), outside, true);
        if (!part.is_empty())
            overlaps.push_back(part);
    });
    return collected(overlaps);
}

PieceList joinedAtPoleBorders(PieceList magnets)
{
    magnets.sortByHeightAndAngle();
    const auto joinable = [](const Piece &piece) {
        const auto *magnet = dynamic_cast<const MagnetParallelMaterial *>(piece.material().data());
        return magnet && !magnet->savePoleBorder();
    };
    QVector<int> mergeable;
    for (int i = 0; i < magnets.size(); ++i) {
        if (joinable(magnets.at(i)))
            mergeable << i;
    }
    // Without a partner for every one, none is joined.
    if (mergeable.size() % 2 != 0)
        return magnets;
    QVector<bool> gone(magnets.size(), false);
    for (int i = 0; i + 1 < mergeable.size(); i += 2) {
        Piece &a = magnets[mergeable.at(i)];
        const Piece &b = magnets.at(mergeable.at(i + 1));
        const auto &ma = dynamic_cast<const MagnetMaterial &>(*a.material());
        const auto &mb = dynamic_cast<const MagnetMaterial &>(*b.material());
        if (ma.type != mb.type || !Numeric::isZero(ma.effectiveAngle() - mb.effectiveAngle()))
            continue;
        const servoce::shape joined = servoce::make_union(a.shape(), b.shape(), true);
        if (joined.solids().size() != 1)
            continue;
        a = Piece(joined, a.material()->clone(), a.scope());
        gone[mergeable.at(i + 1)] = true;
    }
    PieceList kept;
    for (int i = 0; i < magnets.size(); ++i) {
        if (!gone.at(i))
            kept << magnets.at(i);
    }
    return kept;
}

} // namespace BodyPieces
