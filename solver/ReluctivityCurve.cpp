#include "solver/ReluctivityCurve.h"

#include <QDebug>
#include <algorithm>
#include <cmath>
#include <utility>

namespace solver {

namespace {

// Fritsch-Carlson slopes: harmonic means of the neighbouring secants inside, one-sided
// three-point slopes at the ends limited to keep the cubic monotone.
std::vector<double> monotoneSlopes(const std::vector<double> &x, const std::vector<double> &y)
{
    const std::size_t n = x.size();
    std::vector<double> secant(n - 1);
    for (std::size_t i = 0; i + 1 < n; ++i)
        secant[i] = (y[i + 1] - y[i]) / (x[i + 1] - x[i]);
    std::vector<double> slope(n);
    if (n == 2) {
        slope[0] = slope[1] = secant[0];
        return slope;
    }
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double w1 = 2.0 * (x[i + 1] - x[i]) + (x[i] - x[i - 1]);
        const double w2 = (x[i + 1] - x[i]) + 2.0 * (x[i] - x[i - 1]);
        slope[i] = (w1 + w2) / (w1 / secant[i - 1] + w2 / secant[i]);
    }
    const auto endSlope = [](double h0, double h1, double d0, double d1) {
        const double d = ((2.0 * h0 + h1) * d0 - h0 * d1) / (h0 + h1);
        if (d <= 0.0)
            return 0.0;
        if (d > 3.0 * d0)
            return 3.0 * d0;
        return d;
    };
    slope[0] = endSlope(x[1] - x[0], x[2] - x[1], secant[0], secant[1]);
    slope[n - 1] = endSlope(x[n - 1] - x[n - 2], x[n - 2] - x[n - 3], secant[n - 2], secant[n - 3]);
    return slope;
}

} // namespace

std::optional<ReluctivityCurve> ReluctivityCurve::fromBH(const std::vector<double> &h, const std::vector<double> &b,
                                                         double stacking)
{
    std::vector<std::pair<double, double>> points;
    for (std::size_t i = 0; i < std::min(h.size(), b.size()); ++i) {
        if (b[i] > 0.0 && h[i] > 0.0)
            points.emplace_back(stacking * b[i] + (1.0 - stacking) * mu0 * h[i], h[i]);
    }
    std::sort(points.begin(), points.end());
    std::vector<double> curveB{0.0};
    std::vector<double> curveH{0.0};
    for (const auto &[pointB, pointH] : points) {
        if (pointB > curveB.back() && pointH > curveH.back()) {
            curveB.push_back(pointB);
            curveH.push_back(pointH);
        }
    }
    if (curveB.size() < 2)
        return std::nullopt;
    if (curveB.size() < points.size() + 1)
        qWarning().noquote() << "B-H curve leaves out" << points.size() + 1 - curveB.size()
                             << "points that do not raise both H and B";
    return ReluctivityCurve(std::move(curveB), std::move(curveH));
}

ReluctivityCurve::ReluctivityCurve(std::vector<double> b, std::vector<double> h)
    : m_b(std::move(b))
    , m_h(std::move(h))
    , m_slope(monotoneSlopes(m_b, m_h))
{
}

std::size_t ReluctivityCurve::intervalOf(double b) const
{
    const auto above = std::upper_bound(m_b.begin(), m_b.end(), b);
    if (above == m_b.end())
        return m_b.size() - 1;
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, above - m_b.begin() - 1));
}

double ReluctivityCurve::fieldStrength(double b) const
{
    const std::size_t i = intervalOf(b);
    if (i + 1 == m_b.size())
        return m_h[i] + (b - m_b[i]) / mu0;
    const double step = m_b[i + 1] - m_b[i];
    const double t = (b - m_b[i]) / step;
    const double t2 = t * t;
    const double t3 = t2 * t;
    return (2.0 * t3 - 3.0 * t2 + 1.0) * m_h[i] + (t3 - 2.0 * t2 + t) * step * m_slope[i]
           + (-2.0 * t3 + 3.0 * t2) * m_h[i + 1] + (t3 - t2) * step * m_slope[i + 1];
}

double ReluctivityCurve::differentialReluctivity(double b) const
{
    const std::size_t i = intervalOf(b);
    if (i + 1 == m_b.size())
        return 1.0 / mu0;
    const double step = m_b[i + 1] - m_b[i];
    const double t = (b - m_b[i]) / step;
    const double t2 = t * t;
    return (6.0 * t2 - 6.0 * t) * (m_h[i] - m_h[i + 1]) / step + (3.0 * t2 - 4.0 * t + 1.0) * m_slope[i]
           + (3.0 * t2 - 2.0 * t) * m_slope[i + 1];
}

double ReluctivityCurve::reluctivity(double b2) const
{
    if (b2 <= 0.0)
        return m_slope[0];
    const double b = std::sqrt(b2);
    return fieldStrength(b) / b;
}

double ReluctivityCurve::reluctivityDerivative(double b2) const
{
    if (b2 <= 0.0)
        return 0.0;
    const double b = std::sqrt(b2);
    // d(H/B)/d(B^2) = (H' B - H) / (2 B^3)
    return (differentialReluctivity(b) * b - fieldStrength(b)) / (2.0 * b2 * b);
}

double ReluctivityCurve::energyDensity(double b) const
{
    // Whole pieces by step (y0 + y1) / 2 + step^2 (m0 - m1) / 12, the piece that holds b
    // by the integrals of the Hermite basis from 0 to t.
    double energy = 0.0;
    const std::size_t last = intervalOf(b);
    for (std::size_t i = 0; i < last; ++i) {
        const double step = m_b[i + 1] - m_b[i];
        energy += step * (m_h[i] + m_h[i + 1]) / 2.0 + step * step * (m_slope[i] - m_slope[i + 1]) / 12.0;
    }
    if (last + 1 == m_b.size()) {
        const double beyond = b - m_b[last];
        return energy + m_h[last] * beyond + beyond * beyond / (2.0 * mu0);
    }
    const double step = m_b[last + 1] - m_b[last];
    const double t = (b - m_b[last]) / step;
    const double t2 = t * t;
    const double t3 = t2 * t;
    const double t4 = t3 * t;
    return energy
           + step
                 * ((t4 / 2.0 - t3 + t) * m_h[last] + (t4 / 4.0 - 2.0 * t3 / 3.0 + t2 / 2.0) * step * m_slope[last]
                    + (-t4 / 2.0 + t3) * m_h[last + 1] + (t4 / 4.0 - t3 / 3.0) * step * m_slope[last + 1]);
}

} // namespace solver
