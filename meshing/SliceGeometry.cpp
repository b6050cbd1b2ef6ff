#include "meshing/SliceGeometry.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <vector>

#include "base/Numeric.h"
#include "base/Tbb.h"
#include "geometry/servoce/boolops.h"
#include "materials/AbstractMaterial.h"
#include "materials/BasicMaterials.h"
#include "meshing/GeometryGenerator.h"
#include "meshing/ShapeList.h"

namespace {

// The body flags of the air gaps: a region of a gap asks no solid for its material.
constexpr quint32 airgapBits = 0xF0000;

// How far beside a contour the last probe looks, in units of the section's tolerance.
constexpr double sideStep = 27.0;

bool boxHolds(const servoce::boundbox &box, const servoce::point3 &p)
{
    const double t = Numeric::zeroTolerance;
    return p.x >= box.xmin - t && p.x <= box.xmax + t && p.y >= box.ymin - t && p.y <= box.ymax + t
           && p.z >= box.zmin - t && p.z <= box.zmax + t;
}

bool isEmptyMaterial(const QSharedPointer<AbstractMaterial> &material)
{
    return material.isNull() || material->kind() == AbstractMaterial::EmptyKind;
}

// The first region of the list that holds the point.
QSharedPointer<Subdomain> regionAt(const SubdomainList &regions, const PointF &point)
{
    for (const QSharedPointer<Subdomain> &region : regions) {
        if (region->contains(point))
            return region;
    }
    return {};
}

// The outline of the whole cut is walked as a region of its own: the largest,
// and as large as all others together.
bool isOutline(const SubdomainList &regions)
{
    if (regions.size() < 2 || regions.first()->id() != 1)
        return false;
    double others = 0.0;
    for (int i = 1; i < regions.size(); ++i)
        others += regions.at(i)->area();
    const double outline = regions.first()->area();
    return std::abs(outline - others) <= 1e-6 * std::abs(outline);
}

void addFrame(Shape2DList &lines, const SliceBody &body, double width)
{
    lines.appendLine({0.0, body.bottom}, {0.0, body.top});
    lines.appendLine({width, body.bottom}, {width, body.top});
    // A region of air reaches from each face to the middle of its gap, where the
    // frames of the two neighbours share one line, drawn the same way by both.
    const auto closeAt = [&lines, width](double face, const std::optional<QPair<double, double>> &gap) {
        if (!gap) {
            lines.appendLine({0.0, face}, {width, face});
            return;
        }
        const double middle = (gap->first + gap->second) / 2.0;
        lines.appendLine({0.0, face}, {0.0, middle});
        lines.appendLine({width, face}, {width, middle});
        lines.appendLine({0.0, middle}, {width, middle});
    };
    closeAt(body.top, body.gapAbove);
    closeAt(body.bottom, body.gapBelow);
}

} // namespace

SliceGeometry::SliceGeometry(SliceMachine machine)
    : m_machine(std::move(machine))
{
}

QList<double> SliceGeometry::sliceRadii(double inner, double outer, int count)
{
    const double step = (outer - inner) / (2.0 * count);
    QList<double> radii;
    for (int i = 0; i < count; ++i)
        radii.append(inner + step * (2 * i + 1));
    return radii;
}

QList<double> SliceGeometry::sliceWidths(double inner, double outer, int count)
{
    QList<double> widths;
    for (int i = 0; i < count; ++i)
        widths.append((outer - inner) / count);
    return widths;
}

double SliceGeometry::periodWidth(double radius) const
{
    return radius * qDegreesToRadians(m_machine.angleSpan);
}

Shape2DList SliceGeometry::bodyCurves(const SliceBody &body, const CylindricalSectionCreater &creater) const
{
    const double radius = creater.radius();
    const bool displaced = !Numeric::isZero(body.displacement);
    ShapeList cut = ShapeList::of(body.pieces);
    if (!cut.isEmpty() && m_machine.periodicity > 1) {
        QElapsedTimer timer;
        timer.start();
        cut = cut.cutToSector(m_machine.sectorRadius, body.bottom, body.top, qDegreesToRadians(body.displacement),
                              qDegreesToRadians(m_machine.angleSpan));
        qDebug() << body.name << "Make intersect" << radius << timer.elapsed() << "ms";
    }

    // The sector then starts at angle 0.
    if (displaced)
        cut = cut.rotatedZ(-qDegreesToRadians(body.displacement));
    Shape2DList lines;
    if (!cut.isEmpty()) {
        QElapsedTimer timer;
        timer.start();
        lines = creater.create(cut);
        qDebug() << body.name << "Create slice geometry" << radius << timer.elapsed() << "ms";
    }
    addFrame(lines, body, periodWidth(radius));
    // Back to the body's own angle, in the flat world.
    if (displaced)
        lines = lines.shifted(radius * qDegreesToRadians(body.displacement), 0.0);
    return lines;
}

Shape2DList SliceGeometry::joined(const std::vector<Shape2DList> &curves)
{
    // Neighbours share the middle lines of their gaps; each is kept once.
    Shape2DList lines;
    for (const Shape2DList &list : curves) {
        for (const QSharedPointer<Shape2D> &curve : list) {
            const bool known = std::any_of(lines.cbegin(), lines.cend(), [&curve](const QSharedPointer<Shape2D> &kept) {
                return Shape2DList::sameAs(*kept, *curve);
            });
            if (!known)
                lines.append(curve);
        }
    }
    return lines;
}

Shape2DList SliceGeometry::radialCurves(const SliceBody &body, const RadialSectionCreater &creater,
                                        double outerRadius, double inner, double outer) const
{
    Shape2DList lines = creater.createAtAngle(ShapeList::of(body.pieces), m_machine.sectorRadius, body.bottom,
                                              body.top, body.displacement, body.pitch);
    addFrame(lines, body, outerRadius);
    const double low = body.gapBelow ? (body.gapBelow->first + body.gapBelow->second) / 2 : body.bottom;
    const double high = body.gapAbove ? (body.gapAbove->first + body.gapAbove->second) / 2 : body.top;
    lines.appendLine({inner, low}, {inner, high});
    lines.appendLine({outer, low}, {outer, high});
    if (body.middle)
        lines.appendLine({0.0, (body.bottom + body.top) / 2}, {outerRadius, (body.bottom + body.top) / 2});
    return lines;
}

GeometryData SliceGeometry::createRadial(double outerRadius, double inner, double outer) const
{
    QElapsedTimer timer;
    timer.start();
    const RadialSectionCreater creater(m_machine.sizeLimit);
    const QVector<SliceBody> &bodies = m_machine.bodies;
    std::vector<Shape2DList> curves(std::size_t(bodies.size()));
    tbb::parallel_for(std::size_t(0), curves.size(), [&](std::size_t i) {
        curves[i] = radialCurves(bodies.at(int(i)), creater, outerRadius, inner, outer);
    });
    const Shape2DList lines = joined(curves);
    qDebug() << "Radial geometry" << "finished at" << timer.elapsed() << "ms";
    GeometryData data = GeometryGenerator().createGeometry(lines, 1e-5, true, false, true);
    prepareSubdomains(-1.0, data);
    qDebug() << "Motor  geometry radial" << "finished at" << timer.elapsed() << "ms";
    return data;
}

GeometryData SliceGeometry::createSlice(double radius) const
{
    QElapsedTimer timer;
    timer.start();
    const CylindricalSectionCreater creater(radius, m_machine.height, m_machine.sizeLimit);
    const QVector<SliceBody> &bodies = m_machine.bodies;
    std::vector<Shape2DList> curves(std::size_t(bodies.size()));
    tbb::parallel_for(std::size_t(0), curves.size(), [&](std::size_t i) {
        curves[i] = bodyCurves(bodies.at(int(i)), creater);
    });

    const Shape2DList lines = joined(curves);
    qDebug() << "Process geometry slice at" << radius << "finished at" << timer.elapsed() << "ms";

    timer.restart();
    GeometryData data = GeometryGenerator().createGeometry(lines, 1e-5, true, false, true);
    prepareSubdomains(radius, data);
    qDebug() << "Process subdomains slice at" << radius << "finished at" << timer.elapsed() << "ms";
    return data;
}

std::optional<PointF> SliceGeometry::probePoint(const Subdomain &subdomain, const GeometryData &data,
                                                double radius) const
{
    const struct
    {
        PointF point;
        const char *method;
    } candidates[] = {{subdomain.polylabelPoint(), "at polylabel method"},
                      {subdomain.centroidPoint(), "at centroid method"}};
    for (const auto &candidate : candidates) {
        const QSharedPointer<Subdomain> found = regionAt(data.subdomains, candidate.point);
        if (found.data() == &subdomain)
            return candidate.point;
        if (found) {
            qWarning().noquote() << "subdomain:" << subdomain.id() << found->id() << "not foundPoint"
                                 << flat::pointText(candidate.point) << candidate.method << "slice:" << radius;
        } else {
            qCritical().noquote() << "no found subdomain at point:" << flat::pointText(candidate.point);
        }
    }

    // Beside the middles of two neighbouring sides, inwards: both in this region
    // and in no island of it.
    const SegmentList &segments = subdomain.segments();
    const double step = sideStep * data.distanceTolerant;
    const auto besideMiddle = [&data, step](const SegmentPtr &segment) {
        const QLineF side(data.nodes.at(int(segment->node0)), data.nodes.at(int(segment->node1)));
        const QPointF left(-side.dy(), side.dx());
        return PointF(side.center() + left * (step / side.length()));
    };
    for (int k = 0; k < segments.size(); ++k) {
        const PointF first = besideMiddle(segments.at(k));
        const PointF second = besideMiddle(segments.at((k + 1) % segments.size()));
        const QSharedPointer<Subdomain> atFirst = regionAt(data.subdomains, first);
        if (atFirst.data() == &subdomain && regionAt(data.subdomains, second) == atFirst) {
            qWarning().noquote() << "subdomain:" << subdomain.id() << "foundPoint at low method" << "pt1:"
                                 << flat::pointText(first) << "pt2:" << flat::pointText(second)
                                 << "slice:" << int(radius);
            return first;
        }
    }
    return std::nullopt;
}

QSharedPointer<AbstractMaterial> SliceGeometry::materialAt(const QVector<SolidsOfPiece> &solids, double radius,
                                                          const PointF &point, double turn, qint32 id)
{
    // The slices were shifted back to the machine's own angle; the radial cut lies at the body's.
    const double angle = (radius > 0.0 ? point.x() / radius : 0.0) + qDegreesToRadians(turn);
    const double polar = radius > 0.0 ? radius : point.x();
    const servoce::point3 p(polar * std::cos(angle), polar * std::sin(angle), point.y());
    for (const SolidsOfPiece &piece : solids) {
        if (!boxHolds(piece.box, p))
            continue;
        for (const servoce::solid_shape &solid : piece.solids) {
            if (servoce::holds_point(solid, p, 1e-12))
                return piece.material;
        }
    }
    qWarning().noquote() << "Subdomain:" << id << "not found piece at p3:"
                         << QStringLiteral("[%1, %2, %3]").arg(p.x).arg(p.y).arg(p.z);
    return {};
}

double SliceGeometry::displacementOf(quint32 scope) const
{
    for (const SliceBody &body : m_machine.bodies) {
        if (body.scope == scope)
            return body.displacement;
    }
    return 0.0;
}

void SliceGeometry::prepareSubdomains(double radius, GeometryData &data, double turn) const
{
    SubdomainList regions = data.subdomains;
    std::sort(regions.begin(), regions.end(),
              [](const QSharedPointer<Subdomain> &a, const QSharedPointer<Subdomain> &b) { return a->id() < b->id(); });
    if (isOutline(regions))
        regions.removeFirst();
    // Smaller regions first, so that an island is found before the region around it.
    std::reverse(regions.begin(), regions.end());
    data.subdomains = regions;

    QVector<SolidsOfPiece> solids;
    for (const Piece &piece : m_machine.pieces) {
        SolidsOfPiece record{piece.material(), piece.shape().bounding_box(), piece.shape().solids()};
        if (record.solids.empty())
            qCritical() << "shape of piece not contains solid shape";
        else
            solids.append(record);
    }

    const QSharedPointer<AbstractMaterial> air(new GeneralMaterial);
    for (const QSharedPointer<Subdomain> &region : regions) {
        const std::optional<PointF> point = probePoint(*region, data, radius);
        if (!point) {
            qCritical().noquote() << "Error: Not found point at subdomain" << region->id();
            continue;
        }
        region->setScope(m_machine.scopeAt ? m_machine.scopeAt(*point) : 0u);
        if (!isEmptyMaterial(region->material())) {
            qWarning().noquote() << "Warning: subdomain" << region->id() << "has material"
                                 << region->material()->description();
            continue;
        }
        QSharedPointer<AbstractMaterial> material;
        if ((region->scope() & airgapBits) == 0 && !solids.isEmpty())
            material = materialAt(solids, radius, *point, radius > 0.0 ? turn : displacementOf(region->scope()),
                                  region->id());
        region->setMaterial(material ? material : air);
    }
}
