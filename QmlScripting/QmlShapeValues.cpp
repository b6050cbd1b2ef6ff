#include "QmlScripting/QmlShapeValues.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

#include "base/Numeric.h"
#include "geometry/servoce/trans.h"

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;
constexpr double degreesPerRadian = 57.29577951308232;

double dot(const servoce::vector3 &a, const servoce::vector3 &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

double angleBetween(const servoce::vector3 &a, const servoce::vector3 &b)
{
    const double product = dot(a, b) / std::sqrt(dot(a, a) * dot(b, b));
    if (product > 1.0)
        return 0.0;
    return std::acos(std::max(product, -1.0)) * degreesPerRadian;
}

} // namespace

double scriptAngleToRadians(double degrees)
{
    return Numeric::normalizeAngle(degrees) * radiansPerDegree;
}

std::vector<servoce::point3> QmlPoint3::fromList(const QVariantList &list)
{
    std::vector<servoce::point3> points;
    for (const QVariant &member : list) {
        if (member.userType() == qMetaTypeId<QmlPoint3>())
            points.push_back(member.value<QmlPoint3>());
    }
    return points;
}

double QmlPoint3::distance(const QmlPoint3 &p) const
{
    return std::sqrt((p.x - x) * (p.x - x) + (p.y - y) * (p.y - y) + (p.z - z) * (p.z - z));
}

QmlPoint3 QmlPoint3::translate(double x, double y, double z) const
{
    return servoce::translate(x, y, z)(*this);
}

QmlPoint3 QmlPoint3::translate(const QmlVector3 &v) const
{
    return translate(v.x, v.y, v.z);
}

QmlPoint3 QmlPoint3::translateX(double x) const
{
    return translate(x, 0.0, 0.0);
}

QmlPoint3 QmlPoint3::translateY(double y) const
{
    return translate(0.0, y, 0.0);
}

QmlPoint3 QmlPoint3::translateZ(double z) const
{
    return translate(0.0, 0.0, z);
}

QmlPoint3 QmlPoint3::move(double x, double y, double z) const
{
    return translate(x, y, z);
}

QmlPoint3 QmlPoint3::move(const QmlVector3 &v) const
{
    return translate(v.x, v.y, v.z);
}

QmlPoint3 QmlPoint3::move(const QmlPoint3 &v) const
{
    return translate(v.x, v.y, v.z);
}

QmlPoint3 QmlPoint3::moveX(double x) const
{
    return translateX(x);
}

QmlPoint3 QmlPoint3::moveY(double y) const
{
    return translateY(y);
}

QmlPoint3 QmlPoint3::moveZ(double z) const
{
    return translateZ(z);
}

QmlPoint3 QmlPoint3::up(double z) const
{
    return translateZ(z);
}

QmlPoint3 QmlPoint3::down(double z) const
{
    return translateZ(-z);
}

QmlPoint3 QmlPoint3::forw(double y) const
{
    return translateY(y);
}

QmlPoint3 QmlPoint3::back(double y) const
{
    return translateY(-y);
}

QmlPoint3 QmlPoint3::right(double x) const
{
    return translateX(x);
}

QmlPoint3 QmlPoint3::left(double x) const
{
    return translateX(-x);
}

QmlPoint3 QmlPoint3::rotate(double a, const QmlVector3 &vec) const
{
    return servoce::rotate(vec, scriptAngleToRadians(a))(*this);
}

QmlPoint3 QmlPoint3::rotateX(double a) const
{
    return servoce::rotateX(scriptAngleToRadians(a))(*this);
}

QmlPoint3 QmlPoint3::rotateY(double a) const
{
    return servoce::rotateY(scriptAngleToRadians(a))(*this);
}

QmlPoint3 QmlPoint3::rotateZ(double a) const
{
    return servoce::rotateZ(scriptAngleToRadians(a))(*this);
}

QmlPoint3 QmlPoint3::rotate(double x, double y, double z) const
{
    return servoce::rotate(x, y, z)(*this);
}

QmlPoint3 QmlPoint3::mirrorO() const
{
    return servoce::mirrorO()(*this);
}

QmlPoint3 QmlPoint3::mirrorX() const
{
    return servoce::mirrorX()(*this);
}

QmlPoint3 QmlPoint3::mirrorY() const
{
    return servoce::mirrorY()(*this);
}

QmlPoint3 QmlPoint3::mirrorZ() const
{
    return servoce::mirrorZ()(*this);
}

QmlPoint3 QmlPoint3::mirrorXY() const
{
    return servoce::mirrorXY()(*this);
}

QmlPoint3 QmlPoint3::mirrorYZ() const
{
    return servoce::mirrorYZ()(*this);
}

QmlPoint3 QmlPoint3::mirrorXZ() const
{
    return servoce::mirrorXZ()(*this);
}

QmlPoint3 QmlPoint3::scale(double s, const QmlPoint3 &center) const
{
    return servoce::scale(s, center)(*this);
}

QmlPoint3 QmlPoint3::scale(double s) const
{
    return servoce::scale(s)(*this);
}

QmlPoint3 QmlPoint3::scaleX(double s) const
{
    return servoce::scaleX(s)(*this);
}

QmlPoint3 QmlPoint3::scaleY(double s) const
{
    return servoce::scaleY(s)(*this);
}

QmlPoint3 QmlPoint3::scaleZ(double s) const
{
    return servoce::scaleZ(s)(*this);
}

QmlPoint3 QmlPoint3::scaleXY(double x, double y) const
{
    return servoce::scaleXY(x, y)(*this);
}

QmlPoint3 QmlPoint3::scaleYZ(double y, double z) const
{
    return servoce::scaleYZ(y, z)(*this);
}

QmlPoint3 QmlPoint3::scaleXZ(double x, double z) const
{
    return servoce::scaleXZ(x, z)(*this);
}

QmlPoint3 QmlPoint3::scaleXYZ(double x, double y, double z) const
{
    return servoce::scaleXYZ(x, y, z)(*this);
}

double QmlVector3::lenght() const
{
    return std::sqrt(length2());
}

double QmlVector3::length2() const
{
    return dot(*this, *this);
}

double QmlVector3::angle() const
{
    return angleBetween(*this, servoce::vector3(1.0, 0.0, 0.0));
}

double QmlVector3::angle(const QmlVector3 &oth) const
{
    return angleBetween(*this, oth);
}

bool QmlVector3::isZero() const
{
    return Numeric::isZero(x) && Numeric::isZero(y) && Numeric::isZero(z);
}

QmlBoundingBox::QmlBoundingBox(const servoce::boundbox &box)
    : m_xmin(box.xmin)
    , m_xmax(box.xmax)
    , m_ymin(box.ymin)
    , m_ymax(box.ymax)
    , m_zmin(box.zmin)
    , m_zmax(box.zmax)
{
}

servoce::boundbox QmlBoundingBox::box() const
{
    servoce::boundbox box;
    box.xmin = m_xmin;
    box.xmax = m_xmax;
    box.ymin = m_ymin;
    box.ymax = m_ymax;
    box.zmin = m_zmin;
    box.zmax = m_zmax;
    return box;
}
