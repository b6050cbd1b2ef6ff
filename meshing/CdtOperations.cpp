#include "meshing/CdtOperations.h"

#include <algorithm>
#include <cmath>

#include <QElapsedTimer>

#include "meshing/GeometryGenerator.h"
#include "meshing/MeshBody.h"
#include "base/Numeric.h"

namespace {

const double sectionTolerance = 1e-5;
const double rowTolerance = Numeric::zeroTolerance;

// Both values within tolerance of one and the same value of the list.
bool bothAtOne(const QList<double> &values, double a, double b, double tolerance)
{
    for (const double value : values) {
        if (std::abs(a - value) <= tolerance && std::abs(b - value) <= tolerance)
            return true;
    }
    return false;
}

bool inClosedRange(double low, double value, double high)
{
    return (low < value && value < high) || qFuzzyCompare(value, low) || qFuzzyCompare(value, high);
}

} // namespace

namespace cdt {

CDT createCDT(const Shape2DList &lines)
{
    const Shape2DList cleaned =
        GeometryGenerator().createGeometrySegments(lines, sectionTolerance, false, true).lines();
    CDT cdt;
    for (const QSharedPointer<Shape2D> &line : cleaned)
        cdt.insert_base_constraint(line->p1(), line->p2(), CDT::VertexBase);
    return cdt;
}

void addConstraints(CDT &cdt, const Shape2DList &lines)
{
    for (const QSharedPointer<Shape2D> &line : lines) {
        if (line->type() == Shape2D::LineType)
            cdt.insert_constraint(line->p1(), line->p2());
    }
}

void removeConstraintsAbscissas(CDT &cdt, const QList<double> &abscissas)
{
    cdt.removeConstraintsIf([&abscissas](const PointF &a, const PointF &b) {
        return bothAtOne(abscissas, a.x(), b.x(), sectionTolerance);
    });
}

void removeConstraintsOrdinates(CDT &cdt, const QList<double> &ordinates)
{
    cdt.removeConstraintsIf([&ordinates](const PointF &a, const PointF &b) {
        return bothAtOne(ordinates, a.y(), b.y(), sectionTolerance);
    });
}

void removeConstraintsInBox(CDT &cdt, const QList<double> &abscissas, double yLow, double yHigh)
{
    cdt.removeConstraintsIf([&](const PointF &a, const PointF &b) {
        return bothAtOne(abscissas, a.x(), b.x(), sectionTolerance) && inClosedRange(yLow, a.y(), yHigh)
               && inClosedRange(yLow, b.y(), yHigh);
    });
}

void setVertexTypes(CDT &cdt, CDT::VertexType type)
{
    for (const CDT::Vertex &vertex : cdt.snapshot().vertices)
        cdt.setVertexType(vertex.point, type);
}

void markRowVertices(CDT &cdt, const QList<double> &ordinates, CDT::VertexType type)
{
    cdt.markConstraintEndsIf(
        [&ordinates](const PointF &a, const PointF &b) { return bothAtOne(ordinates, a.y(), b.y(), rowTolerance); },
        type);
}

void removeVerticesOrdinateRange(CDT &cdt, double low, double high, const OrdinateRange &inRange)
{
    cdt.removeVerticesIf([&](const PointF &point) { return inRange(low, point.y(), high); });
}

void removeVerticesOrdinateRange(CDT &cdt, double low, double high, bool lowInclusive, bool highInclusive)
{
    removeVerticesOrdinateRange(cdt, low, high, [lowInclusive, highInclusive](double l, double y, double h) {
        const bool aboveLow = l < y || (lowInclusive && qFuzzyCompare(y, l));
        const bool belowHigh = y < h || (highInclusive && qFuzzyCompare(y, h));
        return aboveLow && belowHigh;
    });
}

CDT replicated(const CDT &cell, double cellWidth, double periodWidth)
{
    const int count = std::max(1, int(std::lround(periodWidth / cellWidth)));
    CDT period;
    for (int i = 0; i < count; ++i)
        period.merge(cell.translated(i * cellWidth));
    return period;
}

Refinement refineCell(CDT &cdt, double sizeBound, const QString &errorText, const MeshStepError &onError)
{
    Refinement result;
    QElapsedTimer timer;
    timer.start();
    const MeshStepError withSteps = [&](const QString &text, const CGAL::Failure_exception *failure) {
        onError(text.arg(result.steps), failure);
    };
    result.refined = runMeshStep(errorText, withSteps, [&] {
        result.steps = cdt.refine(cellRefinement::aspectBound, sizeBound, cellRefinement::stepLimit);
    });
    result.milliseconds = timer.elapsed();
    return result;
}

} // namespace cdt
