#pragma once

namespace solver {

class FieldSolution;

// A recovery-based estimate of how far first-order elements stand from the exact field,
// per metre of depth: the flux density is averaged at the nodes, and the linear field
// through those averages stands in for the exact one. B jumps between materials and
// between magnets, so the averages keep to regions of one material without magnets (air,
// coils and the moving band are one) or to one magnet. A node on a seam is one node
// with its partner across it, whose field is the sign of the seam times its own.
struct DiscretisationError
{
    // The integral of nu |B* - Bh|^2, B* the recovered field.
    double error = 0.0;
    // The integral of nu |Bh|^2.
    double energy = 0.0;

    // 100 sqrt(error / (error + energy)); 0 without field.
    double percent() const;
};

DiscretisationError discretisationError(const FieldSolution &solution);

} // namespace solver
