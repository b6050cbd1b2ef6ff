#include "base/LossFit.h"

#include <Eigen/Dense>
#include <QDebug>
#include <algorithm>
#include <cmath>
#include <set>

namespace {

struct Rows
{
    Eigen::ArrayXd f;
    Eigen::ArrayXd b;
    Eigen::ArrayXd p;
};

Eigen::ArrayXd arrayOf(const std::vector<double> &values)
{
    return Eigen::Map<const Eigen::ArrayXd>(values.data(), Eigen::Index(values.size()));
}

// The equation has logarithms of frequency and flux density in its derivatives and the
// loss as divisor of its residual: a row with any of them not above zero would turn the
// whole fit into NaN, so it is left out with a warning.
// One frequency alone cannot tell hysteresis from eddy currents: the rows are repeated
// at five and ten times the frequency with the same losses.
Rows rowsOf(const std::vector<double> &frequencies, const std::vector<double> &fluxDensities, const std::vector<double> &losses)
{
    std::vector<double> frequency;
    std::vector<double> fluxDensity;
    std::vector<double> value;
    const std::size_t count = std::min({frequencies.size(), fluxDensities.size(), losses.size()});
    for (std::size_t i = 0; i < count; ++i) {
        if (frequencies[i] > 0.0 && fluxDensities[i] > 0.0 && losses[i] > 0.0) {
            frequency.push_back(frequencies[i]);
            fluxDensity.push_back(fluxDensities[i]);
            value.push_back(losses[i]);
        }
    }
    if (frequency.size() < frequencies.size())
        qWarning().noquote() << "Steinmetz fit leaves out" << frequencies.size() - frequency.size()
                             << "loss rows without a positive frequency, flux density and loss";
    if (std::set<double>(frequency.begin(), frequency.end()).size() == 1) {
        const std::size_t once = frequency.size();
        for (const double factor : {5.0, 10.0}) {
            for (std::size_t i = 0; i < once; ++i) {
                frequency.push_back(frequency[i] * factor);
                fluxDensity.push_back(fluxDensity[i]);
                value.push_back(value[i]);
            }
        }
    }
    return {arrayOf(frequency), arrayOf(fluxDensity), arrayOf(value)};
}

// x = (kh, ke, a, b)
Eigen::ArrayXd hysteresis(const Rows &rows, const Eigen::Vector4d &x)
{
    return x(0) * rows.f.pow(x(2)) * rows.b.pow(x(3));
}

Eigen::ArrayXd residuals(const Rows &rows, const Eigen::Vector4d &x)
{
    return (hysteresis(rows, x) + x(1) * (rows.f * rows.b).square() - rows.p) / rows.p;
}

double largestError(const Rows &rows, const Eigen::Vector4d &x)
{
    return residuals(rows, x).abs().maxCoeff();
}

} // namespace

double IronLossCoefficients::hysteresis(double frequency, double fluxDensity) const
{
    return kh * std::pow(frequency, a) * std::pow(fluxDensity, b);
}

double IronLossCoefficients::eddy(double frequency, double fluxDensity) const
{
    return ke * std::pow(frequency * fluxDensity, 2);
}

IronLossCoefficients fitIronLoss(const std::vector<double> &frequency, const std::vector<double> &fluxDensity,
                                 const std::vector<double> &loss)
{
    IronLossCoefficients fit;
    const Rows rows = rowsOf(frequency, fluxDensity, loss);
    if (rows.p.size() == 0)
        return fit;

    Eigen::Vector4d x(fit.kh, fit.ke, fit.a, fit.b);
    double error = residuals(rows, x).maxCoeff();
    for (int round = 0; round < 50; ++round) {
        const Eigen::ArrayXd h = hysteresis(rows, x);
        Eigen::MatrixXd jacobian(rows.p.size(), 4);
        jacobian.col(0) = (rows.f.pow(x(2)) * rows.b.pow(x(3)) / rows.p).matrix();
        jacobian.col(1) = ((rows.f * rows.b).square() / rows.p).matrix();
        jacobian.col(2) = (h * rows.f.log() / rows.p).matrix();
        jacobian.col(3) = (h * rows.b.log() / rows.p).matrix();
        const Eigen::Vector4d step = jacobian.colPivHouseholderQr().solve((-residuals(rows, x)).matrix());

        double s = 1.0;
        bool accepted = false;
        while (s >= 1e-9) {
            const Eigen::Vector4d trial = x + s * step;
            const double trialError = largestError(rows, trial);
            if (error - trialError >= 0.5 * s * error) {
                x = trial;
                error = trialError;
                accepted = true;
                break;
            }
            s /= 2.0;
        }
        if (!accepted)
            break;
    }
    fit.kh = x(0);
    fit.ke = x(1);
    fit.a = x(2);
    fit.b = x(3);
    const Eigen::ArrayXd errors = residuals(rows, x).abs();
    qDebug() << "Steinmetz average error:" << errors.mean() << ", maximum error:" << errors.maxCoeff();
    return fit;
}
