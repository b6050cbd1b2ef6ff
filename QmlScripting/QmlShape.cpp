#include "QmlScripting/QmlShape.h"

#include <QDebug>
#include <QtGlobal>

#include <TopAbs_ShapeEnum.hxx>
#include <cmath>
#include <exception>

#include "QmlScripting/JSEngine.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/failure.h"
#include "geometry/servoce/solid.h"
#include "geometry/servoce/trans.h"
#include "geometry/servoce/unify.h"

namespace {

// Below this a translation, extrusion or rotation is no move at all.
bool negligible(double value)
{
    return std::abs(value) <= 1e-12;
}

bool isOne(double factor)
{
    return qFuzzyCompare(factor, 1.0);
}

// Made once: every failure hands out a copy.
const servoce::shape &emptyShape()
{
    static const servoce::shape empty =
        servoce::make_difference(servoce::box(1, 1, 1, false), servoce::box(1, 1, 1, false), true);
    return empty;
}

} // namespace

QmlShape::QmlShape(JSEngine *engine)
    : servoce::shape(emptyShape())
    , m_engine(engine)
{
}

QmlShape::QmlShape(const servoce::shape &shape, JSEngine *engine)
    : servoce::shape(shape)
    , m_engine(engine)
{
}

void QmlShape::registerTypes()
{
    qRegisterMetaType<QmlShape>("QmlShape");
    qRegisterMetaType<QmlPoint3>("QmlPoint3");
    qRegisterMetaType<QmlVector3>("QmlVector3");
    qRegisterMetaType<QmlBoundingBox>("QmlBoundingBox");
    qRegisterMetaType<QmlTransform3>("QmlTransform3");
}

QmlShape QmlShape::fromVariant(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<QmlShape>())
        return value.value<QmlShape>();
    QVariant converted = value;
    return converted.convert(qMetaTypeId<QmlShape>()) ? converted.value<QmlShape>() : QmlShape();
}

std::vector<servoce::shape> QmlShape::fromList(const QVariantList &list)
{
    std::vector<servoce::shape> shapes;
    for (const QVariant &member : list) {
        if (member.userType() == qMetaTypeId<QmlShape>())
            shapes.push_back(member.value<QmlShape>());
    }
    return shapes;
}

void QmlShape::fail(const QString &message) const
{
    qCritical().noquote() << "Error:" << message;
    // A shape without an engine was never a script's: the log is all there is.
    if (!m_engine)
        return;
    m_engine->consoleCall(QStringLiteral("error"), message);
    m_engine->throwError(message);
}

void QmlShape::checkArg(double &value, double defaultValue, const char *name) const
{
    if (!std::isnan(value))
        return;
    value = defaultValue;
    fail(tr("Argument '%1' is NaN").arg(QLatin1String(name)));
}

template <typename Result, typename Work>
Result QmlShape::guarded(const char *method, const Result &fallback, Work &&work) const
{
    try {
        return work();
    } catch (const std::exception &exception) {
        fail(tr("Exception in %1: %2").arg(QLatin1String(method), QString::fromLocal8Bit(exception.what())));
    } catch (...) {
        fail(tr("Exception in %1: %2").arg(QLatin1String(method), tr("unknown exception")));
    }
    return fallback;
}

template <typename Operation>
QmlShape QmlShape::derived(const char *method, bool unchanged, Operation &&operation) const
{
    if (is_null()) {
        fail(tr("Shape is null"));
        return empty();
    }
    if (unchanged)
        return *this;
    const servoce::shape result = operation();
    if (result.is_null()) {
        // The layer logged the details; the script needs to know its call failed.
        fail(tr("Method %1 failed: %2").arg(QLatin1String(method), QString::fromStdString(servoce::last_failure())));
        return empty();
    }
    return QmlShape(result, m_engine);
}

bool QmlShape::isEmpty() const
{
    return guarded("isEmpty", true, [this] { return is_empty(); });
}

QmlShape QmlShape::boolean(const char *method, const QmlShape &oth,
                           servoce::shape (*operation)(const servoce::shape &, const servoce::shape &, bool)) const
{
    return guarded(method, empty(), [&] {
        if (oth.is_null()) {
            fail(tr("Shape is null"));
            return empty();
        }
        return derived(method, false, [&] { return operation(*this, oth, false); });
    });
}

QmlShape QmlShape::unite(const QmlShape &oth) const
{
    return boolean("unite", oth, servoce::make_union);
}

QmlShape QmlShape::intersect(const QmlShape &oth) const
{
    return boolean("intersect", oth, servoce::make_intersect);
}

QmlShape QmlShape::difference(const QmlShape &oth) const
{
    return boolean("difference", oth, servoce::make_difference);
}

QmlShape QmlShape::diff(const QmlShape &oth) const
{
    return boolean("diff", oth, servoce::make_difference);
}

QmlShape QmlShape::extruded(const char *method, double x, double y, double z) const
{
    return guarded(method, empty(), [&] {
        checkArg(x, 0.0, "x");
        checkArg(y, 0.0, "y");
        checkArg(z, 0.0, "z");
        return derived(method, negligible(x) && negligible(y) && negligible(z),
                       [&] { return servoce::linear_extrude(*this, servoce::vector3(x, y, z), false); });
    });
}

QmlShape QmlShape::extrudeX(double x) const
{
    return extruded("extrudeX", x, 0.0, 0.0);
}

QmlShape QmlShape::extrudeY(double y) const
{
    return extruded("extrudeY", 0.0, y, 0.0);
}

QmlShape QmlShape::extrudeZ(double z) const
{
    return extruded("extrudeZ", 0.0, 0.0, z);
}

QmlShape QmlShape::extrude(double x, double y, double z) const
{
    return extruded("extrude", x, y, z);
}

QmlShape QmlShape::extrude(const QmlVector3 &vec) const
{
    return guarded("extrude", empty(), [&] {
        if (is_null() || (vec.x == 0.0 && vec.y == 0.0 && vec.z == 0.0))
            return *this;
        return derived("extrude", false, [&] { return servoce::linear_extrude(*this, vec, false); });
    });
}

QmlShape QmlShape::extrude(double z) const
{
    return guarded("extrude", empty(), [&] {
        fail(tr("Method extrude is deprecate, use extrudeZ"));
        return extrudeZ(z);
    });
}

QmlShape QmlShape::unify() const
{
    return guarded("unify", empty(),
                   [this] { return derived("unify", false, [this] { return servoce::unify(*this); }); });
}

QmlShape QmlShape::fill() const
{
    return guarded("fill", empty(), [this] { return derived("fill", false, [this] { return servoce::fill(*this); }); });
}

QmlShape QmlShape::wire() const
{
    return guarded("wire", empty(), [this] { return derived("wire", false, [this] { return as_wire(); }); });
}

QmlShape QmlShape::moved(const char *method, double x, double y, double z) const
{
    return guarded(method, empty(), [&] {
        checkArg(x, 0.0, "x");
        checkArg(y, 0.0, "y");
        checkArg(z, 0.0, "z");
        return derived(method, negligible(x) && negligible(y) && negligible(z),
                       [&] { return transformed(servoce::translate(x, y, z)); });
    });
}

QmlShape QmlShape::translate(double x, double y, double z) const
{
    return moved("translate", x, y, z);
}

QmlShape QmlShape::move(double x, double y, double z) const
{
    return moved("move", x, y, z);
}

QmlShape QmlShape::translate(const QmlVector3 &v) const
{
    return moved("translate", v.x, v.y, v.z);
}

QmlShape QmlShape::move(const QmlVector3 &v) const
{
    return moved("move", v.x, v.y, v.z);
}

QmlShape QmlShape::move(const QmlPoint3 &v) const
{
    return moved("move", v.x, v.y, v.z);
}

QmlShape QmlShape::translateX(double x) const
{
    return moved("translateX", x, 0.0, 0.0);
}

QmlShape QmlShape::moveX(double x) const
{
    return moved("moveX", x, 0.0, 0.0);
}

QmlShape QmlShape::right(double x) const
{
    return moved("right", x, 0.0, 0.0);
}

QmlShape QmlShape::translateY(double y) const
{
    return moved("translateY", 0.0, y, 0.0);
}

QmlShape QmlShape::moveY(double y) const
{
    return moved("moveY", 0.0, y, 0.0);
}

QmlShape QmlShape::forw(double y) const
{
    return moved("forw", 0.0, y, 0.0);
}

QmlShape QmlShape::translateZ(double z) const
{
    return moved("translateZ", 0.0, 0.0, z);
}

QmlShape QmlShape::moveZ(double z) const
{
    return moved("moveZ", 0.0, 0.0, z);
}

QmlShape QmlShape::up(double z) const
{
    return moved("up", 0.0, 0.0, z);
}

QmlShape QmlShape::left(double x) const
{
    return moved("left", -x, 0.0, 0.0);
}

QmlShape QmlShape::back(double y) const
{
    return moved("back", 0.0, -y, 0.0);
}

QmlShape QmlShape::down(double z) const
{
    return moved("down", 0.0, 0.0, -z);
}

QmlShape QmlShape::rotate(double a, const QmlVector3 &vec) const
{
    return guarded("rotate", empty(), [&] {
        checkArg(a, 0.0, "a");
        return derived("rotate", negligible(a),
                       [&] { return transformed(servoce::rotate(vec, scriptAngleToRadians(a))); });
    });
}

QmlShape QmlShape::rotate(double x, double y, double z) const
{
    return guarded("rotate", empty(), [&] {
        checkArg(x, 0.0, "x");
        checkArg(y, 0.0, "y");
        checkArg(z, 0.0, "z");
        return derived("rotate", negligible(x) && negligible(y) && negligible(z),
                       [&] { return transformed(servoce::rotate(x, y, z)); });
    });
}

QmlShape QmlShape::rotatedAbout(const char *method, double a, servoce::transformation (*rotation)(double)) const
{
    return guarded(method, empty(), [&] {
        checkArg(a, 0.0, "a");
        // The test comes before normAngle: a full turn is a real rotation by 0.
        return derived(method, negligible(a), [&] { return transformed(rotation(scriptAngleToRadians(a))); });
    });
}

QmlShape QmlShape::rotateX(double a) const
{
    return rotatedAbout("rotateX", a, servoce::rotateX);
}

QmlShape QmlShape::rotateY(double a) const
{
    return rotatedAbout("rotateY", a, servoce::rotateY);
}

QmlShape QmlShape::rotateZ(double a) const
{
    return rotatedAbout("rotateZ", a, servoce::rotateZ);
}

QmlShape QmlShape::mirrored(const char *method, servoce::transformation (*mirror)()) const
{
    return guarded(method, empty(), [&] { return derived(method, false, [&] { return transformed(mirror()); }); });
}

QmlShape QmlShape::mirrorO() const
{
    return mirrored("mirrorO", servoce::mirrorO);
}

QmlShape QmlShape::mirrorX() const
{
    return mirrored("mirrorX", servoce::mirrorX);
}

QmlShape QmlShape::mirrorY() const
{
    return mirrored("mirrorY", servoce::mirrorY);
}

QmlShape QmlShape::mirrorZ() const
{
    return mirrored("mirrorZ", servoce::mirrorZ);
}

QmlShape QmlShape::mirrorXY() const
{
    return mirrored("mirrorXY", servoce::mirrorXY);
}

QmlShape QmlShape::mirrorYZ() const
{
    return mirrored("mirrorYZ", servoce::mirrorYZ);
}

QmlShape QmlShape::mirrorXZ() const
{
    return mirrored("mirrorXZ", servoce::mirrorXZ);
}

QmlShape QmlShape::scale(double s, const QmlPoint3 &center) const
{
    return guarded("scale", empty(), [&] {
        checkArg(s, 1.0, "s");
        return derived("scale", isOne(s), [&] { return transformed(servoce::scale(s, center)); });
    });
}

QmlShape QmlShape::scaledAlong(const char *method, double s,
                               servoce::general_transformation (*scale)(double)) const
{
    return guarded(method, empty(), [&] {
        checkArg(s, 1.0, "s");
        return derived(method, isOne(s), [&] { return transformed(scale(s)); });
    });
}

QmlShape QmlShape::scaleX(double s) const
{
    return scaledAlong("scaleX", s, servoce::scaleX);
}

QmlShape QmlShape::scaleY(double s) const
{
    return scaledAlong("scaleY", s, servoce::scaleY);
}

QmlShape QmlShape::scaleZ(double s) const
{
    return scaledAlong("scaleZ", s, servoce::scaleZ);
}

QmlShape QmlShape::scaledXYZ(const char *method, double x, double y, double z) const
{
    return guarded(method, empty(), [&] {
        checkArg(x, 1.0, "x");
        checkArg(y, 1.0, "y");
        checkArg(z, 1.0, "z");
        return derived(method, isOne(x) && isOne(y) && isOne(z),
                       [&] { return transformed(servoce::scaleXYZ(x, y, z)); });
    });
}

QmlShape QmlShape::scaleXY(double x, double y) const
{
    return scaledXYZ("scaleXY", x, y, 1.0);
}

QmlShape QmlShape::scaleYZ(double y, double z) const
{
    return scaledXYZ("scaleYZ", 1.0, y, z);
}

QmlShape QmlShape::scaleXZ(double x, double z) const
{
    return scaledXYZ("scaleXZ", x, 1.0, z);
}

QmlShape QmlShape::scaleXYZ(double x, double y, double z) const
{
    return scaledXYZ("scaleXYZ", x, y, z);
}

double QmlShape::measured(const char *method, double value, const QString &failure) const
{
    return guarded(method, value, [&] {
        if (value < 0.0)
            fail(failure.arg(QString::fromStdString(shape_type_name())));
        return value;
    });
}

double QmlShape::length() const
{
    return measured("length", servoce::shape::length(), tr("Shape '%1' is not curve"));
}

double QmlShape::area() const
{
    return measured("area", servoce::shape::area(), tr("Shape '%1' is not flat"));
}

double QmlShape::volume() const
{
    return measured("volume", servoce::shape::volume(), tr("Shape '%1' is not voluminous"));
}

QmlPoint3 QmlShape::center() const
{
    return guarded("center", QmlPoint3(), [this] { return QmlPoint3(servoce::shape::center()); });
}

QmlBoundingBox QmlShape::boundingBox() const
{
    return guarded("boundingBox", QmlBoundingBox(), [this] { return QmlBoundingBox(bounding_box()); });
}

template <typename Result, typename Work>
Result QmlShape::onCurve(const Result &fallback, Work &&work) const
{
    switch (shape_type()) {
    case TopAbs_EDGE:
        return work(as_edge());
    case TopAbs_WIRE:
        return work(as_wire_exact());
    default:
        fail(tr("For only shape of edge of wire"));
        return fallback;
    }
}

double QmlShape::firstParameter() const
{
    return guarded("firstParameter", 0.0,
                   [this] { return onCurve(0.0, [](const auto &curve) { return curve.first_parameter(); }); });
}

double QmlShape::lastParameter() const
{
    return guarded("lastParameter", 0.0,
                   [this] { return onCurve(0.0, [](const auto &curve) { return curve.last_parameter(); }); });
}

QmlPoint3 QmlShape::pointAt(double parameter) const
{
    return guarded("pointAt", QmlPoint3(), [&] {
        checkArg(parameter, 0.0, "parameter");
        return onCurve(QmlPoint3(), [&](const auto &curve) {
            const QmlPoint3 point = curve.point_at_length(parameter);
            if (std::isnan(point.x)) {
                fail(tr("Critical error at abscissaPoint"));
                return QmlPoint3();
            }
            return point;
        });
    });
}
