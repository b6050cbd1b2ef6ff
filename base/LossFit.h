#pragma once

#include <vector>

// The iron loss equation p = kh f^a B^b + ke (f B)^2, W/kg, of a frequency f (Hz) and
// a flux density amplitude B (T): hysteresis in the first term, eddy currents in the
// second.
struct IronLossCoefficients
{
    double kh = 1.0;
    double ke = 1.0;
    double a = 1.0;
    double b = 1.0;

    double hysteresis(double frequency, double fluxDensity) const;
    double eddy(double frequency, double fluxDensity) const;
    double loss(double frequency, double fluxDensity) const { return hysteresis(frequency, fluxDensity) + eddy(frequency, fluxDensity); }
};

// The coefficients fitted to a measured loss table, row i being (frequency[i],
// fluxDensity[i], loss[i]), by Gauss-Newton on the relative errors. Rows the equation
// cannot take are left out with a warning; no usable row leaves the start values.
IronLossCoefficients fitIronLoss(const std::vector<double> &frequency, const std::vector<double> &fluxDensity,
                                 const std::vector<double> &loss);
