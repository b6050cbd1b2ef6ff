#pragma once

#include <complex>
#include <vector>

namespace mcrctrl {

// The sums X_n = sum_k x_k exp(-2 pi i n k / N) of N samples taken at equal steps over
// one period, for the harmonics n = 0 .. N / 2.
std::vector<std::complex<double>> harmonicSums(const std::vector<double> &samples);

// The time derivative, at the samples, of a waveform sampled at equal steps over one
// period: taken through its harmonics it is exact for all the samples can hold, where a
// difference quotient shrinks each harmonic by sin(x)/x. The highest harmonic of an even
// count has no phase to tell and is left out.
std::vector<double> periodicDerivative(const std::vector<double> &samples, double period);

} // namespace mcrctrl
