#pragma once

#include <QObject>
#include <QString>

// The order of magnet poles along the axis. The rotor stores it and shows it to
// scripts; the geometry script acts on it.
namespace PoleArrangement {
Q_NAMESPACE

enum Type {
    Unknown = -1,
    NN = 0,
    NS = 1,
    NSNS = 2,
    NSSN = 3,
    NNSS = 4,
    NNNN = 5,
};
Q_ENUM_NS(Type)

// "N-S" and so on; Unknown has no text.
QString text(Type type);
// A text that names no arrangement gives Unknown.
Type fromText(const QString &text);

} // namespace PoleArrangement
