#pragma once

#include <QString>

#include "winding/LayoutSettings.h"
#include "winding/Winding.h"

namespace Winding {

// What lies in each slot position, two characters a position: "+A" for the first
// side of a coil of phase A, "-A" for its second, ".." for nothing. Empty for a
// winding that can't be built. Two windings of the same signature are the same to
// the mesh, so the document finds the machine's symmetry in it.
QString layoutSignature(const Layout &base, const LayoutSettings &settings);

// No two toroidal coils may start, or end, in the same slot.
bool isToroidalLayoutValid(const Layout &layout);

} // namespace Winding
