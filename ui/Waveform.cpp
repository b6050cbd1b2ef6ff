#include "ui/Waveform.h"

#include <cmath>

namespace Waveform {

QVector<double> smoothed(const QVector<double> &x, const QVector<double> &y, double interval)
{
    if (interval <= 0.0 || x.size() != y.size())
        return y;
    const double half = interval / 2.0;
    QVector<double> result(y.size());
    for (int i = 0; i < y.size(); ++i) {
        double sum = 0.0;
        int count = 0;
        for (int j = 0; j < y.size(); ++j) {
            if (std::abs(x.at(j) - x.at(i)) <= half) {
                sum += y.at(j);
                ++count;
            }
        }
        result[i] = sum / count;
    }
    return result;
}

QVector<double> harmonicAmplitudes(const QVector<double> &y)
{
    const int n = y.size();
    QVector<double> amplitudes;
    for (int k = 0; k <= n / 2; ++k) {
        double re = 0.0;
        double im = 0.0;
        for (int i = 0; i < n; ++i) {
            const double phase = 2.0 * M_PI * k * i / n;
            re += y.at(i) * std::cos(phase);
            im -= y.at(i) * std::sin(phase);
        }
        // The mean and, for an even count, the Nyquist term have no conjugate twin.
        const bool single = k == 0 || (n % 2 == 0 && k == n / 2);
        amplitudes.append(std::hypot(re, im) / n * (single ? 1.0 : 2.0));
    }
    return amplitudes;
}

} // namespace Waveform
