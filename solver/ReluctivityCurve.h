#pragma once

#include <optional>
#include <vector>

namespace solver {

// The permeability of free space, H/m.
constexpr double mu0 = 4.0e-7 * 3.14159265358979323846;

// A saturating iron as the solver needs it: H(B) through the measured points by a
// monotone cubic (Fritsch-Carlson), so the reluctivity never makes the field strength
// fall while the flux density rises, and a straight line of slope mu0 in the B-H plane
// beyond the last point, as a saturated iron behaves.
class ReluctivityCurve
{
public:
    // The columns of a B-H table in A/m and T. Points are sorted by B; the origin is
    // added; a point that does not raise both H and B is left out. Nothing is made of
    // fewer than one point above the origin. A stacking factor below 1 makes the curve
    // of a laminated core: the steel's share of the section carries B(H), the rest mu0 H.
    static std::optional<ReluctivityCurve> fromBH(const std::vector<double> &h, const std::vector<double> &b,
                                                  double stacking = 1.0);

    double fieldStrength(double b) const;
    // d H / d B.
    double differentialReluctivity(double b) const;
    // nu = H / B as a function of B squared, which the assembly uses, and its derivative
    // with respect to B squared. At B = 0 the initial slope, with a zero derivative.
    double reluctivity(double b2) const;
    double reluctivityDerivative(double b2) const;
    // The integral of H dB from 0 to B: the energy density, J/m^3.
    double energyDensity(double b) const;

    int pointCount() const { return static_cast<int>(m_b.size()); }

private:
    ReluctivityCurve(std::vector<double> b, std::vector<double> h);

    // The interval of b: the index of its left point, or the last index beyond the table.
    std::size_t intervalOf(double b) const;

    std::vector<double> m_b;
    std::vector<double> m_h;
    std::vector<double> m_slope;
};

} // namespace solver
