#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include "winding/Winding.h"

namespace Winding {

// A point of machine coordinates, mm, in full precision.
struct Point3
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// A straight piece of an end-turn path.
struct Filament
{
    Point3 begin;
    Point3 end;
};

// Which radius a coil end lies at; the values are those scripts and files know.
enum class EndturnKind { Unknown = 0, Inner = 1, Outer = 2 };

QString toString(EndturnKind kind);

// Where an end turn starts and ends, slots and layers counted from 0, and its sense.
struct EndturnEnds
{
    EndturnKind kind = EndturnKind::Unknown;
    int beginSlot = 0;
    int beginLayer = 0;
    int endSlot = 0;
    int endLayer = 0;
    Coil::Orientation dir = Coil::Zero;
};

// "outer S1.L1-S2.L2 CCW": the slots and layers as a user counts them, from 1.
QString endturnDescription(const EndturnEnds &ends);
// "phase A, outer S1.L1-S2.L2 CCW": the heading of every message about one end turn.
QString endturnHeading(Phase phase, const EndturnEnds &ends);

// A path must meet the centre of its coil side exactly, each coordinate within 1e-7 mm.
bool isAtCenter(const Point3 &point, const Point3 &center);

// The faults of the filaments of one end turn, each message after `heading`: pieces shorter
// than a tenth of `coilRadius`, and bends sharper than a right angle (one degree less at
// the inner radius, where the coil has less room). An empty list when all is well.
QStringList filamentFaults(const QVector<Filament> &filaments, EndturnKind kind, double coilRadius,
                           const QString &heading);

} // namespace Winding
