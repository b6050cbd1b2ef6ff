#include "geometry/Piece.h"

#include <QtMath>
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "base/Numeric.h"
#include "base/Tbb.h"
#include "geometry/servoce/unify.h"
#include "materials/AbstractMaterial.h"

namespace {

constexpr double negligible = Numeric::zeroTolerance;

// Polar angle of a centre in degrees, 0 up to 360; an angle that rounds to a full turn is 0.
double polarAngle(const servoce::point3 &c)
{
    double degrees = qRadiansToDegrees(std::atan2(c.y, c.x));
    if (degrees < 0.0)
        degrees += 360.0;
    return qFuzzyCompare(degrees, 360.0) ? 0.0 : degrees;
}

struct SortKey {
    double height;
    double angle;
};

// The centre of each piece, measured once and on all cores: a centre is a volume
// integration, far too dear to repeat inside a comparison.
QVector<SortKey> sortKeys(const PieceList &pieces)
{
    QVector<SortKey> keys(pieces.size());
    tbb::parallel_for(0, int(pieces.size()), [&](int i) {
        const servoce::point3 c = pieces.at(i).shape().center();
        keys[i] = {c.z, polarAngle(c)};
    });
    return keys;
}

template <typename Less>
void sortByKeys(PieceList &pieces, Less less)
{
    const QVector<SortKey> keys = sortKeys(pieces);
    std::vector<int> order(size_t(pieces.size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return less(keys.at(a), keys.at(b)); });
    PieceList sorted;
    sorted.reserve(pieces.size());
    for (int i : order)
        sorted << pieces.at(i);
    pieces = sorted;
}

void transformAll(PieceList &pieces, const servoce::transformation &trsf)
{
    for (Piece &piece : pieces)
        piece.setShape(piece.shape().transformed(trsf));
}

} // namespace

Piece::Piece(const servoce::shape &shape, const QSharedPointer<AbstractMaterial> &material, Scope scope)
    : m_shape(shape)
    , m_material(material)
    , m_scope(scope)
{
}

void Piece::translate(double dx, double dy, double dz)
{
    m_shape = m_shape.translated(dx, dy, dz);
}

qint32 Piece::kind() const
{
    return m_material ? m_material->kind() : AbstractMaterial::EmptyKind;
}

void PieceList::rotate(double angle)
{
    if (std::abs(angle) > negligible)
        transformAll(*this, servoce::rotateZ(angle));
}

void PieceList::moveZ(double z)
{
    if (std::abs(z) > negligible)
        transformAll(*this, servoce::translate(0.0, 0.0, z));
}

void PieceList::mirrorXY()
{
    transformAll(*this, servoce::mirrorXY());
}

void PieceList::sortByAngle()
{
    sortByKeys(*this, [](const SortKey &a, const SortKey &b) { return a.angle < b.angle; });
}

void PieceList::sortByHeightAndAngle()
{
    sortByKeys(*this, [](const SortKey &a, const SortKey &b) {
        if (std::abs(a.height - b.height) > negligible)
            return a.height < b.height;
        return a.angle < b.angle;
    });
}

void PieceList::simplifyShapes()
{
    for (Piece &piece : *this)
        piece.setShape(servoce::unify(piece.shape()));
}

PieceList PieceList::ofKind(qint32 kind) const
{
    PieceList pieces;
    std::copy_if(begin(), end(), std::back_inserter(pieces),
                 [kind](const Piece &piece) { return piece.kind() == kind; });
    return pieces;
}

PieceList PieceList::takeKind(qint32 kind)
{
    PieceList taken = ofKind(kind);
    erase(std::remove_if(begin(), end(), [kind](const Piece &piece) { return piece.kind() == kind; }), end());
    return taken;
}

QPair<double, double> PieceList::radialRange() const
{
    double smallest = std::numeric_limits<double>::max();
    double largest = 0.0;
    for (const Piece &piece : *this) {
        for (const servoce::point3 &vertex : piece.shape().vertices(false)) {
            const double r = std::hypot(vertex.x, vertex.y);
            smallest = std::min(smallest, r);
            largest = std::max(largest, r);
        }
    }
    return {smallest, largest};
}
