#include "solver/FluxLinkage.h"

#include <QDebug>

namespace solver {

double fluxLinkage(const FieldSolution &solution, const std::vector<CoilSide> &sides, double turns)
{
    const std::vector<Triangle> &triangles = solution.problem().mesh.triangles;
    double linkage = 0.0;
    for (const CoilSide &side : sides) {
        double integral = 0.0;
        double area = 0.0;
        for (std::size_t e = 0; e < triangles.size(); ++e) {
            if (triangles[e].region == side.region) {
                integral += solution.potentialIntegral(static_cast<int>(e));
                area += solution.area(static_cast<int>(e));
            }
        }
        if (area > 0.0)
            linkage += side.sign * integral / area;
        else
            qWarning().noquote() << "Solver: coil side region" << side.region << "has no triangles";
    }
    return turns * linkage;
}

} // namespace solver
