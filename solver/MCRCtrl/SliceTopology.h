#pragma once

#include "solver/Problem.h"

#include <vector>

namespace mcrctrl {

// The outer edges of a period model: the left and right seams, node by node, and the
// top and bottom faces, which hold the flux in (A = 0).
struct Seams
{
    // The right node follows the left one, times the sign.
    std::vector<solver::NodePair> pairs;
    std::vector<int> flux;
    // The regions (numbers of the triangles' regions) beside edges that are no outer
    // face and find no partner across the period: holes in the mesh.
    std::vector<int> holeRegions;
};

// Edges whose both nodes are in `ignored` are left out: the rows of a removed band.
Seams findSeams(const solver::TriangleMesh &mesh, double width, double sign, const std::vector<char> &ignored,
                double tolerance);

// Which nodes belong to a part of the mesh that holds one of the seed nodes, through
// the edges of the triangles.
std::vector<char> partsHolding(const solver::TriangleMesh &mesh, const std::vector<int> &seeds);

// The connected groups of some triangles of a problem, joined through their nodes and
// the seam pairs: a group number from 0 per listed triangle.
std::vector<int> groupsOf(const solver::Problem &problem, const std::vector<int> &triangles);

// Closes the band between a row that stays and a row that moves, both numbered by
// rising x over one period and each ending on the image of its first node one period
// further. The moving row's nodes are where they are now; those that lie outside the
// period of the staying row are stood in for by new nodes at their images, tied to
// them with the seam sign per period crossed. The new triangles get `region`.
void closeBand(solver::Problem &problem, const std::vector<int> &stayingRow, const std::vector<int> &movingRow,
               double width, double sign, int region);

} // namespace mcrctrl
