#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>
#include <cmath>
#include <functional>

#include "solver/MCRCtrl/IronLoss.h"
#include "solver/MCRCtrl/MaterialFiles.h"

using namespace mcrctrl;

namespace {

const IronLossCoefficients steel{0.02, 5e-5, 1.1, 1.9};

// Samples of one period at k T / count.
std::vector<Eigen::Vector2d> sampled(int count, const std::function<Eigen::Vector2d(double)> &field)
{
    std::vector<Eigen::Vector2d> samples;
    for (int k = 0; k < count; ++k)
        samples.push_back(field(2.0 * M_PI * k / count));
    return samples;
}

double relative(double value, double expected)
{
    return std::abs(value / expected - 1.0);
}

} // namespace

TEST(IronLoss, AlternatingHarmonicsEachGiveTheirClosedForm)
{
    const double f1 = 83.0;
    const double main = 1.4;
    const double third = 0.2;
    for (const int count : {8, 9, 48}) {
        SCOPED_TRACE(count);
        // Along a tilted axis and with phases of their own: only the amplitude counts.
        const LossParts loss = specificLoss(sampled(count, [&](double angle) {
                                                const double b = main * std::cos(angle + 0.3) + third * std::sin(3.0 * angle - 1.0);
                                                return Eigen::Vector2d(0.6 * b, 0.8 * b);
                                            }),
                                            f1, steel);
        EXPECT_LT(relative(loss.hysteresis, steel.hysteresis(f1, main) + steel.hysteresis(3.0 * f1, third)), 1e-9);
        EXPECT_LT(relative(loss.eddy, steel.eddy(f1, main) + steel.eddy(3.0 * f1, third)), 1e-9);
    }
}

TEST(IronLoss, RotatingFieldOfConstantSizeLosesOnlyAtTheFundamental)
{
    const double f1 = 50.0;
    const double size = 1.2;
    const LossParts loss = specificLoss(sampled(12, [&](double angle) { return Eigen::Vector2d(size * std::cos(angle), size * std::sin(angle)); }),
                                        f1, steel);
    // Two alternating fields in quadrature: the amplitude over both is sqrt(2) times the size.
    EXPECT_LT(relative(loss.hysteresis, steel.hysteresis(f1, std::sqrt(2.0) * size)), 1e-9);
    EXPECT_LT(relative(loss.eddy, 2.0 * steel.eddy(f1, size)), 1e-9);
}

TEST(IronLoss, SteadyFieldAndTheHighestHarmonicOfAnEvenCount)
{
    const LossParts steady = specificLoss(std::vector<Eigen::Vector2d>(6, Eigen::Vector2d(1.5, -0.4)), 50.0, steel);
    EXPECT_LT(steady.total(), 1e-12);
    // Alternating sign from sample to sample: the third harmonic of six samples, at full size.
    std::vector<Eigen::Vector2d> flipping;
    for (int k = 0; k < 6; ++k)
        flipping.emplace_back(k % 2 == 0 ? 0.5 : -0.5, 0.0);
    const LossParts loss = specificLoss(flipping, 50.0, steel);
    EXPECT_LT(relative(loss.total(), steel.loss(150.0, 0.5)), 1e-9);
}

namespace {

QString writeIron(const QTemporaryDir &folder, const QString &name, const QString &body)
{
    QDir().mkpath(folder.filePath(QStringLiteral("Iron/Test")));
    QFile file(folder.filePath(QStringLiteral("Iron/Test/%1.txt").arg(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Text));
    QTextStream(&file) << "<Description>\n" << name << "\nA test iron\nSource: none\n\n" << body;
    return folder.path();
}

} // namespace

TEST(IronLossFiles, MeasuredTablesAreFittedAndCoefficientsReadWithoutOne)
{
    const MaterialFiles library(QFileInfo(QStringLiteral(ZDS_EXECUTABLE)).absolutePath() + QStringLiteral("/assets/materials"));
    const std::optional<IronLossData> measured = library.ironLoss(QStringLiteral("M270-35A"));
    ASSERT_TRUE(measured);
    EXPECT_EQ(measured->massDensity, 7600.0);
    // Rows of the file's table.
    EXPECT_LT(relative(measured->coefficients.loss(50.0, 1.5), 2.47), 0.15);
    EXPECT_LT(relative(measured->coefficients.loss(200.0, 1.5), 14.9), 0.15);
    // A grade without loss rows has no loss data.
    EXPECT_FALSE(library.ironLoss(QStringLiteral("M330-50A")));
    EXPECT_FALSE(library.ironLoss(QStringLiteral("No such iron")));

    QTemporaryDir folder;
    const MaterialFiles coefficients(writeIron(folder, QStringLiteral("Coefficients"),
                                               QStringLiteral("<Iron loss>\n% Steinmetz coefficients\n1.2 % alfa\n1.8 % beta\n"
                                                              "4e-5 % ke\n0.03 % kh\n\n<Mass Density> (kg/m^3)\n7800\n")));
    const std::optional<IronLossData> given = coefficients.ironLoss(QStringLiteral("Coefficients"));
    ASSERT_TRUE(given);
    EXPECT_EQ(given->coefficients.kh, 0.03);
    EXPECT_EQ(given->coefficients.ke, 4e-5);
    EXPECT_EQ(given->coefficients.a, 1.2);
    EXPECT_EQ(given->coefficients.b, 1.8);
    EXPECT_EQ(given->massDensity, 7800.0);

    const MaterialFiles weightless(writeIron(folder, QStringLiteral("Weightless"),
                                             QStringLiteral("<Iron loss>\n% Frequency(Hz) Flux density(T) Iron loss(W/kg)\n"
                                                            "50 1.0 1.0\n50 1.5 2.4\n")));
    EXPECT_FALSE(weightless.ironLoss(QStringLiteral("Weightless")));
}
