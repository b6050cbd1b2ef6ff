#include "materials/Steinmetz.h"

#include <Eigen/Dense>
#include <QDebug>
#include <QSet>
#include <algorithm>
#include <cmath>

namespace {

struct Rows
{
    Eigen::ArrayXd f;
    Eigen::ArrayXd b;
    Eigen::ArrayXd p;
};

Eigen::ArrayXd arrayOf(const QList<double> &values)
{
    Eigen::ArrayXd array(values.size());
    for (int i = 0; i < values.size(); ++i)
        array(i) = values.at(i);
    return array;
}

// The equation has logarithms of frequency and flux density in its derivatives and the
// loss as divisor of its residual: a row with any of them not above zero would turn the
// whole fit into NaN, so it is left out with a warning.
// One frequency alone cannot tell hysteresis from eddy currents: the rows are repeated
// at five and ten times the frequency with the same losses.
Rows rowsOf(const MaterialIronDescribe::IronLoss &loss)
{
    QList<double> frequency;
    QList<double> fluxDensity;
    QList<double> value;
    const int count = std::min({loss.lossFrequency.size(), loss.lossFluxDensity.size(), loss.lossValue.size()});
    for (int i = 0; i < count; ++i) {
        if (loss.lossFrequency.at(i) > 0.0 && loss.lossFluxDensity.at(i) > 0.0 && loss.lossValue.at(i) > 0.0) {
            frequency.append(loss.lossFrequency.at(i));
            fluxDensity.append(loss.lossFluxDensity.at(i));
            value.append(loss.lossValue.at(i));
        }
    }
    if (frequency.size() < loss.lossFrequency.size())
        qWarning().noquote() << "Steinmetz fit leaves out" << loss.lossFrequency.size() - frequency.size()
                             << "loss rows without a positive frequency, flux density and loss";
    if (QSet<double>(frequency.begin(), frequency.end()).size() == 1) {
        const QList<double> once = frequency;
        for (const double factor : {5.0, 10.0}) {
            for (const double f : once)
                frequency.append(f * factor);
        }
        fluxDensity = fluxDensity + fluxDensity + fluxDensity;
        value = value + value + value;
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

Steinmetz::Steinmetz(const MaterialIronDescribe::IronLoss &loss)
{
    const Rows rows = rowsOf(loss);
    if (rows.p.size() == 0)
        return;

    Eigen::Vector4d x(kh, ke, a, b);
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
    kh = x(0);
    ke = x(1);
    a = x(2);
    b = x(3);
    const Eigen::ArrayXd errors = residuals(rows, x).abs();
    qDebug() << "Steinmetz average error:" << errors.mean() << ", maximum error:" << errors.maxCoeff();
}

double Steinmetz::loss(double frequency, double fluxDensity) const
{
    return kh * std::pow(frequency, a) * std::pow(fluxDensity, b) + ke * std::pow(frequency * fluxDensity, 2);
}
