#include "meshing/RadialMesher.h"

#include <QDebug>
#include <QThread>
#include <vector>

#include "base/Tbb.h"
#include "meshing/CdtOperations.h"
#include "meshing/GeometryGenerator.h"
#include "meshing/SectionCreater.h"
#include "meshing/ShapeList.h"

RadialMesher::RadialMesher(MeshSettings settings, RadialFrame frame, QVector<MeshBody> bodies,
                           MeshStepError onError)
    : m_settings(std::move(settings))
    , m_frame(std::move(frame))
    , m_bodies(std::move(bodies))
    , m_onError(std::move(onError))
    , m_lattice(m_settings.sizeBound, m_settings.airgapQuality)
{
}

void RadialMesher::insertRows(CDT &cdt, const GapRows &gap, bool bodyBelowGap, int rows) const
{
    const double zones[] = {0.0, m_frame.inner, m_frame.outer, m_frame.width};
    for (int i = 0; i + 1 < 4; ++i)
        m_lattice.insertRows(cdt, gap, bodyBelowGap, rows, zones[i], zones[i + 1]);
}

Shape2DList RadialMesher::cellLines(const MeshBody &body, Shape2DList &kept) const
{
    const double width = m_frame.width;
    Shape2DList lines = RadialSectionCreater(m_settings.sizeLimit)
                            .createAtAngle(ShapeList::of(body.pieces), m_settings.sectorRadius, body.bottom, body.top,
                                           body.displacement, body.pitch);
    if (body.mirrored) {
        kept += lines.linesAtOrdinate(body.middle);
        lines.appendLine({0.0, body.middle}, {width, body.middle});
    }
    // Unlike a slice's, the cell of a mirrored body reaches into its upper gap too; the mirror covers it.
    double bottom = body.bottom;
    double top = body.top;
    if (body.gapBelow) {
        kept += lines.linesAtOrdinate(body.gapBelow->high);
        bottom -= body.gapBelow->layerHeight();
    }
    if (body.gapAbove) {
        kept += lines.linesAtOrdinate(body.gapAbove->low);
        top += body.gapAbove->layerHeight();
    }
    for (const double x : {m_frame.inner, m_frame.outer}) {
        kept += lines.linesAtAbscissa(x);
        lines.appendLine({x, top}, {x, bottom});
    }
    for (const double radius : m_frame.sliceRadii) {
        kept += lines.linesAtAbscissa(radius);
        lines.appendLine({radius, body.top}, {radius, body.bottom});
    }
    kept += lines.linesAtOrdinate(top);
    kept += lines.linesAtOrdinate(bottom);
    kept += lines.linesAtAbscissa(0.0);
    kept += lines.linesAtAbscissa(width);
    lines.appendLine({0.0, bottom}, {width, bottom});
    lines.appendLine({width, bottom}, {width, top});
    lines.appendLine({width, top}, {0.0, top});
    lines.appendLine({0.0, top}, {0.0, bottom});

    Shape2DList cell = GeometryGenerator().createGeometrySegments(lines, 1e-5, true, true).lines();
    return body.mirrored ? cell.below(body.middle) : cell;
}

CDT RadialMesher::createMeshRadial(const MeshBody &body) const
{
    qDebug() << "tid:" << QThread::currentThreadId() << "Start create radial slice mesh" << body.name;
    if (body.pieces.isEmpty()) {
        qInfo().noquote() << "tid:" << QThread::currentThreadId() << "Create radial slice mesh" << body.name
                          << "break, shapes is empty";
        return CDT();
    }
    const double width = m_frame.width;
    const std::optional<GapRows> &below = body.gapBelow;
    const std::optional<GapRows> &above = body.gapAbove;
    Shape2DList kept;
    const Shape2DList lines = cellLines(body, kept);

    CDT cdt;
    runMeshStep(QStringLiteral("Critical error while creating constrains mesh of %1").arg(body.name), m_onError, [&] {
        cdt = cdt::createCDT(lines);
        // The edges of the active part meet the faces of the body in a vertex; a
        // mirrored cell has its upper face from the mirror.
        for (const double x : {m_frame.inner, m_frame.outer}) {
            cdt.insert(PointF(x, body.bottom));
            if (!body.mirrored)
                cdt.insert(PointF(x, body.top));
        }
    });
    // Rows of the size of the gap's lattice, so that the triangles at the faces fit it.
    const std::optional<GapRows> startAbove = body.mirrored ? std::nullopt : above;
    const QString bordersError = QStringLiteral("Critical error while append radial mesh borders for rotor");
    runMeshStep(bordersError, m_onError, [&] {
        if (below)
            insertRows(cdt, *below, false, 1);
        if (startAbove)
            insertRows(cdt, *startAbove, true, 1);
    });
    qDebug() << "createMeshRadial(), mesh.number_of_vertices:" << cdt.numberOfVertices();

    const cdt::Refinement refinement = cdt::refineCell(
        cdt, m_settings.sizeBound,
        QStringLiteral("Critical error while refining radial mesh of %1 / step %2").arg(body.name), m_onError);
    if (refinement.refined)
        qInfo().noquote() << QStringLiteral("Mesher refined %1 radial mesh at %2 ms / %3 step(s)")
                                 .arg(body.name).arg(refinement.milliseconds).arg(refinement.steps);
    if (refinement.steps >= cellRefinement::stepLimit)
        qWarning() << "Skip Lloyd optimization radial mesh because refine step" << refinement.steps
                   << "great 50000 steps";

    cdt::setVertexTypes(cdt, CDT::VertexBase);
    // The starting rows have set the size at the faces; the rows of the whole width replace them.
    const auto dropStartingRow = [&cdt](double face, double row, double h) {
        cdt::removeConstraintsOrdinates(cdt, {row, face});
        cdt::removeVerticesOrdinateRange(cdt, row - h / 10, row + h / 10, false, false);
    };
    if (below)
        dropStartingRow(below->high, below->high - below->layerHeight(), below->layerHeight());
    if (startAbove)
        dropStartingRow(startAbove->low, startAbove->low + startAbove->layerHeight(), startAbove->layerHeight());

    if (body.mirrored) {
        runMeshStep(QStringLiteral("Critical error while reflecting rotor radial mesh."), m_onError,
                    [&] { cdt.merge(cdt.reflectedOrdinate(body.middle)); });
    }
    // The lines of the active part and of the slices were there for the vertices they make.
    cdt::removeConstraintsAbscissas(cdt, {m_frame.inner, m_frame.outer});
    cdt::removeConstraintsAbscissas(cdt, m_frame.sliceRadii);
    cdt::addConstraints(cdt, kept);

    runMeshStep(bordersError, m_onError, [&] {
        double low = body.bottom;
        double high = body.top;
        if (below) {
            insertRows(cdt, *below, false, below->rowsOfSide());
            low -= below->rowsOfSide() * below->layerHeight();
        }
        if (above) {
            insertRows(cdt, *above, true, above->rowsOfSide());
            high += above->rowsOfSide() * above->layerHeight();
        }
        cdt.insert_base_constraint(PointF(0.0, low), PointF(0.0, high), CDT::VertexBase);
        cdt.insert_base_constraint(PointF(width, low), PointF(width, high), CDT::VertexBase);
    });
    qDebug() << "tid:" << QThread::currentThreadId() << "Create radial slice mesh" << body.name << "completed";
    return cdt;
}

void RadialMesher::finishGap(CDT &cdt, const GapRows &gap) const
{
    runMeshStep(QStringLiteral("Critical error while reordering edges in airgap"), m_onError,
                [&] { m_lattice.reorderEdges(cdt, gap); });
    const double h = gap.layerHeight();
    const int central = gap.rowsOfSide();
    QList<double> outerRows;
    for (int k = 1; k < gap.layers; ++k) {
        if (k != central && k != central + 1)
            outerRows.append(gap.low + k * h);
    }
    cdt::removeConstraintsOrdinates(cdt, outerRows);
    cdt::markRowVertices(cdt, {gap.low + central * h, gap.low + (central + 1) * h}, CDT::VertexAirgapRow);
    // The ends of the rows on the frame and on the edges of the active part belong to the mesh proper.
    for (const double x : {0.0, m_frame.inner, m_frame.outer, m_frame.width}) {
        for (const double y : {gap.low + h, gap.low + central * h, gap.high - central * h, gap.high - h})
            cdt.setVertexType(PointF(x, y), CDT::VertexBase);
    }
}

CDT RadialMesher::createMeshRadial() const
{
    qInfo().noquote() << "Info: Start create radial slice mesh";
    std::vector<CDT> cells(std::size_t(m_bodies.size()));
    tbb::parallel_for(std::size_t(0), cells.size(), [&](std::size_t i) {
        const MeshBody &body = m_bodies.at(int(i));
        runMeshStep(QStringLiteral("Exception at futureCreateMeshRadial(mesh), motorItem: %1").arg(body.name),
                    m_onError, [&] { cells[i] = createMeshRadial(body); });
    });

    CDT result;
    for (int i = 0; i < m_bodies.size(); ++i) {
        const MeshBody &body = m_bodies.at(i);
        const CDT &meshed = cells.at(std::size_t(i));
        runMeshStep(QStringLiteral("Critical error while append radial mesh of %1").arg(body.name), m_onError, [&] {
            result.merge(meshed);
            // Every body lies at its own angle: the image needs no turn.
            if (body.partnerDisplacement)
                result.merge(meshed.reflectedOrdinate(m_settings.height / 2.0));
        });
    }
    qInfo().noquote() << "tid:" << QThread::currentThreadId() << "Info: create radial slice motor completed";

    // A seed in the middle band of each gap keeps the band out of the domain.
    QVector<PointF> seeds;
    for (const GapRows &gap : m_settings.gaps)
        seeds.append(PointF(m_frame.width / 2.0, (gap.low + gap.high) / 2.0));
    qInfo().noquote() << "Info: start create radial mesh";
    if (runMeshStep(QStringLiteral("Critical error while generating radial mesh"), m_onError,
                    [&] { result.markDomain(seeds); }))
        qInfo().noquote() << "Info: create radial slice mesh completed";
    for (const GapRows &gap : m_settings.gaps)
        finishGap(result, gap);
    qInfo().noquote() << "tid:" << QThread::currentThreadId() << "Info: Create radial slice mesh completed";
    return result;
}
