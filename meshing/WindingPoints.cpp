#include "meshing/WindingPoints.h"

#include <QDebug>
#include <QRectF>
#include <QThread>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "materials/AbstractMaterial.h"
#include "meshing/CdtOperations.h"
#include "meshing/GapLattice.h"
#include "meshing/GeometryGenerator.h"
#include "meshing/SectionCreater.h"
#include "meshing/ShapeList.h"
#include "meshing/SliceGeometry.h"

namespace {

// The cell is finer than the slices' cells, so that each conductor gets inner points.
const double fineness = 0.7;
// A coarse refinement will do: only the points inside the conductors are kept.
const int refinementSteps = 250;

double distanceToSegment(const QPointF &p, const QLineF &line)
{
    const QPointF d = line.p2() - line.p1();
    const double squared = QPointF::dotProduct(d, d);
    const double s = squared > 0.0 ? qBound(0.0, QPointF::dotProduct(p - line.p1(), d) / squared, 1.0) : 0.0;
    return QLineF(p, line.p1() + s * d).length();
}

// A conductor that holds the point, or a point just beside it, with none of its sides near the point.
bool insideConductor(const PointF &p, const Subdomain &conductor, const GeometryData &data, double t)
{
    const QPointF probes[] = {p, p + QPointF(-t, -t), p + QPointF(t, -t), p + QPointF(-t, t)};
    if (std::none_of(std::begin(probes), std::end(probes), [&](const QPointF &q) { return conductor.contains(q); }))
        return false;
    for (const SegmentPtr &segment : conductor.segments()) {
        const QLineF side(data.nodes.at(int(segment->node0)), data.nodes.at(int(segment->node1)));
        const QRectF box = QRectF(side.p1(), side.p2()).normalized().adjusted(-t, -t, t, t);
        if (box.contains(p) && distanceToSegment(p, side) < 2 * t)
            return false;
    }
    return true;
}

// The vertices of the domain that lie well inside a conductor.
QList<PointF> conductorVertices(const CDT &cdt, const GeometryData &data)
{
    SubdomainList conductors;
    for (const QSharedPointer<Subdomain> &region : data.subdomains) {
        if (region->material() && region->material()->kind() == AbstractMaterial::WindingKind)
            conductors.append(region);
    }
    const double t = 3 * data.distanceTolerant;
    const CDT::Snapshot mesh = cdt.snapshot();
    std::vector<bool> seen(std::size_t(mesh.vertices.size()), false);
    QList<PointF> points;
    for (const CDT::Face &face : mesh.faces) {
        for (int k = 0; face.inDomain && k < 3; ++k) {
            const int index = face.vertices[k];
            if (seen[std::size_t(index)])
                continue;
            seen[std::size_t(index)] = true;
            const PointF p = mesh.vertices.at(index).point;
            if (std::any_of(conductors.cbegin(), conductors.cend(),
                            [&](const QSharedPointer<Subdomain> &conductor) {
                                return insideConductor(p, *conductor, data, t);
                            }))
                points.append(p);
        }
    }
    return points;
}

} // namespace

WindingPoints::WindingPoints(MeshSettings settings, const SliceGeometry &geometry, QList<double> sliceRadii,
                             MeshStepError onError)
    : m_settings(std::move(settings))
    , m_geometry(geometry)
    , m_sliceRadii(std::move(sliceRadii))
    , m_onError(std::move(onError))
{
}

double WindingPoints::carried(double x, double ra, double ha, double rb, double hb)
{
    return hb + rb * std::asin(ra * std::sin((x - ha) / ra) / rb);
}

QList<PointF> WindingPoints::slicePoints(const MeshBody &body, const ShapeList &pitch, double radius) const
{
    const auto step = [&body](const char *text) { return QString::fromLatin1(text).arg(body.name); };
    const double halfPitch = radius * qDegreesToRadians(body.pitch) / 2.0;
    Shape2DList lines = CylindricalSectionCreater(radius, m_settings.height, m_settings.sizeLimit).create(pitch);
    // The frame of the whole pitch closes the cut where air meets a face, as at a slot
    // opening: the cut's outline is then one region.
    lines.appendLine({0.0, body.bottom}, {2 * halfPitch, body.bottom});
    lines.appendLine({0.0, body.top}, {2 * halfPitch, body.top});
    for (const double x : {0.0, halfPitch, 2 * halfPitch})
        lines.appendLine({x, body.bottom}, {x, body.top});
    if (body.mirrored)
        lines.appendLine({0.0, body.middle}, {halfPitch, body.middle});
    const std::optional<GapRows> &below = body.gapBelow;
    const std::optional<GapRows> above = body.mirrored ? std::nullopt : body.gapAbove;
    if (below)
        lines.appendLine({0.0, below->high}, {halfPitch, below->high});
    if (above)
        lines.appendLine({0.0, above->low}, {halfPitch, above->low});

    GeometryData data = GeometryGenerator().createGeometry(lines, 1e-5, true, false, true);
    Shape2DList cellLines = data.lines().leftOf(halfPitch);
    if (body.mirrored)
        cellLines = cellLines.below(body.middle);
    CDT cdt;
    runMeshStep(step("Critical error while append constrains mesh of %1"), m_onError,
                [&] { cdt = cdt::createCDT(cellLines); });
    const GapLattice lattice(fineness * m_settings.sizeBound, fineness * m_settings.airgapQuality);
    if (below) {
        runMeshStep(step("Critical error while append border bottom airgap to mesh of %1"), m_onError,
                    [&] { lattice.insertRows(cdt, *below, false, 1, 0.0, halfPitch); });
    }
    if (above) {
        runMeshStep(step("Critical error while append border top airgap to mesh of %1"), m_onError,
                    [&] { lattice.insertRows(cdt, *above, true, 1, 0.0, halfPitch); });
    }
    qDebug() << "createGeometryWinding(), mesh.number_of_vertices:" << cdt.numberOfVertices();
    runMeshStep(step("Critical error while refining mesh of %1 (createGeometryWinding)"), m_onError, [&] {
        cdt.refine(cellRefinement::aspectBound, fineness * m_settings.sizeBound, refinementSteps);
    });

    // The cut was turned back by the body's displacement: the material probe turns with it.
    m_geometry.prepareSubdomains(radius, data, body.displacement);
    return conductorVertices(cdt, data);
}

QVector<QList<PointF>> WindingPoints::createGeometryWinding(const MeshBody &body) const
{
    qDebug() << "tid:" << QThread::currentThreadId() << "Start create geometry winding stator item" << body.name;
    QVector<QList<PointF>> perSlice(m_sliceRadii.size());
    if (body.pieces.isEmpty() || m_sliceRadii.isEmpty())
        return perSlice;
    ShapeList pitch = ShapeList::of(body.pieces).cutToSector(m_settings.sectorRadius, body.bottom, body.top,
                                                             qDegreesToRadians(body.displacement),
                                                             qDegreesToRadians(body.pitch));
    pitch = pitch.rotatedZ(-qDegreesToRadians(body.displacement));

    // The outermost slice has the widest conductors; the others take its points, carried.
    const double outer = m_sliceRadii.last();
    const auto halfPitch = [&body](double radius) { return radius * qDegreesToRadians(body.pitch) / 2.0; };
    const QList<PointF> points = slicePoints(body, pitch, outer);
    for (int i = 0; i < m_sliceRadii.size(); ++i) {
        const double radius = m_sliceRadii.at(i);
        if (i + 1 == m_sliceRadii.size()) {
            perSlice[i] = points;
            continue;
        }
        for (const PointF &p : points) {
            const double x = carried(p.x(), outer, halfPitch(outer), radius, halfPitch(radius));
            if (std::isfinite(x))
                perSlice[i].append(PointF(x, p.y()));
        }
    }
    return perSlice;
}
