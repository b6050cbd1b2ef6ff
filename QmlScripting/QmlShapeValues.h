#pragma once

#include <QMetaType>
#include <QVariantList>

#include <vector>

#include "geometry/servoce/shape.h"

// The small values that geometry scripts hold beside shapes: points, vectors and
// boxes. They travel through QVariant and QJSValue by value, and every method gives
// a new value. Angles are in degrees here and radians at the shape layer.

// Numeric::normalizeAngle, then radians.
double scriptAngleToRadians(double degrees);

class QmlVector3;

class QmlPoint3 : public servoce::point3
{
    Q_GADGET
    Q_PROPERTY(double x MEMBER x)
    Q_PROPERTY(double y MEMBER y)
    Q_PROPERTY(double z MEMBER z)
public:
    QmlPoint3() = default;
    QmlPoint3(const servoce::point3 &point)
        : servoce::point3(point)
    {
    }

    // The members of the list that hold a point, in order; the others are passed over.
    static std::vector<servoce::point3> fromList(const QVariantList &list);

    Q_INVOKABLE double distance(const QmlPoint3 &p) const;

    Q_INVOKABLE QmlPoint3 translate(double x, double y, double z) const;
    Q_INVOKABLE QmlPoint3 translate(const QmlVector3 &v) const;
    Q_INVOKABLE QmlPoint3 translateX(double x) const;
    Q_INVOKABLE QmlPoint3 translateY(double y) const;
    Q_INVOKABLE QmlPoint3 translateZ(double z) const;
    Q_INVOKABLE QmlPoint3 move(double x, double y, double z) const;
    Q_INVOKABLE QmlPoint3 move(const QmlVector3 &v) const;
    Q_INVOKABLE QmlPoint3 move(const QmlPoint3 &v) const;
    Q_INVOKABLE QmlPoint3 moveX(double x) const;
    Q_INVOKABLE QmlPoint3 moveY(double y) const;
    Q_INVOKABLE QmlPoint3 moveZ(double z) const;
    Q_INVOKABLE QmlPoint3 up(double z) const;
    Q_INVOKABLE QmlPoint3 down(double z) const;
    Q_INVOKABLE QmlPoint3 forw(double y) const;
    Q_INVOKABLE QmlPoint3 back(double y) const;
    Q_INVOKABLE QmlPoint3 right(double x) const;
    Q_INVOKABLE QmlPoint3 left(double x) const;

    Q_INVOKABLE QmlPoint3 rotate(double a, const QmlVector3 &vec) const;
    Q_INVOKABLE QmlPoint3 rotateX(double a) const;
    Q_INVOKABLE QmlPoint3 rotateY(double a) const;
    Q_INVOKABLE QmlPoint3 rotateZ(double a) const;
    // A rotation vector in radians, as the shape layer takes it.
    Q_INVOKABLE QmlPoint3 rotate(double x, double y, double z) const;

    Q_INVOKABLE QmlPoint3 mirrorO() const;
    Q_INVOKABLE QmlPoint3 mirrorX() const;
    Q_INVOKABLE QmlPoint3 mirrorY() const;
    Q_INVOKABLE QmlPoint3 mirrorZ() const;
    Q_INVOKABLE QmlPoint3 mirrorXY() const;
    Q_INVOKABLE QmlPoint3 mirrorYZ() const;
    Q_INVOKABLE QmlPoint3 mirrorXZ() const;

    Q_INVOKABLE QmlPoint3 scale(double s, const QmlPoint3 &center) const;
    Q_INVOKABLE QmlPoint3 scale(double s) const;
    Q_INVOKABLE QmlPoint3 scaleX(double s) const;
    Q_INVOKABLE QmlPoint3 scaleY(double s) const;
    Q_INVOKABLE QmlPoint3 scaleZ(double s) const;
    Q_INVOKABLE QmlPoint3 scaleXY(double x, double y) const;
    Q_INVOKABLE QmlPoint3 scaleYZ(double y, double z) const;
    Q_INVOKABLE QmlPoint3 scaleXZ(double x, double z) const;
    Q_INVOKABLE QmlPoint3 scaleXYZ(double x, double y, double z) const;
};

class QmlVector3 : public servoce::vector3
{
    Q_GADGET
    Q_PROPERTY(double x MEMBER x)
    Q_PROPERTY(double y MEMBER y)
    Q_PROPERTY(double z MEMBER z)
public:
    QmlVector3() = default;
    QmlVector3(const servoce::vector3 &vector)
        : servoce::vector3(vector)
    {
    }

    // Scripts have always called the length so.
    Q_INVOKABLE double lenght() const;
    Q_INVOKABLE double length2() const;
    // Degrees, 0 to 180; to (1, 0, 0) without an argument. A zero vector gives NaN.
    Q_INVOKABLE double angle() const;
    Q_INVOKABLE double angle(const QmlVector3 &oth) const;
    Q_INVOKABLE bool isZero() const;
};

class QmlBoundingBox
{
    Q_GADGET
    Q_PROPERTY(double xmin MEMBER m_xmin)
    Q_PROPERTY(double xmax MEMBER m_xmax)
    Q_PROPERTY(double ymin MEMBER m_ymin)
    Q_PROPERTY(double ymax MEMBER m_ymax)
    Q_PROPERTY(double zmin MEMBER m_zmin)
    Q_PROPERTY(double zmax MEMBER m_zmax)
    Q_PROPERTY(double xCenter READ xCenter)
    Q_PROPERTY(double yCenter READ yCenter)
    Q_PROPERTY(double zCenter READ zCenter)
    Q_PROPERTY(double xSize READ xSize)
    Q_PROPERTY(double ySize READ ySize)
    Q_PROPERTY(double zSize READ zSize)
public:
    QmlBoundingBox() = default;
    explicit QmlBoundingBox(const servoce::boundbox &box);

    servoce::boundbox box() const;

    double xCenter() const { return m_xmin + (m_xmax - m_xmin) * 0.5; }
    double yCenter() const { return m_ymin + (m_ymax - m_ymin) * 0.5; }
    double zCenter() const { return m_zmin + (m_zmax - m_zmin) * 0.5; }
    double xSize() const { return m_xmax - m_xmin; }
    double ySize() const { return m_ymax - m_ymin; }
    double zSize() const { return m_zmax - m_zmin; }

private:
    double m_xmin = 0.0;
    double m_xmax = 0.0;
    double m_ymin = 0.0;
    double m_ymax = 0.0;
    double m_zmin = 0.0;
    double m_zmax = 0.0;
};

// Known to the metatype system only; scripts have no use for it yet.
struct QmlTransform3
{
};

Q_DECLARE_METATYPE(QmlPoint3)
Q_DECLARE_METATYPE(QmlVector3)
Q_DECLARE_METATYPE(QmlBoundingBox)
Q_DECLARE_METATYPE(QmlTransform3)
