#include "base/Numeric.h"

#include <QtGlobal>
#include <cmath>

namespace Numeric {

bool isZero(double value)
{
    return std::abs(value) <= zeroTolerance;
}

double normalizeAngle(double degrees)
{
    if (isZero(degrees))
        return 0.0;
    // One remainder stands for adding 360 until the value is no longer negative.
    if (degrees < 0.0)
        degrees = std::fmod(degrees, 360.0) + 360.0;
    if (degrees >= 360.0 || qFuzzyCompare(degrees, 360.0))
        degrees = std::fmod(degrees, 360.0);
    return degrees;
}

} // namespace Numeric
