#pragma once

#include <QVector>
#include <QtMath>
#include <cmath>

#include "winding/Winding.h"

// One coil from slot 1 to slot 2 of a 12-slot stator, its sides 5 mm above the face:
// the outer end turn at radius 100 runs forward, the inner one at 50 comes back.
inline QVector<Winding::Endturns> oneCoil()
{
    const double pitch = qDegreesToRadians(30.0);
    auto side = [](int slot, double radius, double angle) {
        Winding::CoilSide result;
        result.slot = slot;
        result.angle = angle;
        result.center = {radius * std::cos(angle), radius * std::sin(angle), 5.0};
        return result;
    };
    Winding::Endturns coil;
    coil.phase = Winding::A;
    coil.outer.kind = Winding::EndturnKind::Outer;
    coil.outer.dir = Winding::Coil::CCW;
    coil.outer.begin = side(0, 100.0, 0.0);
    coil.outer.end = side(1, 100.0, pitch);
    coil.inner.kind = Winding::EndturnKind::Inner;
    coil.inner.dir = Winding::Coil::CW;
    coil.inner.begin = side(1, 50.0, pitch);
    coil.inner.end = side(0, 50.0, 0.0);
    return {coil};
}
