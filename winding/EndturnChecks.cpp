#include "winding/EndturnChecks.h"

#include <QtMath>

#include "base/Numeric.h"

namespace Winding {

namespace {

Point3 direction(const Filament &filament)
{
    return {filament.end.x - filament.begin.x, filament.end.y - filament.begin.y, filament.end.z - filament.begin.z};
}

double squaredLength(const Point3 &v)
{
    return v.x * v.x + v.y * v.y + v.z * v.z;
}

} // namespace

QString toString(EndturnKind kind)
{
    switch (kind) {
    case EndturnKind::Inner:
        return QStringLiteral("inner");
    case EndturnKind::Outer:
        return QStringLiteral("outer");
    case EndturnKind::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

QString endturnDescription(const EndturnEnds &ends)
{
    return QStringLiteral("%6 S%1.L%2-S%3.L%4 %5")
        .arg(ends.beginSlot + 1)
        .arg(ends.beginLayer + 1)
        .arg(ends.endSlot + 1)
        .arg(ends.endLayer + 1)
        .arg(toString(ends.dir), toString(ends.kind));
}

QString endturnHeading(Phase phase, const EndturnEnds &ends)
{
    return QStringLiteral("phase %1, %2").arg(toString(phase), endturnDescription(ends));
}

bool isAtCenter(const Point3 &point, const Point3 &center)
{
    const double tolerance = Numeric::zeroTolerance;
    return qAbs(point.x - center.x) <= tolerance && qAbs(point.y - center.y) <= tolerance
           && qAbs(point.z - center.z) <= tolerance;
}

QStringList filamentFaults(const QVector<Filament> &filaments, EndturnKind kind, double coilRadius,
                           const QString &heading)
{
    QStringList faults;
    if (filaments.size() < 2)
        return faults;
    const double shortest = (0.1 * coilRadius) * (0.1 * coilRadius);
    const double limit = kind == EndturnKind::Inner ? 89.0 : 90.0;
    for (int i = 0; i + 1 < filaments.size(); ++i) {
        // The first pass looks at the first filament, every later one at the follower.
        const int measured = i == 0 ? 0 : i + 1;
        if (squaredLength(direction(filaments.at(measured))) < shortest)
            faults << heading + QStringLiteral(", filament %1 is very short").arg(measured + 1);

        const Point3 a = direction(filaments.at(i));
        const Point3 b = direction(filaments.at(i + 1));
        const double norms = std::sqrt(squaredLength(a) * squaredLength(b));
        const double dot = qBound(-1.0, norms > 0.0 ? (a.x * b.x + a.y * b.y + a.z * b.z) / norms : 1.0, 1.0);
        // 180 degrees for a straight run; a right-angled bend gives 90.
        const double angle = 180.0 - qRadiansToDegrees(std::acos(dot));
        if (angle <= limit && !qFuzzyCompare(angle, limit))
            faults << heading + QStringLiteral(", between filaments %2-%3 the angle %1").arg(angle).arg(i + 1).arg(i + 2);
    }
    return faults;
}

} // namespace Winding
