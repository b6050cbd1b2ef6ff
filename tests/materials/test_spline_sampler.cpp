#include <gtest/gtest.h>

#include "materials/SplineSampler.h"

// The curve through measured material points that the plot windows draw.

TEST(SplineSampler, SamplesEvenlyFromTheSmallestToTheLargestX)
{
    // Points given out of order: the spline takes them sorted, the samples run upward.
    const SampledCurve curve = sampleAkimaSpline({3.0, 0.0, 1.0, 2.0, 4.0}, {7.0, 1.0, 3.0, 5.0, 9.0}, 8);
    ASSERT_EQ(curve.x.size(), 9);
    ASSERT_EQ(curve.y.size(), 9);
    for (int i = 0; i < curve.x.size(); ++i) {
        EXPECT_NEAR(curve.x.at(i), 0.5 * i, 1e-12);
        // A straight line stays straight: Akima's spline makes no wiggles.
        EXPECT_NEAR(curve.y.at(i), 1.0 + 2.0 * curve.x.at(i), 1e-9);
    }
}

TEST(SplineSampler, GoesThroughMeasuredPointsWithoutOvershooting)
{
    // A saturating B-H table: flat at the end. The spline must not rise above its last
    // value between the flat points, as a cubic interpolant would.
    const QVector<double> h{0, 100, 200, 400, 1000, 5000, 10000, 20000};
    const QVector<double> b{0, 0.8, 1.2, 1.4, 1.5, 1.6, 1.6, 1.6};
    const SampledCurve curve = sampleAkimaSpline(h, b, 2000);
    for (int i = 0; i < curve.x.size(); ++i) {
        EXPECT_LE(curve.y.at(i), 1.6 + 1e-12) << "at H = " << curve.x.at(i);
        EXPECT_GE(curve.y.at(i), -1e-12) << "at H = " << curve.x.at(i);
    }
    EXPECT_NEAR(curve.y.first(), 0.0, 1e-12);
    EXPECT_NEAR(curve.y.last(), 1.6, 1e-12);
}

TEST(SplineSampler, RefusesPointsThatAllowNoSpline)
{
    EXPECT_THROW(sampleAkimaSpline({1.0}, {2.0}, 10), SplineError);
    EXPECT_THROW(sampleAkimaSpline({1.0, 2.0}, {2.0}, 10), SplineError);
    // Two values at one x: the repeated field strength of a bad B-H table.
    EXPECT_THROW(sampleAkimaSpline({0.0, 1.0, 1.0, 2.0, 3.0}, {0.0, 1.0, 1.1, 1.2, 1.3}, 10), SplineError);
}
