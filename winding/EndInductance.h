#pragma once

#include <QHash>
#include <QString>
#include <QVector>

#include "winding/EndturnChecks.h"
#include "winding/Winding.h"

class QDebug;
class ScriptConsole;

namespace Winding {

// A point or direction of the inductance formulas, in metres.
struct Vector3D
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    Vector3D operator+(const Vector3D &other) const { return {x + other.x, y + other.y, z + other.z}; }
    Vector3D operator-(const Vector3D &other) const { return {x - other.x, y - other.y, z - other.z}; }
    Vector3D operator*(double factor) const { return {x * factor, y * factor, z * factor}; }
    double dot(const Vector3D &other) const { return x * other.x + y * other.y + z * other.z; }
    double length() const;
};

QDebug operator<<(QDebug debug, const Vector3D &vector);

// Neumann's double line integral of the straight segments a-b and A-B, without the
// factor mu0 / 4 pi, in the unit of the coordinates. Geometric trouble gives 0 and a log line.
double evalNeumann(Vector3D a, Vector3D b, Vector3D A, Vector3D B);

// The self inductance, H, of a straight round wire of the given length and radius, m.
double straightWireSelfInductance(double length, double radius);

// One end of a coil as the inductance sees it: where it starts and ends, and its
// straight pieces in mm.
struct EndWire
{
    EndturnEnds ends;
    QVector<Filament> filaments;
};

// The two end wires of one coil.
struct CoilEndWires
{
    Phase phase = A;
    EndWire outer;
    EndWire inner;
};

// The key under which pairs of end turns share one value: the difference of their
// first slots and both senses, hashed by FNV-1a of 64 bits. The layer is no part of it.
quint64 endturnPairKey(const EndturnEnds &first, const EndturnEnds &second);

// Whether three phases of one side agree within 5 percent: L1, L2, L3 are the phases'
// own values, L12 and L13 the mutual ones of phase A with B and with C.
bool isPlausible(double l1, double l2, double l3, double l12, double l13);

// The factor from one turn to the series turns of a phase: (turns / paths)^2.
double turnsFactor(int numberTurns, int parallelPaths);

// The end-winding inductance of a phase and its parts, H.
struct Inductance
{
    QString methodText;
    double total = 0.0;
    double inner = 0.0;
    double innerSelf = 0.0;
    double innerMutual = 0.0;
    double outer = 0.0;
    double outerSelf = 0.0;
    double outerMutual = 0.0;
};

// What the end-winding inductance is worked out from.
struct EndInductanceInput
{
    // The coils of the first layout in the order of the layout.
    QVector<CoilEndWires> coils;
    // The diameter of a round wire as thick as the coil, m.
    double coilDiameter = 0.0;
    int numberTurns = 1;
    int parallelPaths = 1;
    bool toroidal = false;
};

// Sums the mutual inductances of the end turns of the three phases over all pairs of
// their straight pieces. Pairs of end turns that lie alike share one value.
class EndInductanceCalculator
{
public:
    // Lines for the user go to `console` when it is given.
    explicit EndInductanceCalculator(ScriptConsole *console = nullptr);

    Inductance calcEndInductance(const EndInductanceInput &input);

    // All pairs of pieces of two end turns; the radius, m, serves a piece with itself.
    static double calcFilamentMutualInductanceOuter(const CoilEndWires &first, const CoilEndWires &second,
                                                    double wireRadius);
    static double calcFilamentMutualInductanceInner(const CoilEndWires &first, const CoilEndWires &second,
                                                    double wireRadius);
    // The outer pieces of the first against the inner pieces of the second.
    static double calcFilamentMutualInductanceOuterInner(const CoilEndWires &first, const CoilEndWires &second);

    // Sums over all pairs of two lists; `label` names the pair in logs.
    double calcMutualInductanceOuter(const QVector<CoilEndWires> &list1, const QVector<CoilEndWires> &list2,
                                     const QString &label);
    double calcMutualInductanceInner(const QVector<CoilEndWires> &list1, const QVector<CoilEndWires> &list2,
                                     const QString &label);
    double calcMutualInductanceOuterInner(const QVector<CoilEndWires> &list1, const QVector<CoilEndWires> &list2,
                                          const QString &label) const;

private:
    // The five values of one side and the verdict on them.
    struct SideValues
    {
        double l1 = 0.0;
        double l2 = 0.0;
        double l3 = 0.0;
        double l12 = 0.0;
        double l13 = 0.0;
        bool plausible() const { return isPlausible(l1, l2, l3, l12, l13); }
    };

    using FilamentSum = double (*)(const CoilEndWires &, const CoilEndWires &, double);
    // The sum over all pairs of the two lists of one side, each distinct key worked out once.
    double cachedPairSum(const QVector<CoilEndWires> &list1, const QVector<CoilEndWires> &list2,
                         EndWire CoilEndWires::*side, QHash<quint64, double> &cache, FilamentSum filamentSum,
                         const char *nanMessage) const;
    void consoleLog(const QString &text) const;
    void consoleError(const QString &text) const;
    void reportSide(const SideValues &values, const QString &side, bool toroidal) const;

    ScriptConsole *m_console;
    double m_wireRadius = 0.0;
    QHash<quint64, double> m_outerCache;
    QHash<quint64, double> m_innerCache;
};

} // namespace Winding
