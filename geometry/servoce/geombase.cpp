#include "geometry/servoce/geombase.h"

#include <limits>

namespace servoce {

point3 nowhere()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    return point3(nan, nan, nan);
}

} // namespace servoce
