#include <QtMath>
#include <gtest/gtest.h>

#include "materials/MaterialConductorEngine.h"
#include "winding/WireGauge.h"
#include "winding/WireResistance.h"

namespace {

// The AWG rule: 0.005 in (0.127 mm) at gauge 36, 92 steps of equal ratio to gauge 4/0 (-3).
double awgRuleDiameter(int gauge)
{
    return 0.127 * std::pow(92.0, (36.0 - gauge) / 39.0);
}

bool thickestFirst(const QVector<Winding::WireGauge> &table)
{
    return std::is_sorted(table.cbegin(), table.cend(),
                          [](const Winding::WireGauge &a, const Winding::WireGauge &b) { return a.diameter > b.diameter; });
}

} // namespace

TEST(WireGauge, TablesFollowTheStandards)
{
    const QVector<Winding::WireGauge> &awg = Winding::awgTable();
    const QVector<Winding::WireGauge> &swg = Winding::swgTable();
    ASSERT_EQ(awg.size(), 44);
    ASSERT_EQ(swg.size(), 57);
    EXPECT_TRUE(thickestFirst(awg));
    EXPECT_TRUE(thickestFirst(swg));

    // Each published diameter is the rule's value to three significant figures.
    for (int gauge = 1; gauge <= 40; ++gauge) {
        const QString name = QStringLiteral("%1 AWG").arg(gauge);
        EXPECT_NEAR(Winding::gaugeDiameter(name), awgRuleDiameter(gauge), 0.006 * awgRuleDiameter(gauge)) << gauge;
    }
    EXPECT_NEAR(Winding::gaugeDiameter("4/0 AWG"), awgRuleDiameter(-3), 1e-3);
    // SWG is defined in thousandths of an inch: 7/0 is half an inch, 20 is 36 thou.
    EXPECT_DOUBLE_EQ(Winding::gaugeDiameter("7/0 SWG"), 12.7);
    EXPECT_NEAR(Winding::gaugeDiameter("20 SWG"), 0.036 * 25.4, 1e-3);
    EXPECT_NEAR(Winding::gaugeDiameter("50 SWG"), 0.001 * 25.4, 1e-6);
}

TEST(WireGauge, UnknownNamesHaveNoDiameterAndNoRow)
{
    EXPECT_DOUBLE_EQ(Winding::gaugeDiameter("25 AWG"), 0.455);
    EXPECT_EQ(Winding::gaugeIndex(Winding::awgTable(), "4/0 AWG"), 0);
    EXPECT_EQ(Winding::gaugeIndex(Winding::swgTable(), "50 SWG"), 56);
    EXPECT_EQ(Winding::gaugeIndex(Winding::awgTable(), "25 SWG"), -1);
    EXPECT_DOUBLE_EQ(Winding::gaugeDiameter("41 AWG"), 0.0);
    EXPECT_DOUBLE_EQ(Winding::gaugeDiameter(""), 0.0);
}

TEST(WireSizing, CopperAreaAndTheDiameterOfAFillFactorAreInverse)
{
    // Ten turns of one strand of 25 AWG in a coil of 100 mm².
    Winding::CoilWire wire;
    wire.diameter = 0.455;
    wire.numberTurns = 10;
    EXPECT_NEAR(Winding::copperArea(wire), 1.626, 1e-3);
    EXPECT_NEAR(Winding::areaRatio(Winding::copperArea(wire), 100.0), 0.01626, 1e-5);

    wire.numberLayers = 2;
    wire.strands = 3;
    wire.numberTurns = 24;
    const double coilArea = 150.0;
    const double diameter = Winding::diameterForFillFactor(coilArea, 0.45, wire);
    wire.diameter = diameter;
    EXPECT_NEAR(Winding::copperArea(wire), 0.45 * coilArea, 1e-12);
    // 144 round wires of diameter d cover 144 pi d² / 4.
    EXPECT_NEAR(144.0 * M_PI * diameter * diameter / 4.0, 0.45 * coilArea, 1e-12);

    EXPECT_DOUBLE_EQ(Winding::areaRatio(5.0, 0.0), 0.0);
    EXPECT_DOUBLE_EQ(Winding::areaRatio(5.0, -1.0), 0.0);
}

// A tooth-coil winding of 12 slots: each phase has four coils of 50 turns of two strands
// of 25 AWG in hand, in two parallel paths, wound of the library's annealed copper.
class PhaseResistanceTest : public ::testing::Test
{
protected:
    PhaseResistanceTest()
    {
        const MaterialConductorDescribe *copper = MaterialConductorEngine::instance().describe("Copper annealed");
        EXPECT_NE(copper, nullptr);
        if (copper) {
            conductor.resistivity = copper->electricResistivity;
            conductor.temperatureCoefficient = copper->temperatureCoefficient;
        }
        for (int phase = Winding::A; phase < Winding::Count; ++phase) {
            for (int coil = 0; coil < 4; ++coil)
                coils << Winding::CoilLength{Winding::Phase(phase), outerPath, innerPath, activeRun};
        }
    }

    // The turn, mm: two active runs of 25, an outer end turn of 31.4 and an inner one of 18.6.
    const double activeRun = 25.0;
    const double outerPath = 31.4;
    const double innerPath = 18.6;
    const int turns = 50;
    const int strands = 2;
    const int paths = 2;
    const double diameter = 0.455;
    Winding::Conductor conductor;
    QVector<Winding::CoilLength> coils;
};

TEST_F(PhaseResistanceTest, IsRhoLengthOverAreaOfEachPathInParallel)
{
    const double meanTurn = 0.1; // m
    EXPECT_NEAR(Winding::turnLength(coils.first()), meanTurn, 1e-15);
    const std::array<double, Winding::Count> lengths = Winding::phaseWireLengths(coils, turns);
    for (double length : lengths)
        EXPECT_NEAR(length, 4 * turns * meanTurn, 1e-12);

    // By hand: copper 1.7241e-8 Ohm m; each path is half the phase's 20 m of two strands of
    // 0.455 mm, and two such paths lie in parallel.
    EXPECT_DOUBLE_EQ(conductor.resistivity, 1.7241e-8);
    const double strandArea = M_PI * 0.2275e-3 * 0.2275e-3;
    const double pathResistance = 1.7241e-8 * 10.0 / (2 * strandArea);
    const double atTwenty = pathResistance / 2;
    EXPECT_NEAR(atTwenty, 0.26509, 1e-5);
    EXPECT_NEAR(Winding::phaseResistance(lengths[Winding::B], diameter, strands, paths, conductor, 20.0), atTwenty,
                1e-12 * atTwenty);

    // At 95 degrees copper has 1 + 75 x 0.00393 of its resistance at 20.
    const double atNinetyFive = atTwenty * 1.29475;
    EXPECT_NEAR(Winding::phaseResistance(lengths[Winding::B], diameter, strands, paths, conductor, 95.0),
                atNinetyFive, 1e-12 * atNinetyFive);
    EXPECT_DOUBLE_EQ(Winding::temperatureFactor(20.0, 0.00393), 1.0);
}

TEST_F(PhaseResistanceTest, WithoutCopperThereIsNoResistance)
{
    EXPECT_DOUBLE_EQ(Winding::phaseResistance(20.0, 0.0, strands, paths, conductor, 20.0), 0.0);
    EXPECT_DOUBLE_EQ(Winding::phaseResistance(20.0, diameter, 0, paths, conductor, 20.0), 0.0);
}

TEST_F(PhaseResistanceTest, APhaseWithACoilLessIsUnbalanced)
{
    std::array<double, Winding::Count> resistances{};
    for (int phase = Winding::A; phase < Winding::Count; ++phase) {
        resistances[phase] = Winding::phaseResistance(Winding::phaseWireLengths(coils, turns)[phase], diameter,
                                                      strands, paths, conductor, 20.0);
    }
    EXPECT_FALSE(Winding::isUnbalanced(resistances));

    coils.removeLast();
    resistances[Winding::C] =
        Winding::phaseResistance(Winding::phaseWireLengths(coils, turns)[Winding::C], diameter, strands, paths,
                                 conductor, 20.0);
    EXPECT_NEAR(resistances[Winding::C], 0.75 * resistances[Winding::A], 1e-12);
    EXPECT_TRUE(Winding::isUnbalanced(resistances));
    // Within one per cent phases count as equal.
    resistances[Winding::C] = 1.009 * resistances[Winding::A];
    EXPECT_FALSE(Winding::isUnbalanced(resistances));
}
