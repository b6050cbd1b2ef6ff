#pragma once

#include "base/LossFit.h"
#include "materials/MaterialDescribe.h"

// The coefficients of Pil = kh f^a B^b + ke (f B)^2 fitted to a measured loss table by
// Gauss-Newton on the relative errors. The coefficients of the file play no part.
struct Steinmetz : IronLossCoefficients
{
    explicit Steinmetz(const MaterialIronDescribe::IronLoss &loss);
};
