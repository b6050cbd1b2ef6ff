#include "QmlScripting/QmlGeomProvider.h"

#include <QColor>
#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QtMath>

#include <cmath>

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlMaterials.h"
#include "QmlScripting/ScriptModules.h"
#include "base/Numeric.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/curve.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/failure.h"
#include "geometry/servoce/fillet.h"
#include "geometry/servoce/solid.h"
#include "geometry/servoce/trans.h"
#include "geometry/servoce/unify.h"
#include "materials/BasicMaterials.h"

// The slot gives up with the fallback once a guard has reported.
#define GEOM_NAN(value, name, fallback)                                                                       \
    do {                                                                                                      \
        if (!checkArgNaN(value, name, __FILE__, __LINE__, Q_FUNC_INFO))                                       \
            return fallback;                                                                                  \
    } while (0)
#define GEOM_GREAT(value, name, fallback)                                                                     \
    do {                                                                                                      \
        if (!checkArgGreat(value, 0.0, name, __FILE__, __LINE__, Q_FUNC_INFO))                               \
            return fallback;                                                                                  \
    } while (0)

namespace {

const char *const prologue = "function readFile(pathFame){return Geom.readFile(pathFame);}\n"
                             "function writeFile(pathFame, text, append = true)"
                             "{return Geom.writeFile(pathFame, text, append);}\n"
                             "Math.fromPolar = function(length, angle) { return Geom.fromPolar(length, angle) }\n"
                             "Math.rad = function(degrees) { return Geom.degreesToRadians(degrees) }\n"
                             "Math.deg = function(radians) { return Geom.radiansToDegrees(radians) }\n"
                             "Math.fuzzyIsNull = function(value, eps) { return Geom.fuzzyIsNull(value, eps) }\n"
                             "Math.fuzzyIsEqual = function(v1, v2, eps) { return Geom.fuzzyIsEqual(v1, v2, eps) }\n"
                             "Math.normAngle = function(a) { return Geom.normAngle(a) }\n"
                             "Math.middleAngle = function(a1, a2, dir) { return Geom.middleAngle(a1, a2, dir) }\n";

bool nearZero(double value)
{
    return Numeric::isZero(value);
}

bool fuzzyEqual(double a, double b)
{
    return std::min(std::abs(a), std::abs(b)) >= std::abs(a - b) * 1e12;
}

bool fuzzyLessOrEqual(double a, double b)
{
    return a < b || fuzzyEqual(a, b);
}

// A sector keeps a full turn a full turn, unlike normAngle.
double sweepRadians(double degrees)
{
    return qDegreesToRadians(degrees > 360.0 ? std::fmod(degrees, 360.0) : degrees);
}

// Degrees, 0 up to but not including 360.
double polarAngle(double first, double second)
{
    double a = std::atan2(second, first) * 180.0 / M_PI;
    if (a < 0.0)
        a += 360.0;
    return fuzzyEqual(a, 360.0) ? 0.0 : a;
}

QString pointsText(const std::vector<servoce::point3> &points)
{
    QStringList members;
    for (const servoce::point3 &p : points)
        members << QStringLiteral("[%1, %2, %3]").arg(p.x).arg(p.y).arg(p.z);
    return QStringLiteral("{ %1 }").arg(members.join(QStringLiteral(", ")));
}

} // namespace

QmlGeomProvider::QmlGeomProvider(JSEngine *engine)
    : QObject(engine)
    , m_engine(engine)
{
    setObjectName(QStringLiteral("QmlGeomProvider"));
}

void QmlGeomProvider::initialize(JSEngine *engine)
{
    QmlShape::registerTypes();
    qRegisterMetaType<Piece>("Piece");
    engine->installObject(QStringLiteral("Geom"), new QmlGeomProvider(engine));
    const QJSValue result = engine->evaluate(QString::fromLatin1(prologue), QString(), 1);
    // Without the prologue the engine still serves; only the Math helpers are missing.
    if (result.isError())
        qCritical().noquote() << JSEngine::errorString(result);
}

bool QmlGeomProvider::checkArgNaN(double &value, const char *name, const char *file, int line, const char *func)
{
    if (!std::isnan(value))
        return true;
    value = 0.0;
    const QString message = tr("Argument '%1' is NaN").arg(QLatin1String(name));
    qCritical().noquote() << "Error in file" << file << ", at line:" << line << "( func" << func << ")" << message;
    m_engine->throwError(message);
    return false;
}

bool QmlGeomProvider::checkArgGreat(double value, double limit, const char *name, const char *file, int line,
                                    const char *func)
{
    if (value > limit)
        return true;
    const QString message = tr("Argument '%1' = %2 must be greater than %3")
                                .arg(QLatin1String(name))
                                .arg(value, 0, 'g')
                                .arg(limit, 0, 'g');
    qCritical().noquote() << "Error in file" << file << ", at line" << line << "( func" << func << "). Error:"
                          << message;
    m_engine->throwError(message);
    return false;
}

void QmlGeomProvider::fail(const QString &message)
{
    qCritical().noquote() << "Error:" << message;
    m_engine->throwError(message);
}

QJSValue QmlGeomProvider::include(const QString &path)
{
    return m_engine->modules()->include(path);
}

QJSValue QmlGeomProvider::require(const QString &name)
{
    return m_engine->modules()->require(name);
}

QString QmlGeomProvider::resolvedPath(const QString &pathFile) const
{
    if (QDir::isAbsolutePath(pathFile))
        return pathFile;
    return QCoreApplication::applicationDirPath() + QStringLiteral("/assets/scripts") + QDir::separator() + pathFile;
}

QString QmlGeomProvider::readFile(const QString &pathFile)
{
    const QString path = resolvedPath(pathFile);
    QFile file(path);
    if (!file.exists()) {
        m_engine->consoleCall(QStringLiteral("error"), tr("Error: file %1 not found.").arg(path));
        return QString();
    }
    if (!file.open(QIODevice::ReadOnly)) {
        m_engine->consoleCall(QStringLiteral("error"), tr("Error: file %1 not open!").arg(path));
        return QString();
    }
    return QString::fromUtf8(file.readAll());
}

bool QmlGeomProvider::writeFile(const QString &pathFile, const QString &text, bool append)
{
    const QString path = resolvedPath(pathFile);
    QFile file(path);
    const QDir folder = QFileInfo(path).absoluteDir();
    if (!file.exists() && !folder.isRoot() && !QDir().mkpath(folder.path())) {
        m_engine->consoleCall(QStringLiteral("error"), tr("Error: can't create folder %1!").arg(folder.path()));
        return false;
    }
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | (append ? QIODevice::Append : QIODevice::Truncate);
    if (!file.open(mode)) {
        m_engine->consoleCall(QStringLiteral("error"), tr("Error: file %1 not open!").arg(path));
        return false;
    }
    file.write(text.toUtf8());
    return true;
}

QPointF QmlGeomProvider::fromPolar(double r, double a)
{
    GEOM_NAN(r, "r", QPointF());
    GEOM_NAN(a, "a", QPointF());
    const double x = r * std::cos(qDegreesToRadians(a));
    const double y = r * std::sin(qDegreesToRadians(a));
    return QPointF(nearZero(x) ? 0.0 : x, nearZero(y) ? 0.0 : y);
}

double QmlGeomProvider::degreesToRadians(double degrees)
{
    GEOM_NAN(degrees, "degrees", 0.0);
    return degrees * 0.017453292519943295;
}

double QmlGeomProvider::radiansToDegrees(double radians)
{
    GEOM_NAN(radians, "radians", 0.0);
    return radians * 57.29577951308232;
}

bool QmlGeomProvider::fuzzyIsNull(double value, double eps)
{
    GEOM_NAN(value, "value", false);
    GEOM_NAN(eps, "eps", false);
    return eps >= std::abs(value);
}

bool QmlGeomProvider::fuzzyIsEqual(double v1, double v2, double eps)
{
    GEOM_NAN(v1, "v1", false);
    GEOM_NAN(v2, "v2", false);
    GEOM_NAN(eps, "eps", false);
    return eps >= std::abs(v1 - v2);
}

double QmlGeomProvider::normAngle(double a)
{
    GEOM_NAN(a, "a", 0.0);
    return Numeric::normalizeAngle(a);
}

double QmlGeomProvider::middleAngle(double a1, double a2, int dir)
{
    GEOM_NAN(a1, "a1", 0.0);
    GEOM_NAN(a2, "a2", 0.0);
    if (dir == 0) {
        m_engine->consoleCall(QStringLiteral("error"),
                              tr("Function Math.middleAngle(a1, a2, dir), argument 'dir' must be Coil.CW or Coil.CCW"));
    }
    const double n1 = Numeric::normalizeAngle(a1);
    double n2 = Numeric::normalizeAngle(a2);
    if (n1 > n2)
        n2 += 360.0;
    double mid = (n2 - n1) * 0.5 + n1;
    if (dir == -1)
        mid += 180.0;
    return Numeric::normalizeAngle(mid);
}

double QmlGeomProvider::angle(const QJSValue &arg1, const QJSValue &arg2)
{
    const QVariant v1 = arg1.toVariant();
    const QVariant v2 = arg2.toVariant();
    if (v1.userType() == qMetaTypeId<QmlVector3>() && v2.userType() == qMetaTypeId<QmlVector3>())
        return v1.value<QmlVector3>().angle(v2.value<QmlVector3>());
    const bool numbers = arg1.isNumber() && arg2.isNumber() && v1.userType() == v2.userType();
    if (!numbers) {
        fail(tr("Argument 'v1' and 'v2' must be type of number or Vector3"));
        return 0.0;
    }
    double x = arg1.toNumber();
    double y = arg2.toNumber();
    GEOM_NAN(x, "x", 0.0);
    GEOM_NAN(y, "y", 0.0);
    return polarAngle(x, y);
}

double QmlGeomProvider::angleX(double x, double y, double z)
{
    Q_UNUSED(x)
    GEOM_NAN(y, "y", 0.0);
    GEOM_NAN(z, "z", 0.0);
    return polarAngle(y, z);
}

double QmlGeomProvider::angleX(const QmlPoint3 &p)
{
    return angleX(p.x, p.y, p.z);
}

double QmlGeomProvider::angleY(double x, double y, double z)
{
    Q_UNUSED(y)
    GEOM_NAN(x, "x", 0.0);
    GEOM_NAN(z, "z", 0.0);
    return polarAngle(x, z);
}

double QmlGeomProvider::angleY(const QmlPoint3 &p)
{
    return angleY(p.x, p.y, p.z);
}

double QmlGeomProvider::angleZ(double x, double y, double z)
{
    Q_UNUSED(z)
    GEOM_NAN(x, "x", 0.0);
    GEOM_NAN(y, "y", 0.0);
    return polarAngle(x, y);
}

double QmlGeomProvider::angleZ(const QmlPoint3 &p)
{
    return angleZ(p.x, p.y, p.z);
}

double QmlGeomProvider::angleBetweenVector(const QmlVector3 &v1, const QmlVector3 &v2)
{
    return v1.angle(v2);
}

double QmlGeomProvider::radius(double x, double y)
{
    GEOM_NAN(x, "x", 0.0);
    GEOM_NAN(y, "y", 0.0);
    return std::sqrt(x * x + y * y);
}

double QmlGeomProvider::radiusX(double x, double y, double z)
{
    Q_UNUSED(x)
    GEOM_NAN(y, "y", 0.0);
    GEOM_NAN(z, "z", 0.0);
    return std::sqrt(y * y + z * z);
}

double QmlGeomProvider::radiusX(const QmlPoint3 &p)
{
    return radiusX(p.x, p.y, p.z);
}

double QmlGeomProvider::radiusY(double x, double y, double z)
{
    Q_UNUSED(y)
    GEOM_NAN(x, "x", 0.0);
    GEOM_NAN(z, "z", 0.0);
    return std::sqrt(x * x + z * z);
}

double QmlGeomProvider::radiusY(const QmlPoint3 &p)
{
    return radiusY(p.x, p.y, p.z);
}

double QmlGeomProvider::radiusZ(double x, double y, double z)
{
    Q_UNUSED(z)
    return radius(x, y);
}

double QmlGeomProvider::radiusZ(const QmlPoint3 &p)
{
    return radiusZ(p.x, p.y, p.z);
}

double QmlGeomProvider::distance(const QmlPoint3 &p1, const QmlPoint3 &p2)
{
    return p1.distance(p2);
}

QmlVector3 QmlGeomProvider::vector3(double x, double y, double z)
{
    GEOM_NAN(x, "x", QmlVector3());
    GEOM_NAN(y, "y", QmlVector3());
    GEOM_NAN(z, "z", QmlVector3());
    return QmlVector3(servoce::vector3(x, y, z));
}

QmlVector3 QmlGeomProvider::vector3(double x, double y)
{
    return vector3(x, y, 0.0);
}

QmlVector3 QmlGeomProvider::vector3(double x)
{
    return vector3(x, 0.0, 0.0);
}

QmlVector3 QmlGeomProvider::vector3()
{
    return QmlVector3();
}

QmlVector3 QmlGeomProvider::vector3(const QmlPoint3 &p)
{
    return vector3(p.x, p.y, p.z);
}

QmlVector3 QmlGeomProvider::vector3(const QmlPoint3 &p1, const QmlPoint3 &p2)
{
    return QmlVector3(servoce::vector3(p2.x - p1.x, p2.y - p1.y, p2.z - p1.z));
}

QmlPoint3 QmlGeomProvider::point3(double x, double y, double z)
{
    GEOM_NAN(x, "x", QmlPoint3());
    GEOM_NAN(y, "y", QmlPoint3());
    GEOM_NAN(z, "z", QmlPoint3());
    return QmlPoint3(servoce::point3(x, y, z));
}

QmlPoint3 QmlGeomProvider::point3(double x, double y)
{
    return point3(x, y, 0.0);
}

QmlPoint3 QmlGeomProvider::point3(double x)
{
    return point3(x, 0.0, 0.0);
}

QmlPoint3 QmlGeomProvider::point3()
{
    return QmlPoint3();
}

QmlPoint3 QmlGeomProvider::point3(const QPointF &pt, double z)
{
    GEOM_NAN(z, "z", QmlPoint3());
    return QmlPoint3(servoce::point3(pt.x(), pt.y(), z));
}

QmlPoint3 QmlGeomProvider::point3(const QPointF &pt)
{
    return point3(pt, 0.0);
}

QmlPoint3 QmlGeomProvider::pointAtSegment(const QmlPoint3 &p1, const QmlPoint3 &p2, double t)
{
    const double length = p1.distance(p2);
    if (!(length > 0.0) || std::isnan(t)) {
        fail(tr("Critical error at abscissaPoint"));
        return QmlPoint3();
    }
    // Measured from the end the sign of t points away from.
    const servoce::point3 &from = t < 0.0 ? static_cast<const servoce::point3 &>(p1) : p2;
    const double k = t / length;
    return QmlPoint3(servoce::point3(from.x + (p2.x - p1.x) * k, from.y + (p2.y - p1.y) * k,
                                     from.z + (p2.z - p1.z) * k));
}

QmlShape QmlGeomProvider::segment(const QmlPoint3 &p1, const QmlPoint3 &p2)
{
    return wrap(servoce::segment(p1, p2));
}

bool QmlGeomProvider::pointsOf(const QVariantList &list, std::vector<servoce::point3> &points)
{
    points = QmlPoint3::fromList(list);
    if (!points.empty())
        return true;
    fail(tr("Array of points is empty"));
    return false;
}

QmlShape QmlGeomProvider::polysegment(const QVariantList &points, bool closed)
{
    std::vector<servoce::point3> vertices;
    if (!pointsOf(points, vertices))
        return empty();
    if (vertices.size() < 2) {
        fail(tr("Size of array of points is less 2"));
        return empty();
    }
    const servoce::shape result = servoce::polysegment(vertices, closed);
    if (result.is_null()) {
        fail(QStringLiteral("%1 %2").arg(QString::fromStdString(servoce::last_failure()), pointsText(vertices)));
        return empty();
    }
    return wrap(result);
}

QmlShape QmlGeomProvider::bspline(const QVariantList &points, bool closed)
{
    std::vector<servoce::point3> vertices;
    if (!pointsOf(points, vertices))
        return empty();
    return wrap(servoce::interpolate(vertices, closed));
}

QmlShape QmlGeomProvider::arc(double r, double angle)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(angle, "angle", empty());
    return wrap(servoce::circle_edge(r, 0.0, qDegreesToRadians(angle)));
}

QmlShape QmlGeomProvider::arc(double r, double a1, double a2)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(a1, "a1", empty());
    GEOM_NAN(a2, "a2", empty());
    return wrap(servoce::circle_edge(r, qDegreesToRadians(a1), qDegreesToRadians(a2)));
}

QmlShape QmlGeomProvider::arc(const QmlPoint3 &p1, const QmlPoint3 &p2, const QmlPoint3 &p3)
{
    return wrap(servoce::circle_arc(p1, p2, p3));
}

QmlShape QmlGeomProvider::circle(double r)
{
    GEOM_NAN(r, "radius", empty());
    return wrap(servoce::circle(r));
}

QmlShape QmlGeomProvider::circle(double r, double angle)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(angle, "angle", empty());
    const double sweep = sweepRadians(angle);
    // Symmetric about +X, as slots and poles are drawn.
    return wrap(servoce::circle(r, sweep).transformed(servoce::rotateZ(-sweep / 2.0)));
}

QmlShape QmlGeomProvider::circle(double r, double a1, double a2)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(a1, "a1", empty());
    GEOM_NAN(a2, "a2", empty());
    return wrap(servoce::circle(r, sweepRadians(a1), sweepRadians(a2)));
}

QmlShape QmlGeomProvider::ellipse(double r1, double r2)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    return wrap(servoce::ellipse(r1, r2));
}

QmlShape QmlGeomProvider::ellipse(double r1, double r2, double a1, double a2)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(a1, "angle1", empty());
    GEOM_NAN(a2, "angle2", empty());
    return wrap(servoce::ellipse(r1, r2, sweepRadians(a1), sweepRadians(a2)));
}

QmlShape QmlGeomProvider::ring(double r1, double r2)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    if (nearZero(r1 - r2))
        return wrap(servoce::circle_edge(r1));
    return wrap(servoce::make_difference(servoce::circle(std::max(r1, r2)), servoce::circle(std::min(r1, r2)), true));
}

QmlShape QmlGeomProvider::ring(double r1, double r2, double angle)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(angle, "angle", empty());
    const double sweep = sweepRadians(angle);
    const servoce::shape sector =
        nearZero(r1 - r2) ? servoce::shape(servoce::circle_edge(r1, sweep))
                          : servoce::make_difference(servoce::circle(std::max(r1, r2), sweep),
                                                     servoce::circle(std::min(r1, r2), sweep), true);
    return wrap(sector.transformed(servoce::rotateZ(-sweep / 2.0)));
}

QmlShape QmlGeomProvider::ring(double r1, double r2, double a1, double a2)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(a1, "a1", empty());
    GEOM_NAN(a2, "a2", empty());
    const double from = sweepRadians(a1);
    const double to = sweepRadians(a2);
    if (nearZero(r1 - r2))
        return wrap(servoce::circle_edge(r1, from, to));
    return wrap(servoce::make_difference(servoce::circle(std::max(r1, r2), from, to),
                                         servoce::circle(std::min(r1, r2), from, to), true));
}

QmlShape QmlGeomProvider::ngon(double r, int n)
{
    GEOM_NAN(r, "radius", empty());
    if (n <= 2) {
        fail(tr("Argument 'n' must be great 2"));
        return empty();
    }
    return wrap(servoce::ngon(r, n));
}

QmlShape QmlGeomProvider::square(double a, bool center)
{
    GEOM_NAN(a, "a", empty());
    GEOM_GREAT(a, "a", empty());
    return wrap(servoce::square(a, center));
}

QmlShape QmlGeomProvider::rectangle(double a, double b, bool center)
{
    GEOM_NAN(a, "width", empty());
    GEOM_NAN(b, "height", empty());
    GEOM_GREAT(a, "width", empty());
    GEOM_GREAT(b, "height", empty());
    return wrap(servoce::rectangle(a, b, center));
}

QmlShape QmlGeomProvider::polygon(const QVariantList &points)
{
    std::vector<servoce::point3> vertices;
    if (!pointsOf(points, vertices))
        return empty();
    return wrap(servoce::polygon(vertices));
}

QmlShape QmlGeomProvider::infplane(const QmlPoint3 &pos, const QmlVector3 &dir)
{
    return wrap(servoce::infplane(pos, dir));
}

QmlShape QmlGeomProvider::box(double a)
{
    GEOM_NAN(a, "a", empty());
    GEOM_GREAT(a, "a", empty());
    return wrap(servoce::box(a, a, a, false));
}

QmlShape QmlGeomProvider::box(double x, double y, double z)
{
    GEOM_NAN(x, "x", empty());
    GEOM_NAN(y, "y", empty());
    GEOM_NAN(z, "z", empty());
    GEOM_GREAT(x, "x", empty());
    GEOM_GREAT(y, "y", empty());
    GEOM_GREAT(z, "z", empty());
    return wrap(servoce::box(x, y, z, false));
}

QmlShape QmlGeomProvider::cylinder(double r, double h)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(h, "h", empty());
    GEOM_GREAT(r, "radius", empty());
    GEOM_GREAT(h, "h", empty());
    return wrap(servoce::cylinder(r, h, false));
}

QmlShape QmlGeomProvider::cylinder(double r, double h, double angle)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(h, "h", empty());
    GEOM_NAN(angle, "angle", empty());
    GEOM_GREAT(r, "radius", empty());
    GEOM_GREAT(h, "h", empty());
    const double sweep = sweepRadians(angle);
    return wrap(servoce::cylinder(r, h, sweep, false).transformed(servoce::rotateZ(-sweep / 2.0)));
}

void QmlGeomProvider::heightRule(double &h, const char *word)
{
    // A script that computes a height of nothing still gets a body to look at.
    if (fuzzyLessOrEqual(h, 0.0)) {
        qWarning().noquote() << word << "height is less zero, set to 0.001";
        h = 0.001;
    } else if (nearZero(h)) {
        qWarning().noquote() << word << "height is zero, set to 0.001";
        h = 0.001;
    }
}

// A sweep of 0 stands for the whole turn.
QmlShape QmlGeomProvider::collarSwept(double r1, double r2, double h, double sweep)
{
    const bool full = sweep == 0.0;
    if (fuzzyLessOrEqual(r2, 0.0) || nearZero(r1 - r2))
        return wrap(full ? servoce::cylinder(r1, h, false) : servoce::cylinder(r1, h, sweep, false));
    if (r1 < r2)
        std::swap(r1, r2);
    return wrap(full ? servoce::tube(r1, r2, h) : servoce::tube(r1, r2, h, sweep));
}

QmlShape QmlGeomProvider::collar(double r1, double r2, double h)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(h, "h", empty());
    heightRule(h, "collar");
    return collarSwept(r1, r2, h, 0.0);
}

QmlShape QmlGeomProvider::collar(double r1, double r2, double h, double angle)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(h, "h", empty());
    GEOM_NAN(angle, "angle", empty());
    heightRule(h, "collar");
    if (nearZero(angle)) {
        qWarning().noquote() << "collar angle is zero, set to 360";
        angle = 360.0;
    }
    if (nearZero(angle - 360.0))
        return collarSwept(r1, r2, h, 0.0);
    const double sweep = sweepRadians(angle);
    const QmlShape swept = collarSwept(r1, r2, h, sweep);
    return wrap(swept.transformed(servoce::rotateZ(-sweep / 2.0)));
}

QmlShape QmlGeomProvider::cone(double r1, double r2, double h)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(h, "h", empty());
    heightRule(h, "cone");
    return wrap(servoce::cone(r1, r2, h, false));
}

QmlShape QmlGeomProvider::cone(double r1, double r2, double h, double angle)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(h, "h", empty());
    GEOM_NAN(angle, "angle", empty());
    heightRule(h, "cone");
    return wrap(servoce::cone(r1, r2, h, sweepRadians(angle), false));
}

QmlShape QmlGeomProvider::sphere(double r)
{
    GEOM_NAN(r, "radius", empty());
    return wrap(servoce::sphere(r));
}

QmlShape QmlGeomProvider::sphere(double r, double an1)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(an1, "an1", empty());
    return wrap(servoce::sphere(r, an1));
}

QmlShape QmlGeomProvider::sphere(double r, double an1, double an2)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(an1, "an1", empty());
    GEOM_NAN(an2, "an2", empty());
    return wrap(servoce::sphere(r, an1, an2));
}

QmlShape QmlGeomProvider::sphere(double r, double an1, double an2, double an3)
{
    GEOM_NAN(r, "radius", empty());
    GEOM_NAN(an1, "an1", empty());
    GEOM_NAN(an2, "an2", empty());
    GEOM_NAN(an3, "an3", empty());
    return wrap(servoce::sphere(r, an1, an2, an3));
}

QmlShape QmlGeomProvider::torus(double r1, double r2)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    return wrap(servoce::torus(r1, r2));
}

QmlShape QmlGeomProvider::torus(double r1, double r2, double ua)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(ua, "ua", empty());
    return wrap(servoce::torus(r1, r2, ua));
}

QmlShape QmlGeomProvider::torus(double r1, double r2, double va1, double va2)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(va1, "va1", empty());
    GEOM_NAN(va2, "va2", empty());
    return wrap(servoce::torus(r1, r2, va1, va2));
}

QmlShape QmlGeomProvider::torus(double r1, double r2, double va1, double va2, double ua)
{
    GEOM_NAN(r1, "radius1", empty());
    GEOM_NAN(r2, "radius2", empty());
    GEOM_NAN(ua, "ua", empty());
    GEOM_NAN(va1, "va1", empty());
    GEOM_NAN(va2, "va2", empty());
    return wrap(servoce::torus(r1, r2, va1, va2, ua));
}

bool QmlGeomProvider::operands(const QmlShape &a, const QmlShape &b, const QString &message)
{
    if (!a.is_null() && !b.is_null())
        return true;
    fail(message);
    return false;
}

bool QmlGeomProvider::listed(const QVariantList &list, std::vector<servoce::shape> &shapes)
{
    shapes = QmlShape::fromList(list);
    return !shapes.empty();
}

QmlShape QmlGeomProvider::unite(const QmlShape &a, const QmlShape &b)
{
    if (!operands(a, b, tr("Do not unite null shape")))
        return empty();
    return wrap(servoce::make_union(a, b, false));
}

QmlShape QmlGeomProvider::unite(const QVariantList &shapes)
{
    std::vector<servoce::shape> members;
    if (!listed(shapes, members)) {
        fail(tr("Array of shapes is empty"));
        return empty();
    }
    return wrap(servoce::makeUnion(QList<servoce::shape>(members.begin(), members.end()), true));
}

QmlShape QmlGeomProvider::difference(const QmlShape &a, const QmlShape &b)
{
    if (!operands(a, b, tr("Do not difference null shape")))
        return empty();
    return wrap(servoce::make_difference(a, b, true));
}

QmlShape QmlGeomProvider::difference(const QVariantList &shapes)
{
    std::vector<servoce::shape> members;
    if (!listed(shapes, members)) {
        fail(tr("Array of shape is empty"));
        return empty();
    }
    return wrap(servoce::make_difference(members, true));
}

QmlShape QmlGeomProvider::diff(const QmlShape &a, const QmlShape &b)
{
    return difference(a, b);
}

QmlShape QmlGeomProvider::diff(const QVariantList &shapes)
{
    return difference(shapes);
}

QmlShape QmlGeomProvider::intersect(const QmlShape &a, const QmlShape &b)
{
    if (!operands(a, b, tr("Do not intersect null shapes")))
        return empty();
    return wrap(servoce::unwrap(servoce::make_intersect(a, b, true)));
}

QmlShape QmlGeomProvider::intersect(const QVariantList &shapes)
{
    std::vector<servoce::shape> members;
    if (!listed(shapes, members)) {
        fail(tr("Array of shapes is empty"));
        return empty();
    }
    return wrap(servoce::unwrap(servoce::make_intersect(members, true)));
}

QmlShape QmlGeomProvider::section(const QmlShape &a, const QmlShape &b, bool pretty)
{
    if (!operands(a, b, tr("Do not intersect null shape")))
        return empty();
    return wrap(servoce::make_section(a, b, pretty));
}

QmlShape QmlGeomProvider::wire(const QVariantList &list)
{
    std::vector<servoce::shape> members;
    if (!listed(list, members)) {
        fail(tr("Array of shapes is empty"));
        return empty();
    }
    return wrap(servoce::make_wire(members));
}

QmlShape QmlGeomProvider::fill(const QmlShape &shr)
{
    if (shr.is_null()) {
        fail(tr("Do not fill null shape"));
        return empty();
    }
    return wrap(servoce::fill(shr));
}

QmlShape QmlGeomProvider::unify(const QmlShape &proto)
{
    if (proto.is_null()) {
        fail(tr("Do not unify null shape"));
        return empty();
    }
    return wrap(servoce::unify(proto));
}

bool QmlGeomProvider::roundable(const QmlShape &shp, double r, const QString &nullMessage, QmlShape &result)
{
    if (shp.is_null()) {
        fail(nullMessage);
        result = empty();
        return false;
    }
    result = shp;
    if (std::isnan(r)) {
        fail(tr("Argument 'r' is NaN"));
        return false;
    }
    if (fuzzyLessOrEqual(r, 0.0)) {
        m_engine->consoleCall(QStringLiteral("error"), tr("Argument 'r' is less or equal zero"));
        return false;
    }
    return true;
}

QmlShape QmlGeomProvider::rounded(const QmlShape &shp, const servoce::shape &result, const QString &failure, double r,
                                  const QString &refs)
{
    if (!result.is_null())
        return wrap(result);
    const QString kernel = QString::fromStdString(servoce::last_failure());
    const QString radius = QString::number(r, 'g');
    m_engine->consoleCall(QStringLiteral("error"),
                          refs.isNull() ? failure.arg(kernel, radius) : failure.arg(kernel, radius, refs));
    return shp;
}

QmlShape QmlGeomProvider::fillet(const QmlShape &shp, double r)
{
    QmlShape result;
    if (!roundable(shp, r, tr("Do not fillet null shape"), result))
        return result;
    return rounded(shp, servoce::fillet(servoce::unwrap(shp), r),
                   tr("Error fillet: %1, radius %2"), r);
}

QmlShape QmlGeomProvider::fillet(const QmlShape &shp, double r, const QVariantList &refs)
{
    QmlShape result;
    if (!roundable(shp, r, tr("Do not fillet null shape"), result))
        return result;
    if (refs.isEmpty()) {
        m_engine->consoleCall(QStringLiteral("warn"), tr("Argument 'refs' is empty"));
        return fillet(shp, r);
    }
    const QString failure = tr("Error fillet: %1, radius %2, refs %3");
    const servoce::shape model = servoce::unwrap(shp);
    if (refs.first().userType() == qMetaTypeId<QmlPoint3>()) {
        const std::vector<servoce::point3> points = QmlPoint3::fromList(refs);
        return rounded(shp, servoce::fillet(model, r, points), failure, r, pointsText(points));
    }
    if (refs.first().userType() == qMetaTypeId<QmlShape>()) {
        const std::vector<servoce::shape> edges = QmlShape::fromList(refs);
        QStringList names;
        for (const servoce::shape &edge : edges)
            names << QString::fromStdString(edge.shape_type_name());
        return rounded(shp, servoce::fillet(model, r, edges),
                       failure, r, QStringLiteral("{ %1 }").arg(names.join(QStringLiteral(", "))));
    }
    return shp;
}

QmlShape QmlGeomProvider::filletFace(const QmlShape &shp, double r, const QJSValue &ref)
{
    QmlShape result;
    if (!roundable(shp, r, tr("Do not fillet null shape"), result))
        return result;
    const QVariant value = ref.toVariant();
    servoce::shape face;
    if (value.userType() == qMetaTypeId<QmlShape>()) {
        face = value.value<QmlShape>().as_face();
        if (face.is_null()) {
            fail(tr("Argument 'ref' must be type of face"));
            return shp;
        }
    } else if (value.userType() == qMetaTypeId<QmlPoint3>()) {
        face = shp.nearest_face(value.value<QmlPoint3>());
    } else {
        fail(tr("Argument 'ref' must be type of pont3 or shape"));
        return shp;
    }
    return rounded(shp, servoce::fillet(servoce::unwrap(shp), r, std::vector<servoce::shape>{face}),
                   tr("Error fillet: %1, radius %2"), r);
}

QmlShape QmlGeomProvider::chamfer(const QmlShape &shp, double r)
{
    QmlShape result;
    if (!roundable(shp, r, tr("Do not chamfer null shape"), result))
        return result;
    return rounded(shp, servoce::chamfer(servoce::unwrap(shp), r),
                   tr("Error chamfer %1, radius %2"), r);
}

QmlShape QmlGeomProvider::chamfer(const QmlShape &shp, double r, const QVariantList &refs)
{
    QmlShape result;
    if (!roundable(shp, r, tr("Do not chamfer null shape"), result))
        return result;
    if (refs.isEmpty()) {
        m_engine->consoleCall(QStringLiteral("warn"), tr("Argument 'refs' is empty"));
        return chamfer(shp, r);
    }
    if (refs.first().userType() != qMetaTypeId<QmlPoint3>())
        return shp;
    return rounded(shp, servoce::chamfer(servoce::unwrap(shp), r, QmlPoint3::fromList(refs)),
                   tr("Error chamfer %1, radius %2"), r);
}

QmlBoundingBox QmlGeomProvider::boundingBox(const QmlShape &s)
{
    return QmlBoundingBox(s.bounding_box());
}

QmlShape QmlGeomProvider::shape(const QmlBoundingBox &bbox)
{
    return wrap(servoce::bounding_box_shape(bbox.box()));
}

Piece QmlGeomProvider::piece(const QmlShape &shape, const QVariant &vMaterial)
{
    const servoce::shape body = shape.is_null() ? empty() : shape;
    QSharedPointer<AbstractMaterial> material;
    if (vMaterial.userType() == QMetaType::Int) {
        material.reset(new CustomMaterial(QColor(Qt::GlobalColor(vMaterial.toInt()))));
    } else if (vMaterial.userType() == QMetaType::QColor) {
        material.reset(new CustomMaterial(vMaterial.value<QColor>()));
    } else if (const AbstractMaterial *scriptMaterial = QmlMaterials::pieceMaterial(vMaterial)) {
        material = scriptMaterial->clone();
    } else {
        const QString message = tr("Function piece() contains argument of an unsupported type: %1")
                                    .arg(QLatin1String(vMaterial.typeName()));
        qCritical().noquote() << "Error:" << message;
        m_engine->consoleCall(QStringLiteral("error"), message);
        material.reset(new EmptyMaterial);
    }
    return Piece(body, material);
}
