#include <QtMath>
#include <boost/math/quadrature/gauss_kronrod.hpp>
#include <cmath>
#include <gtest/gtest.h>

#include "base/ScriptConsole.h"
#include "support/ConsoleSpies.h"
#include "support/LogCatcher.h"
#include "winding/EndInductance.h"

using Winding::Vector3D;

namespace {

constexpr double mu0 = 4e-7 * M_PI;

// Neumann's integral of two segments that do not touch, the inner integral in closed form
// and the outer by adaptive Gauss-Kronrod: a way to the value apart from the code's
// common perpendicular, exact to rounding since the integrand is smooth.
double quadratureNeumann(const Vector3D &a, const Vector3D &b, const Vector3D &A, const Vector3D &B)
{
    const double l = (b - a).length();
    const double m = (B - A).length();
    const Vector3D u = (b - a) * (1.0 / l);
    const Vector3D v = (B - A) * (1.0 / m);
    auto inner = [&](double s) {
        const Vector3D w = a + u * s - A;
        const double along = w.dot(v);
        const double off = std::sqrt(std::max(w.dot(w) - along * along, 0.0));
        return std::asinh((m - along) / off) + std::asinh(along / off);
    };
    return u.dot(v) * boost::math::quadrature::gauss_kronrod<double, 61>::integrate(inner, 0.0, l, 8, 1e-13);
}

// Grover's form for two segments of lengths l and m leaving one vertex at the angle theta,
// without mu0 / 4 pi.
double groverVertex(double l, double m, double theta)
{
    const double r = std::sqrt(l * l + m * m - 2.0 * l * m * std::cos(theta));
    return 2.0 * std::cos(theta) * (l * std::atanh(m / (l + r)) + m * std::atanh(l / (m + r)));
}

// The mutual inductance of two parallel filaments of length l at the distance d, H.
double parallelFilaments(double l, double d)
{
    return mu0 / (2.0 * M_PI) * (l * std::asinh(l / d) - std::sqrt(l * l + d * d) + d);
}

// Rotations by hand about three axes, so that no component of an axis-parallel segment stays zero.
Vector3D turned(const Vector3D &p)
{
    const double t = 0.4;
    const Vector3D x{p.x, p.y * std::cos(t) - p.z * std::sin(t), p.y * std::sin(t) + p.z * std::cos(t)};
    const double u = 0.7;
    const Vector3D y{x.x * std::cos(u) + x.z * std::sin(u), x.y, x.z * std::cos(u) - x.x * std::sin(u)};
    const double w = 1.1;
    return {y.x * std::cos(w) - y.y * std::sin(w), y.x * std::sin(w) + y.y * std::cos(w), y.z};
}

// A closed polygon of `count` pieces on a circle of radius `radius` about the z axis at height z, mm.
QVector<Winding::Filament> polygon(double radius, double z, int count)
{
    QVector<Winding::Filament> pieces;
    for (int i = 0; i < count; ++i) {
        const double t0 = 2.0 * M_PI * i / count;
        const double t1 = 2.0 * M_PI * (i + 1) / count;
        pieces << Winding::Filament{{radius * std::cos(t0), radius * std::sin(t0), z},
                                    {radius * std::cos(t1), radius * std::sin(t1), z}};
    }
    return pieces;
}

Winding::CoilEndWires coilOf(Winding::Phase phase, const QVector<Winding::Filament> &outer,
                              const QVector<Winding::Filament> &inner, int slot)
{
    Winding::CoilEndWires coil;
    coil.phase = phase;
    coil.outer.ends = {Winding::EndturnKind::Outer, slot, 0, slot + 1, 1, Winding::Coil::CCW};
    coil.outer.filaments = outer;
    coil.inner.ends = {Winding::EndturnKind::Inner, slot + 1, 1, slot, 0, Winding::Coil::CW};
    coil.inner.filaments = inner;
    return coil;
}

// A bent end turn of three pieces between two slot positions of a machine, mm.
QVector<Winding::Filament> bentEnd(double radius, double from, double to, double height)
{
    const Winding::Point3 start{radius * std::cos(from), radius * std::sin(from), 0.0};
    const Winding::Point3 up{1.1 * radius * std::cos(from), 1.1 * radius * std::sin(from), height};
    const Winding::Point3 over{1.1 * radius * std::cos(to), 1.1 * radius * std::sin(to), height};
    const Winding::Point3 end{radius * std::cos(to), radius * std::sin(to), 0.0};
    return {{start, up}, {up, over}, {over, end}};
}

// Three phases of one tooth coil each, 120 degrees apart: a balanced winding.
QVector<Winding::CoilEndWires> balancedCoils()
{
    QVector<Winding::CoilEndWires> coils;
    for (int phase = Winding::A; phase < Winding::Count; ++phase) {
        const double angle = 2.0 * M_PI / 3.0 * phase;
        const double pitch = 0.5;
        coils << coilOf(Winding::Phase(phase), bentEnd(150.0, angle, angle + pitch, 20.0),
                        bentEnd(50.0, angle + pitch, angle, -20.0), 4 * phase);
    }
    return coils;
}

} // namespace

TEST(Neumann, DegenerateGeometriesGiveZeroOrAFiniteValue)
{
    // Perpendicular segments do not couple.
    EXPECT_EQ(Winding::evalNeumann({0, 0, 0}, {0.1, 0, 0}, {0, 0.05, 0.02}, {0, 0.15, 0.02}), 0.0);

    // Collinear segments in the same direction: the shifted end keeps the value finite and
    // close to the closed form of two pieces on one line with a gap.
    const double l = 0.1;
    const double m = 0.05;
    const double gap = 0.02;
    auto f = [](double x) { return x * std::log(x); };
    const double collinear = f(l + m + gap) - f(l + gap) - f(m + gap) + f(gap);
    const double value = Winding::evalNeumann({0, 0, 0}, {l, 0, 0}, {l + gap, 0, 0}, {l + gap + m, 0, 0});
    EXPECT_TRUE(std::isfinite(value));
    EXPECT_NEAR(value, collinear, 1e-3 * collinear);

    // A piece shorter than 1e-5 m is no piece: a log line and nothing.
    LogCatcher log;
    EXPECT_EQ(Winding::evalNeumann({0, 0, 0}, {5e-6, 0, 0}, {0, 0.05, 0}, {0.1, 0.05, 0}), 0.0);
    EXPECT_TRUE(log.contains("Vector 'ba'"));
    EXPECT_EQ(Winding::evalNeumann({0, 0, 0}, {0.1, 0, 0}, {0, 0.05, 0}, {0, 0.05, 5e-6}), 0.0);
    EXPECT_TRUE(log.contains("Vector 'BA'"));
}

TEST(Neumann, LinesThatMeetOutsideTheSegmentsOrLieAlongTheAxesNeedNoCommonPerpendicular)
{
    // Coplanar lines that meet outside both segments: the value is the logarithmic part alone.
    const Vector3D c{0.0, 0.0, 0.0};
    const Vector3D d{0.1, 0.01, 0.02};
    const Vector3D C{0.15, 0.03, 0.04};
    const Vector3D D{0.2, 0.11, 0.06};
    const Vector3D normal{d.y * C.z - d.z * C.y, d.z * C.x - d.x * C.z, d.x * C.y - d.y * C.x};
    ASSERT_NEAR(normal.dot(D), 0.0, 1e-3) << "the four points must lie in one plane";
    const double meeting = quadratureNeumann(c, d, C, D);
    EXPECT_NEAR(Winding::evalNeumann(c, d, C, D), meeting, 1e-9 * std::abs(meeting));

    // Segments along the axes need turning first; the turn changes nothing.
    const Vector3D e{0, 0, 0};
    const Vector3D g{0.1, 0, 0};
    const Vector3D E{0.02, 0.03, 0.04};
    const Vector3D G{0.09, 0.03, 0.04 + 0.05};
    const double axisParallel = Winding::evalNeumann(e, g, E, G);
    EXPECT_NEAR(axisParallel, Winding::evalNeumann(turned(e), turned(g), turned(E), turned(G)),
                1e-9 * std::abs(axisParallel));
    EXPECT_NEAR(axisParallel, quadratureNeumann(e, g, E, G), 1e-9 * std::abs(axisParallel));
}

// Where the closed form is exact, it agrees with forms worked out otherwise to rounding;
// it is symmetric, and additive over a segment cut in two.
TEST(Neumann, ExactFormsAgreeWithGroverAndQuadratureSymmetricallyAndAcrossSplits)
{
    const Vector3D vertex{0.013, -0.021, 0.007};
    for (double degrees : {20.0, 60.0, 110.0, 160.0}) {
        SCOPED_TRACE(degrees);
        const double theta = qDegreesToRadians(degrees);
        const double l = 0.1;
        const double m = 0.07;
        const Vector3D end1 = turned({l, 0.0, 0.0});
        const Vector3D end2 = turned({m * std::cos(theta), m * std::sin(theta), 0.0});
        const double expected = groverVertex(l, m, theta);
        EXPECT_NEAR(Winding::evalNeumann(vertex, vertex + end1, vertex, vertex + end2), expected,
                    1e-9 * std::abs(expected));
    }

    const struct {
        Vector3D a, b, A, B;
    } skewPairs[] = {
        {{0.01, 0.02, 0.03}, {0.09, 0.05, 0.04}, {0.02, 0.07, 0.08}, {0.11, 0.06, 0.02}},
        {{0.0, 0.0, 0.0}, {0.1, 0.0, 0.0}, {0.03, 0.01, 0.02}, {0.05, 0.09, 0.02}},
        {{-0.02, 0.04, 0.0}, {0.06, -0.01, 0.03}, {0.2, 0.1, -0.05}, {0.1, 0.15, 0.1}},
    };
    for (const auto &pair : skewPairs) {
        const double value = Winding::evalNeumann(pair.a, pair.b, pair.A, pair.B);
        const double tolerance = 1e-9 * std::abs(value);
        EXPECT_NEAR(value, quadratureNeumann(pair.a, pair.b, pair.A, pair.B), tolerance);
        EXPECT_NEAR(Winding::evalNeumann(pair.A, pair.B, pair.a, pair.b), value, tolerance);
        EXPECT_NEAR(Winding::evalNeumann(pair.b, pair.a, pair.A, pair.B), -value, tolerance);
        for (double at : {0.5, 0.3}) {
            const Vector3D cut = pair.a + (pair.b - pair.a) * at;
            EXPECT_NEAR(Winding::evalNeumann(pair.a, cut, pair.A, pair.B)
                            + Winding::evalNeumann(cut, pair.b, pair.A, pair.B),
                        value, tolerance);
        }
    }
}

// Parallel filaments have no common perpendicular: the closed form shifts one end by a
// thousandth of its distance from the far end of the other, which costs about as much
// of the value.
TEST(Neumann, ParallelFilamentsFollowTheirClosedFormToTheShift)
{
    for (double distance : {0.001, 0.01, 0.05}) {
        SCOPED_TRACE(distance);
        const double l = 0.1;
        const double expected = parallelFilaments(l, distance);
        const double value = Winding::evalNeumann({0, 0, 0}, {l, 0, 0}, {0, distance, 0}, {l, distance, 0}) * 1e-7;
        EXPECT_NEAR(value, expected, 2e-3 * expected);
        // Opposite currents give the opposite sign.
        EXPECT_NEAR(Winding::evalNeumann({0, 0, 0}, {l, 0, 0}, {l, distance, 0}, {0, distance, 0}) * 1e-7, -expected,
                    2e-3 * expected);
    }
}

TEST(Neumann, PolygonsOfManyPiecesGiveTheInductancesOfCircularLoops)
{
    const double radius = 100.0; // mm
    // Touching pieces count as filaments: they must be long beside the wire's radius.
    const double wireRadius = 0.0001; // m
    const int count = 120;

    // Two coaxial loops: Maxwell's formula with complete elliptic integrals.
    for (double spacing : {10.0, 40.0}) {
        SCOPED_TRACE(spacing);
        const Winding::CoilEndWires lower = coilOf(Winding::A, polygon(radius, 0.0, count), {}, 0);
        Winding::CoilEndWires upper = coilOf(Winding::A, polygon(radius, spacing, count), {}, 5);
        const double r = radius / 1000.0;
        const double h = spacing / 1000.0;
        const double k = std::sqrt(4.0 * r * r / (4.0 * r * r + h * h));
        const double maxwell = mu0 * r * ((2.0 / k - k) * std::comp_ellint_1(k) - 2.0 / k * std::comp_ellint_2(k));
        const double mutual =
            Winding::EndInductanceCalculator::calcFilamentMutualInductanceOuter(lower, upper, wireRadius);
        EXPECT_NEAR(mutual, maxwell, 0.01 * maxwell);
    }

    // One loop with itself: the pieces' own inductance and all their mutual ones.
    const Winding::CoilEndWires loop = coilOf(Winding::A, polygon(radius, 0.0, count), {}, 0);
    const double self = Winding::EndInductanceCalculator::calcFilamentMutualInductanceOuter(loop, loop, wireRadius);
    const double r = radius / 1000.0;
    const double expected = mu0 * r * (std::log(8.0 * r / wireRadius) - 1.75);
    EXPECT_NEAR(self, expected, 0.01 * expected);
}

// Four straight round wires: their own inductances, less the opposite sides, which carry
// opposite currents; the sides that meet are perpendicular and do not couple. For a thin
// wire this is Grover's (2 mu0 a / pi)(ln(a / r) - 0.52401 + r / a).
TEST(Neumann, ASquareLoopOfRoundWireIsItsFourSidesLessItsOppositeSides)
{
    const double side = 0.1;
    const double wireRadius = 0.0005;
    const double h = std::hypot(side, wireRadius);
    const double ownOfSide =
        mu0 / (2.0 * M_PI) * (side * std::log((h + side) / wireRadius) - h + side / 4.0 + wireRadius);
    const double expected = 4.0 * ownOfSide - 4.0 * parallelFilaments(side, side);
    ASSERT_NEAR(expected, 2.0 * mu0 * side / M_PI * (std::log(side / wireRadius) - 0.52401 + wireRadius / side),
                1e-5 * expected);

    const double mm = side * 1000.0;
    const QVector<Winding::Filament> square{
        {{0, 0, 0}, {mm, 0, 0}}, {{mm, 0, 0}, {mm, mm, 0}}, {{mm, mm, 0}, {0, mm, 0}}, {{0, mm, 0}, {0, 0, 0}}};
    const Winding::CoilEndWires loop = coilOf(Winding::A, square, {}, 0);
    const double value = Winding::EndInductanceCalculator::calcFilamentMutualInductanceOuter(loop, loop, wireRadius);
    EXPECT_NEAR(value, expected, 2e-3 * 4.0 * parallelFilaments(side, side));
}

TEST(Neumann, StraightWireSelfInductanceGrowsWithLengthAndShrinksWithRadius)
{
    // A long thin wire: mu0 l / 2 pi (ln(2 l / r) - 3/4).
    const double l = 1.0;
    const double r = 0.001;
    EXPECT_NEAR(Winding::straightWireSelfInductance(l, r), mu0 * l / (2.0 * M_PI) * (std::log(2.0 * l / r) - 0.75),
                1e-3 * 1e-6);
    EXPECT_GT(Winding::straightWireSelfInductance(l, r), Winding::straightWireSelfInductance(l, 2.0 * r));
}

TEST(EndInductanceRules, PairKeysPlausibilityAndTurnsFactor)
{
    const Winding::EndturnEnds first{Winding::EndturnKind::Outer, 3, 0, 4, 1, Winding::Coil::CCW};
    const Winding::EndturnEnds second{Winding::EndturnKind::Outer, 1, 1, 2, 0, Winding::Coil::CW};
    Winding::EndturnEnds shifted = first;
    shifted.beginSlot += 5;
    Winding::EndturnEnds shiftedSecond = second;
    shiftedSecond.beginSlot += 5;
    shiftedSecond.beginLayer = 0;
    // Only the slot difference and the senses count, not where the pair lies nor the layers.
    EXPECT_EQ(Winding::endturnPairKey(first, second), Winding::endturnPairKey(shifted, shiftedSecond));
    EXPECT_NE(Winding::endturnPairKey(first, second), Winding::endturnPairKey(second, first));
    Winding::EndturnEnds reversed = first;
    reversed.dir = Winding::Coil::CW;
    EXPECT_NE(Winding::endturnPairKey(first, second), Winding::endturnPairKey(reversed, second));
    // FNV-1a of the four bytes 2, 0, 1, 0xff.
    quint64 hash = 0xcbf29ce484222325ULL;
    for (quint8 byte : {quint8(2), quint8(0), quint8(1), quint8(0xff)})
        hash = (hash ^ byte) * 0x100000001b3ULL;
    EXPECT_EQ(Winding::endturnPairKey(first, second), hash);

    EXPECT_TRUE(Winding::isPlausible(1e-6, 1.04e-6, 1.04e-6, -2e-7, -2e-7));
    EXPECT_FALSE(Winding::isPlausible(1e-6, 1.06e-6, 1.06e-6, -2e-7, -2e-7));
    EXPECT_FALSE(Winding::isPlausible(1e-6, 1e-6, 1e-6, -2e-7, -2.2e-7));

    EXPECT_DOUBLE_EQ(Winding::turnsFactor(10, 2), 25.0);
    EXPECT_DOUBLE_EQ(Winding::turnsFactor(3, 2), 2.25);
}

TEST(EndInductanceCalculation, ABalancedWindingGivesItsPartsScaledByTheTurns)
{
    Winding::EndInductanceInput input;
    input.coils = balancedCoils();
    input.coilDiameter = 0.005;
    Winding::EndInductanceCalculator calculator;
    const Winding::Inductance one = calculator.calcEndInductance(input);
    EXPECT_EQ(one.methodText, "(By Neumann integrals)");
    EXPECT_GT(one.outer, 0.0);
    EXPECT_GT(one.inner, 0.0);
    EXPECT_DOUBLE_EQ(one.total, one.inner + one.outer);
    // One coil a phase: its own sum is its self part.
    const Winding::CoilEndWires &a = input.coils.first();
    EXPECT_DOUBLE_EQ(one.outerSelf,
                     Winding::EndInductanceCalculator::calcFilamentMutualInductanceOuter(a, a, 0.0025));
    EXPECT_DOUBLE_EQ(one.innerSelf,
                     Winding::EndInductanceCalculator::calcFilamentMutualInductanceInner(a, a, 0.0025));
    EXPECT_GE(one.outerMutual, 0.0);

    input.numberTurns = 10;
    input.parallelPaths = 2;
    const Winding::Inductance many = calculator.calcEndInductance(input);
    EXPECT_NEAR(many.total, 25.0 * one.total, 1e-9 * many.total);
    EXPECT_NEAR(many.outerSelf, 25.0 * one.outerSelf, 1e-9 * many.outerSelf);
}

// Coils turned alike about the axis share their pair values: the list sums, worked out in
// parallel across pairs, equal the sums of every pair taken one by one. Shared values agree
// with their turned twins only as far as the shift of near-parallel pieces allows.
TEST(EndInductanceCalculation, ListSumsEqualThePairSumsTakenOneByOne)
{
    QVector<Winding::CoilEndWires> ring;
    const int count = 8;
    for (int k = 0; k < count; ++k) {
        const double angle = 2.0 * M_PI * k / count;
        ring << coilOf(Winding::A, bentEnd(150.0, angle, angle + 0.6, 20.0), bentEnd(50.0, angle + 0.6, angle, -20.0),
                       2 * k);
    }
    const QVector<Winding::CoilEndWires> firstHalf = ring.mid(0, 3);
    const double radius = 0.0025;
    double outer = 0.0;
    double inner = 0.0;
    double outerInner = 0.0;
    for (const Winding::CoilEndWires &first : firstHalf) {
        for (const Winding::CoilEndWires &second : ring) {
            using Calculator = Winding::EndInductanceCalculator;
            outer += Calculator::calcFilamentMutualInductanceOuter(first, second, radius);
            inner += Calculator::calcFilamentMutualInductanceInner(first, second, radius);
            outerInner += Calculator::calcFilamentMutualInductanceOuterInner(first, second);
        }
    }
    Winding::EndInductanceInput input;
    input.coilDiameter = 2.0 * radius;
    for (Winding::Phase phase : {Winding::A, Winding::B, Winding::C}) {
        Winding::CoilEndWires coil = ring.first();
        coil.phase = phase;
        input.coils << coil;
    }
    Winding::EndInductanceCalculator calculator;
    // A whole calculation sets the wire radius and empties the caches.
    calculator.calcEndInductance(input);
    EXPECT_NEAR(calculator.calcMutualInductanceOuter(firstHalf, ring, "outer"), outer, 1e-4 * std::abs(outer));
    EXPECT_NEAR(calculator.calcMutualInductanceInner(firstHalf, ring, "inner"), inner, 1e-4 * std::abs(inner));
    EXPECT_NEAR(calculator.calcMutualInductanceOuterInner(firstHalf, ring, "outer-inner"), outerInner,
                1e-9 * std::abs(outerInner));
    EXPECT_NE(outerInner, 0.0);
}

TEST(EndInductanceCalculation, UnequalOrBrokenInputGivesTheDefaultOrAnError)
{
    Winding::EndInductanceCalculator calculator;
    Winding::EndInductanceInput input;
    input.coils = balancedCoils();
    input.coilDiameter = 0.005;

    Winding::EndInductanceInput unequal = input;
    unequal.coils << unequal.coils.first();
    const Winding::Inductance different = calculator.calcEndInductance(unequal);
    EXPECT_TRUE(different.methodText.isEmpty());
    EXPECT_EQ(different.total, 0.0);

    Winding::EndInductanceInput noPaths = input;
    noPaths.parallelPaths = 0;
    EXPECT_TRUE(calculator.calcEndInductance(noPaths).methodText.isEmpty());

    Winding::EndInductanceInput thin = input;
    thin.coilDiameter = 0.0;
    EXPECT_TRUE(calculator.calcEndInductance(thin).methodText.isEmpty());

    Winding::EndInductanceInput pathless = input;
    pathless.coils[1].inner.filaments.clear();
    EXPECT_TRUE(calculator.calcEndInductance(pathless).methodText.isEmpty());

    // Phase B's end turn higher than the others, and of the other sense so that it has
    // keys of its own: the phases disagree.
    Winding::EndInductanceInput unbalanced = input;
    unbalanced.coils[1].outer.filaments = bentEnd(150.0, 2.0 * M_PI / 3.0, 2.0 * M_PI / 3.0 + 0.5, 40.0);
    unbalanced.coils[1].outer.ends.dir = Winding::Coil::CW;
    const Winding::Inductance failed = calculator.calcEndInductance(unbalanced);
    EXPECT_EQ(failed.methodText, "Neumann integrals solution error detected");
    EXPECT_EQ(failed.total, 0.0);
    EXPECT_EQ(failed.outerSelf, 0.0);
}

// A side whose phases disagree is told to the user of a toroidal winding, part by part, as
// errors; for any other winding it stays in the log, and a sound side's parts are log lines.
TEST(EndInductanceCalculation, AFailedSideOfAToroidalWindingIsToldOnTheConsole)
{
    Winding::EndInductanceInput input;
    input.coils = balancedCoils();
    input.coilDiameter = 0.005;
    input.coils[1].outer.filaments = bentEnd(150.0, 2.0 * M_PI / 3.0, 2.0 * M_PI / 3.0 + 0.5, 40.0);
    input.coils[1].outer.ends.dir = Winding::Coil::CW;
    const QString failure = QStringLiteral("Neumann integrals solution error detected for outer endturns");
    for (const bool toroidal : {true, false}) {
        SCOPED_TRACE(toroidal);
        input.toroidal = toroidal;
        ScriptConsole console(ScriptConsole::Winding);
        ConsoleSpies spies(&console);
        const LogCatcher log;
        Winding::EndInductanceCalculator(&console).calcEndInductance(input);
        EXPECT_TRUE(log.contains(failure));
        QStringList errors;
        for (const QList<QVariant> &signal : spies.error)
            errors << signal.at(1).toString();
        if (toroidal) {
            ASSERT_EQ(errors.size(), 6);
            EXPECT_EQ(errors.first(), failure);
            for (const char *name : {"L1", "L2", "L3", "L12", "L13"})
                EXPECT_TRUE(errors.filter(QStringLiteral(" Outer Inductance %1: ").arg(name)).size() == 1) << name;
        } else {
            EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
        }
        QStringList logs;
        for (const QList<QVariant> &signal : spies.log)
            logs << signal.at(1).toString();
        EXPECT_EQ(logs.filter(QStringLiteral(" Inner Inductance L")).size(), 5) << "the sound side's parts";
    }
}
