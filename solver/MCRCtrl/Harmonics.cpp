#include "solver/MCRCtrl/Harmonics.h"

#include <cmath>

namespace mcrctrl {

std::vector<std::complex<double>> harmonicSums(const std::vector<double> &samples)
{
    const std::size_t count = samples.size();
    std::vector<std::complex<double>> turns(count);
    for (std::size_t k = 0; k < count; ++k)
        turns[k] = std::polar(1.0, -2.0 * M_PI * double(k) / double(count));
    std::vector<std::complex<double>> sums(count / 2 + 1);
    for (std::size_t n = 0; n < sums.size(); ++n) {
        for (std::size_t k = 0; k < count; ++k)
            sums[n] += samples[k] * turns[n * k % count];
    }
    return sums;
}

std::vector<double> periodicDerivative(const std::vector<double> &samples, double period)
{
    const std::size_t count = samples.size();
    std::vector<double> derivative(count, 0.0);
    if (count == 0 || !(period > 0.0))
        return derivative;
    const std::vector<std::complex<double>> sums = harmonicSums(samples);
    const double omega = 2.0 * M_PI / period;
    for (std::size_t n = 1; 2 * n < count; ++n) {
        // x(t) holds Re(c_n exp(i n w t)) with c_n = 2 X_n / N; its derivative is i n w times that.
        const std::complex<double> rate = std::complex<double>(0.0, double(n) * omega) * 2.0 * sums[n] / double(count);
        for (std::size_t k = 0; k < count; ++k)
            derivative[k] += std::real(rate * std::polar(1.0, 2.0 * M_PI * double(n * k % count) / double(count)));
    }
    return derivative;
}

} // namespace mcrctrl
