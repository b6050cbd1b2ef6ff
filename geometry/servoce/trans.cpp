#include "geometry/servoce/trans.h"

#include <cmath>
#include <gp.hxx>
#include <gp_Ax1.hxx>
#include <gp_Ax2.hxx>
#include <gp_GTrsf.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include "geometry/servoce/guard.h"

namespace servoce {

using detail::guarded;

transformation::transformation()
    : m_trsf(std::make_shared<const gp_Trsf>())
{
}

transformation::transformation(const gp_Trsf &trsf)
    : m_trsf(std::make_shared<const gp_Trsf>(trsf))
{
}

bool transformation::is_valid() const
{
    return m_trsf != nullptr;
}

point3 transformation::operator()(const point3 &point) const
{
    if (!is_valid())
        return nowhere();
    gp_Pnt moved(point.x, point.y, point.z);
    moved.Transform(*m_trsf);
    return point3(moved.X(), moved.Y(), moved.Z());
}

const gp_Trsf &transformation::Trsf() const
{
    return *m_trsf;
}

transformation transformation::invalid()
{
    transformation result;
    result.m_trsf.reset();
    return result;
}

general_transformation::general_transformation()
    : m_gtrsf(std::make_shared<const gp_GTrsf>())
{
}

general_transformation::general_transformation(const gp_GTrsf &gtrsf)
    : m_gtrsf(std::make_shared<const gp_GTrsf>(gtrsf))
{
}

bool general_transformation::is_valid() const
{
    return m_gtrsf != nullptr;
}

point3 general_transformation::operator()(const point3 &point) const
{
    if (!is_valid())
        return nowhere();
    gp_XYZ moved(point.x, point.y, point.z);
    m_gtrsf->Transforms(moved);
    return point3(moved.X(), moved.Y(), moved.Z());
}

const gp_GTrsf &general_transformation::GTrsf() const
{
    return *m_gtrsf;
}

general_transformation general_transformation::invalid()
{
    general_transformation result;
    result.m_gtrsf.reset();
    return result;
}

namespace {

template <class Setup>
transformation make(const char *name, Setup &&setup)
{
    return guarded(name, transformation::invalid(), [&] {
        gp_Trsf trsf;
        setup(trsf);
        return transformation(trsf);
    });
}

general_transformation makeScale(const char *name, double x, double y, double z)
{
    return guarded(name, general_transformation::invalid(), [&] {
        gp_GTrsf gtrsf;
        gtrsf.SetValue(1, 1, x);
        gtrsf.SetValue(2, 2, y);
        gtrsf.SetValue(3, 3, z);
        gtrsf.SetForm();
        return general_transformation(gtrsf);
    });
}

} // namespace

transformation translate(double x, double y, double z)
{
    return make("translate", [&](gp_Trsf &trsf) { trsf.SetTranslation(gp_Vec(x, y, z)); });
}

transformation rotate(const vector3 &axis, double angle)
{
    return make("rotate", [&](gp_Trsf &trsf) {
        trsf.SetRotation(gp_Ax1(gp::Origin(), gp_Dir(axis.x, axis.y, axis.z)), angle);
    });
}

transformation rotateX(double angle)
{
    return rotate(vector3(1, 0, 0), angle);
}

transformation rotateY(double angle)
{
    return rotate(vector3(0, 1, 0), angle);
}

transformation rotateZ(double angle)
{
    return rotate(vector3(0, 0, 1), angle);
}

transformation rotate(double x, double y, double z)
{
    const double angle = std::sqrt(x * x + y * y + z * z);
    if (angle == 0.0)
        return transformation();
    return make("rotate", [&](gp_Trsf &trsf) {
        trsf.SetRotation(gp_Ax1(gp::Origin(), gp_Dir(x / angle, z / angle, y / angle)), angle);
    });
}

transformation mirrorO()
{
    return make("mirrorO", [](gp_Trsf &trsf) { trsf.SetMirror(gp::Origin()); });
}

transformation mirrorX()
{
    return make("mirrorX", [](gp_Trsf &trsf) { trsf.SetMirror(gp::OX()); });
}

transformation mirrorY()
{
    return make("mirrorY", [](gp_Trsf &trsf) { trsf.SetMirror(gp::OY()); });
}

transformation mirrorZ()
{
    return make("mirrorZ", [](gp_Trsf &trsf) { trsf.SetMirror(gp::OZ()); });
}

transformation mirrorXY()
{
    return make("mirrorXY", [](gp_Trsf &trsf) { trsf.SetMirror(gp_Ax2(gp::Origin(), gp::DZ())); });
}

transformation mirrorYZ()
{
    return make("mirrorYZ", [](gp_Trsf &trsf) { trsf.SetMirror(gp_Ax2(gp::Origin(), gp::DX())); });
}

transformation mirrorXZ()
{
    return make("mirrorXZ", [](gp_Trsf &trsf) { trsf.SetMirror(gp_Ax2(gp::Origin(), gp::DY())); });
}

transformation scale(double factor, const point3 &center)
{
    return make("scale", [&](gp_Trsf &trsf) { trsf.SetScale(gp_Pnt(center.x, center.y, center.z), factor); });
}

general_transformation scaleX(double factor)
{
    return makeScale("scaleX", factor, 1, 1);
}

general_transformation scaleY(double factor)
{
    return makeScale("scaleY", 1, factor, 1);
}

general_transformation scaleZ(double factor)
{
    return makeScale("scaleZ", 1, 1, factor);
}

general_transformation scaleXY(double x, double y)
{
    return makeScale("scaleXY", x, y, 1);
}

general_transformation scaleYZ(double y, double z)
{
    return makeScale("scaleYZ", 1, y, z);
}

general_transformation scaleXZ(double x, double z)
{
    return makeScale("scaleXZ", x, 1, z);
}

general_transformation scaleXYZ(double x, double y, double z)
{
    return makeScale("scaleXYZ", x, y, z);
}

} // namespace servoce
