#include "solver/MCRCtrl/IronLoss.h"

#include <cmath>
#include <complex>

#include "solver/MCRCtrl/Harmonics.h"

namespace mcrctrl {

LossParts &LossParts::operator+=(const LossParts &other)
{
    hysteresis += other.hysteresis;
    eddy += other.eddy;
    return *this;
}

LossParts specificLoss(const std::vector<Eigen::Vector2d> &samples, double f1, const IronLossCoefficients &coefficients)
{
    LossParts loss;
    const std::size_t count = samples.size();
    std::vector<double> xs(count);
    std::vector<double> ys(count);
    for (std::size_t k = 0; k < count; ++k) {
        xs[k] = samples[k].x();
        ys[k] = samples[k].y();
    }
    const std::vector<std::complex<double>> x = harmonicSums(xs);
    const std::vector<std::complex<double>> y = harmonicSums(ys);
    for (std::size_t n = 1; 2 * n <= count; ++n) {
        // The highest harmonic of an even count has no mirror image to share its amplitude with.
        const double scale = (2 * n == count ? 1.0 : 2.0) / double(count);
        const double amplitude = scale * std::sqrt(std::norm(x[n]) + std::norm(y[n]));
        if (amplitude <= 0.0)
            continue;
        const double frequency = double(n) * f1;
        loss.hysteresis += coefficients.hysteresis(frequency, amplitude);
        loss.eddy += coefficients.eddy(frequency, amplitude);
    }
    return loss;
}

} // namespace mcrctrl
