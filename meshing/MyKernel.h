#pragma once

// For the meshing .cpp files that use the kernel; keep it out of headers that
// others include, as it is slow to compile.

#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>

// Coordinates are doubles; predicates are exact, so that the triangulation
// stays consistent where constraints cross at shallow angles.
using MyKernel = CGAL::Exact_predicates_inexact_constructions_kernel;
