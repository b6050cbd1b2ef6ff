#include "geometry/BodyPieces.h"

#include "geometry/servoce/boolops.h"
#include "geometry/servoce/trans.h"
#include "materials/AbstractMaterial.h"

namespace BodyPieces {

servoce::shape fusedSolids(const servoce::shape &shape)
{
    const std::vector<servoce::solid_shape> solids = shape.solids();
    if (solids.size() < 2)
        return shape;
    return servoce::unwrap(servoce::general_fuse(std::vector<servoce::shape>(solids.begin(), solids.end()), true));
}

namespace {

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

QList<servoce::shape> turnedCopies(const servoce::shape &shape, double pitch, int count)
{
    QList<servoce::shape> copies{shape};
    for (int k = 1; k < count; ++k)
        copies << shape.transformed(servoce::rotateZ(k * pitch));
    return copies;
}

} // namespace BodyPieces
