#include "meshing/ShapeList.h"
#include "base/Numeric.h"
#include "base/Tbb.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/solid.h"

#include <cmath>
#include <vector>

namespace {

template <typename Transform>
ShapeList transformedEach(const ShapeList &shapes, Transform transform)
{
    ShapeList result;
    result.reserve(shapes.size());
    for (const servoce::shape &shape : shapes)
        result.append(transform(shape));
    return result;
}

} // namespace

ShapeList ShapeList::translatedZ(double z) const
{
    if (isEmpty() || Numeric::isZero(z))
        return *this;
    return transformedEach(*this, [z](const servoce::shape &shape) { return shape.translated(0.0, 0.0, z); });
}

ShapeList ShapeList::rotatedZ(double angle) const
{
    if (isEmpty() || Numeric::isZero(angle))
        return *this;
    const servoce::transformation rotation = servoce::rotateZ(angle);
    return transformedEach(*this, [&rotation](const servoce::shape &shape) { return shape.transformed(rotation); });
}

servoce::shape ShapeList::toCompound() const
{
    return servoce::make_compound(std::vector<servoce::shape>(begin(), end()));
}

ShapeList ShapeList::of(const PieceList &pieces)
{
    ShapeList shapes;
    shapes.reserve(pieces.size());
    for (const Piece &piece : pieces)
        shapes.append(piece.shape());
    return shapes;
}

ShapeList ShapeList::cutToSector(double radius, double bottom, double top, double from, double sweep) const
{
    // Taller than asked, so that no face of the sector lies on a face of a shape.
    const double margin = 1.0;
    const servoce::shape sector = servoce::cylinder(radius, top - bottom + 2 * margin, sweep, false)
                                      .transformed(servoce::rotateZ(from))
                                      .translated(0.0, 0.0, bottom - margin);
    std::vector<servoce::shape> cut(cbegin(), cend());
    tbb::parallel_for(std::size_t(0), cut.size(),
                      [&cut, &sector](std::size_t i) { cut[i] = servoce::make_intersect(cut[i], sector, false); });
    return ShapeList(cut.cbegin(), cut.cend());
}
