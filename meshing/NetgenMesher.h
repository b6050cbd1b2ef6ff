#pragma once

#include <QString>

#include "meshing/ShapeList.h"
#include "meshing/VolumeMesh.h"

// What netgen is asked for, sizes in mm.
struct VolumeMeshParameters
{
    double maxh = 10.0;
    double minh = 0.1;
    int optimizeSteps2d = 1;
    int optimizeSteps3d = 1;
};

// What netgen is doing, for a progress display.
struct NetgenProgress
{
    QString task;
    int percent = 0;
};

// netgen's state for the whole process: made once at start-up, ended at exit.
class NetgenSession
{
public:
    NetgenSession();
    ~NetgenSession();
    NetgenSession(const NetgenSession &) = delete;
    NetgenSession &operator=(const NetgenSession &) = delete;
};

namespace netgenMesher {

// The tetrahedra of the solids, one domain a solid. The solids are split against
// each other first, so that touching ones share the triangles of their common
// faces. Throws std::runtime_error, or netgen's own exception, when the solids
// cannot be meshed. Calls wait for each other: netgen's state is process-wide.
VolumeMesh meshSolids(const ShapeList &solids, const VolumeMeshParameters &parameters);

// Of the run in progress, from any thread.
NetgenProgress progress();

} // namespace netgenMesher
