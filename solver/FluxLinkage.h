#pragma once

#include "solver/FieldSolution.h"

#include <vector>

namespace solver {

// One side of a coil: a region and the direction of its conductors, +1 when the
// current flows along +z.
struct CoilSide
{
    int region = 0;
    double sign = 1.0;
};

// The flux linkage of a coil per metre of depth, Wb/m: the turns times the sum over its
// sides of sign times the mean of A over the side.
double fluxLinkage(const FieldSolution &solution, const std::vector<CoilSide> &sides, double turns);

} // namespace solver
