#pragma once

#include <QObject>

namespace Machine {
Q_NAMESPACE

// Bodies along the axis from the bottom: stator and rotor bodies alternate.
enum Type {
    UnknownType = 0,
    SR = 1,
    SRS = 2,
    SRSRS = 3,
    RSR = 4,
    RSRSR = 5,
};
Q_ENUM_NS(Type)

} // namespace Machine
