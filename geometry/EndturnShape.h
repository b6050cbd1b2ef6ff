#pragma once

#include "geometry/Endturn.h"

namespace Winding {

// The space an end turn takes: a round bundle of the given diameter swept along its
// path. An empty shape where the path is null or the sweep fails; the failure is logged.
servoce::shape endturnSolid(const Endturn &endturn, double diameter);

} // namespace Winding
