#pragma once

#include <QList>
#include <functional>

#include "meshing/CDT.h"
#include "meshing/MeshStep.h"
#include "meshing/Shape2D.h"

// What the meshers do to a triangulation between building it and handing it
// on. Tolerances are those of the meshes' coordinates, mm.
namespace cdt {

// The cleaned lines of a section as base constraints.
CDT createCDT(const Shape2DList &lines);
// Every line of the list as a constraint; other curves are passed over.
void addConstraints(CDT &cdt, const Shape2DList &lines);
// Removes the constraints with both ends within 1e-5 in x of one of the abscissas.
void removeConstraintsAbscissas(CDT &cdt, const QList<double> &abscissas);
// Removes the constraints with both ends within 1e-5 in y of one of the ordinates.
void removeConstraintsOrdinates(CDT &cdt, const QList<double> &ordinates);
// As removeConstraintsAbscissas, for constraints within [yLow, yHigh] only.
void removeConstraintsInBox(CDT &cdt, const QList<double> &abscissas, double yLow, double yHigh);
// Gives every vertex the type.
void setVertexTypes(CDT &cdt, CDT::VertexType type);
// Gives the ends of the constraints that lie along one of the rows the type.
void markRowVertices(CDT &cdt, const QList<double> &ordinates, CDT::VertexType type);

using OrdinateRange = std::function<bool(double low, double y, double high)>;
// Removes the vertices whose ordinate is in the range; those with a constraint stay.
void removeVerticesOrdinateRange(CDT &cdt, double low, double high, const OrdinateRange &inRange);
void removeVerticesOrdinateRange(CDT &cdt, double low, double high, bool lowInclusive, bool highInclusive);

struct Refinement {
    bool refined = false;
    int steps = 0;
    qint64 milliseconds = 0;
};
// Refines a cell to the size bound with the cells' aspect bound and step limit. A
// failure is reported with the text, whose last placeholder takes the steps made.
Refinement refineCell(CDT &cdt, double sizeBound, const QString &errorText, const MeshStepError &onError);

// The cell copied side by side until it fills the period: round(periodWidth /
// cellWidth) copies, at least one, moved by cellWidth each, merged into one.
CDT replicated(const CDT &cell, double cellWidth, double periodWidth);

} // namespace cdt
