#include "ui/Viewer/EndturnPieces.h"

#include <algorithm>
#include <vector>

#include "geometry/EndturnShape.h"
#include "materials/WindingMaterial.h"
#include "winding/WindingObject.h"

PieceList endturnPieces(WindingObject *winding, bool filamentsOnly)
{
    winding->updateEndturns();
    const QVector<QVector<Winding::Endturns>> layouts = winding->endturns();
    // Where the coil sides carry no profile, a bundle as thick as the narrower side of the coil's section.
    const double diameter = std::min(winding->widthWindingCoil(), winding->heightWindingCoil());
    struct Job
    {
        const Winding::Endturn *endturn;
        int phase;
        int layout;
    };
    std::vector<Job> jobs;
    for (int layout = 0; layout < layouts.size(); ++layout) {
        for (const Winding::Endturns &coil : layouts.at(layout)) {
            for (const Winding::Endturn *end : {&coil.outer, &coil.inner})
                jobs.push_back({end, int(coil.phase), layout + 1});
        }
    }
    std::vector<servoce::shape> shapes(jobs.size());
    if (!filamentsOnly) {
        std::vector<const Winding::Endturn *> endturns;
        for (const Job &job : jobs)
            endturns.push_back(job.endturn);
        shapes = Winding::endturnSolids(endturns, diameter);
    }
    PieceList result;
    for (std::size_t k = 0; k < jobs.size(); ++k) {
        // Where no solid could be made, the path stands for the end turn.
        if (shapes[k].is_null())
            shapes[k] = jobs[k].endturn->path;
        if (!shapes[k].is_null())
            result.append(Piece(shapes[k], QSharedPointer<EndturnMaterial>::create(jobs[k].phase, jobs[k].layout),
                                Piece::Stator1));
    }
    return result;
}
