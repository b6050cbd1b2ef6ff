#pragma once

#include <vector>

namespace mcrctrl {

// The magnet elements of one slice as their eddy currents see them.
struct MagnetElements
{
    // m^2.
    std::vector<double> area;
    // The piece of magnet of each element: its currents close within it.
    std::vector<int> piece;
    // The mean potential A of each element at each of the samples, Wb/m, taken at equal
    // steps over one period as the element moves with the rotor.
    std::vector<std::vector<double>> potential;
};

// The eddy-current loss in magnets, W per metre of depth, at each sample: limited by
// the magnets' resistance alone (their own field left out), the currents along the depth
// are J = -sigma (dA/dt - <dA/dt>), the mean over each piece taking away what would
// make a net current, since a piece's currents return within it. Magnets long along the
// depth beside their width: shorter pieces lose less.
std::vector<double> magnetEddyLoss(const MagnetElements &magnets, double conductivity, double period);

} // namespace mcrctrl
