#include <gtest/gtest.h>

#include <cmath>

#include "solver/GridMesh.h"
#include "solver/MCRCtrl/MagnetLoss.h"

using namespace mcrctrl;

// Two strips of magnet, w wide and h high, side by side and apart, in a field across
// them of B_i sin(w t), uniform in each: A = -B_i sin(w t) x. Each strip's currents
// return within it, J = sigma B_i w cos(w t) (x - x_i), and lose per metre of depth
// sigma (w B_i)^2 w^3 h / 12 cos^2(w t): half that on the mean over a period.
TEST(MagnetLoss, StripsInAnAlternatingFieldLoseByTheirWidthCubed)
{
    const double width = 0.01;
    const double height = 0.004;
    const double conductivity = 1.0 / 1.5e-6;
    const double period = 1.0 / 200.0;
    const double omega = 2.0 * M_PI / period;
    const std::vector<double> amplitude{0.1, 0.05};
    const int samples = 8;
    const GridMesh grid(GridMesh::lines({0.0, width, 2.0 * width, 3.0 * width}, {40, 1, 40}), GridMesh::lines({0.0, height}, {4}));
    const solver::TriangleMesh mesh = grid.mesh([&](const Eigen::Vector2d &centroid) {
        return centroid.x() < width ? 0 : centroid.x() > 2.0 * width ? 1 : -1;
    });

    MagnetElements magnets;
    for (const solver::Triangle &triangle : mesh.triangles) {
        if (triangle.region < 0)
            continue;
        const Eigen::Vector2d centroid =
            (mesh.nodes[std::size_t(triangle.nodes[0])] + mesh.nodes[std::size_t(triangle.nodes[1])] + mesh.nodes[std::size_t(triangle.nodes[2])]) / 3.0;
        magnets.area.push_back(solver::ElementShape(mesh, triangle).area());
        magnets.piece.push_back(triangle.region);
        std::vector<double> potential;
        for (int k = 0; k < samples; ++k)
            potential.push_back(-amplitude[std::size_t(triangle.region)] * std::sin(omega * period * k / samples) * centroid.x());
        magnets.potential.push_back(potential);
    }
    const std::vector<double> loss = magnetEddyLoss(magnets, conductivity, period);
    ASSERT_EQ(loss.size(), std::size_t(samples));
    const double peak = conductivity * omega * omega * std::pow(width, 3) * height / 12.0
                        * (amplitude[0] * amplitude[0] + amplitude[1] * amplitude[1]);
    double mean = 0.0;
    for (int k = 0; k < samples; ++k) {
        const double expected = peak * std::pow(std::cos(omega * period * k / samples), 2);
        EXPECT_NEAR(loss[std::size_t(k)], expected, 2e-3 * peak) << "sample " << k;
        mean += loss[std::size_t(k)] / samples;
    }
    EXPECT_NEAR(mean, peak / 2.0, 1e-3 * peak);

    // A potential that rises alike all over a piece drives no current round it.
    for (std::vector<double> &potential : magnets.potential) {
        for (int k = 0; k < samples; ++k)
            potential[std::size_t(k)] = 0.3 * std::sin(omega * period * k / samples);
    }
    for (const double value : magnetEddyLoss(magnets, conductivity, period))
        EXPECT_NEAR(value, 0.0, 1e-12 * peak);
}
