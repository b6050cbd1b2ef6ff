#include "meshing/CDT.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Delaunay_mesh_face_base_2.h>
#include <CGAL/Delaunay_mesh_size_criteria_2.h>
#include <CGAL/Delaunay_mesh_vertex_base_2.h>
#include <CGAL/Delaunay_mesher_2.h>
#include <CGAL/Triangulation_data_structure_2.h>
#include <QDebug>
#include <algorithm>
#include <map>
#include <cmath>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include "meshing/MyKernel.h"
#include "base/Numeric.h"

namespace {

const double zeroTolerance = Numeric::zeroTolerance;
// Squared displacements up to this, (0.01 mm)², are rounding noise of a move and not applied.
const double smallestMoveSquared = 0.0001;
// A triangle whose height is below this fraction of its longest side is flat
// by rounding: crossing constraints met at a point that rounding moved off a
// line. The mesher would place its circumcentre at infinity.
const double flatTriangle = 1e-10;
// Ends of the mirror lines: far outside any machine.
const double farAway = 10000.0;

// Adds the air-gap class of a vertex to the kernel's vertex.
template <class K, class Vb = CGAL::Triangulation_vertex_base_2<K>>
class TriangulationVertexBase : public Vb
{
public:
    template <class Tds2>
    struct Rebind_TDS
    {
        using Vb2 = typename Vb::template Rebind_TDS<Tds2>::Other;
        using Other = TriangulationVertexBase<K, Vb2>;
    };

    using Vb::Vb;

    CDT::VertexType type = CDT::VertexFree;
};

template <class K>
using DelaunayMeshVertex = CGAL::Delaunay_mesh_vertex_base_2<K, TriangulationVertexBase<K>>;
template <class K>
using DelaunayMeshFace = CGAL::Delaunay_mesh_face_base_2<K>;
using Tds = CGAL::Triangulation_data_structure_2<DelaunayMeshVertex<MyKernel>, DelaunayMeshFace<MyKernel>>;
using Triangulation = CGAL::Constrained_Delaunay_triangulation_2<MyKernel, Tds, CGAL::Exact_predicates_tag>;
using Criteria = CGAL::Delaunay_mesh_size_criteria_2<Triangulation>;
using Mesher = CGAL::Delaunay_mesher_2<Triangulation, Criteria>;
using Point = MyKernel::Point_2;
using Transformation = MyKernel::Aff_transformation_2;
using VertexHandle = Triangulation::Vertex_handle;
using FaceHandle = Triangulation::Face_handle;

PointF toPointF(const Point &point)
{
    return PointF(point.x(), point.y());
}

QString pointText(const Point &point)
{
    return flat::pointText(toPointF(point));
}

bool near(const Point &a, const Point &b)
{
    return std::abs(a.x() - b.x()) <= zeroTolerance && std::abs(a.y() - b.y()) <= zeroTolerance;
}

std::pair<VertexHandle, VertexHandle> ends(const Triangulation::Edge &edge)
{
    return {edge.first->vertex(Triangulation::cw(edge.second)), edge.first->vertex(Triangulation::ccw(edge.second))};
}

Transformation transformationOf(const QTransform &transform)
{
    return Transformation(transform.m11(), transform.m21(), transform.dx(), transform.m12(), transform.m22(),
                          transform.dy());
}

} // namespace

struct CDT::Private
{
    VertexHandle hullVertexNear(const FaceHandle &outside, const Point &point) const;
    VertexHandle insert(const Point &point);
    bool insertConstraint(const Point &p1, const Point &p2, const VertexType *type);
    void insertAll(const Triangulation &other);
    // A mirror turns every face clockwise, so the mirror image is inserted
    // afresh and the kernel orders its faces anew.
    void insertMirrored(const Triangulation &source, const MyKernel::Line_2 &line);
    void map(const Transformation &transformation);
    std::vector<std::pair<VertexHandle, VertexHandle>> constraintEnds() const;
    void checkRefinable() const;

    Triangulation tr;
};

// Outside the hull, locate gives any hull edge the point sees, which need not end at the
// hull vertex the point is a rounding error off: the walk covers every edge it sees.
VertexHandle CDT::Private::hullVertexNear(const FaceHandle &outside, const Point &point) const
{
    for (const bool clockwise : {true, false}) {
        FaceHandle face = outside;
        do {
            const int infinite = face->index(tr.infinite_vertex());
            const VertexHandle a = face->vertex(Triangulation::ccw(infinite));
            const VertexHandle b = face->vertex(Triangulation::cw(infinite));
            if (near(a->point(), point))
                return a;
            if (near(b->point(), point))
                return b;
            if (CGAL::orientation(a->point(), b->point(), point) == CGAL::RIGHT_TURN)
                break;
            face = face->neighbor(clockwise ? Triangulation::cw(infinite) : Triangulation::ccw(infinite));
        } while (face != outside);
    }
    return {};
}

VertexHandle CDT::Private::insert(const Point &point)
{
    if (tr.number_of_vertices() == 0)
        return tr.insert(point);
    if (tr.dimension() == 0) {
        const VertexHandle only = tr.finite_vertices_begin();
        return near(only->point(), point) ? only : tr.insert(point);
    }
    Triangulation::Locate_type type;
    int index = 0;
    const FaceHandle face = tr.locate(point, type, index);
    if (type == Triangulation::OUTSIDE_AFFINE_HULL)
        return tr.insert(point);
    if (face == FaceHandle()) {
        qCritical().noquote() << "Error: Can't locale point:" << pointText(point);
        return {};
    }
    if (type == Triangulation::VERTEX) {
        const VertexHandle vertex = face->vertex(index);
        return near(vertex->point(), point) ? vertex : VertexHandle();
    }
    // A point a rounding error off a corner of its face is that corner.
    for (int i = 0; i < 3; ++i) {
        const VertexHandle corner = face->vertex(i);
        if (corner != VertexHandle() && !tr.is_infinite(corner) && near(corner->point(), point))
            return corner;
    }
    if (type == Triangulation::OUTSIDE_CONVEX_HULL && tr.dimension() == 2 && face->has_vertex(tr.infinite_vertex())) {
        if (const VertexHandle close = hullVertexNear(face, point); close != VertexHandle())
            return close;
    }
    const VertexHandle inserted = tr.insert(point, type, face, index);
    if (inserted == VertexHandle())
        qCritical().noquote() << "Error: While insert" << pointText(point) << "vh == nullptr";
    return inserted;
}

bool CDT::Private::insertConstraint(const Point &p1, const Point &p2, const VertexType *type)
{
    const VertexHandle v1 = insert(p1);
    const VertexHandle v2 = insert(p2);
    if (v1 == VertexHandle() || v2 == VertexHandle())
        return false;
    if (v1 == v2) {
        qCritical().noquote() << "Error: v1 == v2" << pointText(p1) << pointText(p2);
        return false;
    }
    if (type) {
        v1->type = *type;
        v2->type = *type;
    }
    tr.insert_constraint(v1, v2);
    return true;
}

void CDT::Private::insertAll(const Triangulation &other)
{
    for (auto vertex = other.finite_vertices_begin(); vertex != other.finite_vertices_end(); ++vertex) {
        const VertexHandle inserted = insert(vertex->point());
        if (inserted != VertexHandle())
            inserted->type = vertex->type;
    }
    for (auto edge = other.finite_edges_begin(); edge != other.finite_edges_end(); ++edge) {
        if (other.is_constrained(*edge)) {
            const auto [a, b] = ends(*edge);
            insertConstraint(a->point(), b->point(), nullptr);
        }
    }
}

void CDT::Private::insertMirrored(const Triangulation &source, const MyKernel::Line_2 &line)
{
    Private flipped{source};
    flipped.map(Transformation(CGAL::REFLECTION, line));
    insertAll(flipped.tr);
}

void CDT::Private::map(const Transformation &transformation)
{
    for (auto vertex = tr.finite_vertices_begin(); vertex != tr.finite_vertices_end(); ++vertex) {
        const Point &point = vertex->point();
        const Point moved = transformation(point);
        if (near(moved, point))
            continue;
        const double squared = CGAL::squared_distance(point, moved);
        if (squared > smallestMoveSquared)
            vertex->set_point(moved);
        else
            qDebug().noquote() << "Move not applied, d2:" << squared << pointText(point) << pointText(moved);
    }
}

std::vector<std::pair<VertexHandle, VertexHandle>> CDT::Private::constraintEnds() const
{
    std::vector<std::pair<VertexHandle, VertexHandle>> result;
    for (auto edge = tr.finite_edges_begin(); edge != tr.finite_edges_end(); ++edge) {
        if (tr.is_constrained(*edge))
            result.push_back(ends(*edge));
    }
    return result;
}

void CDT::Private::checkRefinable() const
{
    for (auto face = tr.finite_faces_begin(); face != tr.finite_faces_end(); ++face) {
        const Point &a = face->vertex(0)->point();
        const Point &b = face->vertex(1)->point();
        const Point &c = face->vertex(2)->point();
        const double longest =
            std::max({CGAL::squared_distance(a, b), CGAL::squared_distance(b, c), CGAL::squared_distance(c, a)});
        if (std::abs(CGAL::area(a, b, c)) > flatTriangle * longest)
            continue;
        const Point middle = CGAL::centroid(a, b, c);
        throw std::runtime_error(
            QStringLiteral("Error: constraints cross too close to each other to refine the mesh near %1")
                .arg(pointText(middle))
                .toStdString());
    }
}

CDT::CDT()
    : d(new Private)
{
}

CDT::CDT(const CDT &other)
    : d(new Private(*other.d))
{
}

CDT::CDT(CDT &&other) noexcept
    : d(std::move(other.d))
{
}

CDT &CDT::operator=(const CDT &other)
{
    if (this != &other)
        d.reset(new Private(*other.d));
    return *this;
}

CDT &CDT::operator=(CDT &&other) noexcept
{
    d = std::move(other.d);
    return *this;
}

CDT::~CDT() = default;

int CDT::dimension() const
{
    return d->tr.dimension();
}

int CDT::numberOfVertices() const
{
    return int(d->tr.number_of_vertices());
}

int CDT::numberOfFaces() const
{
    return d->tr.dimension() < 2 ? 0 : int(d->tr.number_of_faces());
}

int CDT::numberOfConstraints() const
{
    return int(d->constraintEnds().size());
}

CDT::Snapshot CDT::snapshot() const
{
    const Triangulation &tr = d->tr;
    Snapshot result;
    std::unordered_map<const void *, int> indexes;
    for (auto vertex = tr.finite_vertices_begin(); vertex != tr.finite_vertices_end(); ++vertex) {
        indexes.emplace(&*vertex, result.vertices.size());
        result.vertices.append({toPointF(vertex->point()), vertex->type});
    }
    const auto indexOf = [&indexes](const VertexHandle &vertex) { return indexes.at(&*vertex); };
    if (tr.dimension() == 2) {
        for (auto face = tr.finite_faces_begin(); face != tr.finite_faces_end(); ++face) {
            const Point centroid =
                CGAL::centroid(face->vertex(0)->point(), face->vertex(1)->point(), face->vertex(2)->point());
            result.faces.append({{indexOf(face->vertex(0)), indexOf(face->vertex(1)), indexOf(face->vertex(2))},
                                 face->is_in_domain(),
                                 toPointF(centroid)});
        }
    }
    for (const auto &[a, b] : d->constraintEnds())
        result.constraints.append({indexOf(a), indexOf(b)});
    return result;
}

namespace {

bool isFinite(const PointF &point)
{
    if (std::isfinite(point.x()) && std::isfinite(point.y()))
        return true;
    qCritical() << "Error: point is not finite:" << point;
    return false;
}

} // namespace

std::optional<PointF> CDT::insert(const PointF &point)
{
    if (!isFinite(point))
        return std::nullopt;
    const VertexHandle vertex = d->insert(Point(point.x(), point.y()));
    if (vertex == VertexHandle())
        return std::nullopt;
    return toPointF(vertex->point());
}

void CDT::setVertexType(const PointF &point, VertexType type)
{
    const Point p(point.x(), point.y());
    Triangulation::Locate_type location;
    int index = 0;
    const FaceHandle face = d->tr.number_of_vertices() == 0 ? FaceHandle() : d->tr.locate(p, location, index);
    if (face != FaceHandle() && location == Triangulation::VERTEX)
        face->vertex(index)->type = type;
    else
        qCritical().noquote() << "Vertex not found at " << pointText(p);
}

bool CDT::insert_constraint(const PointF &p1, const PointF &p2)
{
    if (!isFinite(p1) || !isFinite(p2))
        return false;
    return d->insertConstraint(Point(p1.x(), p1.y()), Point(p2.x(), p2.y()), nullptr);
}

bool CDT::insert_base_constraint(const PointF &p1, const PointF &p2, VertexType type)
{
    if (!isFinite(p1) || !isFinite(p2))
        return false;
    return d->insertConstraint(Point(p1.x(), p1.y()), Point(p2.x(), p2.y()), &type);
}

void CDT::merge(const CDT &other)
{
    if (d->tr.number_of_vertices() == 0) {
        d->tr = other.d->tr;
        return;
    }
    d->insertAll(other.d->tr);
}

void CDT::map(const QTransform &transform)
{
    d->map(transformationOf(transform));
}

void CDT::translate(double dx)
{
    if (std::abs(dx) <= zeroTolerance)
        return;
    d->map(Transformation(CGAL::TRANSLATION, MyKernel::Vector_2(dx, 0.0)));
}

CDT CDT::translated(double dx) const
{
    CDT copy(*this);
    copy.translate(dx);
    return copy;
}

CDT CDT::reflectedOrdinate(double y0) const
{
    CDT result;
    result.d->insertMirrored(d->tr, MyKernel::Line_2(Point(-farAway, y0), Point(farAway, y0)));
    return result;
}

CDT CDT::reflectedAbscissa(double x0) const
{
    CDT result;
    result.d->insertMirrored(d->tr, MyKernel::Line_2(Point(x0, -farAway), Point(x0, farAway)));
    return result;
}

void CDT::removeConstraintsIf(const std::function<bool(const PointF &, const PointF &)> &test)
{
    for (const auto &[a, b] : d->constraintEnds()) {
        if (!test(toPointF(a->point()), toPointF(b->point())))
            continue;
        FaceHandle face;
        int index = 0;
        if (d->tr.is_edge(a, b, face, index))
            d->tr.remove_constrained_edge(face, index);
    }
}

void CDT::markConstraintEndsIf(const std::function<bool(const PointF &, const PointF &)> &test, VertexType type)
{
    for (const auto &[a, b] : d->constraintEnds()) {
        if (test(toPointF(a->point()), toPointF(b->point()))) {
            a->type = type;
            b->type = type;
        }
    }
}

void CDT::removeVerticesIf(const std::function<bool(const PointF &)> &test)
{
    std::vector<VertexHandle> doomed;
    for (auto vertex = d->tr.finite_vertices_begin(); vertex != d->tr.finite_vertices_end(); ++vertex) {
        if (test(toPointF(vertex->point())))
            doomed.push_back(vertex);
    }
    for (const VertexHandle &vertex : doomed) {
        if (d->tr.are_there_incident_constraints(vertex)) {
            qWarning().noquote() << "At"
                                 << QStringLiteral("%1 %2")
                                        .arg(vertex->point().x(), 0, 'f', 9)
                                        .arg(vertex->point().y(), 0, 'f', 9)
                                 << "are_there_incident_constraints";
            continue;
        }
        d->tr.remove(vertex);
    }
}

int CDT::refine(double aspectBound, double sizeBound, int stepLimit)
{
    if (stepLimit <= 0)
        return 0;
    d->checkRefinable();
    Mesher mesher(d->tr, Criteria(aspectBound, sizeBound));
    mesher.init(false);
    int steps = 0;
    while (steps < stepLimit && !mesher.is_refinement_done()) {
        mesher.step_by_step_refine_mesh();
        ++steps;
    }
    return steps;
}

void CDT::markDomain(const QVector<PointF> &seeds)
{
    std::vector<Point> points;
    for (const PointF &seed : seeds)
        points.emplace_back(seed.x(), seed.y());
    Mesher mesher(d->tr, Criteria(0.0125, 0.0));
    mesher.set_seeds(points.begin(), points.end(), false);
    mesher.init(false);
}

namespace {

// The direction of a side folded into [0, 180] degrees.
double sideAngle(const Point &a, const Point &b)
{
    double angle = std::atan2(b.y() - a.y(), b.x() - a.x()) * 180.0 / M_PI;
    if (angle < 0.0)
        angle += 360.0;
    return angle > 180.0 ? angle - 180.0 : angle;
}

bool alongAnAxis(double angle)
{
    return angle <= 5.0 || (angle >= 85.0 && angle <= 95.0) || angle >= 175.0;
}

} // namespace

void CDT::alignBand(double y0, double y1, double slope)
{
    std::map<double, FaceHandle> band;
    for (const FaceHandle face : d->tr.finite_face_handles()) {
        if (!face->is_in_domain())
            continue;
        const Point centroid = CGAL::centroid(face->vertex(0)->point(), face->vertex(1)->point(),
                                              face->vertex(2)->point());
        if (y0 < centroid.y() && centroid.y() < y1)
            band[centroid.x()] = face;
    }
    int count = 0;
    for (const auto &entry : band) {
        FaceHandle face = entry.second;
        const int visit = count++;
        if (visit % 2 != 0)
            continue;
        const double target = (visit / 2) % 2 == 0 ? slope : 180.0 - slope;
        for (int i = 0; i < 3; ++i) {
            const Point &a = face->vertex(Triangulation::ccw(i))->point();
            const Point &b = face->vertex(Triangulation::cw(i))->point();
            const double angle = sideAngle(a, b);
            if (alongAnAxis(angle) || (angle > target - 30.0 && angle < target + 30.0))
                continue;
            const FaceHandle other = face->neighbor(i);
            // A flip must leave two faces of the domain, counter-clockwise.
            if (face->is_constrained(i) || d->tr.is_infinite(other) || !other->is_in_domain())
                break;
            const Point &c = face->vertex(i)->point();
            const Point &e = other->vertex(other->index(face))->point();
            if (CGAL::orientation(c, e, a) == CGAL::orientation(c, e, b) || CGAL::orientation(c, e, a) == CGAL::COLLINEAR
                || CGAL::orientation(c, e, b) == CGAL::COLLINEAR)
                break;
            d->tr.flip(face, i);
            break;
        }
    }
}
