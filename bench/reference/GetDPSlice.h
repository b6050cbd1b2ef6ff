#pragma once

#include <QString>

#include "solver/MCRCtrl/SliceModel.h"
#include "solver/Problem.h"

// One slice's problem solved by our solver and by GetDP on the same mesh, materials and
// currents: the common part of the comparison program and of the benchmark.
namespace getdp {

struct Answer
{
    // Of phase A, Wb/m.
    double fluxLinkage = 0.0;
    // Along the motion, from the stress in the band, N/m.
    double force = 0.0;
    // Of the solve alone.
    double seconds = 0.0;
};

bool installed();
Answer ours(const mcrctrl::SliceModel &slice, const solver::Problem &problem, bool linear);
// Writes the mesh and the problem into the folder and runs GetDP there, to 1e-10 as
// ours. Throws a StepError when GetDP fails.
Answer reference(const mcrctrl::SliceModel &slice, const solver::Problem &problem, const QString &folder, bool linear);

} // namespace getdp
