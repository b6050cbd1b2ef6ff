#pragma once

#include "base/LossFit.h"

#include <Eigen/Core>
#include <vector>

namespace mcrctrl {

// A loss in its hysteresis and eddy-current parts.
struct LossParts
{
    double hysteresis = 0.0;
    double eddy = 0.0;

    double total() const { return hysteresis + eddy; }
    LossParts &operator+=(const LossParts &other);
    LossParts operator*(double factor) const { return {hysteresis * factor, eddy * factor}; }
};

// The iron losses of the whole machine.
struct IronLosses
{
    LossParts stator;
    LossParts rotor;

    LossParts total() const { return {stator.hysteresis + rotor.hysteresis, stator.eddy + rotor.eddy}; }
};

// The specific loss, W/kg, of a flux density sampled at equal steps over one period of
// frequency f1: the loss equation applied to each harmonic n at n f1, with the
// harmonic's amplitude taken over both components, sqrt(|Bx_n|^2 + |By_n|^2). A
// rotating field thus counts twice the eddy loss of an alternating one of its size.
LossParts specificLoss(const std::vector<Eigen::Vector2d> &samples, double f1, const IronLossCoefficients &coefficients);

} // namespace mcrctrl
