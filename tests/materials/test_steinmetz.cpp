#include <cmath>
#include <gtest/gtest.h>

#include "materials/Steinmetz.h"

namespace {

MaterialIronDescribe::IronLoss tableOf(const QList<double> &frequencies, const QList<double> &fluxDensities,
                                       double kh, double ke, double a, double b)
{
    MaterialIronDescribe::IronLoss loss;
    for (const double f : frequencies) {
        for (const double flux : fluxDensities) {
            loss.lossFrequency.append(f);
            loss.lossFluxDensity.append(flux);
            loss.lossValue.append(kh * std::pow(f, a) * std::pow(flux, b) + ke * std::pow(f * flux, 2));
        }
    }
    return loss;
}

} // namespace

TEST(Steinmetz, RecoversTheCoefficientsOfExactData)
{
    const Steinmetz fit(tableOf({50, 100, 200, 400}, {0.5, 0.8, 1.0, 1.2, 1.5}, 0.02, 5e-5, 1.1, 1.9));
    EXPECT_NEAR(fit.kh / 0.02, 1.0, 1e-4);
    EXPECT_NEAR(fit.ke / 5e-5, 1.0, 1e-4);
    EXPECT_NEAR(fit.a, 1.1, 1e-4);
    EXPECT_NEAR(fit.b, 1.9, 1e-4);
    EXPECT_NEAR(fit.loss(400, 1.5) / (0.02 * std::pow(400, 1.1) * std::pow(1.5, 1.9) + 5e-5 * 600 * 600), 1.0, 1e-6);
}

TEST(Steinmetz, NoRowsLeaveTheStartValues)
{
    const Steinmetz fit{MaterialIronDescribe::IronLoss()};
    EXPECT_EQ(fit.kh, 1.0);
    EXPECT_EQ(fit.ke, 1.0);
    EXPECT_EQ(fit.a, 1.0);
    EXPECT_EQ(fit.b, 1.0);
}

TEST(Steinmetz, OneFrequencySeesTheSameLossAtFiveAndTenTimesIt)
{
    const Steinmetz fit(tableOf({50}, {0.5, 1.0, 1.5}, 0.03, 0.0, 1.0, 2.0));
    // The same loss at three frequencies leaves no room for a frequency dependence.
    EXPECT_LT(std::abs(fit.a), 0.05);
    EXPECT_NEAR(fit.b, 2.0, 0.05);
}

TEST(Steinmetz, FileCoefficientsPlayNoPart)
{
    MaterialIronDescribe::IronLoss loss = tableOf({50, 400}, {1.0, 1.5}, 0.02, 5e-5, 1.0, 2.0);
    loss.kh = 7.0;
    loss.alfa = 3.0;
    const Steinmetz fromTable(loss);
    EXPECT_NEAR(fromTable.a, 1.0, 1e-3);
}
