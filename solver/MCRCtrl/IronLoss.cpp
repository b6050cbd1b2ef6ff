#include "solver/MCRCtrl/IronLoss.h"

#include <cmath>
#include <complex>

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
    std::vector<std::complex<double>> turns(count);
    for (std::size_t k = 0; k < count; ++k)
        turns[k] = std::polar(1.0, -2.0 * M_PI * double(k) / double(count));
    for (std::size_t n = 1; 2 * n <= count; ++n) {
        std::complex<double> x;
        std::complex<double> y;
        for (std::size_t k = 0; k < count; ++k) {
            const std::complex<double> &turn = turns[n * k % count];
            x += samples[k].x() * turn;
            y += samples[k].y() * turn;
        }
        // The highest harmonic of an even count has no mirror image to share its amplitude with.
        const double scale = (2 * n == count ? 1.0 : 2.0) / double(count);
        const double amplitude = scale * std::sqrt(std::norm(x) + std::norm(y));
        if (amplitude <= 0.0)
            continue;
        const double frequency = double(n) * f1;
        loss.hysteresis += coefficients.hysteresis(frequency, amplitude);
        loss.eddy += coefficients.eddy(frequency, amplitude);
    }
    return loss;
}

} // namespace mcrctrl
