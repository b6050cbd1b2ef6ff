#pragma once

#include <vector>

#include "geometry/Endturn.h"

namespace Winding {

// The space an end turn takes: the coil's cross-section where it leaves its slot swept along
// its path, or, where the coil sides carry no profile, a round bundle of the given diameter.
// An empty shape where the path is null or the sweep fails; the failure is logged.
servoce::shape endturnSolid(const Endturn &endturn, double diameter);

// The solids of many end turns, side by side: an end turn that is a copy of another turned
// about the axis gets that one's solid turned, the rest are swept.
std::vector<servoce::shape> endturnSolids(const std::vector<const Endturn *> &endturns, double diameter);

} // namespace Winding
