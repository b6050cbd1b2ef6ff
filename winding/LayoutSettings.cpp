#include "winding/LayoutSettings.h"
#include "base/Numeric.h"

#include <QtGlobal>
#include <cmath>
#include <numeric>

namespace Winding {

namespace {

bool isWhole(double value)
{
    double integral = 0.0;
    return Numeric::isZero(std::modf(value, &integral));
}

} // namespace

bool LayoutSettings::isFeasible() const
{
    // Without slots the quotient would be a whole 0.
    if (numberSlots <= 0)
        return false;
    return isWhole(numberSlots / 3.0 / std::gcd(numberSlots, polePairs));
}

bool LayoutSettings::isParallelPathsValid() const
{
    return parallelPaths >= 1 && isWhole(double(effectiveNumberLayers()) * numberSlots / (6.0 * parallelPaths));
}

int LayoutSettings::clippedCoilSpan(int span) const
{
    int clipped = span;
    if (isDoubleLayer())
        clipped = layersOrientation == LeftRight ? 1 : qMax(2, clipped);
    return qMin(numberSlots / 2, clipped);
}

} // namespace Winding
