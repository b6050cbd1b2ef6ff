#pragma once

#include <QVector>

#include "geometry/Piece.h"

// The steps that turn a script's drawing of one pitch into a whole body, shared by
// stator and rotor bodies.
namespace BodyPieces {

// A shape of two or more solids becomes one fused shape; any other stays as it is.
servoce::shape fusedSolids(const servoce::shape &shape);

// Where a pitch drawn as a lower body goes in the stack.
struct Placement
{
    bool upper = false;
    bool middle = false;
    double height = 0.0;
    // About the axis, radians.
    double angle = 0.0;
    // A middle body keeps two pieces of this kind apart instead of joining them.
    qint32 keptKind = 0;
    // Whether the joins of a middle body merge continuing faces.
    bool simplifyJoins = false;
    Piece::Scope scope = Piece::Empty;
};

// An upper body is the drawing mirrored onto its top; a middle body is the drawing
// and its mirror joined piece by piece. Every piece gets the body's scope.
PieceList placed(const PieceList &pitch, const Placement &placement);

// The shape turned about the axis by k pitches, for k from 0 to count - 1.
QList<servoce::shape> turnedCopies(const servoce::shape &shape, double pitch, int count);

// Pieces 2i and 2i + 1 become one, with a copy of the first one's material and its scope;
// a last piece without a partner is dropped.
PieceList joinedPairs(const PieceList &pieces, bool simplify);

// Neighbouring parallel magnets of the same field that the script let go of their pole
// border become one body, pair by pair in the order of height and angle; an odd number
// of such magnets leaves all of them apart.
PieceList joinedAtPoleBorders(PieceList magnets);

// Where two pieces of a pitch share volume. A coil side and its end turn may touch.
QVector<servoce::shape> overlapsBetween(const PieceList &pieces);
// What the pieces have outside the sector of the pitch, in degrees, centred on +X,
// between z = 0 and the height.
QVector<servoce::shape> overlapsOutsideSector(const PieceList &pieces, double pitchDegrees, double height);

} // namespace BodyPieces
