#include "winding/EndInductance.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QSet>
#include <QtMath>
#include <Eigen/Dense>
#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <optional>
#include <vector>

#include "base/Numeric.h"
#include "base/ScriptConsole.h"
#include "base/Tbb.h"

namespace Winding {

namespace {

constexpr double rotationStep = 0.05235987755982989; // 3 degrees
constexpr int rotationLimit = 120;
// One milliradian, in degrees: how far a point may lie off its line.
constexpr double onLineDegrees = 0.057295779513082325;
constexpr double mu0Over4Pi = 1.0000000000000001e-7;
constexpr double mmToM = 0.001;

void rotateX(Vector3D &p, double c, double s)
{
    const double y = p.y * c - p.z * s;
    p.z = p.y * s + p.z * c;
    p.y = y;
}

void rotateY(Vector3D &p, double c, double s)
{
    const double x = p.x * c + p.z * s;
    p.z = p.z * c - p.x * s;
    p.x = x;
}

void rotateZ(Vector3D &p, double c, double s)
{
    const double x = p.x * c - p.y * s;
    p.y = p.x * s + p.y * c;
    p.x = x;
}

bool hasNoSmallComponent(const Vector3D &v)
{
    return std::abs(v.x) > 1e-6 && std::abs(v.y) > 1e-6 && std::abs(v.z) > 1e-6;
}

// The angle between two directions, radians; a NaN counts as 0.
double angleBetween(const Vector3D &u, const Vector3D &v)
{
    const double angle = std::acos(qBound(-1.0, u.dot(v) / (u.length() * v.length()), 1.0));
    return std::isnan(angle) ? 0.0 : angle;
}

double degreesBetween(const Vector3D &u, const Vector3D &v)
{
    return qRadiansToDegrees(std::acos(qBound(-1.0, u.dot(v) / (u.length() * v.length()), 1.0)));
}

bool isNearlyParallel(double e)
{
    return std::abs(e) <= 1e-6 || std::abs(e - M_PI) <= 1e-6;
}

// How far `point` lies from its foot along `direction`, signed; nullopt when it is off the line.
std::optional<double> signedDistance(const Vector3D &point, const Vector3D &foot, const Vector3D &direction,
                                     const char *message)
{
    const Vector3D v = point - foot;
    const double length = v.length();
    if (length <= 1e-6)
        return 0.0;
    const double angle = degreesBetween(direction, v);
    if (std::abs(angle) <= onLineDegrees)
        return length;
    if (std::abs(angle - 180.0) <= onLineDegrees)
        return -length;
    qCritical() << message << angle;
    return std::nullopt;
}

double logTerm(double s, double l, double k)
{
    if (std::abs(s - l) <= Numeric::zeroTolerance)
        return 0.0;
    return k * std::log((s + l) / (s - l));
}

Vector3D metres(const Point3 &point)
{
    return {point.x * mmToM, point.y * mmToM, point.z * mmToM};
}

void atomicAdd(std::atomic<double> &sum, double term)
{
    double expected = sum.load(std::memory_order_relaxed);
    while (!sum.compare_exchange_weak(expected, expected + term, std::memory_order_relaxed))
        ;
}

// Sums `term` over all pairs of pieces, in parallel over the pieces of the first list.
template <typename Term>
double sumOverPairs(const QVector<Filament> &first, const QVector<Filament> &second, Term term)
{
    std::atomic<double> sum{0.0};
    auto row = [&](int i) {
        for (int j = 0; j < second.size(); ++j)
            atomicAdd(sum, term(i, j));
    };
    if (first.size() == 1)
        row(0);
    else
        tbb::parallel_for(0, int(first.size()), row);
    return sum.load();
}

double mutualOfPieces(const Filament &first, const Filament &second)
{
    return evalNeumann(metres(first.begin), metres(first.end), metres(second.begin), metres(second.end))
           * mu0Over4Pi;
}

bool isSameCoilEnd(const EndturnEnds &first, const EndturnEnds &second)
{
    return first.beginSlot == second.beginSlot && first.beginLayer == second.beginLayer
           && first.endSlot == second.endSlot && first.endLayer == second.endLayer;
}

// The sum of one side, where a piece with itself has the wire's own inductance.
double sameSideSum(const EndWire &first, const EndWire &second, double wireRadius)
{
    const bool sameEnd = isSameCoilEnd(first.ends, second.ends);
    return sumOverPairs(first.filaments, second.filaments, [&](int i, int j) {
        const Filament &piece = first.filaments.at(i);
        if (!(sameEnd && i == j))
            return mutualOfPieces(piece, second.filaments.at(j));
        const Vector3D a = metres(piece.begin);
        const Vector3D b = metres(piece.end);
        const double length = (b - a).length();
        if (length <= Numeric::zeroTolerance) {
            qCritical() << "(b - a).length() is epsilon" << a << b;
            return 0.0;
        }
        return straightWireSelfInductance(length, wireRadius);
    });
}

void logList(const char *heading, const QVector<CoilEndWires> &list, EndWire CoilEndWires::*side)
{
    qDebug().noquote() << QString::asprintf(heading, int(list.size()));
    for (int index = 0; index < list.size(); ++index) {
        QDebug line = qDebug();
        line << index;
        for (const Filament &piece : (list.at(index).*side).filaments)
            line << metres(piece.begin) << metres(piece.end);
    }
}

QVector<CoilEndWires> ofPhase(const QVector<CoilEndWires> &coils, Phase phase)
{
    QVector<CoilEndWires> list;
    for (const CoilEndWires &coil : coils) {
        if (coil.phase == phase)
            list << coil;
    }
    return list;
}

} // namespace

double Vector3D::length() const
{
    return std::sqrt(x * x + y * y + z * z);
}

QDebug operator<<(QDebug debug, const Vector3D &vector)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "(" << vector.x << ", " << vector.y << ", " << vector.z << ")";
    return debug;
}

double evalNeumann(Vector3D a, Vector3D b, Vector3D A, Vector3D B)
{
    // The closed form divides by components: turn the pair until none vanishes.
    Vector3D ba;
    Vector3D BA;
    const double c = std::cos(rotationStep);
    const double s = std::sin(rotationStep);
    for (int counter = 0;;) {
        ba = b - a;
        BA = B - A;
        if (hasNoSmallComponent(ba) && hasNoSmallComponent(BA))
            break;
        if (ba.length() <= 1e-5) {
            qCritical() << "Vector 'ba'" << ba << " is empty, length:" << ba.length() << "a:" << a << "b:" << b;
            return 0.0;
        }
        if (BA.length() <= 1e-5) {
            qCritical() << "Vector 'BA'" << BA << "is empty, length:" << BA.length() << "A:" << A << "B:" << B;
            return 0.0;
        }
        if (++counter >= rotationLimit) {
            qCritical() << "One turn is completed," << counter << "iteration(s)";
            return 0.0;
        }
        for (Vector3D *p : {&a, &b, &A, &B}) {
            rotateX(*p, c, s);
            rotateY(*p, c, s);
            rotateZ(*p, c, s);
        }
    }

    double e = angleBetween(ba, BA);
    if (std::abs(e - M_PI_2) <= 1e-6)
        return 0.0;

    // Parallel lines have no common perpendicular: shift one end a little off the line.
    if (isNearlyParallel(e)) {
        double d = (B - a).length();
        if (d <= Numeric::zeroTolerance)
            d = (b - A).length();
        if (d <= Numeric::zeroTolerance)
            qWarning() << "dx = 0";
        const double shift = 0.001 * d;
        a.x += shift;
        ba = b - a;
        e = angleBetween(ba, BA);
        if (isNearlyParallel(e)) {
            a.y += shift;
            ba = b - a;
            e = angleBetween(ba, BA);
        }
    }

    // The feet of the common perpendicular, c on a-b and C on A-B; first whether the lines meet.
    Eigen::Matrix<double, 4, 3> meet;
    meet << ba.y, -ba.x, 0.0,
            0.0, ba.z, -ba.y,
            BA.y, -BA.x, 0.0,
            0.0, -BA.z, BA.y;
    Eigen::Vector4d meetRhs(a.x * ba.y - ba.x * a.y, ba.z * a.y - ba.y * a.z, A.x * BA.y - BA.x * A.y,
                            BA.y * A.z - BA.z * A.y);
    const Eigen::Vector3d p = meet.colPivHouseholderQr().solve(meetRhs);
    const std::array<double, 4> residuals{(p.x() - a.x) * ba.y - (p.y() - a.y) * ba.x,
                                          (p.y() - a.y) * ba.z - (p.z() - a.z) * ba.y,
                                          (p.x() - A.x) * BA.y - (p.y() - A.y) * BA.x,
                                          (p.y() - A.y) * BA.z - (p.z() - A.z) * BA.y};
    Vector3D foot;
    Vector3D Foot;
    if (std::all_of(residuals.cbegin(), residuals.cend(), [](double r) { return std::abs(r) < 1e-9; })) {
        foot = Foot = {p.x(), p.y(), p.z()};
    } else {
        Eigen::Matrix<double, 6, 6> m;
        m << ba.x, -ba.x, ba.y, -ba.y, ba.z, -ba.z,
             BA.x, -BA.x, BA.y, -BA.y, BA.z, -BA.z,
             ba.y, 0.0, -ba.x, 0.0, 0.0, 0.0,
             0.0, 0.0, ba.z, 0.0, -ba.y, 0.0,
             0.0, BA.y, 0.0, -BA.x, 0.0, 0.0,
             0.0, 0.0, 0.0, BA.z, 0.0, -BA.y;
        Eigen::Matrix<double, 6, 1> rhs;
        rhs << 0.0, 0.0, a.x * ba.y - ba.x * a.y, ba.z * a.y - ba.y * a.z, A.x * BA.y - BA.x * A.y,
            BA.z * A.y - BA.y * A.z;
        const Eigen::Matrix<double, 6, 1> x = m.colPivHouseholderQr().solve(rhs);
        foot = {x(0), x(2), x(4)};
        Foot = {x(1), x(3), x(5)};
        const Vector3D w = Foot - foot;
        const double lenCc = w.length();
        const double angleCcAb = degreesBetween(ba, w);
        if (std::abs(angleCcAb - 90.0) > 1e-6 && lenCc > 1e-9) {
            qCritical() << "Error: angle between 'cC' and 'ab' is not 90 degrees, angle_cC_ab:" << angleCcAb
                        << "and lenCc" << lenCc << "> 1e-9";
            return 0.0;
        }
        const double angleCcAB = degreesBetween(BA, w);
        if (std::abs(angleCcAB - 90.0) > 1e-6 && lenCc > 1e-9) {
            qCritical() << "Error: angle between 'cC' and 'AB' is not 90 degrees, angle_cC_AB:" << angleCcAB
                        << "and lenCc" << lenCc << "> 1e-9";
            return 0.0;
        }
    }

    const auto l1 = signedDistance(a, foot, ba,
                                   "Error: point 'c' is not on the same line with points 'a' and 'b', angle_ca_ba:");
    const auto l2 = signedDistance(b, foot, ba,
                                   "Error: point 'c' is not on the same line with points 'a' and 'b', angle_cb_ab");
    const auto m1 = signedDistance(A, Foot, BA, "Error: point 'C' is not on the same line with points 'A' and 'B'");
    const auto m2 = signedDistance(B, Foot, BA, "Error: point 'C' is not on the same line with points 'A' and 'B'");
    if (!l1 || !l2 || !m1 || !m2)
        return 0.0;

    const double R1 = (B - a).length();
    const double R2 = (A - b).length();
    const double R3 = (A - a).length();
    const double R4 = (B - b).length();
    const double P = ba.length();
    const double Q = BA.length();
    const double T = logTerm(R4 + R1, P, *m2) - logTerm(R3 + R2, P, *m1) + logTerm(R4 + R2, Q, *l2)
                     - logTerm(R3 + R1, Q, *l1);
    const double G = std::cos(e) * T;

    const double d = (foot - Foot).length();
    if (d <= 1e-12)
        return std::isnan(G) ? 0.0 : G;

    const double ct = 1.0 / std::tan(e);
    const double sn = std::sin(e);
    auto u = [&](double x, double y, double R) { return std::atan(x * y * sn / (d * R) + d * ct / R); };
    const double W = u(*m2, *l2, R4) - u(*m1, *l2, R2) - u(*m2, *l1, R1) + u(*m1, *l1, R3);
    const double result = G - W * ct * d;
    return std::isnan(result) ? 0.0 : result;
}

double straightWireSelfInductance(double length, double radius)
{
    const double h = std::sqrt(length * length + radius * radius);
    return 2.0000000000000002e-7 * (length * std::log((h + length) / radius) - h + length / 4.0 + radius);
}

quint64 endturnPairKey(const EndturnEnds &first, const EndturnEnds &second)
{
    const auto difference = quint16(qint16(first.beginSlot - second.beginSlot));
    const std::array<quint8, 4> bytes{quint8(difference & 0xff), quint8(difference >> 8), quint8(qint8(first.dir)),
                                      quint8(qint8(second.dir))};
    quint64 hash = 0xcbf29ce484222325ULL;
    for (quint8 byte : bytes) {
        hash ^= byte;
        hash *= 0x100000001b3ULL;
    }
    return hash;
}

bool isPlausible(double l1, double l2, double l3, double l12, double l13)
{
    return !(std::abs(l1 - l2) > 0.05 * std::abs(l1) || std::abs(l2 - l3) > 0.05 * std::abs(l1)
             || std::abs(l12 - l13) > 0.05 * std::abs(l12));
}

double turnsFactor(int numberTurns, int parallelPaths)
{
    const double ratio = double(numberTurns) / double(parallelPaths);
    return ratio * ratio;
}

EndInductanceCalculator::EndInductanceCalculator(ScriptConsole *console)
    : m_console(console)
{
}

double EndInductanceCalculator::calcFilamentMutualInductanceOuter(const CoilEndWires &first,
                                                                  const CoilEndWires &second, double wireRadius)
{
    return sameSideSum(first.outer, second.outer, wireRadius);
}

double EndInductanceCalculator::calcFilamentMutualInductanceInner(const CoilEndWires &first,
                                                                  const CoilEndWires &second, double wireRadius)
{
    return sameSideSum(first.inner, second.inner, wireRadius);
}

double EndInductanceCalculator::calcFilamentMutualInductanceOuterInner(const CoilEndWires &first,
                                                                       const CoilEndWires &second)
{
    return sumOverPairs(first.outer.filaments, second.inner.filaments, [&](int i, int j) {
        return mutualOfPieces(first.outer.filaments.at(i), second.inner.filaments.at(j));
    });
}

double EndInductanceCalculator::calcMutualInductanceOuter(const QVector<CoilEndWires> &list1,
                                                          const QVector<CoilEndWires> &list2, const QString &label)
{
    qDebug().noquote() << label;
    logList(">>> outer item1 [%d]", list1, &CoilEndWires::outer);
    logList(">>> outer item2 [%d]", list2, &CoilEndWires::outer);
    const double total = cachedPairSum(list1, list2, &CoilEndWires::outer, m_outerCache,
                                       &calcFilamentMutualInductanceOuter, "calcFilamentMutualInductanceOuter is NaN");
    if (std::isnan(total))
        qCritical() << "calcMutualInductanceOuter is NaN";
    return total;
}

double EndInductanceCalculator::calcMutualInductanceInner(const QVector<CoilEndWires> &list1,
                                                          const QVector<CoilEndWires> &list2, const QString &label)
{
    qDebug().noquote() << label;
    logList(">>> inner item1 [%d]", list1, &CoilEndWires::inner);
    logList(">>> inner item2 [%d]", list2, &CoilEndWires::inner);
    const double total = cachedPairSum(list1, list2, &CoilEndWires::inner, m_innerCache,
                                       &calcFilamentMutualInductanceInner, "calcFilamentMutualInductanceInner is NaN");
    if (std::isnan(total))
        qCritical() << "calcMutualInductanceInner is NaN";
    return total;
}

double EndInductanceCalculator::cachedPairSum(const QVector<CoilEndWires> &list1, const QVector<CoilEndWires> &list2,
                                              EndWire CoilEndWires::*side, QHash<quint64, double> &cache,
                                              FilamentSum filamentSum, const char *nanMessage) const
{
    // The distinct keys the cache lacks are worked out in parallel across pairs: one pair
    // holds too few filaments to keep the cores busy. The cache itself is only touched
    // here, between the parallel loops.
    struct Missing
    {
        quint64 key;
        const CoilEndWires *first;
        const CoilEndWires *second;
    };
    std::vector<Missing> missing;
    QSet<quint64> queued;
    for (const CoilEndWires &first : list1) {
        for (const CoilEndWires &second : list2) {
            const quint64 key = endturnPairKey((first.*side).ends, (second.*side).ends);
            if (!cache.contains(key) && !queued.contains(key)) {
                queued.insert(key);
                missing.push_back({key, &first, &second});
            }
        }
    }
    std::vector<double> values(missing.size());
    tbb::parallel_for(std::size_t(0), missing.size(), [&](std::size_t i) {
        values[i] = filamentSum(*missing[i].first, *missing[i].second, m_wireRadius);
    });
    for (std::size_t i = 0; i < missing.size(); ++i) {
        if (std::isnan(values[i]))
            qCritical() << nanMessage;
        cache.insert(missing[i].key, values[i]);
    }

    double total = 0.0;
    for (const CoilEndWires &first : list1) {
        for (const CoilEndWires &second : list2)
            total += cache.value(endturnPairKey((first.*side).ends, (second.*side).ends));
    }
    return total;
}

double EndInductanceCalculator::calcMutualInductanceOuterInner(const QVector<CoilEndWires> &list1,
                                                               const QVector<CoilEndWires> &list2,
                                                               const QString &label) const
{
    qDebug().noquote() << label;
    logList(">>> outer item1 [%d]", list1, &CoilEndWires::outer);
    logList(">>> inner item2 [%d]", list2, &CoilEndWires::inner);
    // In parallel across pairs, added in order: the sum does not depend on the scheduling.
    const int count2 = int(list2.size());
    std::vector<double> values(std::size_t(list1.size()) * std::size_t(count2));
    tbb::parallel_for(std::size_t(0), values.size(), [&](std::size_t index) {
        values[index] = calcFilamentMutualInductanceOuterInner(list1.at(int(index / count2)),
                                                               list2.at(int(index % count2)));
    });
    double total = 0.0;
    for (double value : values) {
        if (std::isnan(value))
            qCritical() << "calcFilamentMutualInductanceOuterInner is NaN";
        total += value;
    }
    if (std::isnan(total))
        qCritical() << "calcMutualInductanceOuterInner is NaN";
    return total;
}

void EndInductanceCalculator::consoleLog(const QString &text) const
{
    if (m_console)
        m_console->log(text);
}

void EndInductanceCalculator::consoleError(const QString &text) const
{
    if (m_console)
        m_console->error(text);
}

void EndInductanceCalculator::reportSide(const SideValues &values, const QString &side, bool toroidal) const
{
    const QStringList lines{
        QStringLiteral(" %1 Inductance L1: %2").arg(side).arg(values.l1),
        QStringLiteral(" %1 Inductance L2: %2").arg(side).arg(values.l2),
        QStringLiteral(" %1 Inductance L3: %2").arg(side).arg(values.l3),
        QStringLiteral(" %1 Inductance L12: %2").arg(side).arg(values.l12),
        QStringLiteral(" %1 Inductance L13: %2").arg(side).arg(values.l13),
    };
    if (values.plausible()) {
        for (const QString &line : lines)
            consoleLog(line);
        return;
    }
    const QString failure =
        QStringLiteral("Neumann integrals solution error detected for %1 endturns").arg(side.toLower());
    qCritical().noquote() << failure;
    // Only a toroidal winding tells the user the parts of a failed side.
    if (!toroidal)
        return;
    consoleError(failure);
    for (const QString &line : lines)
        consoleError(line);
}

Inductance EndInductanceCalculator::calcEndInductance(const EndInductanceInput &input)
{
    if (input.parallelPaths == 0 || input.coils.isEmpty() || std::abs(input.coilDiameter) <= Numeric::zeroTolerance)
        return {};
    m_wireRadius = input.coilDiameter / 2.0;
    m_outerCache.clear();
    m_innerCache.clear();

    const QVector<CoilEndWires> a = ofPhase(input.coils, A);
    const QVector<CoilEndWires> b = ofPhase(input.coils, B);
    const QVector<CoilEndWires> c = ofPhase(input.coils, C);
    if (a.size() != b.size() || b.size() != c.size())
        return {};
    const bool anyEmpty = std::any_of(input.coils.cbegin(), input.coils.cend(), [](const CoilEndWires &coil) {
        return coil.outer.filaments.isEmpty() || coil.inner.filaments.isEmpty();
    });
    if (anyEmpty)
        return {};

    using Sum = double (EndInductanceCalculator::*)(const QVector<CoilEndWires> &, const QVector<CoilEndWires> &,
                                                     const QString &);
    auto side = [&](Sum sum, const QString &name) {
        auto one = [&](const QVector<CoilEndWires> &list1, const QVector<CoilEndWires> &list2, const QString &pair,
                       const char *value) {
            const QString label = QStringLiteral("%1: %2").arg(name, pair);
            qInfo().noquote() << label;
            const double result = (this->*sum)(list1, list2, label);
            qInfo().noquote() << label + QStringLiteral(", %1:").arg(QLatin1String(value)) << result;
            return result;
        };
        QElapsedTimer timer;
        timer.start();
        SideValues values;
        values.l1 = one(a, a, QStringLiteral("A - A"), "L1");
        values.l2 = one(b, b, QStringLiteral("B - B"), "L2");
        values.l3 = one(c, c, QStringLiteral("C - C"), "L3");
        values.l12 = one(a, b, QStringLiteral("A - B"), "L12");
        values.l13 = one(a, c, QStringLiteral("A - C"), "L13");
        qInfo().noquote() << QStringLiteral("Inductance %1 calculated at").arg(name.toLower()) << timer.elapsed()
                          << "ms";
        return values;
    };
    const SideValues outer = side(&EndInductanceCalculator::calcMutualInductanceOuter, QStringLiteral("Outer"));
    const SideValues inner = side(&EndInductanceCalculator::calcMutualInductanceInner, QStringLiteral("Inner"));

    const double k = turnsFactor(input.numberTurns, input.parallelPaths);
    auto sideInductance = [k](const SideValues &values) {
        return ((values.l1 + values.l2 + values.l3) / 3.0 - (values.l12 + values.l13) / 2.0) * k;
    };
    reportSide(outer, QStringLiteral("Outer"), input.toroidal);
    const double lo = sideInductance(outer);
    consoleLog(QStringLiteral(" Outer Inductance: %1").arg(lo));
    reportSide(inner, QStringLiteral("Inner"), input.toroidal);
    const double li = sideInductance(inner);
    consoleLog(QStringLiteral(" Inner Inductance: %1").arg(li));

    if (!outer.plausible() || !inner.plausible()) {
        Inductance failed;
        failed.methodText = QStringLiteral("Neumann integrals solution error detected");
        return failed;
    }

    // The coupling of the two sides is told, but takes no part in the result.
    QElapsedTimer timer;
    timer.start();
    auto coupling = [&](const QVector<CoilEndWires> &list1, const QVector<CoilEndWires> &list2, const QString &label,
                        const QString &pair, const char *value) {
        qInfo().noquote() << pair;
        const double result = calcMutualInductanceOuterInner(list1, list2, label);
        qInfo().noquote() << pair + QStringLiteral(", %1:").arg(QLatin1String(value)) << result;
        consoleLog(QStringLiteral(" Outer / Inner Inductance %1: %2").arg(QLatin1String(value)).arg(result));
    };
    coupling(a, a, QStringLiteral("Ao-Ai"), QStringLiteral("Outer A - Inner A"), "L1");
    coupling(b, b, QStringLiteral("Bo-Bi"), QStringLiteral("Outer B - Inner B"), "L2");
    coupling(c, c, QStringLiteral("Co-Ci"), QStringLiteral("Outer C - Inner C"), "L3");
    coupling(a, b, QStringLiteral("Ao-Bi"), QStringLiteral("Outer A - Inner B"), "L12");
    coupling(c, a, QStringLiteral("Co-Ai"), QStringLiteral("Outer C - Inner A"), "L13");
    qInfo() << "Inductance outer / inner calculated at" << timer.elapsed() << "ms";

    Inductance result;
    result.methodText = QStringLiteral("(By Neumann integrals)");
    result.inner = li;
    result.innerSelf = k * inner.l1;
    result.innerMutual = k * std::abs(inner.l12);
    result.outer = lo;
    result.outerSelf = k * outer.l1;
    result.outerMutual = k * std::abs(outer.l12);
    result.total = li + lo;
    return result;
}

} // namespace Winding
