#include "meshing/PlanarKernel.h"

#include <CGAL/Polygon_2_algorithms.h>
#include <CGAL/intersections.h>
#include <vector>

#include "meshing/MyKernel.h"

namespace {

using Point = MyKernel::Point_2;
using Segment = MyKernel::Segment_2;

Point toPoint(const QPointF &point)
{
    return Point(point.x(), point.y());
}

PointF toPointF(const Point &point)
{
    return PointF(CGAL::to_double(point.x()), CGAL::to_double(point.y()));
}

std::vector<Point> toPoints(const QList<PointF> &polygon)
{
    std::vector<Point> points;
    points.reserve(size_t(polygon.size()));
    for (const PointF &point : polygon)
        points.push_back(toPoint(point));
    return points;
}

} // namespace

namespace planar {

QList<PointF> segmentIntersection(const QLineF &a, const QLineF &b)
{
    const Segment segmentA(toPoint(a.p1()), toPoint(a.p2()));
    const Segment segmentB(toPoint(b.p1()), toPoint(b.p2()));
    if (segmentA.is_degenerate() || segmentB.is_degenerate())
        return {};
    const auto result = CGAL::intersection(segmentA, segmentB);
    if (!result)
        return {};
    if (const Point *point = boost::get<Point>(&*result))
        return {toPointF(*point)};
    const Segment &overlap = boost::get<Segment>(*result);
    return {toPointF(overlap.source()), toPointF(overlap.target())};
}

bool isSimple(const QList<PointF> &polygon)
{
    if (polygon.size() < 3)
        return false;
    const std::vector<Point> points = toPoints(polygon);
    return CGAL::is_simple_2(points.begin(), points.end(), MyKernel());
}

bool isCounterClockwise(const QList<PointF> &polygon)
{
    const std::vector<Point> points = toPoints(polygon);
    return CGAL::orientation_2(points.begin(), points.end(), MyKernel()) == CGAL::COUNTERCLOCKWISE;
}

} // namespace planar
