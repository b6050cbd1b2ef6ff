#include "meshing/GapLattice.h"

#include <QtMath>
#include <algorithm>
#include <cmath>

#include "base/Numeric.h"

namespace {

// Length of a row segment per layer height and unit of quality: the side of an
// equilateral triangle of that height.
const double rowSideFactor = 2.0 / std::sqrt(3.0);

} // namespace

GapLattice::GapLattice(double sizeBound, double airgapQuality)
    : m_sizeBound(sizeBound)
    , m_airgapQuality(airgapQuality)
{
}

int GapLattice::rowSegments(const GapRows &gap, double width) const
{
    const double side = gap.layerHeight() * m_airgapQuality * rowSideFactor;
    return std::max(1, int(std::lround(width / side)));
}

void GapLattice::insertRows(CDT &cdt, const GapRows &gap, bool bodyBelowGap, int rows, double x0, double x1) const
{
    const int count = rowSegments(gap, x1 - x0);
    const double step = (x1 - x0) / count;
    const double h = gap.layerHeight();
    for (int k = 1; k <= rows; ++k) {
        // Rows of the body below the gap rise from its lower end, those of the body above fall from its upper end.
        const double y = bodyBelowGap ? gap.low + k * h : gap.high - k * h;
        for (int i = 0; i < count; ++i) {
            const double start = i == 0 ? x0 : x0 + i * step;
            const double end = i + 1 == count ? x1 : x0 + (i + 1) * step;
            cdt.insert_base_constraint(PointF(start, y), PointF(end, y), CDT::VertexBase);
        }
    }
}

void GapLattice::reorderEdges(CDT &cdt, const GapRows &gap) const
{
    if (gap.layers <= 3)
        return;
    const double h = gap.layerHeight();
    const double side = (std::abs(m_sizeBound) > Numeric::zeroTolerance && m_sizeBound <= h ? m_sizeBound : h)
                        * m_airgapQuality * rowSideFactor;
    const double slope = qRadiansToDegrees(std::atan(h / side));
    for (int k = 1; k <= gap.layers - 2; ++k) {
        // The middle band is the solver's own.
        if (k == gap.layers / 2)
            continue;
        const double y0 = gap.low + k * h;
        cdt.alignBand(y0, y0 + h, slope);
    }
}
