#include "meshing/SliceMesher.h"

#include <QDebug>
#include <QThread>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <vector>

#include "base/Numeric.h"
#include "base/Tbb.h"
#include "meshing/CdtOperations.h"
#include "meshing/GeometryGenerator.h"
#include "meshing/SectionCreater.h"
#include "meshing/ShapeList.h"

namespace {

// Where the last copy of a replicated cell ends. Rows and sides end there to the
// last bit: a seam whose vertices stray by rounding would be cut into slivers.
double rightSeam(const CDT &cdt)
{
    double seam = 0.0;
    for (const CDT::Vertex &vertex : cdt.snapshot().vertices)
        seam = std::max(seam, vertex.point.x());
    return seam;
}

} // namespace

SliceMesher::SliceMesher(MeshSettings settings, QVector<MeshBody> bodies, MeshStepError onError)
    : m_settings(std::move(settings))
    , m_bodies(std::move(bodies))
    , m_onError(std::move(onError))
    , m_lattice(m_settings.sizeBound, m_settings.airgapQuality)
{
}

double SliceMesher::periodWidth(double radius) const
{
    return radius * qDegreesToRadians(m_settings.angleSpan);
}

CDT SliceMesher::cell(const MeshBody &body, int index, double radius) const
{
    const QString slice = QString::number(index + 1);
    const auto step = [&](const char *text, auto &&work) {
        return runMeshStep(QString::fromLatin1(text).arg(body.name, slice), m_onError, work);
    };
    const double halfPitch = radius * qDegreesToRadians(body.pitch) / 2.0;
    const double width = periodWidth(radius);
    const std::optional<GapRows> &below = body.gapBelow;
    // A body mirrored in its middle takes its upper rows from the mirror.
    const std::optional<GapRows> above = body.mirrored ? std::nullopt : body.gapAbove;

    if (body.pieces.isEmpty()) {
        qInfo().noquote() << "Create" << index << "slice mesh" << body.name << "break, shapes is empty";
        return CDT();
    }
    // One pitch, from angle 0, of the body turned back by its displacement.
    ShapeList pitch = ShapeList::of(body.pieces).cutToSector(m_settings.sectorRadius, body.bottom, body.top,
                                         qDegreesToRadians(body.displacement), qDegreesToRadians(body.pitch));
    if (!Numeric::isZero(body.displacement))
        pitch = pitch.rotatedZ(-qDegreesToRadians(body.displacement));
    Shape2DList lines = CylindricalSectionCreater(radius, m_settings.height, m_settings.sizeLimit).create(pitch);

    // Lines on the cuts of the cell go with the constraints there and come back after mirroring.
    Shape2DList kept;
    if (body.mirrored) {
        kept += lines.linesAtOrdinate(body.middle);
        lines.appendLine({0.0, body.middle}, {halfPitch, body.middle});
    }
    // One layer into each gap, where the starting rows lie.
    const double bottom = below ? body.bottom - below->layerHeight() : body.bottom;
    const double top = above ? body.top + above->layerHeight() : body.top;
    kept += lines.linesAtOrdinate(top);
    kept += lines.linesAtOrdinate(bottom);
    lines.appendLine({0.0, top}, {2 * halfPitch, top});
    lines.appendLine({0.0, bottom}, {2 * halfPitch, bottom});
    kept += lines.linesAtAbscissa(halfPitch);
    // Closed at the pitch's far end too, the lines right of the cell are no offshoots.
    for (const double x : {0.0, halfPitch, 2 * halfPitch})
        lines.appendLine({x, top}, {x, bottom});

    Shape2DList quarter = GeometryGenerator().createGeometrySegments(lines, 1e-5, false, true).lines().leftOf(halfPitch);
    if (body.mirrored)
        quarter = quarter.below(body.middle);
    Shape2DList faceLines;
    if (below)
        faceLines += quarter.linesAtOrdinate(below->high);
    if (above)
        faceLines += quarter.linesAtOrdinate(above->low);

    CDT cdt;
    step("Critical error while creating constrains mesh of %1 slice %2", [&] { cdt = cdt::createCDT(quarter); });
    // The conductors get the same inner vertices at every pitch.
    if (index < body.windingPoints.size()) {
        step("Critical error while append winding points of %1 slice %2", [&] {
            for (const PointF &point : body.windingPoints.at(index)) {
                if (const std::optional<PointF> vertex = cdt.insert(point))
                    cdt.setVertexType(*vertex, CDT::VertexBase);
            }
        });
    }
    // Rows of the size of the gap's lattice, so that the triangles at the faces fit it.
    step("Critical error while append mesh borders of %1 slice %2", [&] {
        if (below)
            m_lattice.insertRows(cdt, *below, false, 1, 0.0, halfPitch);
        if (above)
            m_lattice.insertRows(cdt, *above, true, 1, 0.0, halfPitch);
    });
    qDebug() << "createMesh(), mesh.number_of_vertices:" << cdt.numberOfVertices();

    const cdt::Refinement refinement = cdt::refineCell(
        cdt, m_settings.sizeBound,
        QStringLiteral("Critical error while refining mesh of %1 slice %2 (%3)").arg(body.name, slice), m_onError);
    if (refinement.refined)
        qInfo().noquote() << QStringLiteral("%1 mesh item refined in %2 ms / %3 step(s)")
                                 .arg(body.name).arg(refinement.milliseconds).arg(refinement.steps);

    cdt::removeConstraintsAbscissas(cdt, {0.0, halfPitch});
    cdt::setVertexTypes(cdt, CDT::VertexBase);
    // The starting rows have set the size at the faces; the rows of the whole period replace them.
    const auto dropStartingRow = [&cdt](double face, double row, double h) {
        cdt::removeConstraintsOrdinates(cdt, {row, face});
        cdt::removeVerticesOrdinateRange(cdt, row - h / 10, row + h / 10, false, false);
    };
    if (below)
        dropStartingRow(below->high, below->high - below->layerHeight(), below->layerHeight());
    if (above)
        dropStartingRow(above->low, above->low + above->layerHeight(), above->layerHeight());
    cdt::addConstraints(cdt, faceLines);

    step("Critical error while reflecting mesh of %1 slice %2", [&] { cdt.merge(cdt.reflectedAbscissa(halfPitch)); });
    if (body.mirrored) {
        runMeshStep(QStringLiteral("Critical error while reflecting rotor mesh."), m_onError, [&] {
            cdt.merge(cdt.reflectedOrdinate(body.middle));
            cdt::removeConstraintsOrdinates(cdt, {body.middle});
        });
    }
    cdt::addConstraints(cdt, kept);
    CDT period;
    step("Critical error while replicating mesh of %1 slice %2",
         [&] { period = cdt::replicated(cdt, 2 * halfPitch, width); });

    double low = body.bottom;
    double high = body.top;
    step("Critical error while append mesh borders of %1 slice %2", [&] {
        const double seam = std::abs(rightSeam(period) - width) <= 1e-6 ? rightSeam(period) : width;
        if (body.gapBelow) {
            m_lattice.insertRows(period, *body.gapBelow, false, body.gapBelow->rowsOfSide(), 0.0, seam);
            low -= body.gapBelow->rowsOfSide() * body.gapBelow->layerHeight();
        }
        if (body.gapAbove) {
            m_lattice.insertRows(period, *body.gapAbove, true, body.gapAbove->rowsOfSide(), 0.0, seam);
            high += body.gapAbove->rowsOfSide() * body.gapAbove->layerHeight();
        }
        period.insert_base_constraint(PointF(0.0, low), PointF(0.0, high), CDT::VertexBase);
        period.insert_base_constraint(PointF(seam, low), PointF(seam, high), CDT::VertexBase);
    });
    qDebug() << "tid:" << QThread::currentThreadId() << "Create" << index << "slice mesh" << body.name << "completed";
    return period;
}

CDT SliceMesher::slice(int index, double radius) const
{
    const QString number = QString::number(index + 1);
    std::vector<CDT> cells(std::size_t(m_bodies.size()));
    tbb::parallel_for(std::size_t(0), cells.size(), [&](std::size_t i) {
        const MeshBody &body = m_bodies.at(int(i));
        qInfo().noquote() << "Info: Start create" << index << "slice mesh";
        runMeshStep(QStringLiteral("Exception at createMesh(mesh) %1 indexSlice %2").arg(body.name).arg(index),
                    m_onError, [&] { cells[i] = cell(body, index, radius); });
    });

    const double arc = radius * M_PI / 180.0;
    const double y0 = m_settings.height / 2.0;
    CDT result;
    for (int i = 0; i < m_bodies.size(); ++i) {
        const MeshBody &body = m_bodies.at(i);
        const CDT &meshed = cells.at(std::size_t(i));
        runMeshStep(QStringLiteral("Critical error while append mesh of %1 slice %2").arg(body.name, number),
                    m_onError, [&] {
                        result.merge(Numeric::isZero(body.displacement) ? meshed
                                                                          : meshed.translated(body.displacement * arc));
                        if (body.partnerDisplacement)
                            result.merge(meshed.reflectedOrdinate(y0).translated(*body.partnerDisplacement * arc));
                    });
    }
    qInfo().noquote() << "Info: Create" << index << "slice motor completed";

    runMeshStep(QStringLiteral("Critical error while generating mesh slice %1").arg(number), m_onError,
                [&] { result.markDomain(); });
    for (const GapRows &gap : m_settings.gaps) {
        runMeshStep(QStringLiteral("Critical error while reordering edges in airgap"), m_onError,
                    [&] { m_lattice.reorderEdges(result, gap); });
        QList<double> rows;
        for (int k = 1; k < gap.layers; ++k)
            rows.append(gap.low + k * gap.layerHeight());
        cdt::markRowVertices(result, rows, CDT::VertexAirgapRow);
    }
    // The frames of the bodies are no boundary: faces join over the seams of the period.
    const double width = periodWidth(radius);
    for (const MeshBody &body : m_bodies) {
        const double start = body.displacement * arc;
        const double low = body.gapBelow ? body.bottom - body.gapBelow->rowsOfSide() * body.gapBelow->layerHeight()
                                         : body.bottom;
        const double high = body.gapAbove ? body.top + body.gapAbove->rowsOfSide() * body.gapAbove->layerHeight()
                                          : body.top;
        cdt::removeConstraintsInBox(result, {start, start + width}, low, high);
    }
    return result;
}
