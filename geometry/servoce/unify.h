#pragma once

#include "geometry/servoce/shape.h"

namespace servoce {

// Removes the seams that booleans leave: each solid is written to a STEP file
// and read back, then its same-domain edges and faces are merged. A compound is
// unified member by member. Slow (a STEP round trip) and serialised: keep it
// off hot paths.
shape unify(const shape &model);

} // namespace servoce
