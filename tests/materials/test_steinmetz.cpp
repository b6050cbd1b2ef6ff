#include <QMap>
#include <cmath>
#include <gtest/gtest.h>
#include <iostream>
#include <tuple>

#include "materials/MaterialIronEngine.h"
#include "materials/MaterialTestSupport.h"
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
    EXPECT_NEAR(fit.kh / 0.02, 1.0, 1e-9);
    EXPECT_NEAR(fit.ke / 5e-5, 1.0, 1e-9);
    EXPECT_NEAR(fit.a, 1.1, 1e-9);
    EXPECT_NEAR(fit.b, 1.9, 1e-9);
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

TEST(Steinmetz, RowsTheEquationCannotTakeAreLeftOutWithAWarning)
{
    MaterialIronDescribe::IronLoss loss = tableOf({50, 100, 400}, {0.5, 1.0, 1.5}, 0.02, 5e-5, 1.1, 1.9);
    for (const auto &[f, flux, value] : {std::tuple(50.0, 0.0, 0.0), std::tuple(100.0, 1.2, 0.0), std::tuple(-50.0, 1.0, 1.0)}) {
        loss.lossFrequency.append(f);
        loss.lossFluxDensity.append(flux);
        loss.lossValue.append(value);
    }
    const LogCatcher log;
    const Steinmetz fit(loss);
    EXPECT_TRUE(log.contains("Steinmetz fit leaves out 3 loss rows"));
    EXPECT_NEAR(fit.a, 1.1, 1e-9);
    EXPECT_NEAR(fit.b, 1.9, 1e-9);
}

TEST(Steinmetz, FileCoefficientsPlayNoPart)
{
    MaterialIronDescribe::IronLoss loss = tableOf({50, 400}, {1.0, 1.5}, 0.02, 5e-5, 1.0, 2.0);
    loss.kh = 7.0;
    loss.alfa = 3.0;
    const Steinmetz fromTable(loss);
    EXPECT_NEAR(fromTable.a, 1.0, 1e-3);
}

namespace {

struct FrequencyError
{
    double mean = 0.0;
    double largest = 0.0;
};

// Relative error of the fitted equation against the rows of each frequency of a table.
QMap<double, FrequencyError> errorsByFrequency(const MaterialIronDescribe &iron, const Steinmetz &fit)
{
    QMap<double, FrequencyError> errors;
    QMap<double, int> counts;
    for (int i = 0; i < iron.lossValue.size(); ++i) {
        const double f = iron.lossFrequency.at(i);
        const double error = std::abs(fit.loss(f, iron.lossFluxDensity.at(i)) / iron.lossValue.at(i) - 1.0);
        FrequencyError &at = errors[f];
        at.mean += error;
        at.largest = std::max(at.largest, error);
        ++counts[f];
    }
    for (auto it = errors.begin(); it != errors.end(); ++it)
        it->mean /= counts.value(it.key());
    return errors;
}

} // namespace

// The fit on two published tables: its error is written out per frequency, and held to
// what it reaches on them, so that a change of the fit that makes it worse is seen.
TEST(Steinmetz, ReportsItsErrorPerFrequencyOnPublishedTables)
{
    const struct
    {
        const char *name;
        double mean;
        double largest;
    } tables[] = {{"M270-35A", 0.07, 0.13}, {"NO20", 0.10, 0.20}};
    for (const auto &table : tables) {
        SCOPED_TRACE(table.name);
        const MaterialIronDescribe iron
            = MaterialIronEngine::readFromFile(QStringLiteral(ZDS_SOURCE_DIR "/assets/materials/Iron/Electrical steel/") + table.name + ".txt");
        ASSERT_FALSE(iron.lossValue.isEmpty());
        const Steinmetz fit(iron);
        std::cout << table.name << ": kh " << fit.kh << ", ke " << fit.ke << ", a " << fit.a << ", b " << fit.b << "\n";
        const QMap<double, FrequencyError> errors = errorsByFrequency(iron, fit);
        for (auto it = errors.cbegin(); it != errors.cend(); ++it) {
            std::cout << "  " << it.key() << " Hz: mean " << 100.0 * it->mean << " %, largest " << 100.0 * it->largest << " %\n";
            RecordProperty(QStringLiteral("%1_%2Hz").arg(table.name).arg(it.key()).toStdString(),
                           QStringLiteral("mean %1, largest %2").arg(it->mean).arg(it->largest).toStdString());
            EXPECT_LT(it->mean, table.mean) << it.key();
            EXPECT_LT(it->largest, table.largest) << it.key();
        }
    }
}
