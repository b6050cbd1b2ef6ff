#include "materials/Magnetization.h"
#include "base/Numeric.h"

#include <cmath>

#include <QtGlobal>

namespace {

bool fuzzyEqual(double a, double b)
{
    if (a == 0.0 || b == 0.0)
        return std::abs(a - b) <= 1e-12;
    return qFuzzyCompare(a, b);
}

} // namespace

double Magnetization::effectiveAngle() const
{
    const bool reversed = direction == Direction::Toward || direction == Direction::CCW;
    return Numeric::normalizeAngle(reversed ? angle + 180.0 : angle);
}

QString Magnetization::text() const
{
    switch (type) {
    case Type::Radial:
        return tr("%1 %2 center (%3, %4)")
            .arg(typeText(type), directionText(direction))
            .arg(center.x())
            .arg(center.y());
    case Type::Parallel:
        return tr("%1 %2°").arg(typeText(type)).arg(effectiveAngle());
    default:
        return typeText(type);
    }
}

QString Magnetization::typeText(Type type)
{
    switch (type) {
    case Type::Parallel:
        return tr("Parallel");
    case Type::Radial:
        return tr("Radial");
    default:
        return tr("UnknownMagnetization");
    }
}

QString Magnetization::directionText(Direction direction)
{
    switch (direction) {
    case Direction::From:
        return tr("From");
    case Direction::Toward:
        return tr("Toward");
    case Direction::CW:
        return tr("Clockwise");
    case Direction::CCW:
        return tr("Counter-clockwise");
    default:
        return tr("UnknownDirect");
    }
}

void Magnetization::registerMetaType()
{
    static const bool registered = [] {
        qRegisterMetaTypeStreamOperators<Magnetization>("Magnetization");
        return QMetaType::registerConverter<Magnetization, QString>(&Magnetization::text);
    }();
    Q_UNUSED(registered)
}

bool operator==(const Magnetization &a, const Magnetization &b)
{
    return a.type == b.type && a.center == b.center && a.direction == b.direction
        && fuzzyEqual(a.angle, b.angle);
}

bool operator!=(const Magnetization &a, const Magnetization &b)
{
    return !(a == b);
}

QDataStream &operator<<(QDataStream &out, const Magnetization &magnetization)
{
    return out << qint32(magnetization.type) << magnetization.center
               << qint32(magnetization.direction) << magnetization.angle;
}

QDataStream &operator>>(QDataStream &in, Magnetization &magnetization)
{
    qint32 type = 0;
    qint32 direction = 0;
    in >> type >> magnetization.center >> direction >> magnetization.angle;
    magnetization.type = Magnetization::Type(type);
    magnetization.direction = Magnetization::Direction(direction);
    return in;
}
