#pragma once

#include <QJSValue>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QVariantList>

#include "QmlScripting/QmlShape.h"
#include "geometry/Piece.h"

class JSEngine;

// The object scripts reach as `Geom`: the constructors of points, curves, faces and
// solids, and the operations on shapes. Every slot is a pure function of its
// arguments. Script angles are degrees, except those of sphere and torus, which
// the kernel takes as they come, in radians.
// Wrong arguments, null operands and empty lists are logged and thrown into the
// script; the slot still returns, with the empty shape where a shape is due.
class QmlGeomProvider : public QObject
{
    Q_OBJECT
public:
    explicit QmlGeomProvider(JSEngine *engine);

    // Installs the one provider of the engine as `Geom`, with the script functions
    // built on it (`Math.rad`, `Math.normAngle` and the like).
    static void initialize(JSEngine *engine);

public slots:
    QJSValue include(const QString &path);
    QJSValue require(const QString &name);

    // The text of the file, "" when it can't be read; a relative path is taken
    // below the program's scripts.
    QString readFile(const QString &pathFile);
    bool writeFile(const QString &pathFile, const QString &text, bool append = true);

    QPointF fromPolar(double r, double a);
    double degreesToRadians(double degrees);
    double radiansToDegrees(double radians);
    bool fuzzyIsNull(double value, double eps);
    bool fuzzyIsEqual(double v1, double v2, double eps);
    double normAngle(double a);
    // dir is a Coil orientation: -1 clockwise, 1 counter-clockwise.
    double middleAngle(double a1, double a2, int dir);
    double angleX(double x, double y, double z);
    double angleY(double x, double y, double z);
    double angleZ(double x, double y, double z);
    // Both vectors, or both numbers of one kind: integers or not.
    double angle(const QJSValue &arg1, const QJSValue &arg2);
    double angleX(const QmlPoint3 &p);
    double angleY(const QmlPoint3 &p);
    double angleZ(const QmlPoint3 &p);
    double angleBetweenVector(const QmlVector3 &v1, const QmlVector3 &v2);
    double radius(double x, double y);
    double radiusX(double x, double y, double z);
    double radiusY(double x, double y, double z);
    double radiusZ(double x, double y, double z);
    double radiusX(const QmlPoint3 &p);
    double radiusY(const QmlPoint3 &p);
    double radiusZ(const QmlPoint3 &p);
    double distance(const QmlPoint3 &p1, const QmlPoint3 &p2);

    QmlVector3 vector3(double x, double y, double z);
    QmlVector3 vector3(double x, double y);
    QmlVector3 vector3(double x);
    QmlVector3 vector3();
    QmlVector3 vector3(const QmlPoint3 &p);
    QmlVector3 vector3(const QmlPoint3 &p1, const QmlPoint3 &p2);
    QmlPoint3 point3(double x, double y, double z);
    QmlPoint3 point3(double x, double y);
    QmlPoint3 point3(double x);
    QmlPoint3 point3();
    QmlPoint3 point3(const QPointF &pt, double z);
    QmlPoint3 point3(const QPointF &pt);
    // t beyond p2 along the line from p1, or for a negative t, |t| before p1.
    QmlPoint3 pointAtSegment(const QmlPoint3 &p1, const QmlPoint3 &p2, double t);

    QmlShape segment(const QmlPoint3 &p1, const QmlPoint3 &p2);
    QmlShape polysegment(const QVariantList &points, bool closed = false);
    QmlShape bspline(const QVariantList &points, bool closed = false);
    QmlShape arc(double r, double angle);
    QmlShape arc(double r, double a1, double a2);
    QmlShape arc(const QmlPoint3 &p1, const QmlPoint3 &p2, const QmlPoint3 &p3);

    QmlShape circle(double r);
    QmlShape circle(double r, double angle);
    QmlShape circle(double r, double a1, double a2);
    QmlShape ellipse(double r1, double r2);
    QmlShape ellipse(double r1, double r2, double a1, double a2);
    QmlShape ring(double r1, double r2);
    QmlShape ring(double r1, double r2, double angle);
    QmlShape ring(double r1, double r2, double a1, double a2);
    QmlShape ngon(double r, int n);
    QmlShape square(double a, bool center = false);
    QmlShape rectangle(double a, double b, bool center = false);
    QmlShape polygon(const QVariantList &points);
    QmlShape infplane(const QmlPoint3 &pos = QmlPoint3(),
                      const QmlVector3 &dir = QmlVector3(servoce::vector3(0, 0, 1)));

    QmlShape box(double a);
    QmlShape box(double x, double y, double z);
    QmlShape cylinder(double r, double h);
    QmlShape cylinder(double r, double h, double angle);
    QmlShape collar(double r1, double r2, double h);
    QmlShape collar(double r1, double r2, double h, double angle);
    QmlShape cone(double r1, double r2, double h);
    QmlShape cone(double r1, double r2, double h, double angle);
    QmlShape sphere(double r);
    QmlShape sphere(double r, double an1);
    QmlShape sphere(double r, double an1, double an2);
    QmlShape sphere(double r, double an1, double an2, double an3);
    QmlShape torus(double r1, double r2);
    QmlShape torus(double r1, double r2, double ua);
    QmlShape torus(double r1, double r2, double va1, double va2);
    QmlShape torus(double r1, double r2, double va1, double va2, double ua);

    QmlShape unite(const QmlShape &a, const QmlShape &b);
    QmlShape unite(const QVariantList &shapes);
    QmlShape difference(const QmlShape &a, const QmlShape &b);
    QmlShape difference(const QVariantList &shapes);
    QmlShape diff(const QmlShape &a, const QmlShape &b);
    QmlShape diff(const QVariantList &shapes);
    QmlShape intersect(const QmlShape &a, const QmlShape &b);
    QmlShape intersect(const QVariantList &shapes);
    QmlShape section(const QmlShape &a, const QmlShape &b, bool pretty = false);
    QmlShape wire(const QVariantList &list);
    QmlShape fill(const QmlShape &shr);
    QmlShape unify(const QmlShape &proto);
    // Rounds and bevels report a failure on the console and give the shape back.
    QmlShape fillet(const QmlShape &shp, double r);
    QmlShape fillet(const QmlShape &shp, double r, const QVariantList &refs);
    QmlShape filletFace(const QmlShape &shp, double r, const QJSValue &ref);
    QmlShape chamfer(const QmlShape &shp, double r);
    QmlShape chamfer(const QmlShape &shp, double r, const QVariantList &refs);
    QmlBoundingBox boundingBox(const QmlShape &s);
    QmlShape shape(const QmlBoundingBox &bbox);
    // The shape with its material, as a script hands it back. A colour (or a
    // Qt::GlobalColor number) makes a custom material; a material is copied;
    // anything else is reported and gives the empty material.
    Piece piece(const QmlShape &shape, const QVariant &vMaterial = QVariant());

private:
    // A NaN is set to 0, logged and thrown; false tells the slot to give up.
    bool checkArgNaN(double &value, const char *name, const char *file, int line, const char *func);
    bool checkArgGreat(double value, double limit, const char *name, const char *file, int line,
                       const char *func);
    // Wrong use in the script's terms: logged and thrown.
    void fail(const QString &message);
    QmlShape empty() const { return QmlShape(m_engine); }
    QmlShape wrap(const servoce::shape &shape) const { return QmlShape(shape, m_engine); }
    // Points of a list: the empty list is refused with the empty shape as the result.
    bool pointsOf(const QVariantList &list, std::vector<servoce::point3> &points);
    // Operands of a boolean: a null one is refused.
    bool operands(const QmlShape &a, const QmlShape &b, const QString &message);
    bool listed(const QVariantList &list, std::vector<servoce::shape> &shapes);
    // The guards of a fillet or chamfer: false with the result already set.
    bool roundable(const QmlShape &shp, double r, const QString &nullMessage, QmlShape &result);
    // The kernel's result, or a console error and a copy of the shape. The failure
    // text takes the kernel's message, the radius and, where given, the refs.
    QmlShape rounded(const QmlShape &shp, const servoce::shape &result, const QString &failure, double r,
                     const QString &refs = QString());
    QString resolvedPath(const QString &pathFile) const;
    // Below, or too near to, zero a collar or cone height is made a thin one.
    static void heightRule(double &h, const char *word);
    QmlShape collarSwept(double r1, double r2, double h, double sweep);

    JSEngine *m_engine;
};
