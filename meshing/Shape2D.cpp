#include "meshing/Shape2D.h"

#include <QRectF>
#include <QTransform>
#include <QtMath>
#include <cmath>

#include "meshing/PlanarKernel.h"
#include "base/Numeric.h"

namespace {

const double zeroTolerance = Numeric::zeroTolerance;

QString number(double value)
{
    return QString::number(std::abs(value) <= zeroTolerance ? 0.0 : value, 'g', 6);
}

QString pointText(const QPointF &point)
{
    return QStringLiteral("(%1, %2)").arg(number(point.x()), number(point.y()));
}

bool near(const QPointF &a, const QPointF &b, double tolerance)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

double zeroed(double value)
{
    return std::abs(value) <= zeroTolerance ? 0.0 : value;
}

// The largest sag of a chord of an arc drawn as a polygon.
const double maximumSag = 0.0001;

} // namespace

namespace flat {

QString pointText(const QPointF &point, char format, int precision)
{
    return QStringLiteral("(%1, %2)").arg(point.x(), 0, format, precision).arg(point.y(), 0, format, precision);
}

} // namespace flat

QString Line2D::toString() const
{
    return QStringLiteral("L%1%2").arg(pointText(p1()), pointText(p2()));
}

bool Line2D::isNull() const
{
    return QLineF::length() <= zeroTolerance;
}

QPainterPath Line2D::toPath() const
{
    QPainterPath path(p1());
    path.lineTo(p2());
    return path;
}

QString Arc2D::toString() const
{
    return QStringLiteral("A[A1:%1° A2:%2° R:%3 C:%4 P1:%5 P2:%6]")
        .arg(number(startAngle), number(endAngle), number(radius), pointText(center), pointText(p1()),
             pointText(p2()));
}

bool Arc2D::isNull() const
{
    return std::abs(radius) <= zeroTolerance || std::abs(endAngle - startAngle) <= zeroTolerance;
}

PointF Arc2D::pointAt(double angle) const
{
    const double a = qDegreesToRadians(angle);
    return PointF(center.x() + zeroed(radius * std::cos(a)), center.y() + zeroed(radius * std::sin(a)));
}

double Arc2D::sweep() const
{
    if (!ccw)
        return endAngle - startAngle;
    const double end = startAngle > endAngle ? endAngle + 360.0 : endAngle;
    double sweep = end - startAngle;
    if (std::abs(sweep) <= zeroTolerance)
        return 0.0;
    while (sweep < 0.0)
        sweep += 360.0;
    if (sweep > 360.0)
        sweep = std::fmod(sweep, 360.0);
    return std::abs(sweep);
}

double Arc2D::length() const
{
    return std::abs(sweep()) * radius * M_PI / 180.0;
}

QList<PointF> Arc2D::points() const
{
    const double stepAngle = std::abs(qRadiansToDegrees(2.0 * std::acos(1.0 - maximumSag / radius)));
    const double step = radius * stepAngle * M_PI / 180.0;
    const double arcLength = length();
    if (!(arcLength >= step) || step <= 0.0)
        return {p1(), p2()};
    const int n = qMax(2, qRound(arcLength / step));
    const double angleStep = sweep() / n;
    QList<PointF> points{p1()};
    for (int i = 1; i <= n; ++i) {
        double angle = startAngle + i * angleStep;
        if (std::abs(angle) <= zeroTolerance)
            angle = 0.0;
        while (angle < 0.0)
            angle += 360.0;
        if (angle > 360.0 || qFuzzyCompare(angle, 360.0))
            angle = std::fmod(angle, 360.0);
        points.append(pointAt(angle));
    }
    return points;
}

QPainterPath Arc2D::toPath() const
{
    QPainterPath path;
    if (isNull())
        return path;
    const QList<PointF> arcPoints = points();
    path.moveTo(zeroed(arcPoints.first().x()), zeroed(arcPoints.first().y()));
    for (int i = 1; i < arcPoints.size(); ++i)
        path.lineTo(zeroed(arcPoints.at(i).x()), zeroed(arcPoints.at(i).y()));
    return path;
}

void Shape2DList::appendLine(const QPointF &p1, const QPointF &p2)
{
    append(QSharedPointer<Shape2D>(new Line2D(p1, p2)));
}

bool Shape2DList::sameAs(const Shape2D &a, const Shape2D &b)
{
    if (a.type() != b.type())
        return false;
    if (a.type() == Shape2D::LineType)
        return near(a.p1(), b.p1(), zeroTolerance) && near(a.p2(), b.p2(), zeroTolerance);
    const auto &arcA = static_cast<const Arc2D &>(a);
    const auto &arcB = static_cast<const Arc2D &>(b);
    return std::abs(arcA.startAngle - arcB.startAngle) <= zeroTolerance
           && std::abs(arcA.endAngle - arcB.endAngle) <= zeroTolerance
           && std::abs(arcA.radius - arcB.radius) <= zeroTolerance && near(arcA.center, arcB.center, zeroTolerance)
           && arcA.ccw == arcB.ccw;
}

Shape2DList Shape2DList::shifted(double dx, double dy) const
{
    if (std::abs(dx) <= zeroTolerance && std::abs(dy) <= zeroTolerance)
        return *this;
    const QTransform shift = QTransform::fromTranslate(dx, dy);
    Shape2DList result;
    for (const QSharedPointer<Shape2D> &shape : *this) {
        if (shape->type() == Shape2D::LineType) {
            result.append(QSharedPointer<Shape2D>(new Line2D(shift.map(static_cast<const QLineF &>(
                static_cast<const Line2D &>(*shape))))));
            continue;
        }
        auto *arc = static_cast<Arc2D *>(shape->clone());
        const QPointF first = shift.map(QPointF(arc->p1()));
        const QPointF last = shift.map(QPointF(arc->p2()));
        arc->center = shift.map(QPointF(arc->center));
        arc->startAngle = Numeric::normalizeAngle(
            qRadiansToDegrees(std::atan2(first.y() - arc->center.y(), first.x() - arc->center.x())));
        arc->endAngle = Numeric::normalizeAngle(
            qRadiansToDegrees(std::atan2(last.y() - arc->center.y(), last.x() - arc->center.x())));
        arc->ccw = true;
        result.append(QSharedPointer<Shape2D>(arc));
    }
    return result;
}

template <typename Keep>
Shape2DList Shape2DList::linesWhere(Keep keep) const
{
    Shape2DList result;
    for (const QSharedPointer<Shape2D> &shape : *this) {
        if (shape->type() == Shape2D::LineType && keep(shape->p1()) && keep(shape->p2()))
            result.append(shape);
    }
    return result;
}

Shape2DList Shape2DList::linesAtAbscissa(double x) const
{
    return linesWhere([x](const PointF &p) { return std::abs(p.x() - x) <= 1e-6; });
}

Shape2DList Shape2DList::linesAtOrdinate(double y) const
{
    return linesWhere([y](const PointF &p) { return std::abs(p.y() - y) <= 1e-6; });
}

Shape2DList Shape2DList::leftOf(double x) const
{
    return linesWhere([x](const PointF &p) { return p.x() < x || std::abs(p.x() - x) <= 0.001; });
}

Shape2DList Shape2DList::below(double y) const
{
    return linesWhere([y](const PointF &p) { return p.y() < y || std::abs(p.y() - y) <= 1e-6; });
}

QString Shape2DList::toString() const
{
    QString text = QStringLiteral("Shape2DList [%1]").arg(size());
    for (const QSharedPointer<Shape2D> &shape : *this)
        text += QLatin1Char('\n') + shape->toString();
    return text;
}

QList<PointF> Shape2DList::intersections(const QLineF &a, const QLineF &b, double tolerance)
{
    const double grow = tolerance / 2.0;
    const QRectF boxA = QRectF(a.p1(), a.p2()).normalized().adjusted(-grow, -grow, grow, grow);
    const QRectF boxB = QRectF(b.p1(), b.p2()).normalized().adjusted(-grow, -grow, grow, grow);
    if (!boxA.intersects(boxB))
        return {};
    QList<PointF> shared;
    for (const QPointF &endA : {a.p1(), a.p2()}) {
        for (const QPointF &endB : {b.p1(), b.p2()}) {
            if (near(endA, endB, tolerance))
                shared.append(endA);
        }
    }
    if (!shared.isEmpty())
        return shared;
    return planar::segmentIntersection(a, b);
}
