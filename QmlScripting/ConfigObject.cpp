#include "QmlScripting/ConfigObject.h"

#include "base/Numeric.h"
#include "materials/Magnetization.h"

#include <QDebug>

#include <cmath>

namespace {

bool isAngle(double angle, double target)
{
    return Numeric::isZero(angle - target);
}

double transformedParallelAngle(double angle, bool mirror, bool rotate)
{
    if (isAngle(angle, 90.0) || isAngle(angle, 270.0))
        return mirror != rotate ? angle + 180.0 : angle;
    if (isAngle(angle, 0.0) || isAngle(angle, 180.0))
        return rotate ? angle + 180.0 : angle;
    if (mirror)
        angle = Numeric::normalizeAngle(-angle);
    return rotate ? angle + 180.0 : angle;
}

} // namespace

ConfigObject::ConfigObject(QObject *parent)
    : ScriptObject(QStringLiteral("config"), parent)
{
}

bool ConfigObject::layoutReverse(int index) const
{
    if (index < 1 || index > 3)
        return false;
    // Layouts count from 0 and the first is never reversed; the script's names count from 1.
    return scriptProperty(QStringLiteral("layoutReverse%1").arg(index + 1)).toBool();
}

void ConfigObject::applyPoleTransform(int item, Magnetization &magnetization) const
{
    if (item < 1 || item > 3)
        return;
    const bool mirror = scriptProperty(QStringLiteral("poleMirrorUD%1").arg(item + 1)).toBool();
    const bool rotate = scriptProperty(QStringLiteral("poleRotatePolePitch%1").arg(item + 1)).toBool();
    if (!mirror && !rotate)
        return;
    if (magnetization.type == Magnetization::Type::Parallel) {
        magnetization.angle = transformedParallelAngle(magnetization.angle, mirror, rotate);
        return;
    }
    using Direction = Magnetization::Direction;
    if (rotate && (magnetization.direction == Direction::CW || magnetization.direction == Direction::CCW))
        magnetization.direction = magnetization.direction == Direction::CW ? Direction::CCW : Direction::CW;
}

void ConfigObject::correctProperties()
{
    const QVariantMap script = scriptProperties();
    const QVariantMap own = properties();
    for (auto it = own.cbegin(); it != own.cend(); ++it) {
        const auto found = script.constFind(it.key());
        if (found == script.cend() || found.value() == it.value())
            continue;
        qWarning() << "value" << it.key() << "is different, scriptValue:" << found.value()
                   << "thisValue:" << it.value();
        emit variableChanged(it.key(), found.value());
    }
}
