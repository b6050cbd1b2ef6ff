#include "meshing/ShapeList.h"
#include "base/Numeric.h"

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
