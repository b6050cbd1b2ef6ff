#pragma once

#include "solver/ReluctivityCurve.h"
#include "solver/TriangleMesh.h"

#include <Eigen/Core>
#include <QStringList>
#include <vector>

namespace solver {

// The material and the source of one region, as the exchange file's region tables give
// them. A magnet is a linear region of recoil permeability whose triangles carry a
// remanence.
struct Region
{
    // A/m^2, along z.
    double currentDensity = 0.0;
    // Of a linear region, of a magnet (recoil), and of an iron in the linear mode.
    double relativePermeability = 1.0;
    // An index into Problem::curves for a saturating iron, or -1.
    int curve = -1;
};

// A potential held at a value: 0 on an ordinary flux boundary.
struct FixedPotential
{
    int node = 0;
    double value = 0.0;
};

// A node whose potential is sign times that of its master: +1 on a periodic seam,
// -1 on an antiperiodic one. A master may itself be a slave of another pair.
struct NodePair
{
    int slave = 0;
    int master = 0;
    double sign = 1.0;
};

// A 2D magnetostatic problem per metre of depth.
struct Problem
{
    TriangleMesh mesh;
    std::vector<Region> regions;
    std::vector<ReluctivityCurve> curves;
    // Tesla, one vector per triangle, or empty for a problem without magnets. It is
    // read only in regions without a curve.
    std::vector<Eigen::Vector2d> remanence;
    std::vector<FixedPotential> fixed;
    std::vector<NodePair> pairs;
};

// What makes a problem unfit for the solver, which reads it without checks: numbers of
// nodes, regions and curves out of range, a remanence list of the wrong length, a
// degenerate triangle. Empty for a fit problem.
QStringList problemErrors(const Problem &problem);

} // namespace solver
