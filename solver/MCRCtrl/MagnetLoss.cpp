#include "solver/MCRCtrl/MagnetLoss.h"

#include "solver/MCRCtrl/Harmonics.h"

#include <algorithm>

namespace mcrctrl {

std::vector<double> magnetEddyLoss(const MagnetElements &magnets, double conductivity, double period)
{
    const std::size_t elements = magnets.area.size();
    const std::size_t samples = elements == 0 ? 0 : magnets.potential.front().size();
    std::vector<std::vector<double>> rate(elements);
    for (std::size_t e = 0; e < elements; ++e)
        rate[e] = periodicDerivative(magnets.potential[e], period);

    const std::size_t pieces = elements == 0 ? 0 : std::size_t(*std::max_element(magnets.piece.begin(), magnets.piece.end())) + 1;
    std::vector<double> pieceArea(pieces, 0.0);
    for (std::size_t e = 0; e < elements; ++e)
        pieceArea[std::size_t(magnets.piece[e])] += magnets.area[e];

    std::vector<double> loss(samples, 0.0);
    for (std::size_t k = 0; k < samples; ++k) {
        std::vector<double> meanRate(pieces, 0.0);
        for (std::size_t e = 0; e < elements; ++e)
            meanRate[std::size_t(magnets.piece[e])] += rate[e][k] * magnets.area[e] / pieceArea[std::size_t(magnets.piece[e])];
        for (std::size_t e = 0; e < elements; ++e) {
            const double eddy = rate[e][k] - meanRate[std::size_t(magnets.piece[e])];
            loss[k] += conductivity * eddy * eddy * magnets.area[e];
        }
    }
    return loss;
}

} // namespace mcrctrl
