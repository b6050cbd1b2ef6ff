#pragma once

#include <QCoreApplication>
#include <QMetaType>
#include <QVariant>

#include <vector>

#include "QmlScripting/QmlShapeValues.h"
#include "geometry/servoce/shape.h"

class JSEngine;

// A solid, face, wire or edge as a script holds it. Every method gives a new shape
// and leaves this one as it is. Wrong use (a NaN, a null operand, a measure the
// shape has not) is thrown into the engine the shape was made in, shown on its
// console and logged; the native call still returns, with the empty shape where a
// shape is due. Numbers too small to matter give a copy with no kernel call.
class QmlShape : public servoce::shape
{
    Q_GADGET
    Q_DECLARE_TR_FUNCTIONS(QmlShape)
public:
    // A null shape with no engine; the metatype system needs one.
    QmlShape() = default;
    // The empty shape: a unit box less itself. It is not null.
    explicit QmlShape(JSEngine *engine);
    QmlShape(const servoce::shape &shape, JSEngine *engine);

    JSEngine *engine() const { return m_engine; }

    // Makes these and the values of QmlShapeValues.h known by name to the
    // metatype system, so that scripts can pass them into native calls.
    static void registerTypes();

    // A shape taken unchanged, or converted; what converts to none is a null shape.
    static QmlShape fromVariant(const QVariant &value);
    // The members of the list that hold a shape, in order; the others are passed over.
    static std::vector<servoce::shape> fromList(const QVariantList &list);

    Q_INVOKABLE bool isEmpty() const;

    Q_INVOKABLE QmlShape unite(const QmlShape &oth) const;
    Q_INVOKABLE QmlShape intersect(const QmlShape &oth) const;
    Q_INVOKABLE QmlShape difference(const QmlShape &oth) const;
    Q_INVOKABLE QmlShape diff(const QmlShape &oth) const;

    Q_INVOKABLE QmlShape extrudeX(double x) const;
    Q_INVOKABLE QmlShape extrudeY(double y) const;
    Q_INVOKABLE QmlShape extrudeZ(double z) const;
    Q_INVOKABLE QmlShape extrude(double x, double y, double z) const;
    // No checks: a null shape or a zero vector comes back as it is.
    Q_INVOKABLE QmlShape extrude(const QmlVector3 &vec) const;
    // The old one-number form: it complains, then extrudes along Z.
    Q_INVOKABLE QmlShape extrude(double z) const;

    Q_INVOKABLE QmlShape unify() const;
    Q_INVOKABLE QmlShape fill() const;
    Q_INVOKABLE QmlShape wire() const;

    Q_INVOKABLE QmlShape translate(double x, double y, double z) const;
    Q_INVOKABLE QmlShape move(double x, double y, double z) const;
    Q_INVOKABLE QmlShape translate(const QmlVector3 &v) const;
    Q_INVOKABLE QmlShape move(const QmlVector3 &v) const;
    Q_INVOKABLE QmlShape move(const QmlPoint3 &v) const;
    Q_INVOKABLE QmlShape translateX(double x) const;
    Q_INVOKABLE QmlShape moveX(double x) const;
    Q_INVOKABLE QmlShape right(double x) const;
    Q_INVOKABLE QmlShape translateY(double y) const;
    Q_INVOKABLE QmlShape moveY(double y) const;
    Q_INVOKABLE QmlShape forw(double y) const;
    Q_INVOKABLE QmlShape translateZ(double z) const;
    Q_INVOKABLE QmlShape moveZ(double z) const;
    Q_INVOKABLE QmlShape up(double z) const;
    Q_INVOKABLE QmlShape left(double x) const;
    Q_INVOKABLE QmlShape back(double y) const;
    Q_INVOKABLE QmlShape down(double z) const;

    Q_INVOKABLE QmlShape rotate(double a, const QmlVector3 &vec) const;
    // A rotation vector in radians, as the shape layer takes it.
    Q_INVOKABLE QmlShape rotate(double x, double y, double z) const;
    Q_INVOKABLE QmlShape rotateX(double a) const;
    Q_INVOKABLE QmlShape rotateY(double a) const;
    Q_INVOKABLE QmlShape rotateZ(double a) const;

    Q_INVOKABLE QmlShape mirrorO() const;
    Q_INVOKABLE QmlShape mirrorX() const;
    Q_INVOKABLE QmlShape mirrorY() const;
    Q_INVOKABLE QmlShape mirrorZ() const;
    Q_INVOKABLE QmlShape mirrorXY() const;
    Q_INVOKABLE QmlShape mirrorYZ() const;
    Q_INVOKABLE QmlShape mirrorXZ() const;

    Q_INVOKABLE QmlShape scale(double s, const QmlPoint3 &center) const;
    Q_INVOKABLE QmlShape scaleX(double s) const;
    Q_INVOKABLE QmlShape scaleY(double s) const;
    Q_INVOKABLE QmlShape scaleZ(double s) const;
    Q_INVOKABLE QmlShape scaleXY(double x, double y) const;
    Q_INVOKABLE QmlShape scaleYZ(double y, double z) const;
    Q_INVOKABLE QmlShape scaleXZ(double x, double z) const;
    Q_INVOKABLE QmlShape scaleXYZ(double x, double y, double z) const;

    // A negative measure means the shape has none of that kind; it is reported
    // and returned as it is.
    Q_INVOKABLE double length() const;
    Q_INVOKABLE double area() const;
    Q_INVOKABLE double volume() const;
    Q_INVOKABLE QmlPoint3 center() const;
    Q_INVOKABLE QmlBoundingBox boundingBox() const;

    // Edges and wires only; a wire counts as one curve.
    Q_INVOKABLE double firstParameter() const;
    Q_INVOKABLE double lastParameter() const;
    // The point at this arc length from the start.
    Q_INVOKABLE QmlPoint3 pointAt(double parameter) const;

private:
    // The three channels of wrong use: the log, the console, the script.
    void fail(const QString &message) const;
    // A NaN becomes the default, and is reported.
    void checkArg(double &value, double defaultValue, const char *name) const;

    // No exception may cross the script engine: one becomes a failure, and the
    // fallback is the result.
    template <typename Result, typename Work>
    Result guarded(const char *method, const Result &fallback, Work &&work) const;

    QmlShape empty() const { return QmlShape(m_engine); }
    // The body of a method that makes a shape from this one: a null shape is
    // refused, a call that changes nothing gives a copy, a failed operation the
    // empty shape.
    template <typename Operation>
    QmlShape derived(const char *method, bool unchanged, Operation &&operation) const;
    QmlShape boolean(const char *method, const QmlShape &oth,
                     servoce::shape (*operation)(const servoce::shape &, const servoce::shape &, bool)) const;
    QmlShape moved(const char *method, double x, double y, double z) const;
    QmlShape extruded(const char *method, double x, double y, double z) const;
    QmlShape rotatedAbout(const char *method, double a, servoce::transformation (*rotation)(double)) const;
    QmlShape scaledAlong(const char *method, double s, servoce::general_transformation (*scale)(double)) const;
    QmlShape scaledXYZ(const char *method, double x, double y, double z) const;
    QmlShape mirrored(const char *method, servoce::transformation (*mirror)()) const;
    double measured(const char *method, double value, const QString &failure) const;
    template <typename Result, typename Work>
    Result onCurve(const Result &fallback, Work &&work) const;

    JSEngine *m_engine = nullptr;
};

Q_DECLARE_METATYPE(QmlShape)
