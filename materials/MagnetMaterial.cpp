#include "materials/MagnetMaterial.h"
#include "base/Numeric.h"

#include <QPainterPath>
#include <QLinearGradient>
#include <QPainter>
#include <QtMath>
#include <algorithm>
#include <cmath>

namespace {

const AbstractMaterial::Record parallelRecord{"MagnetParallelMaterial", 1,
                                              &AbstractMaterial::createDefault<MagnetParallelMaterial>};
const AbstractMaterial::Registration parallelRegistration(parallelRecord);

const AbstractMaterial::Record radialRecord{"MagnetRadialMaterial", 1,
                                            &AbstractMaterial::createDefault<MagnetRadialMaterial>};
const AbstractMaterial::Registration radialRegistration(radialRecord);

const QColor blue(96, 96, 255);
const QColor red(255, 96, 96);

Magnetization parallel(double angle)
{
    Magnetization magnetization;
    magnetization.type = Magnetization::Type::Parallel;
    magnetization.direction = Magnetization::Direction::From;
    magnetization.angle = angle;
    return magnetization;
}

Magnetization radial(Magnetization::Direction direction, const QPointF &center)
{
    Magnetization magnetization;
    magnetization.type = Magnetization::Type::Radial;
    magnetization.direction = direction;
    magnetization.center = center;
    return magnetization;
}

// Blue where the field leaves the body backwards, red ahead, split along the field.
QBrush parallelBrush(const QRectF &box, double angle)
{
    QLinearGradient gradient(QPointF(box.center().x(), box.top()), QPointF(box.center().x(), box.bottom()));
    gradient.setColorAt(0.0, blue);
    gradient.setColorAt(0.499, blue);
    gradient.setColorAt(0.501, red);
    gradient.setColorAt(1.0, red);
    QBrush brush(gradient);
    QTransform turn;
    turn.translate(box.center().x(), box.center().y());
    turn.rotate(angle - 90.0);
    turn.translate(-box.center().x(), -box.center().y());
    brush.setTransform(turn);
    return brush;
}

void strokeBody(QPainter *painter, const QPainterPath &path, const QColor &color)
{
    QPen pen(color.darker(200), 0.5);
    pen.setCosmetic(true);
    painter->strokePath(path, pen);
}

// Paints field patterns in device pixels, inside the body and the exposed rectangle,
// and puts the painter back as it was when it goes.
class DeviceCanvas
{
public:
    DeviceCanvas(QPainter *painter, const QPainterPath &path, const QRectF &clipRect, const QColor &color)
        : m_painter(painter)
        , m_toDevice(painter->combinedTransform())
    {
        const QPainterPath body = m_toDevice.map(path);
        m_bodyBox = body.boundingRect();
        m_area = m_bodyBox & m_toDevice.mapRect(clipRect);
        painter->save();
        painter->resetTransform();
        painter->setClipPath(body, Qt::IntersectClip);
        painter->setRenderHint(QPainter::Antialiasing);
        QPen pen(color.darker(200), 1.0);
        pen.setCosmetic(true);
        painter->setPen(pen);
        painter->setBrush(pen.color());
    }
    ~DeviceCanvas() { m_painter->restore(); }
    Q_DISABLE_COPY(DeviceCanvas)

    QPainter *painter() const { return m_painter; }
    QRectF area() const { return m_area; }
    QRectF bodyBox() const { return m_bodyBox; }
    QPointF map(const QPointF &point) const { return m_toDevice.map(point); }
    // A direction of the section as a unit vector on the device.
    QPointF direction(double degrees) const
    {
        const double radians = qDegreesToRadians(degrees);
        const QPointF d = m_toDevice.map(QPointF(std::cos(radians), std::sin(radians))) - m_toDevice.map(QPointF());
        return d / std::hypot(d.x(), d.y());
    }
    // The view turns the section over when it shows its y axis up.
    bool mirrored() const { return m_toDevice.determinant() < 0.0; }

private:
    QPainter *m_painter;
    QTransform m_toDevice;
    QRectF m_bodyBox;
    QRectF m_area;
};

QList<QPointF> cornersOf(const QRectF &rect)
{
    return {rect.topLeft(), rect.topRight(), rect.bottomRight(), rect.bottomLeft()};
}

void drawArrow(QPainter *painter, const QPointF &at, const QPointF &along)
{
    const QPointF across(-along.y(), along.x());
    const QPointF tip = at + along * 4.0;
    painter->drawLine(at - along * 4.0, tip);
    painter->drawLine(tip, tip - along * 3.0 + across * 2.0);
    painter->drawLine(tip, tip - along * 3.0 - across * 2.0);
}

// Rows of arrows along the field, on a grid turned with it about the body's centre.
void drawParallelPattern(const DeviceCanvas &canvas, double angle)
{
    const double along = 15.0;
    const double across = 30.0;
    const QPointF u = canvas.direction(angle);
    const QPointF v(-u.y(), u.x());
    const QPointF centre = canvas.bodyBox().center();
    double uMin = qInf(), uMax = -qInf(), vMin = qInf(), vMax = -qInf();
    for (const QPointF &corner : cornersOf(canvas.area())) {
        const QPointF d = corner - centre;
        uMin = std::min(uMin, QPointF::dotProduct(d, u));
        uMax = std::max(uMax, QPointF::dotProduct(d, u));
        vMin = std::min(vMin, QPointF::dotProduct(d, v));
        vMax = std::max(vMax, QPointF::dotProduct(d, v));
    }
    for (int j = int(std::ceil(vMin / across)); j <= int(std::floor(vMax / across)); ++j) {
        for (int i = int(std::ceil(uMin / along)); i <= int(std::floor(uMax / along)); ++i)
            drawArrow(canvas.painter(), centre + u * (i * along) + v * (j * across), u);
    }
}

// Where the field points at a point of a ring, given the ring's outward unit vector.
QPointF radialSense(Magnetization::Direction direction, const QPointF &outward, bool mirrored)
{
    const QPointF counterClockwise = QPointF(-outward.y(), outward.x()) * (mirrored ? -1.0 : 1.0);
    switch (direction) {
    case Magnetization::Direction::From:
        return outward;
    case Magnetization::Direction::Toward:
        return -outward;
    case Magnetization::Direction::CCW:
        return counterClockwise;
    case Magnetization::Direction::CW:
        return -counterClockwise;
    default:
        return {};
    }
}

// Arrows on rings about the pole, about 13 pixels apart along each ring.
void drawRadialPattern(const DeviceCanvas &canvas, const Magnetization &magnetization)
{
    const QPointF pole = canvas.map(magnetization.center);
    const QRectF area = canvas.area();
    const bool mirrored = canvas.mirrored();

    double nearest = 0.0;
    double farthest = 0.0;
    double start = 0.0;
    double span = 360.0;
    if (!area.contains(pole)) {
        const QPointF inside(qBound(area.left(), pole.x(), area.right()), qBound(area.top(), pole.y(), area.bottom()));
        nearest = std::hypot(inside.x() - pole.x(), inside.y() - pole.y());
        // Seen from outside, a rectangle spans less than half a turn about the first corner's angle.
        const QList<QPointF> corners = cornersOf(area);
        const double reference = qRadiansToDegrees(std::atan2(corners.first().y() - pole.y(), corners.first().x() - pole.x()));
        double low = 0.0;
        double high = 0.0;
        for (const QPointF &corner : corners) {
            double offset = qRadiansToDegrees(std::atan2(corner.y() - pole.y(), corner.x() - pole.x())) - reference;
            offset = std::remainder(offset, 360.0);
            low = std::min(low, offset);
            high = std::max(high, offset);
        }
        start = reference + low;
        span = high - low;
    }
    for (const QPointF &corner : cornersOf(area))
        farthest = std::max(farthest, std::hypot(corner.x() - pole.x(), corner.y() - pole.y()));

    for (int ring = std::max(0, int(std::ceil((nearest - 5.0) / 20.0))); 5.0 + 20.0 * ring <= farthest; ++ring) {
        const double radius = 5.0 + 20.0 * ring;
        const double step = 2340.0 / (M_PI * (radius + 15.0));
        const int first = int(std::ceil(start / step));
        const int count = int(span / step);
        for (int k = first; k < first + count; ++k) {
            const double radians = qDegreesToRadians(k * step);
            const QPointF outward(std::cos(radians), std::sin(radians));
            const QPointF sense = radialSense(magnetization.direction, outward, mirrored);
            if (!sense.isNull())
                drawArrow(canvas.painter(), pole + outward * radius, sense);
        }
    }
}

// Dots or crosses on two interleaved grids that move with the section, not with the body.
void drawAxialPattern(const DeviceCanvas &canvas, bool outward)
{
    const double pitch = 15.0;
    const double arm = 5.0 / std::sqrt(2.0);
    const QPointF origin = canvas.map(QPointF());
    const QRectF area = canvas.area().translated(-origin);
    for (const double offset : {0.0, pitch / 2.0}) {
        for (int j = int(std::ceil((area.top() - offset) / pitch)); j * pitch + offset <= area.bottom(); ++j) {
            for (int i = int(std::ceil((area.left() - offset) / pitch)); i * pitch + offset <= area.right(); ++i) {
                const QPointF at = origin + QPointF(i * pitch + offset, j * pitch + offset);
                if (outward) {
                    canvas.painter()->drawEllipse(at, 1.5, 1.5);
                } else {
                    canvas.painter()->drawLine(at + QPointF(-arm, -arm), at + QPointF(arm, arm));
                    canvas.painter()->drawLine(at + QPointF(-arm, arm), at + QPointF(arm, -arm));
                }
            }
        }
    }
}

} // namespace

MagnetMaterial::MagnetMaterial(const Magnetization &magnetization, const QVector<double> &segmentRadiuses)
    : AbstractMaterial(MagnetKind)
    , Magnetization(magnetization)
    , m_segmentRadiuses(segmentRadiuses)
{
}

void MagnetMaterial::save(QDataStream &out) const
{
    out << static_cast<const Magnetization &>(*this);
}

void MagnetMaterial::load(QDataStream &in)
{
    in >> static_cast<Magnetization &>(*this);
}

QColor MagnetMaterial::northColor()
{
    return red;
}

QColor MagnetMaterial::southColor()
{
    return blue;
}

QColor MagnetMaterial::color() const
{
    return direction == Direction::Toward || direction == Direction::CCW ? blue : red;
}

QBrush MagnetMaterial::brush() const
{
    QLinearGradient gradient(0.5, 0.0, 0.5, 1.0);
    gradient.setCoordinateMode(QGradient::ObjectBoundingMode);
    gradient.setColorAt(0.0, blue.lighter(120));
    gradient.setColorAt(0.499, blue.lighter(120));
    gradient.setColorAt(0.501, red.lighter(120));
    gradient.setColorAt(1.0, red.lighter(120));
    return QBrush(gradient);
}

void MagnetMaterial::draw(QPainter *painter, const QPainterPath &path, double scale, const QRectF &clipRect,
                          bool noOutline) const
{
    Q_UNUSED(scale)
    const bool isParallel = type == Type::Parallel;
    painter->fillPath(path, isParallel ? parallelBrush(path.boundingRect(), effectiveAngle()) : brush());
    if (!noOutline)
        strokeBody(painter, path, color());
    const DeviceCanvas canvas(painter, path, clipRect, color());
    if (canvas.area().isEmpty())
        return;
    if (isParallel)
        drawParallelPattern(canvas, effectiveAngle());
    else if (type == Type::Radial)
        drawRadialPattern(canvas, *this);
}

QString MagnetMaterial::description() const
{
    // Both bases declare tr; material texts belong to the material context.
    return AbstractMaterial::tr("%1, %2, %3 segment(s)")
        .arg(materialTypeName(kind()), text())
        .arg(m_segmentRadiuses.size() + 1);
}

bool MagnetMaterial::equals(const AbstractMaterial &other) const
{
    const auto *magnet = dynamic_cast<const MagnetMaterial *>(&other);
    return magnet && AbstractMaterial::equals(other)
        && static_cast<const Magnetization &>(*magnet) == static_cast<const Magnetization &>(*this)
        && magnet->m_segmentRadiuses == m_segmentRadiuses;
}

MagnetParallelMaterial::MagnetParallelMaterial(double angle, const QVector<double> &segmentRadiuses,
                                               bool savePoleBorder)
    : MagnetMaterial(parallel(angle), segmentRadiuses)
    , m_savePoleBorder(savePoleBorder)
{
}

const AbstractMaterial::Record &MagnetParallelMaterial::persistenceKey() const
{
    return parallelRecord;
}

QSharedPointer<AbstractMaterial> MagnetParallelMaterial::clone() const
{
    return QSharedPointer<MagnetParallelMaterial>::create(*this);
}

void MagnetParallelMaterial::draw(QPainter *painter, const QPainterPath &path, double scale,
                                  const QRectF &clipRect, bool noOutline) const
{
    if (!m_axial) {
        MagnetMaterial::draw(painter, path, scale, clipRect, noOutline);
        return;
    }
    const double angle = effectiveAngle();
    const bool outward = angle <= Numeric::zeroTolerance || angle >= 360.0 - Numeric::zeroTolerance;
    const bool inward = Numeric::isZero(angle - 180.0);
    if (!outward && !inward)
        return;
    const QColor fill = outward ? blue : red;
    painter->fillPath(path, fill);
    if (!noOutline)
        strokeBody(painter, path, fill);
    const DeviceCanvas canvas(painter, path, clipRect, fill);
    if (!canvas.area().isEmpty())
        drawAxialPattern(canvas, outward);
}

bool MagnetParallelMaterial::equals(const AbstractMaterial &other) const
{
    const auto *magnet = dynamic_cast<const MagnetParallelMaterial *>(&other);
    return magnet && MagnetMaterial::equals(other) && magnet->m_savePoleBorder == m_savePoleBorder
        && magnet->m_axial == m_axial;
}

MagnetRadialMaterial::MagnetRadialMaterial(Direction direction, const QPointF &center,
                                           const QVector<double> &segmentRadiuses)
    : MagnetMaterial(radial(direction, center), segmentRadiuses)
{
}

const AbstractMaterial::Record &MagnetRadialMaterial::persistenceKey() const
{
    return radialRecord;
}

QSharedPointer<AbstractMaterial> MagnetRadialMaterial::clone() const
{
    return QSharedPointer<MagnetRadialMaterial>::create(*this);
}
