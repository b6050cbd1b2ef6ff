#pragma once

#include <memory>

#include "geometry/servoce/geombase.h"

class gp_Trsf;
class gp_GTrsf;

namespace servoce {

// A rigid motion, mirror or uniform scale. A builder whose arguments make no
// transformation (a zero axis, a zero scale) logs why and gives an invalid one:
// applied to a shape it gives a null shape, applied to a point it gives nowhere().
class transformation
{
public:
    transformation();
    explicit transformation(const gp_Trsf &trsf);

    bool is_valid() const;
    point3 operator()(const point3 &point) const;

    // The transformation must be valid.
    const gp_Trsf &Trsf() const;

    static transformation invalid();

private:
    std::shared_ptr<const gp_Trsf> m_trsf;
};

// A scale that differs along the axes. Invalid ones behave as above.
class general_transformation
{
public:
    general_transformation();
    explicit general_transformation(const gp_GTrsf &gtrsf);

    bool is_valid() const;
    point3 operator()(const point3 &point) const;

    const gp_GTrsf &GTrsf() const;

    static general_transformation invalid();

private:
    std::shared_ptr<const gp_GTrsf> m_gtrsf;
};

transformation translate(double x, double y, double z);
transformation rotate(const vector3 &axis, double angle);
transformation rotateX(double angle);
transformation rotateY(double angle);
transformation rotateZ(double angle);
// A rotation vector: the angle is the length of (x, y, z); the axis is
// (x, z, y) over that length, y and z in swapped places. The zero vector is
// no rotation.
transformation rotate(double x, double y, double z);

transformation mirrorO();
transformation mirrorX();
transformation mirrorY();
transformation mirrorZ();
transformation mirrorXY();
transformation mirrorYZ();
transformation mirrorXZ();

transformation scale(double factor, const point3 &center = point3());

general_transformation scaleX(double factor);
general_transformation scaleY(double factor);
general_transformation scaleZ(double factor);
general_transformation scaleXY(double x, double y);
general_transformation scaleYZ(double y, double z);
general_transformation scaleXZ(double x, double z);
general_transformation scaleXYZ(double x, double y, double z);

} // namespace servoce
