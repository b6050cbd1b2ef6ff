#pragma once

#include "materials/MaterialDescribe.h"

// The coefficients of Pil = kh f^a B^b + ke (f B)^2 fitted to a measured loss table by
// Gauss-Newton on the relative errors. The coefficients of the file play no part.
struct Steinmetz
{
    explicit Steinmetz(const MaterialIronDescribe::IronLoss &loss);

    double loss(double frequency, double fluxDensity) const;

    double kh = 1.0;
    double ke = 1.0;
    double a = 1.0;
    double b = 1.0;
};
