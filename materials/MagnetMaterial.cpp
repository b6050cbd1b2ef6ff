#include "materials/MagnetMaterial.h"

#include <QLinearGradient>

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
