#include <gtest/gtest.h>

#include "solver/IronData.h"
#include "solver/ReluctivityCurve.h"

using solver::mu0;
using solver::ReluctivityCurve;

TEST(ReluctivityCurve, PassesThroughEveryPointAndRisesBetweenThem)
{
    const IronData data;
    const ReluctivityCurve curve = data.curve();
    for (std::size_t i = 0; i < data.h.size(); ++i) {
        EXPECT_NEAR(curve.fieldStrength(data.b[i]) / data.h[i], 1.0, 1e-12) << i;
        EXPECT_NEAR(curve.reluctivity(data.b[i] * data.b[i]), data.h[i] / data.b[i], 1e-9 * data.h[i] / data.b[i]);
    }
    // Between the points the steep knee of the curve must not overshoot into a falling H.
    double previous = 0.0;
    for (double b = 0.001; b < 2.5; b += 0.001) {
        const double h = curve.fieldStrength(b);
        EXPECT_GT(h, previous) << b;
        EXPECT_GT(curve.differentialReluctivity(b), 0.0) << b;
        previous = h;
    }
}

TEST(ReluctivityCurve, BeyondTheLastPointRisesAtTheSlopeOfFreeSpace)
{
    const IronData data;
    const ReluctivityCurve curve = data.curve();
    const double lastB = data.b.back();
    const double lastH = data.h.back();
    for (const double extra : {0.1, 1.0, 3.0}) {
        EXPECT_NEAR(curve.fieldStrength(lastB + extra) / (lastH + extra / mu0), 1.0, 1e-12);
        EXPECT_DOUBLE_EQ(curve.differentialReluctivity(lastB + extra), 1.0 / mu0);
    }
}

TEST(ReluctivityCurve, StraightDataGiveAConstantReluctivityAndItsEnergy)
{
    // H = k B through three points: the cubic is that line; beyond it the mu0 slope.
    constexpr double k = 400.0;
    const ReluctivityCurve curve = *ReluctivityCurve::fromBH({0.2 * k, 0.5 * k, 1.0 * k}, {0.2, 0.5, 1.0});
    // Up to the last point; at it the slope turns to that of free space.
    for (const double b : {0.05, 0.3, 0.77, 0.999}) {
        EXPECT_NEAR(curve.reluctivity(b * b) / k, 1.0, 1e-12);
        EXPECT_NEAR(curve.reluctivityDerivative(b * b) * b * b / k, 0.0, 1e-9);
        EXPECT_NEAR(curve.energyDensity(b) / (k * b * b / 2.0), 1.0, 1e-12);
    }
    const double b = 1.4;
    const double beyond = k / 2.0 + k * (b - 1.0) + (b - 1.0) * (b - 1.0) / (2.0 * mu0);
    EXPECT_NEAR(curve.energyDensity(b) / beyond, 1.0, 1e-12);
    EXPECT_DOUBLE_EQ(curve.reluctivity(0.0), k);
}

TEST(ReluctivityCurve, ALaminatedCoreMixesSteelAndAirByTheStackingFactor)
{
    // Steel of H = k B filling 95 % of the section: B = (0.95 / k + 0.05 mu0) H.
    constexpr double k = 400.0;
    constexpr double stacking = 0.95;
    const ReluctivityCurve curve = *ReluctivityCurve::fromBH({0.2 * k, 0.5 * k, 1.0 * k}, {0.2, 0.5, 1.0}, stacking);
    const double nu = 1.0 / (stacking / k + (1.0 - stacking) * mu0);
    for (const double b : {0.1, 0.5, 0.9})
        EXPECT_NEAR(curve.reluctivity(b * b) / nu, 1.0, 1e-12);
    // Past the table both parts rise at the slope of free space.
    const double last = stacking * 1.0 + (1.0 - stacking) * mu0 * k;
    EXPECT_NEAR(curve.fieldStrength(last + 0.2) / (k + 0.2 / mu0), 1.0, 1e-12);
}

TEST(ReluctivityCurve, DerivativesAndEnergyAgreeWithTheFieldStrength)
{
    // dW/dB = H and d nu / d(B^2) by central differences, across the knee and beyond.
    const ReluctivityCurve curve = IronData().curve();
    for (const double b : {0.01, 0.4, 1.2, 1.7, 1.85, 1.95, 2.2}) {
        const double step = 1e-5 * b;
        const double energySlope = (curve.energyDensity(b + step) - curve.energyDensity(b - step)) / (2.0 * step);
        EXPECT_NEAR(energySlope / curve.fieldStrength(b), 1.0, 1e-8) << b;
        const double b2 = b * b;
        const double nuSlope = (curve.reluctivity(b2 + b2 * 1e-5) - curve.reluctivity(b2 - b2 * 1e-5)) / (2e-5 * b2);
        EXPECT_NEAR(nuSlope / curve.reluctivityDerivative(b2), 1.0, 1e-6) << b;
    }
}

TEST(ReluctivityCurve, UnusableTablesAreRefusedOrCleaned)
{
    EXPECT_FALSE(ReluctivityCurve::fromBH({}, {}));
    EXPECT_FALSE(ReluctivityCurve::fromBH({0.0, -5.0}, {0.0, 1.0}));
    // Unsorted rows are sorted; a row that lowers H as B rises is dropped.
    const auto curve = ReluctivityCurve::fromBH({400.0, 100.0, 50.0, 1000.0}, {1.0, 0.5, 0.8, 1.5});
    ASSERT_TRUE(curve);
    EXPECT_EQ(curve->pointCount(), 4);
    EXPECT_NEAR(curve->fieldStrength(0.5), 100.0, 1e-9);
    EXPECT_NEAR(curve->fieldStrength(1.0), 400.0, 1e-9);
    EXPECT_GT(curve->fieldStrength(0.8), 100.0);
}
